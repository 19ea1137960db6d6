// The editor widget's set-up, painting and scrolling: only the visible rows are touched, so
// a huge document scrolls and repaints as fast as a small one.
#include "ui/EditorWidget.h"

#include "common/Utf8Stream.h"

#include "ZvMemoControl/ZvMemoStrings.h"
#include "shell/Language.h"
#include "ui/RunPainter.h"

#include <QApplication>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QPainter>
#include <QPointer>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

namespace zv {

namespace {

// The comment commands' marks from a syntax's style set: its line marks and its first
// block pair; a syntax with only "<!--" blocks comments as markup.
TZvMemo::TCommentMarks CommentMarksOf(const TZvCustomMemoStyles& set) {
    TZvMemo::TCommentMarks marks;
    marks.LineA = set.FLineCommentA;
    marks.LineB = set.FLineCommentB;
    if (!set.FCommentEndA_Line) { // a pair that the line end closes is no block
        marks.BlockStart = set.FCommentStartA;
        marks.BlockEnd = set.FCommentEndA;
    }
    marks.Markup = marks.LineA.empty() && marks.BlockStart == u"<!--";
    return marks;
}

// Light blue behind selected text: the syntax colours stay readable on it.
const QColor kSelectionBack(0xAD, 0xD6, 0xFF);
// Tag pair highlight (HTML and XML): a translucent box over the tag names.
const QColor kTagPairBack(0xFF, 0xD7, 0x00, 0x60);
// A byte the file's encoding could not read, kept as it is: an opaque red box, so that it is
// never mistaken for a character.
const QColor kInvalidByteBack(0xE0, 0x30, 0x30);

TEditorServices ServicesOf(ITextMeasure& measure, IClipboard& clipboard, ITimerFactory& timers,
                           IPrompt& prompt) {
    TEditorServices services;
    services.Measure = &measure;
    services.Clipboard = &clipboard;
    services.Timers = &timers;
    services.Prompt = &prompt;
    services.Text = [](const std::string& section, const std::string& key,
                       const std::string& fallback) { return LangText(section, key, fallback); };
    return services;
}

} // namespace

TEditorWidget::TEditorWidget(QWidget* parent)
    : QAbstractScrollArea(parent), FMeasure(QFontDatabase::systemFont(QFontDatabase::FixedFont)),
      FPrompt(this), FMemo(ServicesOf(FMeasure, FClipboard, FTimers, FPrompt)) {
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    FBaseFont = font();
    viewport()->setBackgroundRole(QPalette::Base);
    viewport()->setAutoFillBackground(true);
    viewport()->setCursor(Qt::IBeamCursor);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled);
    setAcceptDrops(true);
    viewport()->setAcceptDrops(true); // drops arrive at the viewport
    FMemo.FMargin = 0;                // the widget places column 0 itself
    FMemo.FOnInvalidate = [this](int first, int last) {
        // The document's scanner has rescanned a one-row edit and said how far colours moved.
        const TRowRange range{first, last};
        FMarksDirty = true;
        if (last < 0)
            UpdateScrollBars();
        const int top = TopRow(), lineHeight = LineHeight();
        if (range.Last >= 0 && range.First >= top) {
            const int y = (range.First - top) * lineHeight;
            viewport()->update(0, y, viewport()->width(),
                               (range.Last - range.First + 1) * lineHeight);
        } else {
            viewport()->update();
        }
    };
    FMemo.FOnChange = [this] { emit TextChanged(); };
    FMemo.FOnDocumentReset = [this] { DocumentReset(); };
    FMemo.FOnModifiedChange = [this](bool modified) { emit ModifiedChanged(modified); };
    FMemo.FOnCursorChange = [this] {
        FMarksDirty = true;
        emit CursorChanged();
    };
    FBlinkTimer = FTimers.CreateTimer([this] {
        FCaretOn = !FCaretOn;
        viewport()->update(CaretRect().adjusted(-2, 0, 2, 0));
    });
}

