// TZvCustomMemo: the editor control's editing model, free of any window toolkit: one view of
// a document (TZvTextDocument), with its own caret, selection and scroll; what each key does
// to the text, clipboard and word lookups. Every change goes through the document's edit
// path, which tells every view of the document. TZvMemo adds the command layer. A widget
// drives it and paints it.
#pragma once

#include "ZvMemoControl/MemoState.h"
#include "ZvMemoControl/MultiCaret.h"
#include "ZvMemoControl/SuperSort.h"
#include "ZvMemoControl/TextChange.h"
#include "ZvMemoControl/ZvMemoEditText.h"
#include "ZvMemoControl/ZvMemoUndoList.h"
#include "ZvMemoControl/ZvTextDocument.h"
#include "platform/EditorServices.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zv {

class TZvMemoStrings;
struct TJsonError;

// Shift state of a move: the bits of MoveCursor's `shift`.
enum TShiftBits : unsigned { ssShift = 1, ssAlt = 2, ssCtrl = 4 };

class TZvCustomMemo : public ITextListener {
public:
    explicit TZvCustomMemo(TEditorServices services = {});
    virtual ~TZvCustomMemo();
    TZvCustomMemo(const TZvCustomMemo&) = delete;
    TZvCustomMemo& operator=(const TZvCustomMemo&) = delete;

    // ---- Text. The view shows `document` (null: a new empty one of its own); the caret
    // starts at the top.
    void SetDocument(std::shared_ptr<TZvTextDocument> document);
    // A document of its own over `lines` (null: a new empty store), which must outlive the
    // control or be replaced first. Clears the undo list and the caret.
    void SetLines(TZvMemoStrings* lines);
    TZvTextDocument& Document() { return *FDoc; }
    const TZvTextDocument& Document() const { return *FDoc; }
    const std::shared_ptr<TZvTextDocument>& SharedDocument() const { return FDoc; }
    // The document's settings (tab size, wrap, binary mode, codec), shared by its views.
    TZvMemoState& DocState() { return FDoc->State(); }
    const TZvMemoState& DocState() const { return FDoc->State(); }
    // The store grows at its end from outside (a followed file); see
    // TZvTextDocument::AppendFromFile. Returns what `append` returned.
    bool AppendFromFile(const std::function<bool()>& append);
    TZvMemoStrings& Lines() { return FDoc->Lines(); }
    const TZvMemoStrings& Lines() const { return FDoc->Lines(); }
    void SetServices(TEditorServices services);
    const TEditorServices& Services() const { return FServices; }
    // Rows as the control sees them: an empty store counts as one empty row.
    int RowCount() const;
    std::u16string_view RowText(int row) const;
    int RowLength(int row) const { return static_cast<int>(RowText(row).size()); }

    // ---- Caret and selection (rows, 0-based columns; a column may lie past the end).
    TZvPos Caret() const { return {FCurX, FCurY}; }
    // Moves the caret; row clipped to the text, column to 0.. (past the end allowed unless
    // FNotepadCursor, which clips to the row's length). Clears the selection unless
    // `keepSelection`.
    void SetTextCursor(int x, int y, bool keepSelection = false);
    // dx/dy steps with `shift` a set of TShiftBits (Shift extends the selection, Ctrl moves by
    // words or scrolls, Alt goes to the row's ends or the view's top and bottom).
    void MoveCursor(int dx, int dy, unsigned shift);
    void GoHome(unsigned shift);
    void GoEnd(unsigned shift);
    // Moves by a page of FVisibleRows rows.
    void MovePage(int direction, unsigned shift);
    void SetSelection(TZvPos start, TZvPos end); // caret goes to `end`
    void ClearSelection();
    void SelectAll();
    bool HasSelection() const;
    // The selection's ends in document order.
    void OrderedSelection(TZvPos& start, TZvPos& end) const;
    TZvPos SelStart() const { return {FSelStartX, FSelStartY}; }
    TZvPos SelEnd() const { return {FSelEndX, FSelEndY}; }
    std::u16string GetSelection() const;
    std::int64_t GetSelectionLength() const;

    // ---- Columns. Visual columns expand tabs to FTabSize stops; character columns count
    // UTF-16 units. Past the row's end each column counts 1.
    int FromRealCursorPos(int row, int col) const;
    int ToRealCursorPos(int row, int visualCol) const;
    // Pixel position of character column `col` of `row` (FMargin and the indent of a
    // continuation row included).
    double TextLength(int row, int col) const;
    // The character column whose position is nearest to pixel `px` in `row` (no clipping to
    // the row's end: past it, columns step by a space width).
    int ColumnAtPixel(int row, double px) const;

    // ---- Editing. Each returns false when refused (read-only, nothing to do).
    bool KeyPress(char16_t c); // a typed character, with auto-close
    bool InsertChar(char16_t c);
    bool OverwriteChar(char16_t c);
    bool EnterPress();
    bool Backspace();
    // Deletes the cluster at (x, y), or at the caret when x is -1.
    bool DeleteChar(int x = -1, int y = -1);
    bool DeleteSelection(bool record = true);
    // Inserts `text` (any line ends) at the caret, replacing the selection; the caret goes
    // behind it unless FPasteDoNotMoveCursor or !moveToEnd.
    bool InsertText(std::u16string_view text, bool moveToEnd = true);
    bool InsertTab();
    // Puts `open` before and `close` behind the selection in one edit; the enclosed text stays
    // selected. False without a selection.
    bool EncloseSelection(std::u16string_view open, std::u16string_view close);

