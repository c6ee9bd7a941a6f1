#pragma once

#include <QString>

/// Defaults of settings that depend on the host or are too long for the table.
namespace SettingDefaults {

/// "Gantry Projects" in the user's documents.
QString solutionDirectoryDefault();
/// The port of the host's proxy server, or 8080.
QString httpProxyPortDefault();
QString packageSourceUrlDefault();
/// Abbreviation, description and text of each template, as a StringList.
QString codeTemplatesDefault();

} // namespace SettingDefaults