TEditorWidget::~TEditorWidget() {
    DetachScan(); // the thread reports to this view no more
    FBlinkTimer.reset();
}

void TEditorWidget::SetLines(TZvMemoStrings* lines) {
    SetTextDocument(lines ? TZvTextDocument::Borrowing(*lines) : nullptr);
}

void TEditorWidget::SetSyntax(std::shared_ptr<const TMemoStyleHost> host) {
    // Every view of the document hears of it and joins the new scan.
    FMemo.Document().SetStyleHost(host && host->FStyles ? std::move(host) : nullptr);
}

void TEditorWidget::SetDocument(TZvMemoStrings* lines, std::shared_ptr<const TMemoStyleHost> host) {
    auto document =
        lines ? TZvTextDocument::Borrowing(*lines) : std::make_shared<TZvTextDocument>();
    document->SetStyleHost(host && host->FStyles ? std::move(host) : nullptr);
    SetTextDocument(std::move(document));
}

void TEditorWidget::SetTextDocument(std::shared_ptr<TZvTextDocument> document) {
    DetachScan();
    FMemo.SetDocument(std::move(document));
    TZvMemoState& state = FMemo.DocState();
    state.FTabSize = std::max(state.FTabSize, 1);
    DocumentReset();
}

void TEditorWidget::DocumentReset() {
    DetachScan();
    FLines = &FMemo.Lines();
    AttachScan();
    FWidestSeen = 0;
    const int top = FMemo.FTopLine; // kept by a relayout, else 0
    horizontalScrollBar()->setValue(0);
    UpdateScrollBars();
    verticalScrollBar()->setValue(top);
    viewport()->update();
}

void TEditorWidget::DetachScan() {
    if (FScan)
        FScan->RemoveObserver(this);
    FScan.reset();
    FPainter.reset();
    FMarksDirty = true;
    FBraces = {};
    FTags = {};
}

void TEditorWidget::AttachScan() {
    FPainter.reset();
    FMemo.FHasSyntax = false;
    FMemo.FCommentMarks = {};
    FMemo.DocState().FWrapCommentStart.clear(); // word wrap keeps comment marks whole
    FMemo.DocState().FWrapCommentEnd.clear();
    TZvTextDocument& document = FMemo.Document();
    const std::shared_ptr<const TMemoStyleHost>& host = document.StyleHost();
    if (!host || !host->FStyles)
        return;
    FScan = std::dynamic_pointer_cast<TDocumentScan>(document.Reader());
    const bool made = !FScan;
    if (made) {
        TScanOptions options;
        options.FWordWrap = FMemo.DocState().FWordWrap;
        options.FHtmlMultiSyntax = host->FHtmlMultiSyntax;
        options.FTabSize = std::max(FMemo.DocState().FTabSize, 1);
        FScan = std::make_shared<TDocumentScan>(document.Lines(), host, options, FTiming);
        document.SetReader(FScan);
    }
    FScan->AddObserver(this);
    TFoldPassOptions folds; // indents compare in columns of the document's tab size
    folds.TabSize = std::max(FMemo.DocState().FTabSize, 1);
    FScan->Folds().SetOptions(folds);
    const TZvCustomMemoStyles& set = *host->FStyles;
    FMemo.FHasSyntax = true;
    FMemo.FAutoCloseBraceStart = set.FAutoCloseBraceStart;
    FMemo.FAutoCloseBraceEnd = set.FAutoCloseBraceEnd;
    FMemo.FCommentMarks = CommentMarksOf(set);
    FMemo.DocState().FWrapCommentStart = FMemo.FCommentMarks.BlockStart;
    FMemo.DocState().FWrapCommentEnd = FMemo.FCommentMarks.BlockEnd;
    if (made)
        FScan->Start();
}

void TEditorWidget::RowsScannedFromThread(int first) {
    // Background thread: keep the lowest row, and post one repaint until it is served.
    int seen = FScannedFrom.load();
    while ((seen < 0 || first < seen) && !FScannedFrom.compare_exchange_weak(seen, first)) {
    }
    if (FRepaintPosted.exchange(true))
        return;
    QMetaObject::invokeMethod(
        this, [this] { RowsScanned(); }, Qt::QueuedConnection);
}

