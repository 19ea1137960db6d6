// The editor widget's input: keys, mouse selection, drag and drop, input methods. Each
// event turns into calls on the editing control, then the view follows the caret.
#include "ui/EditorWidget.h"

#include "ZvMemoControl/LineMarks.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <QApplication>
#include <QDrag>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QScrollBar>

namespace zv {
namespace {

// The format that marks a drag as coming out of an editor of this process.
constexpr const char* kDragSourceMime = "application/x-zevrit-drag-source";

unsigned ShiftOf(Qt::KeyboardModifiers modifiers) {
    unsigned shift = 0;
    if (modifiers & Qt::ShiftModifier)
        shift |= ssShift;
    if (modifiers & Qt::AltModifier)
        shift |= ssAlt;
    if (modifiers & Qt::ControlModifier)
        shift |= ssCtrl;
    return shift;
}

std::u16string ToU16(const QString& s) {
    return std::u16string(reinterpret_cast<const char16_t*>(s.utf16()),
                          static_cast<std::size_t>(s.size()));
}

} // namespace

void TEditorWidget::AfterCommand() {
    if (!FSelecting)
        OfferPrimarySelection();
    EnsureCaretVisible();
    RestartBlink();
    viewport()->update();
}

bool TEditorWidget::HandleMoveKey(QKeyEvent* event) {
    const unsigned shift = ShiftOf(event->modifiers());
    if ((event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown) && (shift & ssCtrl))
        return false; // Ctrl+PageUp/PageDown switch documents
    if (FMemo.FMultiEditMode && event->key() >= Qt::Key_Home && event->key() <= Qt::Key_PageDown)
        FMemo.ExitMultiEditMode(); // a caret move leaves the other carets behind
    switch (event->key()) {
    case Qt::Key_Left:
        FMemo.MoveCursor(-1, 0, shift);
        return true;
    case Qt::Key_Right:
        FMemo.MoveCursor(1, 0, shift);
        return true;
    case Qt::Key_Up:
        FMemo.MoveCursor(0, -1, shift);
        return true;
    case Qt::Key_Down:
        FMemo.MoveCursor(0, 1, shift);
        return true;
    case Qt::Key_Home:
        FMemo.GoHome(shift);
        return true;
    case Qt::Key_End:
        FMemo.GoEnd(shift);
        return true;
    case Qt::Key_PageUp:
        FMemo.MovePage(-1, shift);
        return true;
    case Qt::Key_PageDown:
        FMemo.MovePage(1, shift);
        return true;
    default:
        return false;
    }
}

bool TEditorWidget::HandleCommandKey(QKeyEvent* event) {
    // Undo, clipboard, save and the other commands are the window's actions, whose
    // shortcuts the key map gives; these keys are typing. With Ctrl or Alt, Backspace and
    // Delete are left to the actions too (a chord nobody holds does nothing).
    const bool chord = event->modifiers() & (Qt::ControlModifier | Qt::AltModifier);
    if (HandleIndentKeys(event))
        return true;
    if (event->key() == Qt::Key_Backspace && !chord)
        FMemo.Backspace();
    else if (event->key() == Qt::Key_Delete && !chord)
        FMemo.acnDelete();
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        FMemo.EnterPress();
    else
        return false;
    return true;
}

void TEditorWidget::keyPressEvent(QKeyEvent* event) {
    if (event->isAutoRepeat())
        FKeyDown.store(true); // a key held down: the background sweep waits
    if (HandleCaretKeys(event) || HandleMoveKey(event) || HandleCommandKey(event)) {
        AfterCommand();
        return;
    }
    const QString text = event->text();
    // Chords are commands (menus, shortcuts), never text.
    const bool command =
        event->modifiers() & (Qt::ControlModifier | Qt::MetaModifier | Qt::AltModifier);
    if (text.isEmpty() || command)
        return QAbstractScrollArea::keyPressEvent(event);
    for (char16_t c : ToU16(text))
        FMemo.KeyPress(c);
    AfterCommand();
}

void TEditorWidget::keyReleaseEvent(QKeyEvent* event) {
    if (!event->isAutoRepeat())
        FKeyDown.store(false);
    QAbstractScrollArea::keyReleaseEvent(event);
}

// ---- Mouse ------------------------------------------------------------------------------

void TEditorWidget::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton)
        return PastePrimarySelection(event->position().toPoint());
    if (event->button() != Qt::LeftButton)
        return QAbstractScrollArea::mousePressEvent(event);
    if (FoldMarginPress(event->position().toPoint()))
        return;
    const TZvPos pos = PosAt(event->position().toPoint());
    if (event->position().x() < GutterWidth() - 4) { // the line numbers: a line mark
        ToggleLinemark(FMemo.Lines(), pos.Y);
        viewport()->update();
        return;
    }
    if (CaretMousePress(event, pos))
        return;
    TZvPos s, e;
    FMemo.OrderedSelection(s, e);
    FPressPoint = event->position().toPoint();
    FMaybeDrag = FMemo.FAllowDragText && FMemo.HasSelection() && pos >= s && pos < e &&
                 !(event->modifiers() & Qt::ShiftModifier);
    if (FMaybeDrag)
        return;
    if (event->modifiers() & Qt::ShiftModifier)
        FMemo.SetSelection(FMemo.SelStart(), pos);
    else
        FMemo.SetTextCursor(pos.X, pos.Y);
    FSelecting = true;
    AfterCommand();
}