    // One tab stop of indentation as typed: a tab, or FTabSize spaces with FTabAsSpaces.
    std::u16string IndentUnit() const;

    // ---- Whole lines (logical lines: a line with its wrapped continuation rows).
    // Removes the caret's line with its line end; the caret keeps its column on the line that
    // takes the place.
    bool DeleteCurrentLine();
    bool DeleteLine(int row);
    // Inserts an empty line above `row` (row == RowCount(): after the last line).
    bool InsertLine(int row);
    // Repeats the caret's line, or the lines the selection touches, below themselves.
    bool DuplicateCurrentLine();

    // ---- Clipboard. Text travels with LF line ends.
    bool CopyToClipboard();
    bool CutToClipboard();
    bool PasteFromClipboard(bool addLineEnd = false);
    // Pastes with re-indent when asked: lines after the first move to the target column.
    // `atLineStart`: a whole line, inserted above the caret's row. `cursorAt` >= 0: caret
    // offset in the pasted text (line ends count 2). `useSel`: "[[sel]]"/"%sel%" take the
    // selection.
    bool SmartPasteText(std::u16string_view text, bool atLineStart, bool forceSmart = false,
                        int cursorAt = -1, bool useSel = false);
    // Drops `text` at (x, y). `move`: a move out of this control's own selection, recorded
    // as one undo step (delete plus paste).
    bool DropText(int x, int y, std::u16string_view text, bool move);
    bool CanCopy() const;
    bool CanPaste() const;
    // The text of the whole-line clipboard form written into the text itself, cut at its
    // first zero; true when the tail carries the mark.
    static bool SplitClipboardText(std::u16string& text);

    // ---- Words and tokens.
    bool IsSymbolBoundary(char16_t c) const;
    static bool CharIsWhiteSpace(char16_t c, bool tabToo);
    // The word around the caret; `start` its 1-based column (0 when none). With `select` the
    // word becomes the selection with the caret at its end.
    std::u16string WordAtCursorPos(int& start, bool select);
    std::u16string WordAtCursor();
    std::u16string FullWordAtCursor();
    std::u16string LeftWordAtCursor() const;
    std::u16string TokenAtCursor() const;
    std::u16string WordAtXY(int x, int y) const;
    std::u16string IdentifierAtCursor() const;
    std::u16string NumberAtCursor() const;
    char16_t CharValueAtCursor() const;

    // ---- Folds (the document's, shared by its views). Each returns false when nothing
    // changed; the caret moves to the head of a fold that hides its row.
    bool acnFoldAll();            // closes every outermost fold
    bool acnUnfoldAll();          // opens every fold
    bool acnFoldLevel(int level); // closes the folds of nesting `level` (1 outermost)
    // Closes the fold around the caret, or opens it when the caret's row heads a closed one.
    bool acnToggleCurrentFold();
    bool ToggleFoldAt(int row); // opens or closes the fold headed by `row`
    // Caret to the head of the fold around it (on a head: the enclosing fold's head), or to
    // the end of the fold around it.
    bool acnGoToFoldStart();
    bool acnGoToFoldEnd();
    // Closes the outermost folds (or regions) inside the fold (region) around the caret.
    bool acnCloseCurrentNestedNodes();
    bool acnCloseCurrentNestedRegions();
    // Makes the selection's rows a selection fold and closes it; when a row there already
    // heads or ends one, toggles the selection fold on the first row instead. Removes the
    // selection fold around the caret.
    bool acnAddSelectionFold();
    bool acnRemoveSelectionFold();
    // Opens the closed folds that hide `row` (a go-to or a search hit there); true if any.
    bool RevealRow(int row);

    // ---- Undo.
    TZvUndoList& UndoList() { return FDoc->UndoList(); }
    bool Undo();
    bool Redo();
    bool CanUndo() const;
    bool CanRedo() const;
    // Drops every record; the modified state still compares the text with the saved one.
    void ClearUndoList();
    // The text was saved: this state is the unmodified one from now on.
    void Saved();
    // True exactly when the text (rows and the line end before each) differs from the text
    // at the last save or load, or when SetModified(true) forced it. O(1).
    bool Modified() const;
    // true: modified until the next save, whatever the text; false: the current text becomes
    // the saved one.
    void SetModified(bool value);
    // Opens an undo group: the edits until EndUndoGroup are one undo step.
    void BeginUndoGroup();
    void EndUndoGroup();

