// The targets find the device library and the peripherals in the tree that the build has made.
#include "projects/macros/MacroSystem.h"

#include <gtest/gtest.h>

namespace {

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

[[maybe_unused]] const auto* const installedTree =
    testing::AddGlobalTestEnvironment(new InstalledTree);

} // namespace
