#pragma once

#include "editor/commands/CodeEditSettings.h"

class EnvironmentSettings;

/// How text is indented in each language, which the user sets under Text Editor/Indent.
namespace IndentSettings {

/// Adds the settings; once, behind EnvironmentSettings::createEntries.
void createEntries(EnvironmentSettings& settings);

/// The name of the language of a file, such as "C and C++"; "Default" for one without its own.
QString languageOf(const QString& extension);

/// Takes the language's indentation into `settings`. Nothing changes where there are no entries.
void read(const EnvironmentSettings& environment, const QString& language,
          CodeEditSettings& settings);

} // namespace IndentSettings
