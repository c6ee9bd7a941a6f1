#pragma once

#include "projects/macros/MacroSystem.h"

#include <gtest/gtest.h>

/// Targets find the device library and the peripherals in the tree that the build has made. One
/// source of a test program includes this.
class InstalledTree : public testing::Environment {
public:
    void SetUp() override
    {
        const QString root = QStringLiteral(GANTRY_ROOT_TREE);
        m_macros.setupDefaultSystemMacros(root);
        m_macros.setupPackageMacros(root + QStringLiteral("/packages"));
        macroSystem = &m_macros;
    }
    void TearDown() override { macroSystem = nullptr; }

private:
    MacroSystem m_macros;
};

[[maybe_unused]] inline const auto* const installedTree =
    testing::AddGlobalTestEnvironment(new InstalledTree);