void TEditorWidget::RowsScanned() {
    FRepaintPosted.store(false);
    const int first = FScannedFrom.exchange(-1);
    // A row's new state colours the rows below it: repaint when any of those is on screen.
    if (first >= 0 && first < TopRow() + VisibleRowCount())
        viewport()->update();
}

TRunPainter& TEditorWidget::Painter() {
    if (!FPainter) {
        TRunPaintOptions options;
        options.TabSize = std::max(FMemo.DocState().FTabSize, 1);
        options.Background = QColor(); // the viewport's background shows
        FPainter = std::make_unique<TRunPainter>(font(), options);
    }
    return *FPainter;
}

std::vector<TColourRun> TEditorWidget::PaintRuns(int row, TStyle& state) {
    if (!FLines || row < 0 || row >= FLines->Count())
        return {};
    if (FScan)
        return RowRunsFrom(FScan->Scanner(), row, state);
    const int length = FLines->GetLineLength(row);
    if (length == 0)
        return {};
    return {TColourRun{0, length, {}}};
}

void TEditorWidget::UpdateMarks() {
    if (!FMarksDirty)
        return;
    FMarksDirty = false;
    FBraces = {};
    FTags = {};
    if (!FScan || FMemo.HasSelection() || FMemo.FCurY >= FLines->Count())
        return;
    FBraces = FindBracePair(FScan->Scanner(), FMemo.FCurX, FMemo.FCurY, false);
    if (FScan->Context().TagMode())
        FTags = CheckTagsToHighlight(FScan->Scanner(), FMemo.FCurX, FMemo.FCurY);
}

TBracePair TEditorWidget::BracePair() {
    UpdateMarks();
    return FBraces;
}

TTagPosData TEditorWidget::TagPair() {
    UpdateMarks();
    return FTags;
}

const TColourOptions& TEditorWidget::PaintColours() {
    return Painter().Options().Colours;
}

void TEditorWidget::PasteText(const QString& text) {
    const std::u16string s(reinterpret_cast<const char16_t*>(text.utf16()),
                           static_cast<std::size_t>(text.size()));
    FMemo.SmartPasteText(s, false);
    EnsureCaretVisible();
    RestartBlink();
    viewport()->update();
}

int TEditorWidget::RowCount() const {
    return FLines ? FLines->Count() : 0;
}

int TEditorWidget::LineHeight() const {
    return std::max(1, fontMetrics().lineSpacing());
}

int TEditorWidget::TopRow() const {
    return FLines ? Shown().RowOf(verticalScrollBar()->value()) : verticalScrollBar()->value();
}

int TEditorWidget::CaretRow() const {
    return FMemo.FCurY;
}

int TEditorWidget::VisibleRowCount() const {
    return std::max(1, viewport()->height() / LineHeight());
}

int TEditorWidget::GutterWidth() const {
    const int lines =
        FLines && FLines->Count() > 0 ? FLines->GetRealLine(FLines->Count() - 1) + 1 : 1;
    const int digits = static_cast<int>(std::to_string(std::max(1, lines)).size());
    return fontMetrics().horizontalAdvance(QLatin1Char('9')) * (digits + 2) + FoldMarginWidth();
}

int TEditorWidget::TextLeft() const {
    return GutterWidth() + 2 - horizontalScrollBar()->value();
}

void TEditorWidget::UpdateScrollBars() {
    const int visible = VisibleRowCount();
    const int top = FMemo.FTopLine, shown = FLines ? Shown().Count() : 0;
    verticalScrollBar()->setRange(0, std::max(0, shown - visible + 1));
    verticalScrollBar()->setPageStep(visible);
    if (shown != FShownSeen && FShownSeen >= 0) // folds changed: the same row stays on top
        SetTopRow(top);
    FShownSeen = shown;
    const int charWidth = fontMetrics().horizontalAdvance(QLatin1Char('M'));
    const int textWidth = viewport()->width() - GutterWidth();
    horizontalScrollBar()->setRange(0, std::max(0, FWidestSeen - textWidth / 2));
    horizontalScrollBar()->setPageStep(std::max(1, textWidth));
    horizontalScrollBar()->setSingleStep(charWidth);
    FMemo.FVisibleRows = visible;
}