void TEditorWidget::mouseMoveEvent(QMouseEvent* event) {
    const QPoint point = event->position().toPoint();
    if (FMaybeDrag) {
        if ((point - FPressPoint).manhattanLength() >= QApplication::startDragDistance()) {
            FMaybeDrag = false;
            StartDrag();
        }
        return;
    }
    if (!FSelecting || !(event->buttons() & Qt::LeftButton))
        return;
    FMemo.SetSelection(FMemo.SelStart(), PosAt(point));
    AfterCommand();
}

void TEditorWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (FMaybeDrag) { // a click inside the selection without a drag: place the caret
        const TZvPos pos = PosAt(event->position().toPoint());
        FMemo.SetTextCursor(pos.X, pos.Y);
        AfterCommand();
    }
    FMaybeDrag = false;
    FSelecting = false;
    OfferPrimarySelection();
}

void TEditorWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const TZvPos pos = PosAt(event->position().toPoint());
    FMemo.SetTextCursor(pos.X, pos.Y);
    int start = 0;
    FMemo.WordAtCursorPos(start, true);
    FSelecting = false;
    AfterCommand();
}

// ---- Drag and drop ----------------------------------------------------------------------

void TEditorWidget::StartDrag() {
    auto* data = new QMimeData;
    const std::u16string text = FMemo.GetSelection();
    data->setText(QString::fromUtf16(TEditText::FromString(text, false).ToLfString().c_str()));
    data->setData(kDragSourceMime, QByteArray::number(reinterpret_cast<quintptr>(this)));
    auto* drag = new QDrag(this);
    drag->setMimeData(data);
    const Qt::DropAction action = drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
    // A move into another widget takes the text away from here; a move inside this widget
    // was done by the drop itself.
    if (action == Qt::MoveAction && drag->target() != viewport() && drag->target() != this)
        FMemo.DeleteSelection();
    AfterCommand();
}

void TEditorWidget::dragEnterEvent(QDragEnterEvent* event) {
    // Files go on to the window, which opens them; text drops here.
    if (event->mimeData()->hasUrls() && event->source() == nullptr)
        return event->ignore();
    if (event->mimeData()->hasText() && !FMemo.FReadOnly)
        event->acceptProposedAction();
}

void TEditorWidget::dragMoveEvent(QDragMoveEvent* event) {
    if (!event->mimeData()->hasText() || FMemo.FReadOnly)
        return;
    const bool own = event->source() == this;
    event->setDropAction(own && !(event->modifiers() & Qt::ControlModifier) ? Qt::MoveAction
                                                                            : Qt::CopyAction);
    event->accept();
}

void TEditorWidget::dropEvent(QDropEvent* event) {
    const TZvPos pos = PosAt(event->position().toPoint());
    const bool own = event->source() == this;
    const bool move = own && !(event->modifiers() & Qt::ControlModifier);
    // Our own selection keeps its line ends; text from elsewhere takes the document's.
    const std::u16string text = own ? FMemo.GetSelection() : ToU16(event->mimeData()->text());
    FMemo.DropText(pos.X, pos.Y, text, move);
    event->setDropAction(move ? Qt::MoveAction : Qt::CopyAction);
    event->accept();
    setFocus();
    AfterCommand();
}

// ---- Input methods ----------------------------------------------------------------------

void TEditorWidget::inputMethodEvent(QInputMethodEvent* event) {
    for (char16_t c : ToU16(event->commitString()))
        FMemo.KeyPress(c);
    FPreedit = event->preeditString();
    event->accept();
    AfterCommand();
}

QVariant TEditorWidget::inputMethodQuery(Qt::InputMethodQuery query) const {
    switch (query) {
    case Qt::ImEnabled:
        return true;
    case Qt::ImCursorRectangle:
        return CaretRect();
    case Qt::ImCursorPosition:
        return FMemo.FCurX;
    case Qt::ImSurroundingText: {
        const auto row = FMemo.RowText(FMemo.FCurY);
        return QString::fromUtf16(row.data(), static_cast<qsizetype>(row.size()));
    }
    case Qt::ImFont:
        return font();
    default:
        return QAbstractScrollArea::inputMethodQuery(query);
    }
}

} // namespace zv
