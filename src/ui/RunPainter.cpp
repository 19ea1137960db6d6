// Painting of one row's colour runs and brace marks.
#include "ui/RunPainter.h"

#include <QPainter>
#include <QString>

#include <algorithm>
#include <cmath>

namespace zv {
namespace {

constexpr int kPieceLength = 1024;
constexpr int kBreakSearch = 20;

QString ToQString(std::u16string_view s) {
    return QString::fromUtf16(s.data(), qsizetype(s.size()));
}

// Where a long run is cut: near `at`, at a blank found within 20 units before it, and never
// inside a surrogate pair.
std::size_t PieceEnd(std::u16string_view text, std::size_t at) {
    if (at >= text.size())
        return text.size();
    for (std::size_t i = at; i + kBreakSearch > at && i > 0; --i)
        if (text[i] == u' ' || text[i] == u'\t')
            return i;
    if (text[at] >= 0xDC00 && text[at] < 0xE000)
        ++at;
    return at;
}

} // namespace

QColor ToQColor(TColor c) {
    if (c == kNoColor)
        return {};
    return QColor(int(c & 0xFF), int((c >> 8) & 0xFF), int((c >> 16) & 0xFF));
}

TRunPainter::TRunPainter(const QFont& font, TRunPaintOptions options)
    : FFont(font), FMetrics(font), FOptions(std::move(options)),
      FTabWidth(FMetrics.horizontalAdvance(QLatin1Char(' ')) * std::max(FOptions.TabSize, 1)) {}

QFont TRunPainter::FontFor(TFontStyles style, bool bold) const {
    QFont f = FFont;
    f.setBold(bold || (style & fsBold));
    f.setItalic(style & fsItalic);
    f.setUnderline(style & fsUnderline);
    f.setStrikeOut(style & fsStrikeOut);
    return f;
}

qreal TRunPainter::TextWidth(std::u16string_view piece, qreal x) const {
    const qreal start = x;
    std::size_t from = 0;
    for (std::size_t i = 0; i <= piece.size(); ++i)
        if (i == piece.size() || piece[i] == u'\t') {
            x += FMetrics.horizontalAdvance(ToQString(piece.substr(from, i - from)));
            if (i < piece.size())
                x = (std::floor(x / FTabWidth) + 1) * FTabWidth;
            from = i + 1;
        }
    return x - start;
}

qreal TRunPainter::ColumnX(std::u16string_view text, int column) const {
    return TextWidth(text.substr(0, std::clamp<std::size_t>(column, 0, text.size())), 0);
}

qreal TRunPainter::DrawPiece(QPainter& p, QPointF at, std::u16string_view piece, const QFont& font,
                             const QColor& fg, const QColor& bg) const {
    const qreal width = TextWidth(piece, at.x());
    if (bg.isValid())
        p.fillRect(QRectF(at.x(), at.y(), width, FMetrics.height()), bg);
    p.setFont(font);
    p.setPen(fg);
    qreal x = at.x();
    std::size_t from = 0;
    for (std::size_t i = 0; i <= piece.size(); ++i)
        if (i == piece.size() || piece[i] == u'\t') {
            const QString s = ToQString(piece.substr(from, i - from));
            p.drawText(QPointF(x, at.y() + FMetrics.ascent()), s);
            x += FMetrics.horizontalAdvance(s);
            if (i < piece.size())
                x = (std::floor(x / FTabWidth) + 1) * FTabWidth;
            from = i + 1;
        }
    return width;
}

void TRunPainter::MarkBrace(QPainter& p, QPointF origin, std::u16string_view text,
                            const TBraceMark& mark) const {
    if (mark.Column < 0 || mark.Column >= int(text.size()))
        return;
    const qreal x = origin.x() + ColumnX(text, mark.Column);
    const auto brace = text.substr(mark.Column, 1);
    const QRectF box(x, origin.y(), FMetrics.horizontalAdvance(ToQString(brace)),
                     FMetrics.height());
    const QColor& back = mark.Matched ? FOptions.BraceBack : FOptions.BraceBackE;
    const QColor& fore = mark.Matched ? FOptions.BraceText : FOptions.BraceTextE;
    QFont font = FFont;
    font.setBold(FOptions.BraceBold);
    font.setUnderline(FOptions.BraceUnderline);
    if (FOptions.BraceRectangle) {
        p.setPen(back);
        p.setBrush(Qt::NoBrush);
        p.drawRect(box.adjusted(0, 0, -1, -1));
        DrawPiece(p, box.topLeft(), brace, font, fore, QColor());
    } else
        DrawPiece(p, box.topLeft(), brace, font, fore, back);
}

qreal TRunPainter::PaintRow(QPainter& painter, QPointF origin, std::u16string_view text,
                            const std::vector<TColourRun>& runs,
                            const std::vector<TBraceMark>& braces, qreal rightEdge,
                            const TCharStyle* rowStyle) const {
    // Tab stops count from the row's left edge.
    painter.save();
    painter.translate(origin);
    if (rightEdge >= 0)
        rightEdge -= origin.x();
    qreal x = 0;
    for (const TColourRun& run : runs) {
        if (rightEdge >= 0 && x > rightEdge)
            break;
        const TCharStyle style = rowStyle ? *rowStyle : RunStyle(run, FOptions.Colours);
        const QFont font = FontFor(style.FStyle, style.FBoldness > 0);
        const QColor fg = ToQColor(style.FTextColor);
        const QColor bg =
            style.FBkColor != kNoColor ? ToQColor(style.FBkColor) : FOptions.Background;
        auto rest = text.substr(run.Start, run.Length);
        while (!rest.empty() && !(rightEdge >= 0 && x > rightEdge)) {
            const std::size_t cut = PieceEnd(rest, kPieceLength);
            x += DrawPiece(painter, QPointF(x, 0), rest.substr(0, cut), font,
                           fg.isValid() ? fg : QColor(Qt::black), bg);
            rest.remove_prefix(cut);
        }
    }
    for (const TBraceMark& mark : braces)
        MarkBrace(painter, QPointF(0, 0), text, mark);
    painter.restore();
    return x;
}

} // namespace zv
