#pragma once

class CheckReport;
class QString;

/// Checks a memory map or section placement and the files that it imports: numbers, and segments
/// that lie over one another. Numbers with macros that the file doesn't set aren't looked at. What
/// an <include> brings is reported with the lines of the included file.
void checkMemoryMap(CheckReport& report, const QString& path);