    // ---- The change sequence. Every edit calls Change; undo and redo call Replay.
    // Replaces [from, to) (rows) by `text` through the document's edit path and returns the
    // end of the inserted text, where this view's caret goes. `record` (may be null) gets the
    // change, caret and selection and goes to the undo list.
    TZvPos Change(TZvPos from, TZvPos to, const TEditText& text, std::unique_ptr<TUndo> record,
                  TZvPos caretBefore);
    // The same without a record, for undo and redo (FIsPerforming is set then).
    TZvPos Replay(TZvPos from, TZvPos to, const TEditText& text);
    // Unwrapped <-> row positions (identity while nothing wraps).
    TZvPos Unwrapped(TZvPos p) const;
    TZvPos Wrapped(TZvPos p) const;
    // Word wrap on or off, at `columns` text columns (below 16 the rows stay as they are;
    // off, only lines above the forced limit stay cut). Every logical line is cut anew; this
    // view's caret and selection keep their places in the lines, other views start anew.
    void SetWordWrap(bool on, int columns);
    // Hard wrap (FHardWrapAtRightMargin): a row longer than the right margin is cut into
    // lines with real line ends (and its indent in front of each new line, at most 8 units,
    // with FIndentWrappedLines) by one InsertText, one undo step; the caret keeps its place
    // in the text. False when nothing was cut (hard wrap off, the row short, during undo).
    bool HardWrapRow(int row);
    // Reports an undo record that failed (message "172").
    void ReportUndoError(const std::string& message);

    // ---- Several carets. A column block is the selection with FColumnMode: a rectangle of
    // visual columns over its rows. The caret list (FMultiEditMode) holds every caret, this
    // view's own included. Typing, Backspace, Delete, Enter, cut and paste act at every row of
    // the block or every caret of the list as one undo step; refused under word wrap.
    // The block's text: each row's part between the two visual columns, short rows padded
    // with spaces, rows joined by CR LF.
    std::u16string GetColumnSelText() const;
    // Replaces the block by `text`: line i of the text goes into row i of the block (rows
    // are added past the document's end); with `fill` (or a one-line text) the first line
    // goes into every row. Afterwards the selection is a zero-width block behind the insert.
    bool SetColSelText(std::u16string_view text, bool fill);
    // Removes the block's text (width 0: the character before, or with !backspace at, the
    // left edge of each row).
    bool DeleteColSelection(bool backspace);
    // Switches column mode on or off for good (the toggle command).
    void SetColumnMode(bool on);
    // Adds a caret at (x, y) with the selection (x1, y1)-(x2, y2) to the list, sorted; an
    // entry it overlaps takes its place; a caret without selection where one stands already
    // removes that one instead.
    void AddMultiCursorPos(int x1, int y1, int x2, int y2, int x, int y);
    // Adds this view's caret and selection to the list and enters multi-caret mode.
    void AddSelectionAsMultiSelection();
    // Ctrl+click: keeps the carets there are and adds (or removes) one at `p`.
    void ToggleCaretAt(TZvPos p);
    // One caret again: this view's own.
    void ExitMultiEditMode();
    // A caret on the row above the first caret (dy -1) or below the last one (1), at the
    // same visual column. False at the document's edge.
    bool AddCaretVertically(int dy);
    // Selects the next occurrence of the selection (or the word at the caret) after the last
    // caret, wrapping at the document's end, and adds it. False when there is none left.
    bool acnMultiSelectionAddWord();
    // The same, dropping the last added occurrence first.
    bool acnMultiSelectionSkipWord();
    // Drops the last added caret.
    bool acnMultiSelectionUndoAddWord();
    // Sync edit: switches it on over the selection's rows (the whole text without a
    // selection of several rows) or off. While on, typing, Backspace and Delete inside a word
    // of the block change every occurrence of that word in the block alike (one undo step);
    // elsewhere they act plainly.
    void acnSyncEdit();
    // The word at the caret and the starts of its occurrences in the block (empty when the
    // caret stands in no word of the block). Fills FSyncData's word fields.
    std::vector<TZvPos> SyncOccurrences();
    TSyncData FSyncData;
    // True when an edit goes to every caret of the list or every row of a column block (and
    // no such run is under way): commands then act through EditAtEveryCaret.
    bool AtSeveralPlaces() const { return CaretsActive(); }
    // Runs the single-caret `edit` at every caret of the list, or at every row of the column
    // block (with that row's part selected), in document order, as one undo step and one
    // repaint. `edit` says whether it changed anything and must change no line count. A block
    // stays selected as it was. False when none changed the text or no run is possible.
    bool EditAtEveryCaret(const std::function<bool()>& edit);

    // What undo keeps of the carets, and puts back.
    TCaretState CaretState() const;
    void SetCaretState(const TCaretState& state);

    bool FColumnModeRelease = false; // column mode is held for one move by Alt+Shift only
    bool FMultiEditMode = false;     // Invariant: true exactly when the list holds an entry
    bool FAllowMultiEditMode = true;
    std::vector<TMultiCursorPos> FMultiCursorList; // in document order, disjoint
    std::u16string FHighlightSelectionWord;        // the word "add next occurrence" looks for
    std::function<void(bool columnMode)> FOnColumnModeChange;

    // Asks the edit test (the application's hook); false refuses the edit silently.
    virtual bool CanEdit() const;
    // True when `pos` lies in a comment or string per the document's reader (the scanner);
    // no partner is auto-closed there. Without a reader: false.
    bool InCommentOrString(TZvPos pos) const;

    // ---- The document's news (ITextListener): a change made by any view.
    void TextChanged(const TTextChange& change, TRowRange redraw) override;
    void DocumentReset() override;
    void RelayoutComing() override; // the caret, selection and top line are kept (ZvMemoWrap)
    void ModifiedChanged(bool modified) override;
    void UndoChanged() override;

