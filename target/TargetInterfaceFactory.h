#pragma once

#include "target/TargetInterface.h"

#include <memory>
#include <span>
#include <vector>

/// One kind of target, for the user to choose.
struct TargetInterfaceInfo {
    const char* classname;
    const char* shortname;
    const char* description;
    bool simulated; ///< needs no hardware
};

/// Makes targets by the name of their class.
class TargetInterfaceFactory {
public:
    virtual ~TargetInterfaceFactory() = default;
    /// Null for a class that isn't known or not part of this installation.
    virtual std::unique_ptr<TargetInterface> create(const char* classname);

    /// Null for an unknown name.
    const char* classnameFromShortname(const char* shortname) const;
    std::span<const TargetInterfaceInfo> infos() const { return m_infos; }

    /// The one factory.
    static TargetInterfaceFactory* instance();

protected:
    std::vector<TargetInterfaceInfo> m_infos;
};
