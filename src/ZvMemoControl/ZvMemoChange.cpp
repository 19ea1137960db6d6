// The control's set-up and the one sequence every change of text passes: change rows, add
// the undo record, line-changed hook, scanner invalidation, wrap refresh, repaint.
#include "ZvMemoControl/ZvMemo.h"

#include "ZvMemoControl/ZvMemoRows.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <algorithm>
#include <stdexcept>

namespace zv {

TZvCustomMemo::TZvCustomMemo(TEditorServices services)
    : FOwnLines(std::make_unique<TZvMemoStrings>()),
      FUndoList(std::make_unique<TZvUndoList>(*this)), FBreaks(CreateIcuTextBreaks()),
      FOwnMeasure(std::make_unique<TFixedTextMeasure>()),
      FOwnClipboard(std::make_unique<TMemoryClipboard>()) {
    FLines = FOwnLines.get();
    FLines->SetMemo(this);
    SetServices(std::move(services));
    FUndoList->OnChange = [this] { UndoChanged(); };
    FUndoList->OnError = [this](const std::string& message) {
        const std::string text =
            FServices.Text ? FServices.Text("Messages", "172", message) : message;
        if (FServices.Prompt)
            FServices.Prompt->ShowMessage(text);
    };
}

TZvCustomMemo::~TZvCustomMemo() {
    FIsClosing = true;
    if (FLines) {
        FLines->SetMemo(nullptr);
        FLines->Memo() = static_cast<TZvMemoState&>(*this);
    }
}

void TZvCustomMemo::SetServices(TEditorServices services) {
    FServices = std::move(services);
}

void TZvCustomMemo::SetLines(TZvMemoStrings* lines) {
    // The store keeps what the control knows of it (wrap, binary mode, codec choices) when
    // the control lets go, and the control takes over what the load decided when it attaches.
    TZvMemoState& state = *this;
    if (FLines) {
        FLines->SetMemo(nullptr);
        FLines->Memo() = state;
    }
    FLines = lines ? lines : FOwnLines.get();
    state = FLines->Memo();
    FLines->SetMemo(this);
    FCurX = FCurY = 0;
    FSelStartX = FSelStartY = FSelEndX = FSelEndY = 0;
    FPrevSelX = FPrevSelY = 0;
    FTopLine = FRealTopLine = 0;
    FUndoList->Clear();
    FSavedText.Reset(*FLines);
    UpdateModified();
}

int TZvCustomMemo::RowCount() const {
    return std::max(FLines->Count(), 1);
}

std::u16string_view TZvCustomMemo::RowText(int row) const {
    return FLines->Get(row);
}

ITextBreaks& TZvCustomMemo::Breaks() const {
    return *FBreaks;
}

const ITextMeasure& TZvCustomMemo::Measure() const {
    return FServices.Measure ? *FServices.Measure : *FOwnMeasure;
}

IClipboard& TZvCustomMemo::Clipboard() {
    return FServices.Clipboard ? *FServices.Clipboard : *FOwnClipboard;
}

void TZvCustomMemo::EnsureRow(int row) {
    while (FLines->Count() <= row)
        FLines->DoAdd(u"");
}

TZvPos TZvCustomMemo::ClipToText(TZvPos p) const {
    p.Y = std::clamp(p.Y, 0, RowCount() - 1);
    p.X = std::clamp(p.X, 0, RowLength(p.Y));
    return p;
}

TZvPos TZvCustomMemo::Unwrapped(TZvPos p) const {
    auto& lines = const_cast<TZvMemoStrings&>(*FLines);
    lines.GetUnwrappedPos(p.X, p.Y);
    return p;
}

TZvPos TZvCustomMemo::Wrapped(TZvPos p) const {
    auto& lines = const_cast<TZvMemoStrings&>(*FLines);
    lines.GetWrappedPos(p.X, p.Y);
    return p;
}

namespace {

void CheckInText(const TZvMemoStrings& lines, TZvPos p) {
    const int rows = std::max(lines.Count(), 1);
    if (p.Y < 0 || p.Y >= rows || p.X < 0 || p.X > lines.GetLineLength(p.Y))
        throw std::runtime_error("position outside the text");
}

} // namespace

TZvPos TZvCustomMemo::Change(TZvPos from, TZvPos to, const TEditText& text,
                             std::unique_ptr<TUndo> record, TZvPos caretBefore) {
    BeforeChange();
    const bool hide = FHideCaret, refresh = FLetRefresh;
    FHideCaret = true;
    FLetRefresh = false;
    FSavedText.BeforeChange(*FLines, from.Y, to.Y);
    EnsureRow(to.Y);
    TEditText removed;
    if (record && !FUndoList->FIsPerforming)
        removed = ExtractText(*FLines, from, to);
    const TZvPos end = ReplaceText(*FLines, from, to, text);
    FSavedText.AfterChange(*FLines);
    if (record && !FUndoList->FIsPerforming) {
        record->SetChange(Unwrapped(from), from, std::move(removed), text);
        const TZvPos before = Unwrapped(caretBefore), after = Unwrapped(end);
        record->FUndoCurX0 = before.X;
        record->FUndoCurY0 = before.Y;
        record->FUndoCurX = after.X;
        record->FUndoCurY = after.Y;
        record->FColumn = FColumnMode;
        FUndoList->Add(std::move(record));
    }
    FCurX = end.X;
    FCurY = end.Y;
    FSelStartX = FSelEndX = FPrevSelX = end.X;
    FSelStartY = FSelEndY = FPrevSelY = end.Y;
    FHideCaret = hide;
    FLetRefresh = refresh;
    NotifyChange(from.Y, end.Y, to.Y != from.Y || end.Y != from.Y);
    return end;
}

TZvPos TZvCustomMemo::Replay(TZvPos from, TZvPos to, const TEditText& text) {
    CheckInText(*FLines, from);
    CheckInText(*FLines, to);
    if (to < from)
        throw std::runtime_error("undo range reversed");
    return Change(from, to, text, nullptr, from);
}

void TZvCustomMemo::NotifyChange(int firstRow, int lastRow, bool shapeChanged) {
    for (int row = firstRow; row <= lastRow; ++row)
        ChangeLineHistory(row);
    AnnounceChange(firstRow, lastRow, shapeChanged);
}

bool TZvCustomMemo::AppendFromFile(const std::function<bool()>& append) {
    const int first = std::max(0, FLines->Count() - 1);
    BeforeChange();
    const bool grew = append();
    if (grew) {
        FUndoList->Clear(); // as a reload does: the file's text is the base now
        FSavedText.Reset(*FLines);
    }
    // No change history: the new rows are the file's, not edits.
    AnnounceChange(first, std::max(first, FLines->Count() - 1), true);
    return grew;
}

void TZvCustomMemo::AnnounceChange(int firstRow, int lastRow, bool shapeChanged) {
    LineChanged(firstRow);
    ClearLineStylesFrom(firstRow > 0 ? firstRow - 1 : 0);
    RefreshWrap(firstRow, lastRow);
    if (FOnInvalidate && FLetRefresh)
        FOnInvalidate(firstRow, shapeChanged ? -1 : lastRow);
    UpdateModified();
    if (FOnChange)
        FOnChange();
    NotifyCursor();
}

// Extension points: the scanner, wrap and the language server hook in here.
void TZvCustomMemo::LineChanged(int) {}
void TZvCustomMemo::ClearLineStylesFrom(int) {}
void TZvCustomMemo::RefreshWrap(int, int) {}
bool TZvCustomMemo::CanEdit() const {
    return true;
}
bool TZvCustomMemo::InCommentOrString(TZvPos) const {
    return false;
}

void TZvCustomMemo::ChangeLineHistory(int row) {
    FModified = true;
    TAttribute* a = FLines->LineAttribute(FLines->GetWrappedMainLineNumber(row));
    if (!a)
        return;
    if (a->HasExtra() && !a->Extra().SpellList.empty())
        a->MutableExtra().SpellList.clear();
    a->SetValue(abSpellCheck, true);
    const bool replay = FChangeHistoryUndo || FChangeHistoryRedo;
    const int h = a->ChangeHistory() + (FChangeHistoryUndo ? -1 : 1);
    const int saved = a->ChangeLastSavedAt;
    if (h > 0) {
        a->SetValue(abChangeSaved, replay && h == saved);
        a->SetValue(abChanged, true);
        a->SetChangeHistory(h);
        if (!replay && h <= saved)
            a->ChangeLastSavedAt = 0;
    } else if (h < saved) {
        a->SetValue(abChanged, true);
        a->SetValue(abChangeSaved, false);
        a->SetChangeHistory(h);
    } else if (h == saved) {
        a->SetValue(abChanged, false);
        a->SetValue(abChangeSaved, true);
        a->SetChangeHistory(h);
    } else {
        a->SetValue(abChanged, false);
        a->SetValue(abChangeSaved, false);
        a->SetChangeHistory(0);
    }
}

void TZvCustomMemo::NotifyCursor() {
    if (FOnCursorChange)
        FOnCursorChange();
}

void TZvCustomMemo::NotifySelection() {
    if (FOnSelectionChange)
        FOnSelectionChange();
}

} // namespace zv
