#pragma once

#include "script/forth/X.h"

#include <QString>

#include <memory>

class FSContext;
class InputSource;

/// The text interpreter, and what words read from the source.

/// Interprets the current source to its end. A ForthException knows where it arose.
void interpreter(FSContext* context);
/// Interprets another source, and comes back to the current one.
void interpret_source(FSContext* context, const std::shared_ptr<InputSource>& source);
/// A name that is relative is looked for beside the file that is being interpreted first. A missing
/// file is "i/o error: N" with the error of the file system.
void interpret_file(FSContext* context, const QString& name);
/// An open file, which is closed at the end.
void interpret_file(FSContext* context, qint64 id);

/// The next text up to the delimiter in the current line, which is passed; empty at the line's end.
/// A blank as the delimiter stands for all white space.
QString parseWord(FSContext* context, QChar delimiter, bool skipLeading, bool upper);
QString parseTo(FSContext* context, QChar delimiter);
/// The next word of the line; throws if there is none.
QString parseName(FSContext* context);

/// Prints the text of a fault, with the word that was being interpreted.
void errorMessage(FSContext* context, const ForthException& exception);
/// Restores sources until `count` are put away.
void discard_to(FSContext* context, std::size_t count);

/// A string from the stack: a string cell, or an address and a count. A string cell with a count
/// is its beginning.
QString forthPopString(FSContext* context);
/// The text of `count` characters at an address, or at the start of a string cell.
QString textAt(FSContext* context, const X& address, qint64 count);
/// The text of one code point. Throws if there is none of that number.
QString characterText(qint64 code);
