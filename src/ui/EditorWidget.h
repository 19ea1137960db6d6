// The editor widget: one view of a document. Paints its rows with a line-number gutter, the
// selection and a blinking caret, and drives the editing control (TZvMemo) with keys, mouse,
// drag and drop, input methods and the clipboard. Several widgets may show one document:
// each has its own caret and scroll, and all share the text, undo and scanner.
#pragma once

#include "ZvMemoControl/HighlightLists.h"
#include "ZvMemoControl/ShownRows.h"
#include "ZvMemoControl/TextSearch.h"
#include "ZvMemoControl/ZvMemo.h"
#include "syntax/BraceMatch.h"
#include "syntax/DocumentScan.h"
#include "syntax/ZvSyntax.h"
#include "ui/QtClipboard.h"
#include "ui/QtPrompt.h"
#include "ui/QtTextMeasure.h"
#include "ui/QtTimer.h"

#include <QAbstractScrollArea>

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

namespace zv {

class TZvMemoStrings;
class TRunPainter;
class TCustomIniFile;

class TEditorWidget : public QAbstractScrollArea, private IScanObserver {
    Q_OBJECT
public:
    explicit TEditorWidget(QWidget* parent = nullptr);
    ~TEditorWidget() override;

    // The document to show and edit, shared with its other views (null: a new empty one).
    // Its syntax and scanner are the document's; the caret starts at the top.
    void SetTextDocument(std::shared_ptr<TZvTextDocument> document);
    const std::shared_ptr<TZvTextDocument>& TextDocument() const { return FMemo.SharedDocument(); }
    // A document of its own over `lines`, which must outlive the widget or be replaced
    // before it dies; it starts with an empty undo list, unmodified, with the syntax in force.
    void SetLines(TZvMemoStrings* lines);
    const TZvMemoStrings* Lines() const { return FLines; }
    // The document's style sets to colour with (null or a host without a style set: plain
    // text), for every view of it. A scan context, line scanner and background thread are
    // attached to the rows; the thread starts at once.
    void SetSyntax(std::shared_ptr<const TMemoStyleHost> host);
    // The syntax the extension of `fileName` selects (or the type `forcedType` names, when
    // given), loaded from the data folder `root` and coloured by `colors` (read only during
    // the call); plain text when none is mapped. Returns the type in force.
    std::u16string SetSyntaxForFile(const std::filesystem::path& fileName,
                                    const std::filesystem::path& root,
                                    const IStyleColorSource& colors,
                                    std::u16string_view forcedType = {});
    // Both at once (a document of its own over `lines`), with one scanner build.
    void SetDocument(TZvMemoStrings* lines, std::shared_ptr<const TMemoStyleHost> host);
    // Timing of background threads made from now on (tests and benchmarks shorten it).
    void SetBackgroundTiming(TBackgroundTiming timing) { FTiming = timing; }
    // The document's scan, or null without a syntax.
    TDocumentScan* Scan() const { return FScan.get(); }
    // The brace pair marked at the caret (Left.x -1: none), and the tag pair (tag mode).
    TBracePair BracePair();
    TTagPosData TagPair();
    // The colour choices the rows are painted with (HTML export takes the same).
    const TColourOptions& PaintColours();
    // Pastes text handed over by another instance (smart paste at the caret).
    void PasteText(const QString& text);
    // Told every painted row and its runs (tests).
    std::function<void(int row, const std::vector<TColourRun>& runs)> FOnRowPainted;
    // The style a whole row takes instead of its syntax colours (a followed log's keyword
    // line), or null; asked for each painted row.
    std::function<const TCharStyle*(std::u16string_view row)> FOnRowStyle;
    // The hits of `search` are painted behind the text of every visible row, found afresh at
    // each paint, so they follow every edit (null: none).
    void SetHighlight(std::shared_ptr<const TTextSearch> search);
    const std::shared_ptr<const TTextSearch>& Highlight() const { return FHighlight; }
    static const QColor kHitBack; // the colour behind a highlighted hit
    // Words, selections, finds and expressions the user marked in this view: their hits are
    // painted in their lists' colours over the syntax colours. Call viewport()->update()
    // after a change.
    THighlightLists& Highlights() { return FHighlights; }
    // Gutter marks: a bookmark's box (its digit on it), a plain line mark, and the change bar
    // of a line changed since the last save or changed and saved.
    static const QColor kBookmarkBack;
    static const QColor kLinemarkColor;
    static const QColor kLineChangedColor;
    static const QColor kLineChangedSavedColor;
    static const QColor kFoldMarkColor; // the fold margin's markers
    // Puts the caret on the 0-based row and scrolls it into view: by the least amount, or
    // with jump to the upper third of the view (as for a line given on the command line).
    void ShowRow(int row, bool jump = true);
    int TopRow() const;
    // Scrolls so that `row` (or, when hidden, the shown row above it) is the top row.
    void SetTopRow(int row);
    int CaretRow() const;
    int VisibleRowCount() const;
    int TabWidth() const { return FMemo.DocState().FTabSize; }