    // ---- Events.
    std::function<void(int firstRow, int lastRow)> FOnInvalidate; // lastRow -1: to the end
    // The store or the reader was replaced (reload, syntax): the view starts anew.
    std::function<void()> FOnDocumentReset;
    std::function<void()> FOnChange; // the text changed
    std::function<void()> FOnCursorChange;
    std::function<void()> FOnSelectionChange;
    std::function<void(bool canUndo, bool canRedo)> FOnUndoChange;
    std::function<void(bool modified)> FOnModifiedChange;
    std::function<void()> FOnStatusChange;
    std::function<void(bool overwrite)> FOnOverwriteToggle;
    // May take over the clipboard text: `text` in and out, `handled` true stops the default.
    std::function<void(std::u16string& text, bool& handled)> FOnClipboard;

    // ---- Caret and selection fields.
    std::int32_t FCurX = 0, FCurY = 0; // caret (rows)
    std::int32_t FTopLine = 0;         // first row shown
    std::int32_t FOldCurX = 0;         // remembered pixel position for up and down
    std::int32_t FSelStartX = 0, FSelStartY = 0, FSelEndX = 0, FSelEndY = 0;
    std::int32_t FPrevSelX = 0, FPrevSelY = 0; // caret at the last selection update
    bool FColumnMode = false;
    bool FSelectionMode = false; // sticky selection: moves act as if Shift were held
    bool FNotepadCursor = false; // the caret cannot pass a line end
    bool FOverwrite = false;
    bool FReadOnly = false;
    bool FModifiedAndSaved = false;
    std::int32_t FLeftCol = 0;
    std::int32_t FVisibleRows = 30; // rows in the view, set by the widget
    bool FHideCaret = false;
    bool FLetRefresh = true;
    bool FIsClosing = false;
    bool FUpdate = false; // a structural rescan is due (after Enter)
    // Keys and pastes at several carets start at the caret, first or last, nearer the row
    // array's gap, so the gap crosses the document once per key; off, always from the first
    // down, as the other commands at every caret go. Text and carets come out the same.
    bool FCaretKeysFromGap = true;

    // ---- Settings (start values as constructed).
    bool FAutoIndent = true;
    bool FAutoCloseBraces = false;
    bool FAutoCloseBracesText = false;
    bool FTabAsSpaces = true;
    bool FSmartTab = false;
    bool FSmartBackspace = false;
    bool FSmartPaste = false;
    bool FOverwritePasteMode = false;
    bool FPasteDoNotMoveCursor = false;
    bool FCopyLineToClipboard = false;
    bool FAllowDragText = true;
    bool FSelectionMoveCaret = false;
    bool FTripleClickToSelectLine = true;
    bool FHomeKeyToLineStart = false;
    bool FEncloseSelectionWithParenthesis = false;
    bool FEncloseSelectionWithQuotes = false;
    std::int32_t FMargin = 1;
    std::int32_t FZoomValue = 100;
    bool FWantTab = true;
    bool FSyncEditMode = false;     // sync edit (acnSyncEdit); kept off during replay
    bool FFolding = false;          // folds are not built yet; kept off during replay
    std::u16string FUserDelimiters; // the syntax's word delimiters, when it has them
    std::u16string FAutoCloseBraceStart, FAutoCloseBraceEnd; // the syntax's pairs
    // Enter indents one stop deeper when the last non-blank character left of the caret is
    // one of these (the syntax's "IndentAfter"); empty: never.
    std::u16string FIndentAfter;
    bool FHasSyntax = false;

protected:
    // Where one word move (Ctrl with left or right, dx -1 or 1) from `p` lands; a move across
    // a line end lands at the end of the previous row or the start of the next one.
    TZvPos WordStep(TZvPos p, int dx) const;
    int NextWordStart(TZvPos p) const;
    int PrevWordStart(TZvPos p) const;
    bool DeleteRange(TZvPos from, TZvPos to, std::unique_ptr<TUndo> record);
    TZvPos ClipToText(TZvPos p) const;

