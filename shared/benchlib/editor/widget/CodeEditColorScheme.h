#pragma once

#include "editor/parsers/CodeEditParser.h"

#include <QColor>
#include <QList>
#include <QString>

#include <array>

/// How a stretch of text of one SyntaxElement looks.
struct CodeEditTextStyle {
    enum FontBit { Bold = 1, Italic = 2, Underline = 4 };
    static constexpr int FontCount = 8;

    /// The bits of the font, which are its index among the eight that an editor keeps.
    int font = 0;
    /// Not valid: that of the palette.
    QColor foreground;
    /// Not valid: none.
    QColor background;
};

struct CodeEditColorScheme {
    QString name;
    /// Not valid: that of the palette.
    QColor background;
    QColor selection{255, 235, 156};
    std::array<CodeEditTextStyle, CodeEditParser::SyntaxElementCount> styles;

    // What stands behind whole lines and characters.
    QColor bookmark{0x00, 0xFF, 0xFF};
    QColor executionFocused{0xbc, 0xff, 0xba};
    QColor execution{0xea, 0xff, 0xee};
    QColor breakpoint{0xFF, 0xC0, 0xC0};
    QColor mate{249, 204, 167};
    QColor band{224, 224, 255};
    QColor match{255, 245, 130};

    bool isDark() const { return background.isValid() && background.lightness() < 128; }
    /// The foreground of text without a colour of its own.
    QColor text(const QColor& ofPalette) const
    {
        const QColor& own = styles[CodeEditParser::Text].foreground;
        return own.isValid() ? own : ofPalette;
    }
};

/// The schemes that there are; the first is the default.
const QList<CodeEditColorScheme>& colorSchemes();
/// The default for a name that there isn't.
const CodeEditColorScheme& colorSchemeNamed(const QString& name);
/// What options pages call an element.
QString syntaxElementLabel(CodeEditParser::SyntaxElement element);
