// The main window's search commands: quick find bar, find next and previous, find all with
// its results list, replace one and all, highlighting, go to line.
#include "ui/WindowSearch.h"

#include "ui/ActionDef.h"

#include "ZvMemoControl/SearchReplace.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "platform/Prompt.h"
#include "shell/Language.h"
#include "shell/MainFormHelper.h"
#include "shell/Settings.h"
#include "shell/ZvIniFiles.h"
#include "syntax/ColourWalk.h"
#include "ui/EditorWidget.h"
#include "ui/MainWindow.h"
#include "ui/QuickFindBar.h"
#include "ui/SearchDialog.h"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QInputDialog>
#include <QListWidget>
#include <QMenu>
#include <QRegularExpression>
#include <QStatusBar>
#include <QTabWidget>

#include <algorithm>

namespace zv {

// Hits of one document that move with its edits (the results list's items).
class TFollowedHits final : public ITextListener {
public:
    explicit TFollowedHits(std::shared_ptr<TZvTextDocument> document)
        : Document(std::move(document)) {
        Document->AddListener(this);
    }
    ~TFollowedHits() override { Document->RemoveListener(this); }
    void TextChanged(const TTextChange& change, TRowRange) override {
        for (TSearchHit& hit : Hits) {
            hit.Start = MapPosition(hit.Start, change);
            hit.End = std::max(MapPosition(hit.End, change, true), hit.Start);
        }
    }
    void DocumentReset() override { Hits.clear(); }

    const std::shared_ptr<TZvTextDocument> Document;
    std::vector<TSearchHit> Hits;
};

namespace {

// The skip filters' questions, answered by the scanner a document has at the moment of the
// question (none once the document is gone or has no syntax: nothing is skipped). Views of
// other documents may paint with the search: their positions are only checked for range.
class TScanTokens final : public ISearchTokens {
public:
    explicit TScanTokens(const std::shared_ptr<TZvTextDocument>& document) : FDocument(document) {}
    bool InComment(TZvPos p) const override {
        TDocumentScan* scan = ScanFor(p);
        return scan && IsInComment(scan->Scanner(), p.X, p.Y);
    }
    bool InString(TZvPos p) const override {
        TDocumentScan* scan = ScanFor(p);
        return scan && IsInString(scan->Scanner(), p.X, p.Y);
    }

private:
    TDocumentScan* ScanFor(TZvPos p) const {
        const std::shared_ptr<TZvTextDocument> document = FDocument.lock();
        if (!document || p.Y < 0 || p.Y >= document->Lines().Count())
            return nullptr;
        auto* scan = dynamic_cast<TDocumentScan*>(document->Reader().get());
        return scan && scan->Styles() ? scan : nullptr;
    }