    // Input aids saved while a record replays (all switched off meanwhile).
    // What typing adds to a key; replay turns all of it off. Word wrap stays: positions in
    // records are unwrapped and must be mapped to rows by the wrap in force.
    struct TInputAids {
        bool AutoIndent, SmartBackspace, Overwrite, TabAsSpaces, AutoCloseBraces,
            AutoCloseBracesText, SmartTab, SmartPaste, OverwritePasteMode, EncloseWithParenthesis,
            EncloseWithQuotes, SyncEditMode, Folding;
    };
    friend class TUndo;
    friend class TZvUndoList;
    TInputAids BeginReplay(bool undo);
    void EndReplay(const TInputAids& saved);
    IClipboard& Clipboard();

private:
    // Places noted by RelayoutComing as unwrapped positions (the top as a real line), put
    // back by the DocumentReset that follows; Valid only in between.
    struct TKeptPlaces {
        bool Valid = false;
        TZvPos Caret, SelStart, SelEnd;
        int TopLine = 0;
    };
    TKeptPlaces FKeptPlaces;
    void RestoreKeptPlaces();
    // Several carets: the edit at every caret or block row, routed from the single-caret
    // entry points while a list or block is in force.
    enum class TCaretEdit { Char, Backspace, Delete, Enter, Cut };
    bool CaretsActive() const;
    bool EditAtCarets(TCaretEdit kind, char16_t c = 0);
    // The single-caret edit `kind` at the caret (typing `c` for Char).
    void EditAtCaret(TCaretEdit kind, char16_t c);
    bool PasteAtCarets(std::u16string_view text);
    std::u16string CaretsText() const;
    bool CutAtCarets();
    // Overtype at every row of a zero-width block; false for a block with width.
    bool OverwriteColumn(char16_t c);
    // Runs `edit` at each caret of the list. `backward`, for edits whose order does not
    // matter: from the last caret to the first, so the row array's gap crosses the document
    // once, not twice; the carets are shifted by the edits above them afterwards.
    void EditEach(std::vector<TMultiCursorPos>& list, const std::function<void(std::size_t)>& edit,
                  bool backward = false);
    // Whether keys at the carets of `list` go from the last caret up (FCaretKeysFromGap).
    bool CaretKeysBackward(const std::vector<TMultiCursorPos>& list) const;
    void BeginCaretEdit(TMultiEditUndo*& record);
    void EndCaretEdit(TMultiEditUndo* record);
    std::vector<TMultiCursorPos> ColumnRows(int& left, int& right) const;
    void SetColumnBlock(const std::vector<TMultiCursorPos>& rows);
    void ColumnMoveHook(unsigned& shift);
    bool AddFoundWord(bool skip);
    bool SyncActive() const;
    bool SyncEdit(TCaretEdit kind, char16_t c = 0);
    TPosShift* FShiftWatch = nullptr; // set while an EditEach runs: Change feeds it
    bool FCaretEditBusy = false;      // an edit at several carets runs: entry points act once

    // Shared by the editing files.
    void EnsureRow(int row);
    void SetCaretKeepSelection(TZvPos p);
    void AfterCaretMove(bool extend, TZvPos oldCaret);
    void NotifyCursor();
    void NotifySelection();
    int PrevVisibleRow(int row) const;
    int NextVisibleRow(int row) const;
    ITextBreaks& Breaks() const;
    const ITextMeasure& Measure() const;
    // Replaces the selection or inserts at the caret, with a Paste/Replace record.
    TZvPos InsertAtCaret(const TEditText& text, std::unique_ptr<TUndo> record);
    TEditText PaddingFor(TZvPos caret) const;
    bool TryAutoClose(char16_t c);
    bool TryEnclose(char16_t c);
    // First and last row of the logical line holding `row`.
    void LineRows(int row, int& first, int& last) const;
    std::u16string IndentForEnter() const;
    bool SmartBackspaceStep();
    bool JoinWithNext(TZvPos caret, bool backspace);
    bool DeleteCluster(TZvPos p, bool backspace);
    // Repaint and change events for a change of the text.
    void AnnounceChange(TRowRange redraw);
    std::u16string TokenAt(TZvPos p) const;
    void WordBounds(std::u16string_view row, int col, int& from, int& to) const;
    std::u16string ReindentForPaste(std::u16string_view text, int target) const;
    // Fold flags change with the reader paused; then the caret leaves hidden rows and the
    // view repaints. Returns what `work` returned.
    bool WithFolds(const std::function<bool(TZvMemoStrings&)>& work);
    // Before an edit of [from, to], `breaks` when it adds line ends: see the file.
    void OpenFoldsForEdit(TZvPos from, TZvPos to, bool breaks);

    std::shared_ptr<TZvTextDocument> FDoc; // Invariant: never null; this view listens to it
    TZvMemoStrings* FLines;                // FDoc's store, kept at hand
    bool FOwnChange = false;               // this view's Change is under way
    TRowRange FOwnRedraw;                  // what the document said of it
    TEditorServices FServices;
    std::unique_ptr<ITextBreaks> FBreaks;
    std::unique_ptr<ITextMeasure> FOwnMeasure;
    std::unique_ptr<IClipboard> FOwnClipboard;
    int FGroupDepth = 0;
};

// How a text is indented, judged by its first rows.
enum class TIndentStyle { Unknown, Tabs, Spaces };
// Counts the rows among the first `maxRows` that start with a tab against those that start
// with two or more spaces (continuation rows of a cut line do not count); the clear majority
// wins, Unknown when no row is indented or the counts tie.
TIndentStyle DetectIndentStyle(const TZvMemoStrings& lines, int maxRows = 2000);

// The command layer: actions the key map and menus call.
class TZvMemo : public TZvCustomMemo {
public:
    using TZvCustomMemo::TZvCustomMemo;
    void acnUndo() { Undo(); }
    void acnRedo() { Redo(); }
    void acnCut() { CutToClipboard(); }
    void acnCopy() { CopyToClipboard(); }
    void acnPaste() { PasteFromClipboard(); }
    void acnSelectAll() { SelectAll(); }
    void acnDelete();
    void acnToggleOverwrite();
    // Indents by one tab stop, or unindents by up to one (a tab or up to FTabSize leading
    // spaces), every non-empty line the selection touches, or the caret's line; one undo
    // step. A selection that ends at column 0 leaves that row alone; afterwards the selection
    // covers the whole lines. False when nothing changed or the edit was refused.
    bool acnIndent();
    bool acnUnIndent();
    // Gives every non-blank line of the selection's lines (or the document) leading blanks
    // of one indent unit (IndentUnit) per code fold of the last fold pass it lies inside;
    // a fold's head and closing rows stand outside it (so does a lone "{" under its head),
    // comment folds and regions count not. Blank lines stay. One undo step; false when
    // nothing changed or the edit was refused.
    bool acnIndentByFold();
    // Deletes from the caret to where a word move goes (Ctrl+Right, Ctrl+Left), across a line
    // end when the caret stands at one; with a selection, the selection.
    bool acnDeleteWord();
    bool acnDeletePreviousWord();

