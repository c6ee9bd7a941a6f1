#pragma once

class CodeEdit;
class EnvironmentSettings;

/// What the user has set of the editor, brought into effect.
namespace CodeEditPreferences {

/// What all editors share: undo, backups, templates, spelling, the clipboard ring.
void applyToAll(const EnvironmentSettings& settings);

/// The clipboard ring of the last session, if the user keeps it.
void restoreClipboardRing(const EnvironmentSettings& settings);
void keepClipboardRing(EnvironmentSettings& settings);

/// What an editor has of its own; its file's name tells the language.
void apply(const EnvironmentSettings& settings, CodeEdit& edit);

} // namespace CodeEditPreferences
