// Drawing.

#include "editor/widget/CodeEdit.h"

#include <QApplication>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int GutterWidth = 30;
constexpr int NumberGap = 5;
constexpr int TextGap = 4; ///< between the margin and the text

QColor blend(const QColor& a, const QColor& b, double share)
{
    const auto mix = [share](int x, int y) { return static_cast<int>(x + (y - x) * share); };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

} // namespace

int CodeEdit::marginWidth() const
{
    const int gutter = m_iconGutter ? GutterWidth : 0;
    const double digit = m_fonts.characterWidth();
    int digits = 0;
    if (m_lineNumbers == LineNumberMode::Addresses)
        digits = addressWidth();
    else if (m_lineNumbers != LineNumberMode::Off)
        digits = std::max(3, static_cast<int>(QString::number(m_editor.count()).size()));
    const int numbers = digits > 0 ? static_cast<int>(std::ceil(digits * digit)) + NumberGap : 0;
    return gutter + numbers + TextGap;
}

LinePainter::Look CodeEdit::look() const
{
    return {&m_fonts, &s_scheme, palette().color(QPalette::Text), m_editor.settings().tabSize,
            m_showWhitespace};
}

StyledLine CodeEdit::styledLine(int line) const
{
    auto& buffer = const_cast<CodeEditor&>(m_editor).buffer();
    if (buffer.length(line) > QCodeBuffer::LongestParsedLine)
        return StyledLine::plain(buffer.view(line));
    return StyledLine::from(buffer.syntaxLine(line));
}

bool CodeEdit::hasPreedit(int line) const
{
    return !m_preedit.isEmpty() && line == m_editor.caret().line;
}

QPointF CodeEdit::pointOf(QCodeBufferPosition position) const
{
    const StyledLine styled = styledLine(position.line);
    const LinePainter painter(styled, look());
    return {textLeft() + painter.xOf(position.column)
                - m_editor.leftColumn() * m_fonts.characterWidth(),
            double(position.line - m_editor.topLine()) * m_fonts.lineHeight()};
}

QCodeBufferPosition CodeEdit::positionAt(QPointF point) const
{
    int line = m_editor.topLine() + static_cast<int>(std::floor(point.y() / m_fonts.lineHeight()));
    const bool virtualSpace = m_editor.virtualSpace();
    line = std::clamp(line, 0, virtualSpace ? line : std::max(0, m_editor.count() - 1));
    const StyledLine styled = styledLine(line);
    const LinePainter painter(styled, look());
    const double x = point.x() - textLeft() + m_editor.leftColumn() * m_fonts.characterWidth();
    return {line, painter.columnAt(std::max(0.0, x), virtualSpace)};
}

QRectF CodeEdit::caretRectangle() const
{
    const QPointF at = pointOf(m_editor.caret());
    const int style = CodeEditor::overwriteMode() ? m_overwriteCaret : m_insertCaret;
    const double width = std::max(1.0, m_fonts.characterWidth());
    const double height = m_fonts.lineHeight();
    switch (style & ~BlinkingCaret) {
    case VerticalCaret: return {at.x() - 0.5, at.y(), 2, height};
    case BlockCaret: return {at.x(), at.y(), width, height};
    default: return {at.x(), at.y() + height - 3, width, 3};
    }
}

void CodeEdit::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    for (const QRect& part : event->region())
        paintPart(painter, part);
    paintCaret(painter);
}

void CodeEdit::paintPart(QPainter& painter, const QRectF& clip)
{
    painter.setClipRect(clip);
    const QColor background =
        s_scheme.background.isValid() ? s_scheme.background : palette().color(QPalette::Base);
    const QColor text = s_scheme.text(palette().color(QPalette::Text));
    painter.fillRect(clip, background);
    const int height = m_fonts.lineHeight();
    const int top = m_editor.topLine();
    const int first = top + static_cast<int>(clip.top()) / height;
    const int last = std::min(top + (static_cast<int>(std::ceil(clip.bottom())) - 1) / height,
                              m_editor.count() - 1);
    for (int line = first; line <= last; ++line)
        paintLine(painter, line, double(line - top) * height, clip);

    const double margin = marginWidth() - TextGap;
    if (clip.left() < margin) {
        painter.fillRect(QRectF(clip.left(), clip.top(), margin - clip.left(), clip.height()),
                         blend(background, text, 0.05));
        for (int line = first; line <= last; ++line)
            paintMargin(painter, line, double(line - top) * height);
    }
    for (const int column : m_editor.settings().columnGuides) {
        const double x = textLeft() + (column - m_editor.leftColumn()) * m_fonts.characterWidth();
        if (x > textLeft()) {
            painter.setPen(blend(background, text, 0.2));
            painter.drawLine(QPointF(x, clip.top()), QPointF(x, clip.bottom()));
        }
    }
}

QColor CodeEdit::lineBackground(int line) const
{
    auto& self = const_cast<CodeEdit&>(*this);
    if (line == executionLine())
        return hasFocus() ? s_scheme.executionFocused : s_scheme.execution;
    if (self.breakpointState(line) == BreakpointState::Enabled)
        return s_scheme.breakpoint;
    if ((m_editor.buffer().data(line) & QCodeLine::Bookmarked) != 0)
        return s_scheme.bookmark;
    if (m_highlightCaretLine && line == m_editor.caret().line) {
        const QColor background =
            s_scheme.background.isValid() ? s_scheme.background : palette().color(QPalette::Base);
        return blend(background, s_scheme.text(palette().color(QPalette::Text)), 0.06);
    }
    return {};
}