void TEditorWidget::ShowRow(int row, bool jump) {
    row = std::clamp(row, 0, std::max(0, RowCount() - 1));
    FMemo.SetTextCursor(FMemo.FCurX, row);
    const int top = TopRow();
    const int visible = VisibleRowCount();
    if (row < top || ShownIndex(row) >= visible)
        SetTopRow(jump ? std::max(0, row - visible / 3) : row < top ? row : TopRowShowing(row));
    viewport()->update();
}

QRect TEditorWidget::CaretRect() const {
    const int y = ShownIndex(FMemo.FCurY) * LineHeight();
    const int x =
        TextLeft() + static_cast<int>(std::lround(FMemo.TextLength(FMemo.FCurY, FMemo.FCurX)));
    const int width =
        FMemo.FOverwrite ? std::max(2, fontMetrics().horizontalAdvance(QLatin1Char('M'))) : 2;
    return QRect(x, y, width, LineHeight());
}

TZvPos TEditorWidget::PosAt(const QPoint& point) const {
    const int row = std::clamp(ShownRowAt(point.y()), 0, std::max(0, FMemo.RowCount() - 1));
    return {FMemo.ColumnAtPixel(row, point.x() - TextLeft()), row};
}

void TEditorWidget::EnsureCaretVisible() {
    const int row = FMemo.FCurY, top = TopRow(), visible = VisibleRowCount();
    if (row < top)
        SetTopRow(row);
    else if (row >= top + visible && ShownIndex(row) >= visible)
        SetTopRow(TopRowShowing(row));
    const int px = static_cast<int>(std::lround(FMemo.TextLength(row, FMemo.FCurX)));
    const int textWidth = viewport()->width() - GutterWidth() - 4;
    if (px + 4 > FWidestSeen) {
        FWidestSeen = px + 4;
        UpdateScrollBars();
    }
    const int left = horizontalScrollBar()->value();
    if (px < left)
        horizontalScrollBar()->setValue(std::max(0, px - textWidth / 4));
    else if (px > left + textWidth)
        horizontalScrollBar()->setValue(px - textWidth * 3 / 4);
    FMemo.FTopLine = TopRow();
}

void TEditorWidget::RestartBlink() {
    FCaretOn = true;
    if (hasFocus())
        FBlinkTimer->Start(std::max(QApplication::cursorFlashTime() / 2, 100));
}

// One walk over the row: each run of kept bytes gets one box (a row of nothing else stays
// linear, where asking each byte's column would walk the row again per byte).
void TEditorWidget::MarkInvalidBytes(QPainter& painter, const TRunPainter& runPainter,
                                     std::u16string_view text, QPointF origin) const {
    qreal x = 0;
    std::size_t done = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!IsByteEscape(text[i]))
            continue;
        std::size_t end = i + 1;
        while (end < text.size() && IsByteEscape(text[end]))
            ++end;
        const qreal x1 = runPainter.AdvanceX(text.substr(done, i - done), x);
        x = runPainter.AdvanceX(text.substr(i, end - i), x1);
        painter.fillRect(QRectF(origin.x() + x1, origin.y(), x - x1, LineHeight()),
                         kInvalidByteBack);
        done = i = end;
    }
}

