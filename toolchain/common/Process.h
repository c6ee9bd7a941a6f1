#pragma once

#include <string>
#include <vector>

/// Runs a program with these words, the first of them its name, and waits for it. Its standard
/// streams are the caller's. The result is its exit status, 128 and the signal's number if a signal
/// ended it, or -1 if no such program is found.
int runProcess(const std::vector<std::string>& words);
