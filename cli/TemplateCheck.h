#pragma once

class CheckReport;
class QString;

// The workspace must be there. What an <include> brings is reported with the lines of the included
// file.

/// Checks a file of project templates.
void checkTemplates(CheckReport& report, const QString& path);

/// Checks a file of property groups.
void checkPropertyGroups(CheckReport& report, const QString& path);