void TEditorWidget::PaintRow(QPainter& painter, int row, int y,
                             const std::vector<TColourRun>& runs) {
    const int lineHeight = LineHeight();
    const int left = TextLeft();
    const std::u16string_view text = FLines->Get(row);
    const TCharStyle* rowStyle = FOnRowStyle ? FOnRowStyle(text) : nullptr;
    if (rowStyle && rowStyle->FBkColor != kNoColor) // the whole line, not only its text
        painter.fillRect(QRectF(left, y, viewport()->width() - left, lineHeight),
                         ToQColor(rowStyle->FBkColor));
    for (const TSearchHit& hit : FVisibleHits) {
        if (hit.Start.Y > row || hit.End.Y < row)
            continue;
        const int len = FMemo.RowLength(row);
        const double x1 =
            FMemo.TextLength(row, hit.Start.Y == row ? std::min(hit.Start.X, len) : 0);
        const double x2 = FMemo.TextLength(row, hit.End.Y == row ? std::min(hit.End.X, len) : len);
        painter.fillRect(QRectF(left + x1, y, x2 - x1, lineHeight), kHitBack);
    }
    TZvPos s, e;
    FMemo.OrderedSelection(s, e);
    if (!PaintCaretSelections(painter, row, y) && FMemo.HasSelection() && row >= s.Y &&
        row <= e.Y) {
        const int len = FMemo.RowLength(row);
        const int a = row == s.Y ? std::min(s.X, len) : 0;
        const int b = row == e.Y ? std::min(e.X, len) : len;
        const double x1 = FMemo.TextLength(row, a);
        double x2 = FMemo.TextLength(row, b);
        if (row != e.Y)
            x2 += FMeasure.SpaceWidth(); // the line end is selected too
        painter.fillRect(QRectF(left + x1, y, x2 - x1, lineHeight), kSelectionBack);
    }
    std::vector<TBraceMark> braces;
    for (const TBracePoint& p : {FBraces.Left, FBraces.Right})
        if (p.x >= 0 && p.Y == row)
            braces.push_back({p.x, FBraces.Matched});
    TRunPainter& runPainter = Painter();
    const qreal textLeft = RowTextLeft(row);
    runPainter.PaintRow(painter, QPointF(textLeft, y), text, runs, braces, viewport()->width(),
                        rowStyle);
    // The tag pair: the opening tag's name and ">" and the closing tag's name.
    const auto markTag = [&](int tagRow, int x, int length) {
        if (tagRow != row || x < 0 || length <= 0)
            return;
        const qreal x1 = runPainter.ColumnX(text, x), x2 = runPainter.ColumnX(text, x + length);
        painter.fillRect(QRectF(textLeft + x1, y, x2 - x1, lineHeight), kTagPairBack);
    };
    markTag(FTags.StartY, FTags.StartX, FTags.StartLen);
    markTag(FTags.StartEndY, FTags.StartEndX, FTags.StartEndLen);
    markTag(FTags.EndY, FTags.EndX, FTags.EndLen);
    PaintHighlightMarks(painter, row, y, text, runs);
    if (FLines->InvalidBytesKept() > 0) // only such documents pay for the look
        MarkInvalidBytes(painter, runPainter, text, QPointF(textLeft, y));
    if (FOnRowPainted)
        FOnRowPainted(row, runs);
    const int width = static_cast<int>(FMeasure.TextWidth(text));
    if (width > FWidestSeen)
        FWidestSeen = width;
}

