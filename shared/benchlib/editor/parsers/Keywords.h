#pragma once

#include <QStringList>

/// The words that the parsers know, spelled as they are compared.
namespace Keywords {

const QStringList& c();
const QStringList& java();
const QStringList& javaScript();
const QStringList& batch();
const QStringList& vhdl();
const QStringList& svf();
const QStringList& svfStates();
const QStringList& stapl();
const QStringList& assemblyRegisters();
const QStringList& forthControls();
/// What stands behind one of these is a name, whatever it looks like.
const QStringList& forthNameWords();
/// These define that name.
const QStringList& forthDefiningWords();
/// Commands with an argument of one word, or in braces.
const QStringList& docGenWordCommands();
/// Commands with the rest of the line as their argument.
const QStringList& docGenLineCommands();

} // namespace Keywords
