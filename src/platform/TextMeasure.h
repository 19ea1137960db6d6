// Measuring text for the editor control: the width of a piece of a row in pixels. The UI
// measures with its font; tests and headless runs use a fixed cell width.
#pragma once

#include <string_view>

namespace zv {

class ITextMeasure {
public:
    virtual ~ITextMeasure() = default;
    // Width in pixels of `text` as painted (tabs already expanded by the caller).
    virtual double TextWidth(std::u16string_view text) const = 0;
    // Width of one space: the step of a column past the end of a row.
    virtual double SpaceWidth() const = 0;
};

// Every UTF-16 unit is one cell of `cellWidth` pixels.
class TFixedTextMeasure : public ITextMeasure {
public:
    explicit TFixedTextMeasure(double cellWidth = 1.0) : FCellWidth(cellWidth) {}
    double TextWidth(std::u16string_view text) const override {
        return static_cast<double>(text.size()) * FCellWidth;
    }
    double SpaceWidth() const override { return FCellWidth; }

private:
    double FCellWidth; // invariant: > 0
};

} // namespace zv
