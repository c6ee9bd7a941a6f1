#pragma once

class CodeEdit;
class QMenu;

/// If the word at the caret is misspelled: what may have been meant, and to let it be.
void addSpellingEntries(QMenu& menu, CodeEdit& edit);
