// Text measuring for the editor control with the widget's font; widths of single units are
// cached, so measuring a row costs a table lookup per character.
#pragma once

#include "platform/TextMeasure.h"

#include <QFont>
#include <QFontMetricsF>

#include <vector>

namespace zv {

class TQtTextMeasure : public ITextMeasure {
public:
    explicit TQtTextMeasure(const QFont& font);
    // Takes a new font and forgets the cached widths.
    void SetFont(const QFont& font);
    double TextWidth(std::u16string_view text) const override;
    double SpaceWidth() const override { return FSpace; }

private:
    QFontMetricsF FMetrics;
    double FSpace = 0;
    // Width of each BMP unit that stands alone (no surrogate, no mark); < 0: not measured.
    mutable std::vector<float> FWidths;
};

} // namespace zv
