// The view's font commands: a point larger or smaller, and the swap between the fixed-width
// font and the general one. Both change the base font, so the zoom applies on top of them.
#include "ui/EditorWidget.h"

#include <QFontDatabase>

#include <algorithm>

namespace zv {
namespace {

constexpr double kMinPoints = 4, kMaxPoints = 96;

} // namespace

void TEditorWidget::StepFontSize(int points) {
    if (FBaseFont.pointSizeF() > 0)
        FBaseFont.setPointSizeF(
            std::clamp(FBaseFont.pointSizeF() + points, kMinPoints, kMaxPoints));
    else // a font sized in pixels steps by pixels
        FBaseFont.setPixelSize(std::max(1, FBaseFont.pixelSize() + points));
    ApplyZoom();
}

void TEditorWidget::ToggleFont() {
    FGeneralFont = !FGeneralFont;
    QFont next = QFontDatabase::systemFont(FGeneralFont ? QFontDatabase::GeneralFont
                                                        : QFontDatabase::FixedFont);
    if (FBaseFont.pointSizeF() > 0)
        next.setPointSizeF(FBaseFont.pointSizeF());
    else
        next.setPixelSize(FBaseFont.pixelSize());
    FBaseFont = next;
    ApplyZoom();
}

} // namespace zv