    std::weak_ptr<TZvTextDocument> FDocument;
};

QString Lang(const char* section, const char* key, const char* fallback) {
    return QString::fromStdString(LangText(section, key, fallback));
}

std::u16string ToU16(const QString& s) {
    return std::u16string(reinterpret_cast<const char16_t*>(s.utf16()),
                          static_cast<std::size_t>(s.size()));
}

QString FromU16(std::u16string_view s) {
    return QString::fromUtf16(s.data(), static_cast<qsizetype>(s.size()));
}

TZvPos TextEnd(const TZvMemoStrings& lines) {
    const int last = std::max(lines.Count() - 1, 0);
    return {lines.GetLineLength(last), last};
}

} // namespace

TWindowSearch::TWindowSearch(TMainWindow& window, TMainFormHelper& helper)
    : QObject(&window), FWindow(window), FHelper(helper), FBar(new TQuickFindBar),
      FBarDock(new QDockWidget(tr("Find"), &window)), FResults(new QListWidget),
      FResultsDock(new QDockWidget(tr("Find results"), &window)),
      FSearch(std::make_shared<TTextSearch>()) {
    FBarDock->setObjectName(QStringLiteral("FindDock"));
    FBarDock->setWidget(FBar);
    FBarDock->setTitleBarWidget(new QWidget(FBarDock));
    window.addDockWidget(Qt::BottomDockWidgetArea, FBarDock);
    FBarDock->hide();
    FResultsDock->setObjectName(QStringLiteral("FindResultsDock"));
    FResults->setObjectName(QStringLiteral("FindResults"));
    FResultsDock->setWidget(FResults);
    window.addDockWidget(Qt::BottomDockWidgetArea, FResultsDock);
    FResultsDock->hide();
    FBar->SetHighlightAll(SettingsIni().ReadBool("Search", "IncrementHighlightAll", true));
    FBar->FOnChanged = [this] {
        SettingsIni().WriteBool("Search", "IncrementHighlightAll", FBar->HighlightAll());
        SearchAsTyped();
    };
    FBar->FOnNext = [this](bool backward) {
        FromBar();
        FindNext(backward);
    };
    FBar->FOnReplace = [this] {
        FromBar();
        ReplaceOne();
    };
    FBar->FOnReplaceAll = [this] {
        FromBar();
        ReplaceAll();
    };
    FBar->FOnFindAll = [this] {
        FromBar();
        FindAll();
    };
    FBar->FOnClose = [this] {
        FBarDock->hide();
        if (TEditorWidget* editor = FWindow.ActiveEditor())
            editor->setFocus();
    };
    connect(FResults, &QListWidget::itemActivated, this,
            [this](QListWidgetItem* item) { ShowResult(FResults->row(item)); });
}

TWindowSearch::~TWindowSearch() = default;

void TWindowSearch::AddActions(TActionList& list) {
    const auto add = [&list](const TActionDef& def, std::function<void()> run) {
        list.Add(MakeAction(def, std::move(run)));
    };
    add({"FindInTextAction", "Search", "320", "&Find...", {"Ctrl+F"}, "edit-find"},
        [this] { OpenBar(false); });
    add({"ReplaceInTextAction", "Search", "321", "&Replace...", {"Ctrl+H"}},
        [this] { OpenBar(true); });
    add({"SearchDialogAction", "Search", "322", "Find and replace &dialog...", {"Shift+Ctrl+F"}},
        [this] { OpenDialog(false); });
    add({"FindNextAction", "Search", "323", "Find &next", {"F3"}}, [this] { FindNext(false); });
    add({"FindPreviousAction", "Search", "324", "Find &previous", {"Shift+F3"}},
        [this] { FindNext(true); });
    add({"FindAllAction", "Search", "325", "Find &all"}, [this] { FindAll(); });
    add({"UnHighlightFindAction", "Search", "326", "Remove &highlighting"}, [this] {
        for (int i = 0; i < static_cast<int>(FHelper.Documents().size()); ++i)
            if (TEditorWidget* editor = FWindow.EditorAt(i))
                editor->SetHighlight(nullptr);
    });
    add({"GotoSelectLineAction", "Search", "327", "&Go to line...", {"Ctrl+G"}}, [this] {
        bool ok = false;
        const QString where = QInputDialog::getText(
            &FWindow, tr("Go to line"), tr("Line or line:column"), QLineEdit::Normal, {}, &ok);
        if (ok)
            GoToLine(where);
    });
}

QString TWindowSearch::SeedText(TEditorWidget& editor) {
    TZvMemo& memo = editor.Memo();
    if (memo.HasSelection())
        return memo.SelStart().Y == memo.SelEnd().Y ? FromU16(memo.GetSelection()) : QString();
    return FromU16(memo.WordAtCursor());
}

void TWindowSearch::OpenBar(bool replace) {
    FBarDock->show();
    TEditorWidget* editor = FWindow.ActiveEditor();
    FBar->Open(replace, editor ? SeedText(*editor) : QString());
}

void TWindowSearch::OpenDialog(bool replace) {
    if (!FDialog)
        FDialog = new TSearchDialog(*this, &FWindow);
    TEditorWidget* editor = FWindow.ActiveEditor();
    FDialog->Open(replace, editor ? SeedText(*editor) : QString(),
                  editor && editor->Memo().HasSelection() &&
                      editor->Memo().SelStart().Y != editor->Memo().SelEnd().Y);
}

void TWindowSearch::FromBar() {
    FRequest = {};
    FRequest.Find = FBar->FindText();
    FRequest.Replace = FBar->ReplaceText();
    if (FBar->MatchCase())
        FRequest.Options |= frCase;
    if (FBar->WholeWord())
        FRequest.Options |= frWord;
    if (FBar->RegularExpression())
        FRequest.Options |= frRegExp;
    FFrom = {0, 0};
    FTo = TTextSearch::kTextEnd;
}

void TWindowSearch::ToBar() {
    const QSignalBlocker quiet(FBar->FindField());
    FBar->FindField()->setText(FRequest.Find);
    FBar->ReplaceField()->setText(FRequest.Replace);
}

bool TWindowSearch::Prepare() {
    if (FRequest.Find.isEmpty())
        return false;
    TEditorWidget* editor = FWindow.ActiveEditor();
    FTokens.reset();
    if (editor)
        FTokens = std::make_unique<TScanTokens>(editor->TextDocument());
    FSearch->SetTokens(FTokens.get());
    std::u16string find = ToU16(FRequest.Find);
    if (FRequest.Options & frRegExp)
        find = ProcessRegExReplace(find);
    if (FSearch->Prepare(find, FRequest.Options))
        return true;
    Status(QString::fromStdString(FSearch->Error()));
    return false;
}

TReplacement TWindowSearch::Replacement() const {
    std::u16string text = ToU16(FRequest.Replace);
    if (FRequest.Options & frRegExp)
        text = ProcessRegExReplace(text);
    return {std::move(text), FRequest.PreserveCase};
}

void TWindowSearch::Place(TEditorWidget& editor) {
    FFrom = {0, 0};
    FTo = TTextSearch::kTextEnd;
    editor.Run([&](TZvMemo& memo) {
        TZvPos start = memo.Caret(), end = start;
        memo.OrderedSelection(start, end);
        const bool selected = memo.HasSelection();
        switch (FRequest.Scope) {
        case TSearchRequest::scDocument: {
            const TZvPos last = TextEnd(memo.Lines());
            memo.SetTextCursor(FRequest.Up ? last.X : 0, FRequest.Up ? last.Y : 0);
            break;
        }
        case TSearchRequest::scCursor:
            memo.SetTextCursor(memo.FCurX, memo.FCurY);
            break;
        case TSearchRequest::scSelection:
            if (selected) {
                FFrom = start;
                FTo = end;
            }
            memo.SetTextCursor(FRequest.Up ? FTo.X : FFrom.X, FRequest.Up ? FTo.Y : FFrom.Y);
            break;
        }
    });
}

std::optional<TSearchHit> TWindowSearch::Next(TEditorWidget& editor, bool backward, bool mayWrap) {
    const TZvMemo& memo = editor.Memo();
    const TZvMemoStrings& lines = memo.Lines();
    TZvPos start = memo.Caret(), end = memo.Caret();
    if (memo.HasSelection())
        memo.OrderedSelection(start, end);
    std::optional<TSearchHit> hit = backward ? FSearch->FindBackward(lines, start, FFrom)
                                             : FSearch->FindForward(lines, end, FTo);
    const bool bounded = FFrom != TZvPos{0, 0} || FTo != TTextSearch::kTextEnd;
    const TMemIniFileW& settings = SettingsIni();
    if (hit || !mayWrap || bounded || !settings.ReadBool("Search", "Continue", true))
        return hit;
    if (settings.ReadBool("Search", "ContinueMessageBeep", false))
        QApplication::beep();
    if (settings.ReadBool("Search", "ContinueMessage", true) &&
        FHelper.Prompt(LangText("Messages", "021", "Message"),
                       LangText("Messages", "088", "Message"), pfYesNo, prYes) != prYes)
        return std::nullopt;
    return backward ? FSearch->FindBackward(lines, TextEnd(lines))
                    : FSearch->FindForward(lines, {0, 0});
}

bool TWindowSearch::FindFirst(const TSearchRequest& request) {
    FRequest = request;
    ToBar();
    TEditorWidget* editor = FWindow.ActiveEditor();
    if (!editor)
        return false;
    Place(*editor);
    return FindNext(FRequest.Up);
}

std::int64_t TWindowSearch::ReplaceAll(const TSearchRequest& request) {
    FRequest = request;
    ToBar();
    TEditorWidget* editor = FWindow.ActiveEditor();
    if (!editor || !Prepare())
        return 0;
    TZvPos from{0, 0}, to = TTextSearch::kTextEnd;
    const TZvMemo& memo = editor->Memo();
    if (request.Scope == TSearchRequest::scCursor)
        (request.Up ? to : from) = memo.Caret();
    else if (request.Scope == TSearchRequest::scSelection && memo.HasSelection())
        memo.OrderedSelection(from, to);
    std::int64_t count = 0;
    editor->Run([&](TZvMemo& target) {
        count = zv::ReplaceAll(target, *FSearch, Replacement(), from, to);
    });
    Status(Lang("FindReplace", "117", "%1 replaced").arg(count));
    return count;
}

std::int64_t TWindowSearch::ReplacePrompted(const TSearchRequest& request) {
    FRequest = request;
    ToBar();
    TEditorWidget* editor = FWindow.ActiveEditor();
    if (!editor || !Prepare())
        return 0;
    Place(*editor);
    const std::string question = LangText("FindReplace", "090", "Replace this Occurence?") +
                                 "\n\"" + FRequest.Find.toStdString() + "\" -> \"" +
                                 FRequest.Replace.toStdString() + "\"";
    const TReplacement replacement = Replacement();
    std::int64_t count = 0;
    for (;;) {
        const std::optional<TSearchHit> hit = Next(*editor, FRequest.Up, false);
        if (!hit)
            break;
        Select(*editor, *hit);
        const int answer = FHelper.Prompt(LangText("FindReplace", "092", "Confirmation"), question,
                                          pfYesNoToAll, prCancel);
        if (answer == prYesToAll) {
            editor->Run([&](TZvMemo& memo) {
                count += FRequest.Up ? zv::ReplaceAll(memo, *FSearch, replacement, FFrom, hit->End)
                                     : zv::ReplaceAll(memo, *FSearch, replacement, hit->Start, FTo);
            });
            break;
        }
        if (answer != prYes && answer != prNo)
            break;
        if (answer == prYes)
            editor->Run([&](TZvMemo& memo) {
                if (ReplaceSelection(memo, *FSearch, replacement)) {
                    ++count;
                    if (FRequest.Up)
                        memo.SetTextCursor(hit->Start.X, hit->Start.Y);
                }
            });
    }
    Status(Lang("FindReplace", "117", "%1 replaced").arg(count));
    return count;
}

int TWindowSearch::FindAll(const TSearchRequest& request) {
    FRequest = request;
    ToBar();
    return FindAll();
}

void TWindowSearch::Select(TEditorWidget& editor, const TSearchHit& hit) {
    editor.Run([&](TZvMemo& memo) { memo.SetSelection(hit.Start, hit.End); });
}

void TWindowSearch::ShowHighlight() {
    TEditorWidget* active = FWindow.ActiveEditor();
    for (int i = 0; i < static_cast<int>(FHelper.Documents().size()); ++i) {
        TEditorWidget* editor = FWindow.EditorAt(i);
        const bool same = active && editor->TextDocument() == active->TextDocument();
        editor->SetHighlight(same && FBar->HighlightAll() && !FSearch->Empty() ? FSearch : nullptr);
    }
}

void TWindowSearch::SearchAsTyped() {
    TEditorWidget* editor = FWindow.ActiveEditor();
    if (!editor)
        return;
    FromBar();
    if (FRequest.Find.isEmpty()) {
        FSearch->Prepare({}, 0);
        editor->Run([](TZvMemo& memo) { memo.ClearSelection(); });
        FBar->ShowFound(true);
        ShowHighlight();
        return;
    }
    if (!Prepare()) {
        FBar->ShowFound(false);
        return;
    }
    const std::optional<TSearchHit> hit = FSearch->FindForward(editor->Memo().Lines(), {0, 0});
    if (hit)
        Select(*editor, *hit);
    else
        QApplication::beep();
    FBar->ShowFound(hit.has_value());
    ShowHighlight();
}

bool TWindowSearch::FindNext(bool backward) {
    TEditorWidget* editor = FWindow.ActiveEditor();
    if (!editor)
        return false;
    // The selected text of one row becomes the text (not for a regular expression, whose
    // hits are not the expression); with nothing selected and no text, the word at the caret.
    const TZvMemo& memo = editor->Memo();
    const bool takeSelection = memo.HasSelection() && !(FRequest.Options & frRegExp) &&
                               SettingsIni().ReadBool("Search", "SelectedText", true);
    if (FRequest.Find.isEmpty() || takeSelection) {
        const QString seed = SeedText(*editor);
        if (!seed.isEmpty() && seed != FRequest.Find) {
            FRequest.Find = seed;
            ToBar();
        }
        if (FRequest.Find.isEmpty())
            return false;
    }
    if (!Prepare())
        return false;
    const std::optional<TSearchHit> hit = Next(*editor, backward, true);
    FBar->ShowFound(hit.has_value());
    ShowHighlight();
    if (!hit) {
        Status(Lang("Messages", "010", "") + " " + FBar->FindText());
        return false;
    }
    Select(*editor, *hit);
    return true;
}

bool TWindowSearch::ReplaceOne() {
    TEditorWidget* editor = FWindow.ActiveEditor();
    if (!editor || !Prepare())
        return false;
    bool replaced = false;
    editor->Run([&](TZvMemo& memo) { replaced = ReplaceSelection(memo, *FSearch, Replacement()); });
    FindNext(false);
    return replaced;
}

std::int64_t TWindowSearch::ReplaceAll() {
    TSearchRequest request = FRequest;
    const TEditorWidget* editor = FWindow.ActiveEditor();
    const bool rows = editor && editor->Memo().HasSelection() &&
                      editor->Memo().SelStart().Y != editor->Memo().SelEnd().Y;
    request.Scope = rows ? TSearchRequest::scSelection : TSearchRequest::scDocument;
    return ReplaceAll(request);
}

int TWindowSearch::FindAll() {
    TEditorWidget* editor = FWindow.ActiveEditor();
    FResults->clear();
    FHits.reset();
    if (!editor || !Prepare())
        return 0;
    FHits = std::make_unique<TFollowedHits>(editor->TextDocument());
    const TZvMemoStrings& lines = editor->Memo().Lines();
    FSearch->ForEach(lines, {0, 0}, TTextSearch::kTextEnd,
                     [&](const TSearchHit& hit, const TMatchGroups&) {
                         FHits->Hits.push_back(hit);
                         return true;
                     });
    for (const TSearchHit& hit : FHits->Hits)
        FResults->addItem(QStringLiteral("%1: %2")
                              .arg(hit.Start.Y + 1)
                              .arg(FromU16(lines.Get(hit.Start.Y)).trimmed()));
    FResultsDock->show();
    ShowHighlight();
    Status(tr("%1 found").arg(FHits->Hits.size()));
    return static_cast<int>(FHits->Hits.size());
}

void TWindowSearch::ShowResult(int index) {
    TEditorWidget* editor = FWindow.ActiveEditor();
    if (!FHits || index < 0 || index >= static_cast<int>(FHits->Hits.size()) || !editor ||
        editor->TextDocument() != FHits->Document)
        return;
    Select(*editor, FHits->Hits[static_cast<std::size_t>(index)]);
    editor->setFocus();
}

bool TWindowSearch::GoToLine(const QString& where) {
    TEditorWidget* editor = FWindow.ActiveEditor();
    if (!editor)
        return false;
    static const QRegularExpression kWhere(QStringLiteral("^\\s*(\\d+)\\s*(?::\\s*(\\d+)\\s*)?$"));
    const QRegularExpressionMatch m = kWhere.match(where);
    TZvMemo& memo = editor->Memo();
    const int line = m.hasMatch() ? m.captured(1).toInt() : 0;
    const int lineCount = std::max(memo.Lines().RealCount(), 1);
    if (line < 1 || line > lineCount) {
        Status(tr("Line %1 is out of range (1 to %2)").arg(where.trimmed()).arg(lineCount));
        return false;
    }
    const int column = m.captured(2).isEmpty() ? 1 : std::max(m.captured(2).toInt(), 1);
    editor->Run([&](TZvMemo& target) { target.acnGotoLine(line, column); });
    editor->setFocus();
    return true;
}

void TWindowSearch::Status(const QString& text) {
    FWindow.statusBar()->showMessage(text, 5000);
}

} // namespace zv
