#pragma once

#include "editor/buffer/QCodeBufferPosition.h"

class CodeEdit;
class QString;

/// Makes the text of editors known to screen readers. Once, at the start of a program.
void installCodeEditAccessibility();

// What screen readers are told; nothing happens while there are none.

void tellOfReplacedText(CodeEdit& edit, QCodeBufferPosition position, const QString& removed,
                        const QString& inserted);
/// Of more changes than anyone listens to.
void tellOfChangedText(CodeEdit& edit);
void tellOfCaret(CodeEdit& edit);
