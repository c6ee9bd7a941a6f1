#include "editor/widget/CodeEditFonts.h"

#include "editor/widget/CodeEditColorScheme.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

CodeEditFonts::CodeEditFonts(const QFont& base)
{
    int below = 1;
    for (int index = 0; index < CodeEditTextStyle::FontCount; ++index) {
        QFont font = base;
        font.setKerning(false);
        font.setWeight((index & CodeEditTextStyle::Bold) != 0 ? QFont::Bold : QFont::Normal);
        font.setItalic((index & CodeEditTextStyle::Italic) != 0);
        font.setUnderline((index & CodeEditTextStyle::Underline) != 0);
        m_fonts.append(font);
        const QFontMetricsF metrics(font);
        const auto pixels = [](double length) { return static_cast<int>(std::ceil(length)); };
        m_ascent = std::max(m_ascent, pixels(metrics.ascent()));
        below = std::max(below, pixels(metrics.descent() + metrics.leading()));
    }
    m_lineHeight = m_ascent + below;
    m_characterWidth = std::max(1.0, QFontMetricsF(m_fonts[0]).horizontalAdvance(u'0'));
    // What fonts tell of themselves isn't to be relied on.
    constexpr double tolerance = 0.01;
    for (const QFont& font : m_fonts)
        for (const QChar c : {u'i', u'W', u'.'})
            m_fixedPitch = m_fixedPitch
                && std::abs(QFontMetricsF(font).horizontalAdvance(c) - m_characterWidth)
                    < tolerance;
}
