// The control's set-up, its side of the edit path (undo record, caret, repaint), and how it
// follows changes that other views of its document make.
#include "ZvMemoControl/ZvMemo.h"

#include "ZvMemoControl/ZvMemoRows.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <algorithm>
#include <stdexcept>

namespace zv {

TZvCustomMemo::TZvCustomMemo(TEditorServices services)
    : FDoc(std::make_shared<TZvTextDocument>()), FBreaks(CreateIcuTextBreaks()),
      FOwnMeasure(std::make_unique<TFixedTextMeasure>()),
      FOwnClipboard(std::make_unique<TMemoryClipboard>()) {
    FLines = &FDoc->Lines();
    FDoc->AddListener(this);
    SetServices(std::move(services));
}

TZvCustomMemo::~TZvCustomMemo() {
    FIsClosing = true;
    FDoc->RemoveListener(this);
}

void TZvCustomMemo::SetServices(TEditorServices services) {
    FServices = std::move(services);
}

void TZvCustomMemo::ReportUndoError(const std::string& message) {
    const std::string text = FServices.Text ? FServices.Text("Messages", "172", message) : message;
    if (FServices.Prompt)
        FServices.Prompt->ShowMessage(text);
}

void TZvCustomMemo::SetDocument(std::shared_ptr<TZvTextDocument> document) {
    FDoc->RemoveListener(this);
    FDoc = document ? std::move(document) : std::make_shared<TZvTextDocument>();
    FDoc->AddListener(this);
    FLines = &FDoc->Lines();
    FCurX = FCurY = 0;
    FSelStartX = FSelStartY = FSelEndX = FSelEndY = 0;
    FPrevSelX = FPrevSelY = 0;
    FTopLine = 0;
    FGroupDepth = 0;
}

void TZvCustomMemo::SetLines(TZvMemoStrings* lines) {
    SetDocument(lines ? TZvTextDocument::Borrowing(*lines) : nullptr);
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
    // An empty store is one empty row to the view; giving it that row changes no text.
    if (FLines->Count() > row)
        return;
    FDoc->WithReaderPaused([&] {
        while (FLines->Count() <= row)
            FLines->DoAdd(u"");
    });
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
    OpenFoldsForEdit(from, to, text.BreakCount() > 0);
    const bool hide = FHideCaret, refresh = FLetRefresh;
    FHideCaret = true;
    FLetRefresh = false;
    TZvUndoList& undo = UndoList();
    const bool keep = record && !undo.FIsPerforming;
    TEditText removed;
    // Rows may be cut anew by the change: the record's positions are taken before it.
    const TZvPos logicalFrom = Unwrapped(from), logicalBefore = Unwrapped(caretBefore);
    FOwnChange = true;
    TZvPos end;
    try {
        end = FDoc->Change(from, to, text, keep ? &removed : nullptr, this, undo.FIsPerforming);
    } catch (...) {
        FOwnChange = false;
        FHideCaret = hide;
        FLetRefresh = refresh;
        throw;
    }
    FOwnChange = false;
    if (FShiftWatch) // an edit at several carets: later carets follow this change
        FShiftWatch->Apply(from == to && caretBefore.Y == to.Y && caretBefore.X > to.X
                               ? caretBefore // spaces filled the gap up to the caret
                               : to,
                           end);
    if (keep) {
        record->SetChange(logicalFrom, from, std::move(removed), text);
        const TZvPos before = logicalBefore, after = Unwrapped(end);
        record->FUndoCurX0 = before.X;
        record->FUndoCurY0 = before.Y;
        record->FUndoCurX = after.X;
        record->FUndoCurY = after.Y;
        record->FColumn = FColumnMode;
        undo.Add(std::move(record));
    }
    FCurX = end.X;
    FCurY = end.Y;
    FSelStartX = FSelEndX = FPrevSelX = end.X;
    FSelStartY = FSelEndY = FPrevSelY = end.Y;
    FHideCaret = hide;
    FLetRefresh = refresh;
    AnnounceChange(FOwnRedraw);
    return end;
}

TZvPos TZvCustomMemo::Replay(TZvPos from, TZvPos to, const TEditText& text) {
    CheckInText(*FLines, from);
    CheckInText(*FLines, to);
    if (to < from)
        throw std::runtime_error("undo range reversed");
    return Change(from, to, text, nullptr, from);
}

void TZvCustomMemo::TextChanged(const TTextChange& change, TRowRange redraw) {
    if (FOwnChange) { // Change places the caret and announces
        FOwnRedraw = redraw;
        return;
    }
    // Another view (or the file) changed the text: this view's positions follow it.
    auto map = [&change](std::int32_t& x, std::int32_t& y) {
        const TZvPos p = MapPosition({x, y}, change);
        x = p.X;
        y = p.Y;
    };
    map(FCurX, FCurY);
    map(FSelStartX, FSelStartY);
    map(FSelEndX, FSelEndY);
    map(FPrevSelX, FPrevSelY);
    if (change.From.Y < FTopLine)
        FTopLine = std::clamp(FTopLine + change.RowsAdded, 0, RowCount() - 1);
    AnnounceChange(redraw);
}

bool TZvCustomMemo::AppendFromFile(const std::function<bool()>& append) {
    return FDoc->AppendFromFile(append);
}

void TZvCustomMemo::DocumentReset() {
    FLines = &FDoc->Lines();
    FCurX = FCurY = 0;
    FSelStartX = FSelStartY = FSelEndX = FSelEndY = 0;
    FPrevSelX = FPrevSelY = 0;
    FTopLine = 0;
    RestoreKeptPlaces();
    if (FOnDocumentReset)
        FOnDocumentReset();
}

void TZvCustomMemo::AnnounceChange(TRowRange redraw) {
    if (FOnInvalidate && FLetRefresh)
        FOnInvalidate(redraw.First, redraw.Last);
    if (FOnChange)
        FOnChange();
    NotifyCursor();
}

bool TZvCustomMemo::CanEdit() const {
    return true;
}

bool TZvCustomMemo::InCommentOrString(TZvPos pos) const {
    const std::shared_ptr<ITextReader>& reader = FDoc->Reader();
    return reader && reader->InCommentOrString(pos);
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
