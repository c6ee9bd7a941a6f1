#pragma once

#include "editor/widget/CodeEditColorScheme.h"
#include "editor/widget/CodeEditFonts.h"
#include "editor/widget/StyledLine.h"

#include <QRectF>
#include <QTextLayout>

#include <memory>
#include <utility>

class QPainter;

/// Where the characters of one line are, and how they are drawn. Positions are in pixels from the
/// start of the line. Lines of plain characters stand on a grid of columns; others are laid out by
/// Qt, with its treatment of wide characters and of both directions.
class LinePainter {
public:
    struct Look {
        const CodeEditFonts* fonts;
        const CodeEditColorScheme* scheme;
        QColor text; ///< of the palette
        int tabSize;
        bool showWhitespace;
    };
    /// A stretch of columns with something behind it.
    struct Highlight {
        int start;
        int end;
        QColor color;
    };

    /// `preedit` is what an input method is composing at that column.
    LinePainter(const StyledLine& line, const Look& look, int preeditColumn = -1,
                const QString& preedit = {});

    /// Of a column; those beyond the end go on in steps of a character.
    double xOf(int column) const;
    /// The nearest place to put a caret; beyond the end of the line if `beyondEnd`.
    int columnAt(double x, bool beyondEnd) const;
    double width() const;

    /// Draws the characters between two positions that are near the given ones, with highlights
    /// behind them. The painter's origin is at the top of the line, at that position: what a
    /// painter is given stays small, however long the line is.
    void draw(QPainter& painter, double origin, double left, double right,
              const QList<Highlight>& highlights) const;

private:
    void drawGrid(QPainter& painter, double origin, double left, double right) const;
    void drawRun(QPainter& painter, double origin, const StyledLine::Run& run, int first,
                 int last) const;
    void drawWave(QPainter& painter, double from, double to) const;
    void drawWhitespace(QPainter& painter, double origin, double left, double right) const;
    /// The columns that may be seen between two positions.
    std::pair<int, int> columnsBetween(double left, double right) const;
    void layOut(int preeditColumn, const QString& preedit);
    QColor foreground(int style) const;
    int screenColumn(int column) const;

    const StyledLine& m_line;
    Look m_look;
    bool m_hasTabs;
    QList<int> m_screenColumns;            ///< of each column and the end, if there are tabs
    std::unique_ptr<QTextLayout> m_layout; ///< of a complex line
};
