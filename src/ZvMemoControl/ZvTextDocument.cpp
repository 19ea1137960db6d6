// The document's one edit path and its listeners.
#include "ZvMemoControl/ZvTextDocument.h"

#include "ZvMemoControl/LineMarks.h"
#include "ZvMemoControl/WrapRows.h"
#include "ZvMemoControl/ZvMemoRows.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <algorithm>

namespace zv {

TZvTextDocument::TZvTextDocument(std::unique_ptr<TZvMemoStrings> lines)
    : FOwnLines(lines ? std::move(lines) : std::make_unique<TZvMemoStrings>()),
      FLines(FOwnLines.get()) {
    Setup();
}

TZvTextDocument::TZvTextDocument(TZvMemoStrings& lines, TBorrowed) : FLines(&lines) {
    Setup();
}

std::shared_ptr<TZvTextDocument> TZvTextDocument::Borrowing(TZvMemoStrings& lines) {
    return std::shared_ptr<TZvTextDocument>(new TZvTextDocument(lines, TBorrowed{}));
}

TZvTextDocument::~TZvTextDocument() {
    FReader.reset(); // its thread ends before the rows go
}

void TZvTextDocument::Setup() {
    FSavedText.Reset(*FLines);
    FUndoList.OnChange = [this] {
        ForEachListener([](ITextListener& l) { l.UndoChanged(); });
        UpdateModified();
    };
}

TZvMemoState& TZvTextDocument::State() {
    return FLines->Memo();
}

const TZvMemoState& TZvTextDocument::State() const {
    return FLines->Memo();
}

template <class F> void TZvTextDocument::ForEachListener(F&& tell) {
    // A listener may go or come while told (a view closing on a change): tell a copy, and
    // only those still listening.
    const std::vector<ITextListener*> listeners = FListeners;
    for (ITextListener* listener : listeners)
        if (std::find(FListeners.begin(), FListeners.end(), listener) != FListeners.end())
            tell(*listener);
}

void TZvTextDocument::AddListener(ITextListener* listener) {
    if (std::find(FListeners.begin(), FListeners.end(), listener) == FListeners.end())
        FListeners.push_back(listener);
}

void TZvTextDocument::RemoveListener(ITextListener* listener) {
    std::erase(FListeners, listener);
}

TRowRange TZvTextDocument::TellReader(const TTextChange& change) {
    if (!FReader)
        return {change.From.Y, change.InOneRow() ? change.From.Y : -1};
    return FReader->RowsChanged(change);
}

namespace {

std::int64_t UnitsOf(const TEditText& text) {
    std::int64_t units = static_cast<std::int64_t>(text.Ends.size());
    for (const TRowText& row : text.Rows)
        units += static_cast<std::int64_t>(row.Length());
    return units;
}

std::int64_t RangeUnits(const TZvMemoStrings& lines, TZvPos from, TZvPos to) {
    if (from.Y == to.Y)
        return std::max(0, to.X - from.X);
    std::int64_t units = std::max(0, lines.GetLineLength(from.Y) - from.X) + 1;
    for (int row = from.Y + 1; row < to.Y; ++row)
        units += lines.GetLineLength(row) + 1;
    return units + to.X;
}

} // namespace

TZvPos TZvTextDocument::Change(TZvPos from, TZvPos to, const TEditText& text, TEditText* removed,
                               ITextListener* origin, bool replay) {
    if (FReader)
        FReader->PauseReading();
    struct TResume {
        TZvTextDocument& Doc;
        ~TResume() {
            if (Doc.FReader)
                Doc.FReader->ResumeReading();
        }
    } resume{*this};
    const int rowsBefore = std::max(FLines->Count(), 1);
    FSavedText.BeforeChange(*FLines, from.Y, to.Y);
    while (FLines->Count() <= to.Y)
        FLines->DoAdd(u"");
    TTextChange change;
    change.From = from;
    change.RemovedEnd = to;
    change.Replay = replay;
    change.Inserted = &text;
    // Only a multi-row removal walks its rows; undo records extract them anyway.
    if (removed) {
        *removed = ExtractText(*FLines, from, to);
        change.RemovedLength = UnitsOf(*removed);
    } else {
        change.RemovedLength = RangeUnits(*FLines, from, to);
    }
    const std::vector<TRowMarks> marks = NoteMarks(*FLines, from.Y, to.Y);
    TZvPos end = ReplaceText(*FLines, from, to, text);
    FSavedText.AfterChange(*FLines);
    change.InsertedEnd = end;
    RecutChanged(change, end);
    ++FRevision;
    change.InsertedLength = UnitsOf(text);
    change.RowsAdded = std::max(FLines->Count(), 1) - rowsBefore;
    change.Revision = FRevision;
    KeepMarksAcross(*FLines, marks, change);
    int lineStart = -1;
    for (int row = change.From.Y; row <= change.InsertedEnd.Y; ++row) {
        const int main = FLines->GetWrappedMainLineNumber(row);
        if (main != lineStart) // once per logical line
            ChangeLineHistory(main);
        lineStart = main;
    }
    const TRowRange redraw = TellReader(change);
    ForEachListener([&](ITextListener& l) {
        if (&l != origin)
            l.TextChanged(change, redraw);
    });
    if (origin)
        origin->TextChanged(change, redraw);
    UpdateModified();
    return end;
}

// The changed rows are cut anew (rows of a long line stay within the limit, a wrapped line
// follows its layout); the change then covers every row the cut moved: from the first row
// it touched to the ends of the last, before and after.
void TZvTextDocument::RecutChanged(TTextChange& change, TZvPos& end) {
    ForceCutIfLong(*FLines, change.From.Y, end.Y);
    const TRowSpan span = RecutSpan(*FLines, change.From.Y, end.Y);
    if (span.Last < span.First)
        return;
    TZvPos logicalEnd = end;
    FLines->GetUnwrappedPos(logicalEnd.X, logicalEnd.Y);
    const int lastLength = FLines->GetLineLength(span.Last);
    // Where the span's last row stood before the change (rows below end.Y only moved).
    const int shift = end.Y - change.RemovedEnd.Y;
    const TZvPos removedEnd =
        span.Last > end.Y ? TZvPos{lastLength, span.Last - shift}
                          : TZvPos{lastLength - end.X + change.RemovedEnd.X, span.Last - shift};
    FSavedText.BeforeChange(*FLines, span.First, span.Last);
    bool touched = false;
    const int added = Recut(*FLines, span, touched);
    FSavedText.AfterChange(*FLines);
    if (!touched)
        return; // the rows stand as the edit left them
    FLines->GetWrappedPos(logicalEnd.X, logicalEnd.Y);
    end = logicalEnd;
    if (span.First < change.From.Y)
        change.From = {0, span.First};
    change.RemovedEnd = std::max(change.RemovedEnd, removedEnd);
    const int last = span.Last + added;
    change.InsertedEnd = std::max(end, TZvPos{FLines->GetLineLength(last), last});
}

bool TZvTextDocument::AppendFromFile(const std::function<bool()>& append) {
    const int lastRow = std::max(0, FLines->Count() - 1);
    TTextChange change;
    change.From = change.RemovedEnd = {FLines->GetLineLength(lastRow), lastRow};
    change.FromFile = true;
    bool grew = false;
    WithReaderPaused([&] {
        grew = append();
        if (!grew)
            return;
        FUndoList.Clear(); // as a reload does: the file's text is the base now
        FSavedText.Reset(*FLines);
        ++FRevision;
        const int last = std::max(0, FLines->Count() - 1);
        change.InsertedEnd = {FLines->GetLineLength(last), last};
        change.RowsAdded = last - lastRow;
        change.Revision = FRevision;
        const TRowRange redraw = TellReader(change);
        ForEachListener([&](ITextListener& l) { l.TextChanged(change, redraw); });
    });
    UpdateModified();
    return grew;
}

void TZvTextDocument::ReplaceLines(std::unique_ptr<TZvMemoStrings> lines) {
    FReader.reset();
    std::unique_ptr<TZvMemoStrings> previous = std::move(FOwnLines);
    FOwnLines = std::move(lines);
    FLines = FOwnLines.get();
    FUndoList.Clear();
    FSavedText.Reset(*FLines);
    ++FRevision;
    TellReset();
    UpdateModified();
}

void TZvTextDocument::Relayout(const std::function<void()>& work) {
    const bool differed = Modified();
    ForEachListener([](ITextListener& l) { l.RelayoutComing(); });
    WithReaderPaused([&] {
        if (differed)
            FSavedText.BeforeChange(*FLines, 0, FLines->Count());
        work();
        if (differed)
            FSavedText.AfterChange(*FLines);
        else
            FSavedText.Reset(*FLines);
    });
    FReader.reset(); // every row's state is stale: the views attach a new reader
    ++FRevision;
    TellReset();
    UpdateModified();
}

void TZvTextDocument::WithReaderPaused(const std::function<void()>& work) {
    const std::shared_ptr<ITextReader> reader = FReader;
    if (reader)
        reader->PauseReading();
    struct TResume {
        ITextReader* Reader;
        ~TResume() {
            if (Reader)
                Reader->ResumeReading();
        }
    } resume{reader.get()};
    work();
}

void TZvTextDocument::TellReset() {
    ForEachListener([](ITextListener& l) { l.DocumentReset(); });
}

void TZvTextDocument::SetStyleHost(std::shared_ptr<const TMemoStyleHost> host) {
    FReader.reset();
    FStyleHost = std::move(host);
    TellReset();
}

void TZvTextDocument::SetReader(std::shared_ptr<ITextReader> reader) {
    FReader = std::move(reader);
}

// ---- Saved state ---------------------------------------------------------------------------

bool TZvTextDocument::Modified() const {
    // After a change too wide to follow row by row, the undo position answers: back at the
    // save point the text is the saved one; elsewhere it may differ.
    return FSavedText.Overflowed() ? FUndoList.IsModified() : FSavedText.Differs();
}

void TZvTextDocument::Saved() {
    for (int row = 0; row < FLines->Count(); ++row) {
        TAttribute* a = FLines->LineAttribute(row);
        if (!a->GetValue(abChanged))
            continue;
        a->SetValue(abChangeSaved, true);
        a->ChangeLastSavedAt = static_cast<std::int8_t>(std::clamp(a->ChangeHistory(), -127, 127));
    }
    FUndoList.MarkSaved();
    FSavedText.Reset(*FLines);
    UpdateModified();
}

void TZvTextDocument::SetModified(bool value) {
    if (value) {
        FUndoList.FSavePosIndex = TZvUndoList::kUnreachable;
        FSavedText.Force();
    } else {
        FUndoList.MarkSaved();
        FSavedText.Reset(*FLines);
    }
    UpdateModified();
}

void TZvTextDocument::ClearUndo() {
    // The list's own distance from the save point must not claim the saved text back.
    const bool modified = Modified();
    FUndoList.Clear();
    if (modified)
        FUndoList.FSavePosIndex = TZvUndoList::kUnreachable;
    UpdateModified();
}

void TZvTextDocument::UpdateModified() {
    // Between the steps of an undo or redo the list's position is not yet the text's.
    if (FSavedText.Overflowed() && !FUndoList.FIsPerforming && !FUndoList.IsModified())
        FSavedText.Reset(*FLines); // exact again from here on
    const bool modified = Modified();
    if (modified == FLastModified)
        return;
    FLastModified = modified;
    ForEachListener([modified](ITextListener& l) { l.ModifiedChanged(modified); });
}

void TZvTextDocument::ChangeLineHistory(int row) {
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

} // namespace zv
