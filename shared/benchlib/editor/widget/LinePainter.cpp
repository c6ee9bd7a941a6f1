#include "editor/widget/LinePainter.h"

#include "editor/parsers/CodeEditParser.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace {

constexpr char16_t TabSign = 0x00BB;
constexpr char16_t BlankSign = 0x00B7;
constexpr QColor WaveColor{220, 40, 40};

} // namespace

LinePainter::LinePainter(const StyledLine& line, const Look& look, int preeditColumn,
                         const QString& preedit)
    : m_line(line),
      m_look(look),
      m_hasTabs(line.text.contains(u'\t'))
{
    if (m_hasTabs) {
        int column = 0;
        m_screenColumns.reserve(line.text.size() + 1);
        for (const QChar c : line.text) {
            m_screenColumns.append(column);
            column = c == u'\t' ? (column / look.tabSize + 1) * look.tabSize : column + 1;
        }
        m_screenColumns.append(column);
    }
    if (line.isComplex || !preedit.isEmpty() || !look.fonts->isFixedPitch())
        layOut(preeditColumn, preedit);
}

void LinePainter::layOut(int preeditColumn, const QString& preedit)
{
    m_layout = std::make_unique<QTextLayout>(m_line.text, m_look.fonts->base());
    QTextOption option;
    option.setTextDirection(Qt::LeftToRight);
    option.setWrapMode(QTextOption::NoWrap);
    option.setTabStopDistance(m_look.tabSize * m_look.fonts->characterWidth());
    if (m_look.showWhitespace)
        option.setFlags(QTextOption::ShowTabsAndSpaces);
    m_layout->setTextOption(option);
    m_layout->setCacheEnabled(true);
    QList<QTextLayout::FormatRange> formats;
    for (const StyledLine::Run& run : m_line.runs) {
        const CodeEditTextStyle& style = m_look.scheme->styles[static_cast<std::size_t>(run.style)];
        QTextLayout::FormatRange range;
        range.start = run.start;
        range.length = run.length;
        range.format.setForeground(foreground(run.style));
        const bool bold = (run.attributes & CodeEditParser::Bold) != 0;
        range.format.setFont(m_look.fonts->font(style.font | (bold ? CodeEditTextStyle::Bold : 0)));
        if (style.background.isValid())
            range.format.setBackground(style.background);
        if ((run.attributes & CodeEditParser::SpellingError) != 0) {
            range.format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
            range.format.setUnderlineColor(WaveColor);
        }
        formats.append(range);
    }
    if (!preedit.isEmpty()) {
        m_layout->setPreeditArea(preeditColumn, preedit);
        QTextLayout::FormatRange range;
        range.start = preeditColumn;
        range.length = static_cast<int>(preedit.size());
        range.format.setFontUnderline(true);
        formats.append(range);
    }
    m_layout->setFormats(formats);
    m_layout->beginLayout();
    QTextLine line = m_layout->createLine();
    if (line.isValid()) {
        constexpr double unlimited = 1e7;
        line.setLineWidth(unlimited);
        // All fonts share one base line.
        line.setPosition({0, m_look.fonts->ascent() - line.ascent()});
    }
    m_layout->endLayout();
}

QColor LinePainter::foreground(int style) const
{
    const QColor& own = m_look.scheme->styles[static_cast<std::size_t>(style)].foreground;
    return own.isValid() ? own : m_look.scheme->text(m_look.text);
}

int LinePainter::screenColumn(int column) const
{
    if (!m_hasTabs)
        return column;
    const int inside = std::clamp(column, 0, static_cast<int>(m_line.text.size()));
    return m_screenColumns[inside] + column - inside;
}

double LinePainter::xOf(int column) const
{
    const double step = m_look.fonts->characterWidth();
    if (!m_layout)
        return screenColumn(column) * step;
    const int length = static_cast<int>(m_line.text.size());
    const QTextLine line = m_layout->lineAt(0);
    if (!line.isValid())
        return column * step;
    const int beyond = std::max(0, column - length);
    return (beyond > 0 ? line.naturalTextWidth() : line.cursorToX(column)) + beyond * step;
}

double LinePainter::width() const
{
    // In a text of both directions the last character isn't the rightmost.
    return m_layout ? m_layout->lineAt(0).naturalTextWidth()
                    : xOf(static_cast<int>(m_line.text.size()));
}

int LinePainter::columnAt(double x, bool beyondEnd) const
{
    const int length = static_cast<int>(m_line.text.size());
    const double step = m_look.fonts->characterWidth();
    const double end = width();
    if (x >= end)
        return length + (beyondEnd ? static_cast<int>(std::lround((x - end) / step)) : 0);
    if (m_layout)
        return m_layout->lineAt(0).xToCursor(x);
    if (!m_hasTabs)
        return std::clamp(static_cast<int>(std::lround(x / step)), 0, length);
    int column = 0;
    while (column < length && x >= (xOf(column) + xOf(column + 1)) / 2)
        ++column;
    return column;
}

