#pragma once

#include <QString>

class ExpressionType;

/// The forms in which data views write numbers.
enum DisplayMode {
    DefaultDisplay = -1, ///< decimal for a floating value, else as the user's settings say
    AsciiDisplay = 1,
    BinaryDisplay = 2,
    OctalDisplay = 8,
    DecimalDisplay = 10,
    UnsignedDisplay = 11,
    HexadecimalDisplay = 16,
};

/// The form that the user's settings choose for numbers without one of their own.
DisplayMode getDebuggerDefaultDisplayMode();

/// The form that `DefaultDisplay` stands for with this value.
DisplayMode resolvedDisplayMode(const ExpressionType& value, int radix);
QString getValueString(const ExpressionType& value, int radix);

/// The forms that an extended tool tip shows, one bit each, in the order of its rows.
enum TooltipForm {
    DecimalForm = 1,
    HexadecimalForm = 2,
    BinaryForm = 4,
    OctalForm = 8,
    AsciiForm = 16,
    UnsignedForm = 32,
};
unsigned debuggerExtendedTooltips();

/// A number in all forms of the extended tool tip, as an HTML table; any other value as it is.
QString getFormattedValueString(const ExpressionType& value);
/// A row of that table. Label and text are plain texts.
QString htmlize(const QString& label, const QString& text);
