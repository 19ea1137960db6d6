// Widths through QFontMetricsF, with a per-unit cache for simple text.
#include "ui/QtTextMeasure.h"

#include <QString>

namespace zv {

TQtTextMeasure::TQtTextMeasure(const QFont& font) : FMetrics(font) {
    SetFont(font);
}

void TQtTextMeasure::SetFont(const QFont& font) {
    FMetrics = QFontMetricsF(font);
    FSpace = FMetrics.horizontalAdvance(QLatin1Char(' '));
    FWidths.assign(0x10000, -1.0f);
}

double TQtTextMeasure::TextWidth(std::u16string_view text) const {
    double width = 0;
    for (char16_t c : text) {
        // Pairs, marks and shaped scripts are measured as a whole string.
        if (c >= 0x0300)
            return FMetrics.horizontalAdvance(
                QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size())));
        float& cached = FWidths[c];
        if (cached < 0)
            cached = static_cast<float>(FMetrics.horizontalAdvance(QChar(c)));
        width += cached;
    }
    return width;
}

} // namespace zv
