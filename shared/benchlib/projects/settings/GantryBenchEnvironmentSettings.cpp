#include "projects/settings/GantryBenchEnvironmentSettings.h"

#include "projects/settings/SettingDescription.h"

using namespace SettingRows;

namespace {

constexpr struct {
    EnvironmentPropertyValue* GantryBenchEnvironmentSettings::*member;
    SettingDescription description;
} Table[] = {
#define SETTING(member, ...) {&GantryBenchEnvironmentSettings::member, __VA_ARGS__},
#include "projects/settings/GantryBenchEnvironmentSettings.inc"
#undef SETTING
};

} // namespace

void GantryBenchEnvironmentSettings::createEntries()
{
    EnvironmentSettings::createEntries();
    createTable(this, Table);
}
