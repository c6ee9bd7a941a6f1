#pragma once

#include "target/TargetMemoryInterface.h"

#include <utility>
#include <vector>

/// Memory of which a part is flash: erasing leaves ones there. A base of its own, since a target
/// has operations of the same names that drive these.
class SimulatedFlash : public TargetMemoryInterface {
public:
    using TargetMemoryInterface::TargetMemoryInterface;

    void eraseBytes(unsigned address, unsigned length, unsigned* erasedStart,
                    unsigned* erasedLength) override;
    void eraseAll() override;

protected:
    /// First and last addresses.
    virtual std::vector<std::pair<unsigned, unsigned>> flashRanges() const = 0;
};
