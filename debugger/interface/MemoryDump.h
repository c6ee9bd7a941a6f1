#pragma once

/// Takes the units of a memory dump, in ascending order.
class MemoryDump {
public:
    virtual ~MemoryDump() = default;
    virtual void addEntry(unsigned address, unsigned value) = 0;
};