    TZvMemo& Memo() { return FMemo; }
    const TZvMemo& Memo() const { return FMemo; }
    // Saves through `FOnSave` when set, else to the store's own file with the codec. On
    // success the current text becomes the saved state (modified cleared).
    bool Save();
    // Tells the widget that its text was saved by someone else (the main object).
    void MarkSaved();
    bool IsModified() const { return FMemo.Modified(); }
    // The caret's rectangle in viewport coordinates.
    QRect CaretRect() const;
    // The text position under a viewport point (column may lie past the row's end).
    TZvPos PosAt(const QPoint& point) const;

    // Runs an editing command on the control, then the view follows the caret and repaints.
    void Run(const std::function<void(TZvMemo&)>& command);
    // Zoom of the text in percent of the base font (30..500, steps of 10); 100: the base.
    void ZoomIn();
    void ZoomOut();
    void ZoomReset();
    int Zoom() const { return FMemo.FZoomValue; }
    // The base font (zoom 100) one point larger (`points` 1) or smaller (-1), within 4..96
    // points; the zoom stays. The toggle swaps the fixed-width font for the system's general
    // one and back, at the same size.
    void StepFontSize(int points);
    void ToggleFont();
    const QFont& BaseFont() const { return FBaseFont; }
    // Puts the caret at the brace that pairs with the one at the caret, or with the nearest
    // enclosing one; false (caret kept) without a syntax or a pair.
    bool GoToMatchingBrace();
    // Selects what the brace pair at or around the caret encloses (`withBraces`: the braces
    // too), or the markup element whose tag name holds the caret, from "<" of its opening
    // tag to ">" of its closing one. False (nothing changed) without a syntax or a pair.
    bool SelectBraceEnclosed(bool withBraces);
    bool SelectTag();
    // Indents as the document does: with tabs when the syntax needs them or the text is
    // indented with tabs, with spaces when it is indented with spaces; otherwise as the
    // settings say. Call after the settings and the syntax are applied.
    void FollowDocumentIndent();
    // The text a middle click pastes: the X primary selection, or where the platform has
    // none, the last selection made in any editor of this process.
    static QString PrimarySelectionText();

    // What an input method asks: caret rectangle and position, the caret's row, the font.
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

    // What Save does; returns success. The main window sets it to its save command.
    std::function<bool()> FOnSave;