    // ---- Text commands. Unless said otherwise each works on the lines the selection touches
    // (a selection ending at column 0 of a later row leaves that row alone) or, without one,
    // on the whole document but the empty row behind a final line end; a changed line ends
    // up as one row. Each is one undo step and returns false, recording nothing, when refused
    // (read-only, hex view, the edit test) or when nothing changed. A selection afterwards
    // covers the changed lines whole.

    // Sorts by the key at columns start..end (1-based, tabs expanded; end <= 0: to the line
    // end) in code point order, or by the key's leading number; stable. removeDuplicates
    // drops a line equal to the one before it afterwards.
    bool acnSort(int start, int end, bool descending, bool ignoreCase, bool numeric,
                 bool removeDuplicates);
    bool acnSortSelectedLines();
    bool acnSortSelectedLinesDesc();
    bool acnSortSelectedLinesNumeric();
    bool acnSortSelectedLinesNumericDesc();
    // Sorts by up to four keys (a later key orders lines all earlier ones left equal), then
    // applies each key's duplicate filters, then removeDuplicates on whole lines.
    bool acnAdvancedSort(const std::vector<TSortKey>& keys, bool removeDuplicates);
    // Removes every line equal to an earlier one; the first stays.
    bool acnDeleteDuplicateLines();

    // Case of the selection, or without one of the word at the caret, by simple (one to
    // one) mapping of code points. Capitalize: a letter after a letter, digit or an
    // apostrophe inside a word goes to lower case, every other letter to title case.
    bool acnUpperCase();
    bool acnLowerCase();
    bool acnInvertCase();
    bool acnCapitalize();

    // Joins the lines into the first: `all` every line, else the selection's lines, or the
    // caret's line with the next. Each joined line follows a space unless noSpace;
    // removeLeading drops its leading blanks; skipBlank leaves out empty lines.
    bool JoinLines(bool all, bool noSpace, bool removeLeading, bool skipBlank);
    bool acnJoinLines();
    bool JoinAllLines();
    // Cuts lines longer than `column` units with hard line ends, at the last blank at or
    // before the column (that blank goes), else at the column.
    bool SplitLinesAtColumn(int column);
    bool acnSplitLines();         // at FRightMargin
    bool SplitLines();            // the same
    bool SplitAllLinesAtMargin(); // every line, selection or not
    // Removes lines that are empty or only blanks: `all` of the document, else as usual.
    bool DeleteBlankLines(bool all);
    bool acnDeleteBlankLines();
    // Runs of blank lines shrink to one (keepOne) or go.
    bool acnCompressLines(bool keepOne);
    // Removes the blank lines at the document's end (its final line end stays).
    bool acnRemoveTrailingBlankLines();
    // Strips spaces and tabs from line ends.
    bool acnRemoveTrailingWhiteSpaces();
    // Swaps the selection's lines, or the caret's line, with the line above or below; the
    // selection or caret moves with them.
    bool MoveLinesUp();
    bool MoveLinesDown();
    bool acnMoveLinesUp() { return MoveLinesUp(); }
    bool acnMoveLinesDown() { return MoveLinesDown(); }
    // Adds `times` copies of the caret's line (or the selection's lines) below them.
    bool acnDuplicateLineTimes(int times);
    // Deletes from the caret to its row's start or end.
    bool acnDeleteToBeginOfLine();
    bool acnDeleteToEndOfLine();

    // Tabs to spaces at FTabSize stops, and runs of blanks that reach a stop back to a tab
    // (a lone space stays a space). Counts go to FTabCharsReplaced and FTabCharsChangedLines.
    bool acnConvertTabsToSpaces(bool silent = true);
    bool acnConvertSpacesToTabs();
    // Removes each code point of `list` from the command's lines.
    bool acnRemoveCharactersFromText(std::u16string_view list);
    bool acnRemoveCharacterFromText(char16_t c);
    // Zero-width spaces, joiners and the byte order mark inside the text.
    bool acnRemoveZeroWidthSpaces();
    bool CheckForZeroWidthSpaces() const;

    // Refills paragraphs (runs of lines between blank lines) to FRightMargin: the words of
    // each, separated by one space, as many a line as fit within the margin (a longer word
    // alone), under the indent of its first line. Paragraph: the caret's paragraph, or with a
    // selection those of its lines; Block: the selection's lines or the document.
    bool acnReformatParagraph();
    bool acnReformatBlock();

