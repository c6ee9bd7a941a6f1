#include "debugger/views/ValueFormat.h"

#include "debugger/expressions/ExpressionType.h"
#include "debugger/views/ViewSettings.h"

using namespace Qt::Literals::StringLiterals;

DisplayMode getDebuggerDefaultDisplayMode()
{
    struct Mode {
        const char16_t* name;
        DisplayMode mode;
    };
    static constexpr Mode modes[] = {
        {u"Hexadecimal", HexadecimalDisplay},
        {u"Decimal", DecimalDisplay},
        {u"Binary", BinaryDisplay},
        {u"Unsigned Decimal", UnsignedDisplay},
        {u"ASCII", AsciiDisplay},
    };
    const QString name = ViewSettings::defaultVariableDisplayMode();
    for (const Mode& it : modes)
        if (name == QStringView(it.name))
            return it.mode;
    return OctalDisplay;
}

DisplayMode resolvedDisplayMode(const ExpressionType& value, int radix)
{
    if (radix != DefaultDisplay)
        return static_cast<DisplayMode>(radix);
    return value.getType() == ExpressionType::Floating ? DecimalDisplay
                                                       : getDebuggerDefaultDisplayMode();
}

QString getValueString(const ExpressionType& value, int radix)
{
    radix = resolvedDisplayMode(value, radix);
    const QByteArray format = ViewSettings::floatingPointFormat().toLatin1();
    if (radix == UnsignedDisplay)
        return value.toStr(DecimalDisplay, true, false, format.constData());
    return value.toStr(radix, false, radix == AsciiDisplay, format.constData());
}

unsigned debuggerExtendedTooltips()
{
    return DecimalForm | HexadecimalForm | BinaryForm | OctalForm | AsciiForm | UnsignedForm;
}

QString htmlize(const QString& label, const QString& text)
{
    return u"<tr><td align=\"right\" width=\"50%\">"_s + label.toHtmlEscaped() + u"</td><td>"_s
        + text.toHtmlEscaped() + u"</td></tr>"_s;
}

QString getFormattedValueString(const ExpressionType& value)
{
    struct Form {
        TooltipForm form;
        const char16_t* label;
        DisplayMode mode;
    };
    static constexpr Form forms[] = {
        {DecimalForm, u"decimal", DecimalDisplay},
        {HexadecimalForm, u"hexadecimal", HexadecimalDisplay},
        {BinaryForm, u"binary", BinaryDisplay},
        {OctalForm, u"octal", OctalDisplay},
        {AsciiForm, u"ASCII", AsciiDisplay},
        {UnsignedForm, u"unsigned", UnsignedDisplay},
    };
    if (!value.isNumberType())
        return getValueString(value, DefaultDisplay).toHtmlEscaped();
    QString rows;
    for (const Form& it : forms)
        if (debuggerExtendedTooltips() & it.form)
            rows += htmlize(QStringView(it.label).toString(), getValueString(value, it.mode));
    return u"<table>"_s + rows + u"</table>"_s;
}
