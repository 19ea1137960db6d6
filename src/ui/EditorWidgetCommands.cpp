// The editor widget's commands beyond plain typing: indentation keys, zoom,
// the matching brace, the document's indentation style, and the X primary selection.
#include "ui/EditorWidget.h"

#include "ZvMemoControl/ZvMemoStrings.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>

namespace zv {
namespace {

constexpr int kZoomStep = 10, kZoomMin = 30, kZoomMax = 500;
// Larger selections are not copied into the primary selection on every change.
constexpr qsizetype kMaxPrimaryUnits = 8 * 1024 * 1024;

// Stands in for the primary selection where the platform has none (offscreen, some
// Wayland compositors): middle-click paste still works inside this process.
QString& OwnPrimary() {
    static QString text;
    return text;
}

} // namespace

void TEditorWidget::Run(const std::function<void(TZvMemo&)>& command) {
    command(FMemo);
    AfterCommand();
}

bool TEditorWidget::focusNextPrevChild(bool next) {
    return FMemo.FWantTab ? false : QAbstractScrollArea::focusNextPrevChild(next);
}

bool TEditorWidget::HandleIndentKeys(QKeyEvent* event) {
    const Qt::KeyboardModifiers mods = event->modifiers() & ~Qt::KeypadModifier;
    switch (event->key()) {
    case Qt::Key_Tab:
        if (mods != Qt::NoModifier || !FMemo.FWantTab)
            return false;
        if (FMemo.HasSelection() && FMemo.SelStart().Y != FMemo.SelEnd().Y)
            FMemo.acnIndent();
        else
            FMemo.InsertTab();
        return true;
    case Qt::Key_Backtab:
        if ((mods & ~Qt::ShiftModifier) != Qt::NoModifier || !FMemo.FWantTab)
            return false;
        FMemo.acnUnIndent();
        return true;
    default:
        return false;
    }
}

// ---- Zoom -------------------------------------------------------------------------------

void TEditorWidget::ZoomIn() {
    FMemo.FZoomValue = std::min(FMemo.FZoomValue + kZoomStep, kZoomMax);
    ApplyZoom();
}

void TEditorWidget::ZoomOut() {
    FMemo.FZoomValue = std::max(FMemo.FZoomValue - kZoomStep, kZoomMin);
    ApplyZoom();
}

void TEditorWidget::ZoomReset() {
    FMemo.FZoomValue = 100;
    ApplyZoom();
}

void TEditorWidget::ApplyZoom() {
    QFont zoomed = FBaseFont;
    const double factor = FMemo.FZoomValue / 100.0;
    if (FBaseFont.pointSizeF() > 0)
        zoomed.setPointSizeF(FBaseFont.pointSizeF() * factor);
    else
        zoomed.setPixelSize(std::max(1, static_cast<int>(FBaseFont.pixelSize() * factor)));
    setFont(zoomed); // the painter and the measure follow in changeEvent
    FWidestSeen = 0;
    UpdateScrollBars();
    EnsureCaretVisible();
    viewport()->update();
}

void TEditorWidget::wheelEvent(QWheelEvent* event) {
    if (!(event->modifiers() & Qt::ControlModifier))
        return QAbstractScrollArea::wheelEvent(event);
    const int steps = event->angleDelta().y();
    if (steps > 0)
        ZoomIn();
    else if (steps < 0)
        ZoomOut();
    event->accept();
}

// ---- Matching brace ---------------------------------------------------------------------

bool TEditorWidget::GoToMatchingBrace() {
    TZvPos open, close;
    if (!BracesAtCaret(open, close))
        return false;
    // Before an opener, behind a closer: pressing again jumps back.
    const TZvPos caret = FMemo.Caret();
    ++close.X;
    const TZvPos target = caret == open ? close : open;
    FMemo.SetTextCursor(target.X, target.Y);
    AfterCommand();
    return true;
}

// ---- Indentation style ------------------------------------------------------------------

void TEditorWidget::FollowDocumentIndent() {
    const std::shared_ptr<const TMemoStyleHost>& host = FMemo.Document().StyleHost();
    const bool syntaxTabs = host && host->FStyles && host->FStyles->FUseTabs;
    FMemo.FIndentAfter = host && host->FStyles ? host->FStyles->FIndentAfter : std::u16string();
    if (syntaxTabs) {
        FMemo.FTabAsSpaces = false;
        return;
    }
    if (!FLines)
        return;
    switch (DetectIndentStyle(*FLines)) {
    case TIndentStyle::Tabs:
        FMemo.FTabAsSpaces = false;
        break;
    case TIndentStyle::Spaces:
        FMemo.FTabAsSpaces = true;
        break;
    case TIndentStyle::Unknown:
        break;
    }
}

// ---- Primary selection ------------------------------------------------------------------

QString TEditorWidget::PrimarySelectionText() {
    QClipboard* clipboard = QGuiApplication::clipboard();
    if (clipboard->supportsSelection())
        return clipboard->text(QClipboard::Selection);
    return OwnPrimary();
}

void TEditorWidget::OfferPrimarySelection() {
    if (!FMemo.HasSelection())
        return;
    const TZvPos start = FMemo.SelStart(), end = FMemo.SelEnd();
    if (start == FOfferedStart && end == FOfferedEnd)
        return;
    if (FMemo.GetSelectionLength() > kMaxPrimaryUnits)
        return;
    FOfferedStart = start;
    FOfferedEnd = end;
    const std::u16string text = TEditText::FromString(FMemo.GetSelection(), false).ToLfString();
    const QString qtext = QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
    QClipboard* clipboard = QGuiApplication::clipboard();
    if (clipboard->supportsSelection())
        clipboard->setText(qtext, QClipboard::Selection);
    else
        OwnPrimary() = qtext;
}

void TEditorWidget::PastePrimarySelection(const QPoint& at) {
    const QString text = PrimarySelectionText();
    if (text.isEmpty() || FMemo.FReadOnly)
        return;
    const TZvPos pos = PosAt(at);
    FMemo.SetTextCursor(pos.X, pos.Y);
    FMemo.InsertText(std::u16string_view(reinterpret_cast<const char16_t*>(text.utf16()),
                                         static_cast<std::size_t>(text.size())));
    setFocus();
    AfterCommand();
}

} // namespace zv
