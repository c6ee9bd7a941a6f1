#pragma once

/// While it lives, SIGINT sets a flag instead of ending the program. Calls of the system that wait
/// return early then. One at a time.
class InterruptFlag {
public:
    InterruptFlag();
    ~InterruptFlag();
    InterruptFlag(const InterruptFlag&) = delete;
    InterruptFlag& operator=(const InterruptFlag&) = delete;

    static bool isSet();
    static void clear();
};