    // ---- Word wrap (EditorWidgetWrap.cpp). Lines are cut into rows at the wrap width: the
    // view's text width, or FWrapAtColumnValue with FWrapAtColumn, or the memo's right
    // margin with FWrapAtRightMargin; again whenever the view's width changes.
    void SetWordWrap(bool on);
    bool WordWrap() const { return FMemo.DocState().FWordWrap; }
    // Reads the wrap keys of "EditorMisc" ("OpenWithWordwrap" or "Wordwrap" switch it on).
    void ApplyWrapSettings(const TCustomIniFile& settings);
    // Text columns a row holds at the present width and settings.
    int WrapColumns() const;
    // The gutter's label of a row: its real line's number, or the wrap mark on a continuation.
    QString RowLabel(int row) const;
    static const QString kWrapMark;
    // Viewport x where the text of `row` starts: a continuation row is drawn indented, as
    // the memo's pixel positions (caret, clicks, selection) count it.
    qreal RowTextLeft(int row) const;
    // Wrap marks in the text area (FDisplayWrapMarkers, "EditorMisc"/"DisplayWrapMarkers"):
    // a hook after the text of a row whose line goes on below, and an arrow in the indent
    // of a continuation row, in kWrapMarkColor.
    static const QColor kWrapMarkColor;
    bool FDisplayWrapMarkers = true;
    bool FWrapAtColumn = false;
    int FWrapAtColumnValue = 80;
    bool FWrapAtRightMargin = false;

signals:
    // The text began or stopped differing from the saved text.
    void ModifiedChanged(bool modified);
    // The caret or the selection moved.
    void CursorChanged();
    // The text changed (every edit, undo and redo).
    void TextChanged();
    // A fold pass's result reached the rows: folds can be closed now.
    void FoldsApplied();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool viewportEvent(QEvent* event) override; // the text width changed: wrap again
    void keyPressEvent(QKeyEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    // Tab and Shift+Tab are editing keys here, not focus moves (FWantTab).
    bool focusNextPrevChild(bool next) override;

private:
    void UpdateScrollBars();
    void RefreshWrap(); // cuts the rows again when the wrap width changed
    void PaintWrapMarks(QPainter& painter, int row, int y); // of `row`, painted at `y`
    int GutterWidth() const;
    // Bookmarks, line marks and change bars of the painted rows in the gutter.
    void PaintGutterMarks(QPainter& painter, const std::vector<int>& rows, int gutter);
    // Folds: rows hidden by a closed fold are not painted. The rows painted from the top
    // row down; the row painted at viewport y; how many painted rows lie above `row` (at
    // most the view's rows plus 2; negative above the top); the first shown row at or
    // below `row`; the top row that shows `row` as the view's last.
    std::vector<int> ShownRows() const;
    int ShownRowAt(int y) const;
    int ShownIndex(int row) const;
    int FirstShownRow(int row) const;
    int TopRowShowing(int row) const;
    // The shown rows, brought up to the rows: the vertical scroll bar counts these only.
    const TShownRows& Shown() const;
    int FoldMarginWidth() const; // 0 without a syntax
    void PaintFoldMargin(QPainter& painter, const std::vector<int>& rows, int gutter);
    bool FoldMarginPress(const QPoint& at); // true when the press hit the fold margin
    int RowCount() const;
    int LineHeight() const;
    int TextLeft() const; // viewport x of column 0
    bool HandleCommandKey(QKeyEvent* event);
    bool HandleMoveKey(QKeyEvent* event);
    void AfterCommand();
    void EnsureCaretVisible();
    void RestartBlink();
    void StartDrag();
    // The colour runs painted for `row`: the colouring walk from `state` (the state after the
    // row above, advanced past this row), or one plain run without a syntax.
    std::vector<TColourRun> PaintRuns(int row, TStyle& state);
    void PaintRow(QPainter& painter, int row, int y, const std::vector<TColourRun>& runs);
    // Red boxes over the bytes of `text` (a row painted at `y`) that the encoding could not read.
    void MarkInvalidBytes(QPainter& painter, const TRunPainter& runPainter,
                          std::u16string_view text, QPointF origin) const;
    // Joins the document's scan (making it when the document has a style set and none yet).
    void AttachScan();
    void DetachScan();
    void DocumentReset(); // the document's store or scan was replaced
    // IScanObserver, called on the background thread.
    bool ScanVisible() const override { return FShown.load(); }
    bool ScanBusy() const override { return FKeyDown.load(); }
    void RowsScanned(int first) override { RowsScannedFromThread(first); }
    void FoldsReady() override;            // background thread: post the hand-over
    void RowsScannedFromThread(int first); // background thread: post a repaint
    void RowsScanned();                    // main thread: repaint what the sweep reached
    void UpdateMarks();                    // brace and tag pair at the caret
    // The matched brace pair at or around the caret, opener first; false without one.
    bool BracesAtCaret(TZvPos& open, TZvPos& close);
    TRunPainter& Painter();
    void ApplyZoom();
    // Tab and Shift+Tab; false for other keys.
    bool HandleIndentKeys(QKeyEvent* event);
    // Several carets (EditorWidgetCarets.cpp): the block's or the list's selections in `row`
    // (false: neither is in force), the carets besides the own one in rows [first, last),
    // Ctrl+click and Alt+press (true: the press is done), Escape.
    bool PaintCaretSelections(QPainter& painter, int row, int y);
    void PaintExtraCarets(QPainter& painter, int first, int last);
    void PaintSyncBlock(QPainter& painter, int first, int last);
    bool CaretMousePress(QMouseEvent* event, TZvPos pos);
    bool HandleCaretKeys(QKeyEvent* event);
    // Offers a changed non-empty selection as the primary selection.
    void OfferPrimarySelection();
    void PastePrimarySelection(const QPoint& at);

    TZvMemoStrings* FLines = nullptr;
    TQtTextMeasure FMeasure;
    TQtClipboard FClipboard;
    TQtTimerFactory FTimers;
    TQtPrompt FPrompt;
    TZvMemo FMemo;
    std::shared_ptr<TDocumentScan> FScan; // the document's, while this view observes it
    TBackgroundTiming FTiming;
    std::unique_ptr<TRunPainter> FPainter; // rebuilt when the font or the syntax changes
    bool FMarksDirty = true;
    mutable TShownRows FShownRows; // through Shown() only
    int FShownSeen = -1;           // shown rows when the scroll range was last set
    TBracePair FBraces;
    TTagPosData FTags;
    // Shared with the background thread.
    std::atomic<bool> FShown{false};   // the thread sweeps only while the editor shows
    std::atomic<bool> FKeyDown{false}; // a key held down (auto-repeat): the thread waits
    std::atomic<int> FScannedFrom{-1}; // lowest row reported since the last repaint, -1 none
    std::atomic<bool> FRepaintPosted{false};
    std::unique_ptr<ITimer> FBlinkTimer;
    bool FCaretOn = true;
    int FWidestSeen = 0; // widest painted row in pixels, grows the horizontal range
    // Mouse: a press inside the selection may start a drag; elsewhere it selects.
    QPoint FPressPoint;
    bool FMaybeDrag = false;
    bool FSelecting = false;
    QString FPreedit;          // input method text being composed, painted at the caret
    QFont FBaseFont;           // the font at zoom 100
    bool FGeneralFont = false; // ToggleFont put the general font in place of the fixed one
    std::shared_ptr<const TTextSearch> FHighlight;
    std::vector<TSearchHit> FVisibleHits; // FHighlight's hits in the rows being painted
    THighlightLists FHighlights;
    std::vector<THighlightMark> FVisibleMarks; // FHighlights' marks in the rows being painted
    // Paints the marks of FVisibleMarks on `row` over its text: the row again in each mark's
    // colours, clipped to the mark.
    void PaintHighlightMarks(QPainter& painter, int row, int y, std::u16string_view text,
                             const std::vector<TColourRun>& runs);
    // The selection last offered as the primary selection (start == end: none).
    TZvPos FOfferedStart, FOfferedEnd;
};

} // namespace zv
