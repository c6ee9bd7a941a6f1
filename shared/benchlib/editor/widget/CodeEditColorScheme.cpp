#include "editor/widget/CodeEditColorScheme.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Plain = 0;
constexpr int Bold = CodeEditTextStyle::Bold;
constexpr int Italic = CodeEditTextStyle::Italic;

/// Colours as 0xRRGGBB; None for none.
constexpr int None = -1;

struct StyleRow {
    int foreground;
    int font = Plain;
    int background = None;
};

struct SchemeRow {
    QStringView name;
    int background;
    int selection;
    StyleRow styles[CodeEditParser::SyntaxElementCount];
};

// In the order of SyntaxElement: text, literal, comment, keyword; disassembly, XML markup,
// preprocessor control, operator; register, function, FIXME; documentation: keyword, argument,
// verbatim.
constexpr SchemeRow Schemes[] = {
    {u"Gantry Standard",
     None,
     0xFFEB9C,
     {{None},
      {0xFF0000},
      {0x008000, Italic},
      {0x000080, Bold},
      {0x808080},
      {0x800080},
      {0x008080},
      {0x000000},
      {0x000080},
      {0x000000, Bold},
      {0xFFFFFF, Plain, 0xFF0000},
      {0x808080},
      {0x000080},
      {0x000000}}},
    {u"Gantry High Contrast",
     0xFFFFFF,
     0xFFD700,
     {{0x000000},
      {0xA00000},
      {0x005A00, Italic},
      {0x0000A0, Bold},
      {0x404040},
      {0x6A006A},
      {0x00525E},
      {0x000000, Bold},
      {0x0000A0},
      {0x000000, Bold},
      {0xFFFFFF, Bold, 0xA00000},
      {0x404040, Bold},
      {0x0000A0},
      {0x000000}}},
    {u"Microsoft Visual C++",
     0xFFFFFF,
     0xADD6FF,
     {{0x000000},
      {0x000000},
      {0x008000},
      {0x0000FF},
      {0x808080},
      {0x800000},
      {0x0000FF},
      {0x000000},
      {0x0000FF},
      {0x000000},
      {0xFFFFFF, Plain, 0xFF0000},
      {0x808080},
      {0x008000},
      {0x000000}}},
    {u"Borland C++Builder",
     0xFFFFFF,
     0xC0DCF0,
     {{0x000000},
      {0x000080},
      {0x000080, Italic},
      {0x000000, Bold},
      {0x808080},
      {0x800080},
      {0x008000},
      {0x000000},
      {0x800000},
      {0x000000},
      {0xFFFFFF, Plain, 0xFF0000},
      {0x808080},
      {0x000080},
      {0x000000}}},
    {u"Borland C++ 3.x",
     0x000080,
     0x4060A0,
     {{0xFFFF55},
      {0x55FFFF},
      {0xB0B0B0},
      {0xFFFFFF},
      {0xC0C0C0},
      {0xFF9CFF},
      {0x55FF55},
      {0xFFFFFF},
      {0x55FFFF},
      {0xFFFF55},
      {0xFFFFFF, Plain, 0xC00000},
      {0xC0C0C0},
      {0x55FFFF},
      {0xFFFFFF}}},
    {u"Gantry Dark",
     0x1E2127,
     0x3A4A63,
     {{0xD7DAE0},
      {0xE5A07B},
      {0x7F9F7F, Italic},
      {0x7FB4F0, Bold},
      {0x9AA3B2},
      {0xD49CDF},
      {0x6FC3C3},
      {0xC8CCD4},
      {0x7FB4F0},
      {0xE8D9A0, Bold},
      {0xFFFFFF, Plain, 0xB03A3A},
      {0x9AA3B2},
      {0x7FB4F0},
      {0xD7DAE0}}},
};

QColor color(int rgb) { return rgb == None ? QColor() : QColor::fromRgb(static_cast<QRgb>(rgb)); }

/// The pastels of light schemes would hide the light text of dark ones.
void darken(CodeEditColorScheme& scheme)
{
    scheme.bookmark = QColor(0x1F, 0x55, 0x60);
    scheme.executionFocused = QColor(0x2E, 0x5A, 0x34);
    scheme.execution = QColor(0x2B, 0x42, 0x30);
    scheme.breakpoint = QColor(0x66, 0x30, 0x36);
    scheme.mate = QColor(0x7A, 0x55, 0x2E);
    scheme.band = QColor(0x2F, 0x35, 0x55);
    scheme.match = QColor(0x66, 0x5C, 0x1E);
}

CodeEditColorScheme schemeFrom(const SchemeRow& row)
{
    CodeEditColorScheme scheme;
    scheme.name = row.name.toString();
    scheme.background = color(row.background);
    scheme.selection = color(row.selection);
    for (std::size_t i = 0; i < scheme.styles.size(); ++i) {
        const StyleRow& style = row.styles[i];
        scheme.styles[i] = {style.font, color(style.foreground), color(style.background)};
    }
    if (scheme.isDark())
        darken(scheme);
    return scheme;
}

} // namespace

const QList<CodeEditColorScheme>& colorSchemes()
{
    static const QList<CodeEditColorScheme> schemes = [] {
        QList<CodeEditColorScheme> result;
        for (const SchemeRow& row : Schemes)
            result.append(schemeFrom(row));
        return result;
    }();
    return schemes;
}

const CodeEditColorScheme& colorSchemeNamed(const QString& name)
{
    for (const CodeEditColorScheme& scheme : colorSchemes())
        if (scheme.name == name)
            return scheme;
    return colorSchemes().first();
}

QString syntaxElementLabel(CodeEditParser::SyntaxElement element)
{
    static const QStringList labels = {
        u"Text"_s,
        u"Literal"_s,
        u"Comment"_s,
        u"Keyword"_s,
        u"Disassembly"_s,
        u"XML Markup"_s,
        u"Preprocessor Control"_s,
        u"Operator"_s,
        u"Register"_s,
        u"Function"_s,
        u"FIXME"_s,
        u"DocGen Keyword"_s,
        u"DocGen Argument"_s,
        u"DocGen Code/Verbatim"_s,
    };
    return labels.value(element);
}
