#pragma once

#include "script/es/ESProperty.h"

#include <cstdint>
#include <vector>

/// The code of one function, or of the main program of a text.
class ESCode {
public:
    void addbyte(std::uint8_t byte, int line)
    {
        bytes.push_back(byte);
        lines.push_back(line);
    }
    int size() const { return static_cast<int>(bytes.size()); }
    /// The index of a number, entered if it is new. Zeros of different sign are different.
    int number(double value);

    std::vector<std::uint8_t> bytes;
    /// The source line of each byte.
    std::vector<int> lines;
    std::vector<double> numbers;
    int parameterCount = 0;
    int localCount = 0;
    /// The arguments are wanted as an object.
    bool needArgs = false;
    /// Variables live in an activation object instead of on the stack.
    bool needFrame = false;
    /// Templates of the variables, parameters first.
    std::vector<ESProperty> variables;
};