QList<LinePainter::Highlight> CodeEdit::highlights(int line, const StyledLine& styled) const
{
    QList<LinePainter::Highlight> result;
    for (TextSearch::Match match = m_highlightFindRegexp.next(styled.text, 0); match.isValid();
         match = m_highlightFindRegexp.next(styled.text, match.end()))
        result.append({match.start, match.end(), s_scheme.match});
    const QSelection& pair = m_editor.matchedPair();
    if (pair.isValid())
        for (const Place place : {pair.begin, pair.end})
            if (place.line == line)
                result.append({place.column, place.column + 1, s_scheme.mate});
    const QSelection& selection = m_editor.selection();
    if (selection.isValid() && line >= selection.first().line && line <= selection.last().line) {
        const int start = line == selection.first().line ? selection.first().column : 0;
        // The end of a line is selected too when the selection goes on below.
        const int end = line == selection.last().line ? selection.last().column
                                                      : static_cast<int>(styled.text.size()) + 1;
        result.append({start, end, s_scheme.selection});
    }
    return result;
}

void CodeEdit::paintLine(QPainter& painter, int line, double y, const QRectF& clip)
{
    const StyledLine styled = styledLine(line);
    const double height = m_fonts.lineHeight();
    const double margin = textLeft();
    if (const QColor background = styled.band ? s_scheme.band : lineBackground(line);
        background.isValid())
        painter.fillRect(QRectF(margin - TextGap, y, viewport()->width(), height), background);
    const LinePainter linePainter(styled, look(), hasPreedit(line) ? m_editor.caret().column : -1,
                                  hasPreedit(line) ? m_preedit : QString());
    const double scrolled = m_editor.leftColumn() * m_fonts.characterWidth();
    painter.save();
    painter.setClipRect(QRectF(margin - TextGap, y, viewport()->width(), height),
                        Qt::IntersectClip);
    painter.translate(margin, y);
    linePainter.draw(painter, scrolled, clip.left() - margin + scrolled,
                     clip.right() - margin + scrolled, highlights(line, styled));
    painter.restore();
}

QString CodeEdit::lineNumberText(int line)
{
    if (m_lineNumbers == LineNumberMode::Addresses) {
        QCodeLine* const codeLine = m_editor.buffer().line(line);
        if (codeLine->address == QCodeLine::UnknownAddress)
            codeLine->address = lineAddress(line);
        return codeLine->address < 0
            ? QString()
            : u"%1"_s.arg(codeLine->address, addressWidth(), 16, QChar(u'0'));
    }
    static constexpr int every[] = {0, 0, 1, 5, 10};
    const int step = every[static_cast<int>(m_lineNumbers)];
    const QSelection& selection = m_editor.selection();
    const bool marked = line == m_editor.caret().line
        || (selection.isValid() && (line == selection.begin.line || line == selection.end.line));
    const bool shown =
        m_lineNumbers != LineNumberMode::Off && (marked || (step > 0 && (line + 1) % step == 0));
    return shown ? QString::number(line + 1) : QString();
}

void CodeEdit::paintMargin(QPainter& painter, int line, double y)
{
    const double height = m_fonts.lineHeight();
    const double width = marginWidth() - TextGap;
    const QColor text = s_scheme.text(palette().color(QPalette::Text));
    const QColor background =
        s_scheme.background.isValid() ? s_scheme.background : palette().color(QPalette::Base);
    if (const QString number = lineNumberText(line); !number.isEmpty()) {
        const bool current = line == m_editor.caret().line;
        painter.setFont(m_fonts.base());
        painter.setPen(blend(background, text, current ? 0.85 : 0.5));
        painter.drawText(QRectF(0, y, width - NumberGap, height), Qt::AlignRight | Qt::AlignVCenter,
                         number);
    }
    if (!m_iconGutter)
        return;
    const double size = std::min(height - 4, 14.0);
    const QRectF icon((GutterWidth - size) / 2, y + (height - size) / 2, size, size);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const BreakpointState state = breakpointState(line);
    if (state == BreakpointState::Enabled) {
        painter.setBrush(QColor(0xD0, 0x30, 0x30));
        painter.drawEllipse(icon);
    } else if (state == BreakpointState::Disabled) {
        painter.setPen(QPen(QColor(0xD0, 0x30, 0x30), 1.75));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(icon.adjusted(1, 1, -1, -1));
    }
    if ((m_editor.buffer().data(line) & QCodeLine::Bookmarked) != 0) {
        // A ribbon.
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0x1E, 0x88, 0xA8));
        const QRectF r = icon.adjusted(size * 0.2, 0, -size * 0.2, 0);
        painter.drawPolygon(QPolygonF({r.topLeft(),
                                       r.topRight(),
                                       r.bottomRight(),
                                       {r.center().x(), r.bottom() - size * 0.3},
                                       r.bottomLeft()}));
    }
    if (line == executionLine()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0xE0, 0xA0, 0x20));
        painter.drawPolygon(
            QPolygonF({icon.topLeft(), {icon.right(), icon.center().y()}, icon.bottomLeft()}));
    }
    painter.restore();
}

void CodeEdit::paintCaret(QPainter& painter)
{
    painter.setClipping(false);
    if (!m_caretShown || !hasFocus() || !m_preedit.isEmpty())
        return;
    const QRectF caret = caretRectangle();
    if (caret.left() < textLeft() - TextGap)
        return;
    const QColor text = s_scheme.text(palette().color(QPalette::Text));
    const int style = CodeEditor::overwriteMode() ? m_overwriteCaret : m_insertCaret;
    if ((style & ~BlinkingCaret) != BlockCaret) {
        painter.fillRect(caret, text);
        return;
    }
    // The character below stays readable.
    painter.save();
    painter.setCompositionMode(QPainter::RasterOp_SourceXorDestination);
    painter.fillRect(caret, Qt::white);
    painter.restore();
}