    // Pretty prints (`indent` spaces a level) or minifies the JSON of the command's lines;
    // numbers, strings and member order stay as written. Text that is not one JSON value
    // changes nothing: false, with the reason and its document row and column in `error`.
    bool acnJSONPrettyPrint(int indent = 4, TJsonError* error = nullptr);
    bool acnJSONMinify(TJsonError* error = nullptr);

    // Comment marks of the syntax in force, filled by whoever loads it. Line marks may list
    // several openers separated by "|": the first counts.
    struct TCommentMarks {
        std::u16string LineA, LineB, BlockStart, BlockEnd;
        bool Markup = false; // markup languages comment by block marks only
    } FCommentMarks;
    // Comments the selection's lines, or the caret's line: with line marks each line gets
    // the mark at the block's indent; with block marks (given, markup, or a selection when
    // the syntax has no line mark) `start` goes before and `end` behind the selection or the
    // line. Nothing without marks.
    bool CommentBlock(std::u16string_view start = {}, std::u16string_view end = {});
    // Removes the marks where the lines carry them.
    bool UnCommentBlock();
    // Uncomments when the first line carries the mark, else comments.
    bool ToggleCommentBlock();

    // Aligns the lines (their text without outer blanks) at the left margin, centred or to
    // the right within FRightMargin columns.
    bool acnBlockAlignLeft();
    bool acnBlockAlignCenter();
    bool acnBlockAlignRight();
    // Removes markup tags (from "<" to the next ">"), or puts "<br>" at each line's end.
    bool acnStripTags();
    bool acnAddHtmlLineBreaks();
    // Inserts the local date and time formatted by strftime's `format` at the caret.
    bool acnInsertDateTime(const std::string& format = "%Y-%m-%d %H:%M:%S");
    // Words (runs of characters other than white space), lines (the empty row behind a final
    // line end left out) and characters (code points, line ends left out) of the selection
    // or the document.
    struct TWordCount {
        std::int64_t Words = 0, Lines = 0, Chars = 0;
    };
    TWordCount acnWordCount() const;

    // ---- Column block commands: on the selection in column mode, refused (false) without
    // one. Each is one undo step through SetColSelText; afterwards a zero-width block stands
    // behind what was put in.
    // Blanks the block: each row's part becomes spaces as wide as the block (short rows are
    // padded up to it).
    bool acnColumnClear();
    // Puts `text` (its first line) in place of each row's part.
    bool acnColumnFill(std::u16string_view text);
    // Puts `text` (its first line) in each row at the block's left edge, before the part.
    bool acnColumnInsertBefore(std::u16string_view text);
    // A counter in place of each row's part: start, start + step, ... in decimal or upper-case
    // hex (a minus sign before the digits), right-aligned with spaces to the widest. A blank
    // row (empty or only spaces and tabs) gets none and is not counted unless FNumEveryLine.
    // With a caret list instead: MultiEditInsertNumbers.
    bool InsertNumbers(std::int64_t start, std::int64_t step, bool hex);
    bool acnColumnInsertNumbers(std::int64_t start, std::int64_t step, bool hex) {
        return InsertNumbers(start, step, hex);
    }
    // The counter at every caret of the list in its order, in place of the selections,
    // unpadded; one undo step. False without a caret list.
    bool MultiEditInsertNumbers(std::int64_t start, std::int64_t step, bool hex);
    struct TColumnStats {
        std::int64_t Count = 0;
        double Sum = 0, Min = 0, Max = 0; // Min and Max are 0 when Count is 0
        double Average() const { return Count ? Sum / static_cast<double>(Count) : 0; }
    };
    // The numbers among the blank-separated words of the block (in column mode), else of the
    // selection, else of the document: words of the form [+-]digits[.digits] or [+-].digits.
    TColumnStats acnColumnStatistics() const;
    // Aligns delimited lines (the command's lines): each line is cut at every `separator`
    // (not empty), and field i of every line that has a separator after it is padded to the
    // widest such field (in code points), with spaces or, with padWithTab, with tabs up to a
    // common tab stop. removeSeparators puts one space (tabs: nothing) in place of each
    // separator. Lines without a separator stay. One TAlignColumnsUndo step.
    bool acnColumnAlignText(std::u16string_view separator, bool padWithTab, bool removeSeparators);
    // Toggles the comment of the lines of every caret (or block row) once each, one step.
    bool MultiEditToggleComment();

