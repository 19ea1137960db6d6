// TZvTextDocument: one document's text state, shared by every view of it: the line store,
// the undo list, the saved-text state (the one "modified"), the change history of the rows,
// the style set in force, and the background reader of the rows (the scanner's sweep) with
// its pause handshake. Every change of the text passes Change (or AppendFromFile), which
// pauses the reader, changes the rows and tells each listener one change record. Views (the
// editor controls) own only their caret, selection and scroll. Main thread only, except the
// reader's own thread.
#pragma once

#include "ZvMemoControl/TextChange.h"
#include "ZvMemoControl/ZvMemoSavedText.h"
#include "ZvMemoControl/ZvMemoUndoList.h"

#include <functional>
#include <memory>
#include <vector>

namespace zv {

class TZvMemoStrings;
struct TZvMemoState;
struct TMemoStyleHost;

class TZvTextDocument {
public:
    // A document of `lines` (a new empty store when null).
    explicit TZvTextDocument(std::unique_ptr<TZvMemoStrings> lines = nullptr);
    // A document over a store someone else owns; the store must outlive it.
    static std::shared_ptr<TZvTextDocument> Borrowing(TZvMemoStrings& lines);
    ~TZvTextDocument();
    TZvTextDocument(const TZvTextDocument&) = delete;
    TZvTextDocument& operator=(const TZvTextDocument&) = delete;

    TZvMemoStrings& Lines() { return *FLines; }
    const TZvMemoStrings& Lines() const { return *FLines; }
    // The document's settings the store and every view read (tab size, wrap, codec).
    TZvMemoState& State();
    const TZvMemoState& State() const;
    TZvUndoList& UndoList() { return FUndoList; }
    const TZvUndoList& UndoList() const { return FUndoList; }
    // Grows with every change of the text; 0 for a new store.
    std::uint64_t Revision() const { return FRevision; }

    // ---- The edit path. Replaces [from, to) (row positions; `to` may name rows past the end,
    // which are added empty first) by `text`, and returns the end of the inserted text. When
    // `removed` is given it receives the replaced text (for an undo record). Every listener
    // but `origin` hears the change record; the reader is paused around the row writes.
    // `replay`: an undo or redo step (the change history counts back on undo).
    TZvPos Change(TZvPos from, TZvPos to, const TEditText& text, TEditText* removed,
                  ITextListener* origin, bool replay = false);
    // The store grows at its end from outside (a followed file): `append` adds the rows and
    // says whether it did. The new text counts as the file's (not modified, undo cleared).
    bool AppendFromFile(const std::function<bool()>& append);
    // Puts `lines` in place of the store (a reload): undo cleared, unmodified, the reader
    // dropped; every listener hears DocumentReset. The old store goes after that.
    void ReplaceLines(std::unique_ptr<TZvMemoStrings> lines);
    // Runs `work`, which cuts the rows anew without changing the text (word wrap on or off,
    // a new width): the reader is dropped, the modified state is kept, and every listener
    // hears RelayoutComing before and DocumentReset after.
    void Relayout(const std::function<void()>& work);
    // Runs `work` while the reader reads no rows (a save, a conversion of every row).
    void WithReaderPaused(const std::function<void()>& work);

    // ---- Saved state.
    // True exactly when the text differs from the text at the last save or load, or when
    // SetModified(true) forced it. O(1).
    bool Modified() const;
    // The text was saved: the current state is the unmodified one from now on.
    void Saved();
    // true: modified until the next save, whatever the text; false: the current text becomes
    // the saved one.
    void SetModified(bool value);
    // Drops every undo record; the modified state still compares the text with the saved one.
    void ClearUndo();
    // Undo replay state, read by the change history.
    bool FChangeHistoryUndo = false;
    bool FChangeHistoryRedo = false;

    // ---- Listeners (views). A listener must be removed before it goes.
    void AddListener(ITextListener* listener);
    void RemoveListener(ITextListener* listener);
    int ListenerCount() const { return static_cast<int>(FListeners.size()); }

    // ---- Syntax and reader. The style set in force (null: plain text); setting it drops the
    // reader, and every listener hears DocumentReset (views attach a new one).
    void SetStyleHost(std::shared_ptr<const TMemoStyleHost> host);
    const std::shared_ptr<const TMemoStyleHost>& StyleHost() const { return FStyleHost; }
    // The reader of the rows; null drops it (its thread ends before this returns when the
    // reader's destructor ends it).
    void SetReader(std::shared_ptr<ITextReader> reader);
    const std::shared_ptr<ITextReader>& Reader() const { return FReader; }

private:
    struct TBorrowed {};
    TZvTextDocument(TZvMemoStrings& lines, TBorrowed);
    void Setup();
    void ChangeLineHistory(int row);
    void RecutChanged(TTextChange& change, TZvPos& end);
    void UpdateModified();
    void TellReset();
    TRowRange TellReader(const TTextChange& change);
    template <class F> void ForEachListener(F&& tell);

    std::unique_ptr<TZvMemoStrings> FOwnLines;
    TZvMemoStrings* FLines; // Invariant: never null
    TZvUndoList FUndoList;
    TSavedText FSavedText;
    std::uint64_t FRevision = 0;
    bool FLastModified = false; // last value told to the listeners
    std::vector<ITextListener*> FListeners;
    std::shared_ptr<const TMemoStyleHost> FStyleHost;
    std::shared_ptr<ITextReader> FReader;
    int FPauses = 0; // pauses this document holds on the reader
};

} // namespace zv
