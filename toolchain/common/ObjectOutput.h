#pragma once

#include <string>

class TOBFModule;

/// Writes a module as a file in the native format. Throws HException if the file can't be written,
/// and leaves an older one as it was.
void writeObjectFile(TOBFModule* module, const std::string& path);