    bool FNumEveryLine = false; // blank rows get a number and count too
    // ---- Moves and selections (ZvMemoMoveCommands.cpp, ZvMemoSelectCommands.cpp). None is
    // refused by read-only; each leaves multi-caret mode first. A move drops the selection, a
    // select extends it from where it stands (or from the caret). Screen lines are rows (a
    // wrapped line has several); a line is a logical line. Those returning bool give false,
    // changing nothing, when there is nowhere to go or nothing to select.
    void acnHome();
    void acnEnd();
    void acnDocumentBeginning();
    void acnDocumentEnd();
    void acnTopOfPage();
    void acnBottomOfPage();
    void acnNextWord();
    void acnPreviousWord();
    void acnScrollLineUp();
    void acnScrollLineDown();
    void acnScrollPageUp();
    void acnScrollPageDown();
    void acnSelectUp();
    void acnSelectDown();
    void acnSelectLeft();
    void acnSelectRight();
    void acnSelectHome();
    void acnSelectEnd();
    void acnSelectPageUp();
    void acnSelectPageDown();
    void acnSelectNextWord();
    void acnSelectPreviousWord();
    void acnSelectToTopOfPage();
    void acnSelectToBottomOfPage();
    // Alt+Shift moves: a column block for this move (refused under word wrap: plain select).
    void acnBlockSelectUp();
    void acnBlockSelectDown();
    void acnBlockSelectLeft();
    void acnBlockSelectRight();
    bool acnSelectToBOL();
    bool acnSelectToEOL();
    bool acnSelectToBeginOfScreenLine();
    bool acnSelectToEndOfScreenLine();
    // From the document's start to the caret, or from the caret to the document's end.
    bool acnSelectAllAboveCurrent();
    bool acnSelectAllBelowCurrent();
    bool AcnSelectCurrentWord();
    // The caret's line whole, with its line end (the last line: to its end).
    bool AcnSelectCurrentLine();
    // A paragraph is a run of lines that are not blank (empty or spaces and tabs only); the
    // caret's paragraph is selected whole with the last line's line end. On a blank line:
    // false.
    bool acnSelectParagraph();
    // A sentence starts at a character other than white space and ends behind a run of
    // ".", "!" or "?" followed by white space or a line end, or at the last such character
    // before a blank line or the document's end. The caret's sentence is the first one that
    // ends behind the caret. Home: from the caret back to its start (false when the caret
    // stands before it); End: from the caret to its end.
    bool acnSelectSentence();
    bool acnSelectSentenceHome();
    bool acnSelectSentenceEnd();
    // The rows of the innermost fold around the caret that the fold pass marks as a
    // function, constructor or destructor; when none is marked (syntaxes whose folds carry no
    // kind), the outermost fold around the caret.
    bool acnSelectCurrentProcedure();
    // The selection on one row (or the word at the caret) is looked for, case-sensitive, as
    // a plain string after the selection's end (before its start), wrapping once round the
    // document; the hit becomes the selection, the caret at its end. Hits never overlap the
    // text they start from.
    bool acnNextOccurrence();
    bool acnPreviousOccurrence();
    // Caret to `line` (1-based, a line of the file) at `column` (1-based, clipped to the
    // line's end); false, the caret kept, for a line out of range.
    bool acnGotoLine(int line, int column = 1);
    // Caret to column 0 of the nearest row below (above) the caret's that is changed or
    // changed and saved, or that heads a fold; hidden rows are passed over; no wrap.
    bool acnFindNextChangedLine();
    bool acnFindPreviousChangedLine();
    bool acnFindNextNode();
    bool acnFindPreviousNode();
    // Delete what the matching select command selects, as one undo step; refused like any
    // edit. False when the span is empty.
    bool acnDeleteToBeginOfScreenLine();
    bool acnDeleteToEndOfScreenLine();
    bool acnDeleteSentence();
    bool acnDeleteToSentenceHome();
    bool acnDeleteToSentenceEnd();
    // ---- Marked lines: lines holding a numbered bookmark or a plain line mark.
    // Puts a plain mark on every line equal to an earlier line of the document (the lines
    // acnDeleteDuplicateLines removes); lines marked already keep their mark. Not undoable;
    // returns the number of lines it marked.
    int acnBookmarkDuplicatedLines();
    // The marked lines of the document, each followed by LF (empty: none marked).
    std::u16string MarkedLinesText() const;
    // Copies the marked lines (MarkedLinesText) to the clipboard; false when none is marked.
    bool acnCopyBookmarkedLines();
    // Removes every marked line with its line end, one undo step; Cut copies them first.
    // False when none is marked or the edit is refused.
    bool acnDelBookmarkedLines();
    bool acnCutBookmarkedLines();
    // Drops every bookmark and plain mark.
    void acnClearBookmarks();

    // ---- Clipboard variants. Each takes what Copy takes (the selection, or the word at the
    // caret). Append: the clipboard's text followed by it; Cut also removes the selection.
    bool acnCopyAndAppend();
    bool acnCutAndAppend();
    // Copies the selection and inserts a copy of it behind itself; the caret goes behind the
    // copy. False without a selection.
    bool acnCopyAndPaste();
    // Pastes the clipboard's text and leaves it selected (one undo step).
    bool acnPasteAndSelect();
    // Inserts `text` at the caret, replacing the selection, and selects it when `select`.
    bool acnInsertText(std::u16string_view text, bool select = false);

    std::int32_t FRightMargin = 80;         // column of the right margin
    std::int32_t FTabCharsReplaced = 0;     // tabs or blank runs the last conversion replaced
    std::int32_t FTabCharsChangedLines = 0; // lines it changed

private:
    bool IndentLines(bool indent);
    bool DeleteToWordStep(int dx);
    // The span a sentence command covers: [from, to) in rows; false when there is none.
    bool SentenceSpan(int part, TZvPos& from, TZvPos& to);
    bool SelectSpan(bool found, TZvPos anchor, TZvPos target);
    bool DeleteSpan(bool found, TZvPos from, TZvPos to);
    bool FindOccurrence(bool forward);
    bool GoToMarkedRow(int dy, bool (*marked)(const TZvMemoStrings&, int));
};

} // namespace zv