void TEditorWidget::paintEvent(QPaintEvent*) {
    QPainter painter(viewport());
    const int lineHeight = LineHeight();
    const int gutter = GutterWidth();
    const std::vector<int> rows = ShownRows();
    const int first = rows.empty() ? TopRow() : rows.front();
    const int last = rows.empty() ? first : rows.back() + 1;
    const QColor gutterText = palette().color(QPalette::Disabled, QPalette::Text);
    const int widest = FWidestSeen;
    if (FScan) {
        if (const TZvCustomMemoStyles* set = FScan->Styles(); set && set->FBkColor != kNoColor)
            painter.fillRect(viewport()->rect(), ToQColor(set->FBkColor));
    }
    UpdateMarks();
    FVisibleHits.clear();
    if (FHighlight && FLines && last > first)
        FHighlight->ForEach(*FLines, {0, first}, {FLines->GetLineLength(last - 1), last - 1},
                            [this](const TSearchHit& hit, const TMatchGroups&) {
                                FVisibleHits.push_back(hit);
                                return true;
                            });
    FVisibleMarks.clear();
    if (FLines)
        FHighlights.Collect(*FLines, first, last - 1, FVisibleMarks);
    // One walk up to the first row's state; each row then starts from the one above it.
    TStyle state;
    if (FScan)
        state = FScan->Scanner().GetUpStyle(first - 1);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const int row = rows[i], y = static_cast<int>(i) * lineHeight;
        if (i > 0 && rows[i - 1] != row - 1) // rows were skipped: walk up to this one
            state = FScan ? FScan->Scanner().GetUpStyle(row - 1) : state;
        if (row == FMemo.FCurY)
            painter.fillRect(gutter, y, viewport()->width(), lineHeight,
                             palette().color(QPalette::AlternateBase));
        painter.setClipRect(gutter, y, viewport()->width() - gutter, lineHeight);
        PaintRow(painter, row, y, PaintRuns(row, state));
        PaintWrapMarks(painter, row, y);
    }
    painter.setClipping(false);
    painter.fillRect(0, 0, gutter - 4, viewport()->height(), palette().color(QPalette::Window));
    painter.setPen(gutterText);
    for (std::size_t i = 0; i < rows.size(); ++i)
        painter.drawText(QRect(0, static_cast<int>(i) * lineHeight,
                               gutter - 8 - FoldMarginWidth(), lineHeight),
                         Qt::AlignRight | Qt::AlignVCenter, RowLabel(rows[i]));
    PaintGutterMarks(painter, rows, gutter);
    PaintFoldMargin(painter, rows, gutter);
    const QRect caret = CaretRect();
    if (!FPreedit.isEmpty()) {
        QFont underlined = font();
        underlined.setUnderline(true);
        painter.setFont(underlined);
        painter.setPen(palette().color(QPalette::Text));
        painter.drawText(caret.x(), caret.y() + fontMetrics().ascent(), FPreedit);
    } else if (FCaretOn && hasFocus() && caret.x() >= gutter) {
        painter.fillRect(caret, palette().color(QPalette::Text));
    }
    PaintExtraCarets(painter, first, last);
    if (widest != FWidestSeen)
        UpdateScrollBars();
}

const QColor TEditorWidget::kHitBack(255, 230, 0);

void TEditorWidget::SetHighlight(std::shared_ptr<const TTextSearch> search) {
    FHighlight = std::move(search);
    viewport()->update();
}

void TEditorWidget::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    UpdateScrollBars();
}

void TEditorWidget::scrollContentsBy(int, int) {
    FMemo.FTopLine = TopRow();
    viewport()->update();
}

void TEditorWidget::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    RestartBlink();
    viewport()->update();
}

void TEditorWidget::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    FBlinkTimer->Stop();
    viewport()->update();
}

void TEditorWidget::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) {
        FMeasure.SetFont(font());
        FPainter.reset();
    }
    QAbstractScrollArea::changeEvent(event);
}

void TEditorWidget::showEvent(QShowEvent* event) {
    QAbstractScrollArea::showEvent(event);
    FShown.store(true);
}

void TEditorWidget::hideEvent(QHideEvent* event) {
    QAbstractScrollArea::hideEvent(event);
    FShown.store(false);
}

bool TEditorWidget::Save() {
    // Saving reads every row and may rewrite row attributes: the thread keeps off meanwhile.
    bool ok = false;
    FMemo.Document().WithReaderPaused([&] {
        if (FOnSave) {
            ok = FOnSave();
        } else if (FLines && !FLines->FileName().empty()) {
            ok = FLines->SaveToFile(FLines->FileName());
            if (!ok)
                FPrompt.ShowMessage(LangText("Messages", "012", "Could not save the file!") +
                                    "\n\"" + FLines->FileName() + "\"\n" + FLines->LastError());
        }
    });
    if (ok)
        MarkSaved();
    return ok;
}

void TEditorWidget::MarkSaved() {
    FMemo.Saved();
    viewport()->update(); // the change bars turn to saved
}

} // namespace zv
