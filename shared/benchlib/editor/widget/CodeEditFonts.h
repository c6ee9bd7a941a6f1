#pragma once

#include <QFont>
#include <QList>

/// The eight fonts of an editor, one for each combination of bold, italic and underline, and what
/// of them its geometry is made of.
class CodeEditFonts {
public:
    explicit CodeEditFonts(const QFont& base = QFont());

    const QFont& font(int index) const { return m_fonts[index]; }
    const QFont& base() const { return m_fonts[0]; }
    /// Of a column, in pixels.
    double characterWidth() const { return m_characterWidth; }
    /// Whether each character of each font fills a column.
    bool isFixedPitch() const { return m_fixedPitch; }
    /// The largest of all fonts, in whole pixels.
    int lineHeight() const { return m_lineHeight; }
    int ascent() const { return m_ascent; }

private:
    QList<QFont> m_fonts;
    double m_characterWidth = 1;
    bool m_fixedPitch = true;
    int m_lineHeight = 1;
    int m_ascent = 1;
};
