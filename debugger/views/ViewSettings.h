#pragma once

#include <QString>

/// What the user has set of the data views; the defaults where there is no environment.
namespace ViewSettings {

QString defaultVariableDisplayMode();
/// A printf conversion.
QString floatingPointFormat();
/// An array with more elements isn't opened before the user has said how many.
unsigned arrayElementsPromptSize();
/// How many elements of an array a tool tip shows.
unsigned maximumArrayElementsDisplayed();
bool displayCharPtrAsString();
bool localsDisplayRegisters();

} // namespace ViewSettings
