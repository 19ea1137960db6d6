// TRunPainter: paints one row of text from its colour runs with a QPainter, and marks the
// matched (or unmatched) brace characters on it. It knows nothing of widgets: the editor
// widget hands it the row text, the runs of the colouring walk, the font and where to draw.
//
// Use: build one per font and colour choice; for each visible row call PaintRow with the
// row's text and RowRuns(...) of it, the brace marks of that row, and the row's top-left.
#pragma once

#include "syntax/ColourWalk.h"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QPointF>

#include <string_view>
#include <vector>

class QPainter;

namespace zv {

// A brace of the matched pair (or an unmatched one) that lies on the painted row.
struct TBraceMark {
    int Column = 0; // 0-based UTF-16 column
    bool Matched = true;
};

struct TRunPaintOptions {
    TColourOptions Colours;
    int TabSize = 4;               // columns; at least 1
    QColor Background = Qt::white; // behind runs without a back colour
    // Brace highlight: back and text colours of a matched and an unmatched brace, and how.
    QColor BraceBack{0xC0, 0xE0, 0xFF}, BraceText{Qt::black};
    QColor BraceBackE{0xFF, 0xC0, 0xC0}, BraceTextE{Qt::black};
    bool BraceRectangle = false; // a box around the brace instead of a filled back
    bool BraceBold = false, BraceUnderline = false;
};

// 0x00BBGGRR as a QColor; kNoColor gives an invalid QColor.
QColor ToQColor(TColor c);

class TRunPainter {
public:
    TRunPainter(const QFont& font, TRunPaintOptions options);

    // Paints `text` cut by `runs` with its top-left at `origin` (tab stops count from there),
    // stopping at `rightEdge` (painter x; negative: paint the whole row, as export and
    // printing do). Runs longer than 1,024 units are drawn in pieces. Returns the width
    // painted. `runs` must tile the text (as the colouring walk gives them). A `rowStyle`
    // paints every run in that style instead of its own.
    qreal PaintRow(QPainter& painter, QPointF origin, std::u16string_view text,
                   const std::vector<TColourRun>& runs, const std::vector<TBraceMark>& braces,
                   qreal rightEdge = -1, const TCharStyle* rowStyle = nullptr) const;

    // The x offset of 0-based column `column` of `text` (tabs expanded), for carets and
    // marks.
    qreal ColumnX(std::u16string_view text, int column) const;
    // Where `piece`, drawn from offset `x` of its row, ends: for walking a row once.
    qreal AdvanceX(std::u16string_view piece, qreal x) const { return x + TextWidth(piece, x); }
    qreal LineHeight() const { return FMetrics.height(); }
    const TRunPaintOptions& Options() const { return FOptions; }

private:
    QFont FontFor(TFontStyles style, bool bold) const;
    qreal TextWidth(std::u16string_view piece, qreal x) const;
    qreal DrawPiece(QPainter& p, QPointF at, std::u16string_view piece, const QFont& font,
                    const QColor& fg, const QColor& bg) const;
    void MarkBrace(QPainter& p, QPointF origin, std::u16string_view text,
                   const TBraceMark& mark) const;

    QFont FFont;
    QFontMetricsF FMetrics;
    TRunPaintOptions FOptions;
    qreal FTabWidth;
};

} // namespace zv
