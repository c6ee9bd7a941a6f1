#pragma once

#include "projects/settings/EnvironmentSettings.h"

/// The settings that concern targets, besides all others.
class GantryBenchEnvironmentSettings : public EnvironmentSettings {
    Q_OBJECT
public:
    using EnvironmentSettings::EnvironmentSettings;

    void createEntries() override;

#define SETTING(member, ...) EnvironmentPropertyValue* member = nullptr;
#include "projects/settings/GantryBenchEnvironmentSettings.inc"
#undef SETTING
};
