#pragma once

class EditorWindow;

/// Makes the menus known by which a document's language, encoding, line ends and indentation are
/// chosen, and the look of all. Ahead of filling the window's menu bar.
void registerDocumentMenus(EditorWindow& window);