void LinePainter::draw(QPainter& painter, double origin, double left, double right,
                       const QList<Highlight>& highlights) const
{
    const double height = m_look.fonts->lineHeight();
    if (m_layout) {
        QList<QTextLayout::FormatRange> selections;
        const int length = static_cast<int>(m_line.text.size());
        for (const Highlight& highlight : highlights) {
            QTextLayout::FormatRange range;
            range.start = highlight.start;
            range.length = std::min(highlight.end, length) - highlight.start;
            range.format.setBackground(highlight.color);
            if (range.length > 0)
                selections.append(range);
            if (highlight.end > length) {
                const double from = xOf(std::max(length, highlight.start));
                painter.fillRect(QRectF(from - origin, 0, xOf(highlight.end) - from, height),
                                 highlight.color);
            }
        }
        m_layout->draw(&painter, {-origin, 0}, selections);
        return;
    }
    for (const Highlight& highlight : highlights) {
        const double from = std::max(left, xOf(highlight.start));
        const double to = std::min(right, xOf(highlight.end));
        if (from < to)
            painter.fillRect(QRectF(from - origin, 0, to - from, height), highlight.color);
    }
    drawGrid(painter, origin, left, right);
    if (m_look.showWhitespace)
        drawWhitespace(painter, origin, left, right);
}

std::pair<int, int> LinePainter::columnsBetween(double left, double right) const
{
    const int length = static_cast<int>(m_line.text.size());
    const double step = m_look.fonts->characterWidth();
    const int first = std::max(0, static_cast<int>(left / step) - 1);
    const int last = static_cast<int>(right / step) + 2;
    if (!m_hasTabs)
        return {std::min(first, length), std::clamp(last, 0, length)};
    const auto columnAtScreen = [this](int screen) {
        const auto found = std::lower_bound(m_screenColumns.begin(), m_screenColumns.end(), screen);
        return static_cast<int>(found - m_screenColumns.begin());
    };
    return {std::max(0, columnAtScreen(first) - 1), std::min(length, columnAtScreen(last))};
}

void LinePainter::drawGrid(QPainter& painter, double origin, double left, double right) const
{
    const auto [first, last] = columnsBetween(left, right);
    for (const StyledLine::Run& run : m_line.runs) {
        const int from = std::max(run.start, first);
        const int to = std::min(run.start + run.length, last);
        if (from < to)
            drawRun(painter, origin, run, from, to);
    }
}

void LinePainter::drawRun(QPainter& painter, double origin, const StyledLine::Run& run, int first,
                          int last) const
{
    const CodeEditTextStyle& style = m_look.scheme->styles[static_cast<std::size_t>(run.style)];
    const bool bold = (run.attributes & CodeEditParser::Bold) != 0;
    const double height = m_look.fonts->lineHeight();
    if (style.background.isValid())
        painter.fillRect(QRectF(xOf(first) - origin, 0, xOf(last) - xOf(first), height),
                         style.background);
    painter.setFont(m_look.fonts->font(style.font | (bold ? CodeEditTextStyle::Bold : 0)));
    painter.setPen(foreground(run.style));
    // A piece up to each tab; what is blank needs no ink.
    for (int from = first; from < last;) {
        if (m_line.text[from].isSpace()) {
            ++from;
            continue;
        }
        int to = from;
        while (to < last && m_line.text[to] != u'\t')
            ++to;
        painter.drawText(QPointF(xOf(from) - origin, m_look.fonts->ascent()),
                         QString::fromRawData(m_line.text.constData() + from, to - from));
        from = to;
    }
    if ((run.attributes & CodeEditParser::SpellingError) != 0)
        drawWave(painter, xOf(first) - origin, xOf(last) - origin);
}

void LinePainter::drawWave(QPainter& painter, double from, double to) const
{
    constexpr double period = 4;
    const double base =
        std::min<double>(m_look.fonts->ascent() + 3, m_look.fonts->lineHeight() - 1);
    QPainterPath path({from, base});
    double up = -1.5;
    for (double x = from; x < to; x += period / 2, up = -up)
        path.lineTo(std::min(x + period / 2, to), base + up);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(WaveColor, 1));
    painter.drawPath(path);
    painter.restore();
}

void LinePainter::drawWhitespace(QPainter& painter, double origin, double left, double right) const
{
    QColor faint = m_look.scheme->text(m_look.text);
    faint.setAlpha(90);
    painter.setPen(faint);
    painter.setFont(m_look.fonts->base());
    const auto [first, last] = columnsBetween(left, right);
    for (int i = first; i < last; ++i) {
        const QChar c = m_line.text[i];
        if (c == u'\t' || c == u' ')
            painter.drawText(QPointF(xOf(i) - origin, m_look.fonts->ascent()),
                             QString(QChar(c == u'\t' ? TabSign : BlankSign)));
    }
}
