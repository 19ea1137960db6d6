// The main window's search commands: quick find bar, find next and previous, find all with
// its results list, replace one and all, highlighting, go to line.
#include "ui/WindowSearch.h"

#include "ZvMemoControl/SearchReplace.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "platform/Prompt.h"
#include "shell/Language.h"
#include "shell/MainFormHelper.h"
#include "ui/EditorWidget.h"
#include "ui/MainWindow.h"
#include "ui/QuickFindBar.h"

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
    FBar->FOnChanged = [this] { SearchAsTyped(); };
    FBar->FOnNext = [this](bool backward) { FindNext(backward); };
    FBar->FOnReplace = [this] { ReplaceOne(); };
    FBar->FOnReplaceAll = [this] { ReplaceAll(); };
    FBar->FOnFindAll = [this] { FindAll(); };
    FBar->FOnClose = [this] {
        FBarDock->hide();
        if (TEditorWidget* editor = FWindow.ActiveEditor())
            editor->setFocus();
    };
    connect(FResults, &QListWidget::itemActivated, this,
            [this](QListWidgetItem* item) { ShowResult(FResults->row(item)); });
}

TWindowSearch::~TWindowSearch() = default;

void TWindowSearch::AddActions(QMenu* menu) {
    const auto add = [&](const char* name, const QString& caption, const QKeySequence& key,
                         const std::function<void()>& slot) {
        QAction* action = menu->addAction(caption);
        action->setObjectName(QString::fromLatin1(name));
        action->setShortcut(key);
        connect(action, &QAction::triggered, this, slot);
    };
    add("FindAction", tr("&Find..."), QKeySequence(Qt::CTRL | Qt::Key_F),
        [this] { OpenBar(false); });
    add("ReplaceAction", tr("&Replace..."), QKeySequence(Qt::CTRL | Qt::Key_H),
        [this] { OpenBar(true); });
    add("FindNextAction", tr("Find &next"), QKeySequence(Qt::Key_F3), [this] { FindNext(false); });
    add("FindPreviousAction", tr("Find &previous"), QKeySequence(Qt::SHIFT | Qt::Key_F3),
        [this] { FindNext(true); });
    add("FindAllAction", tr("Find &all"), {}, [this] { FindAll(); });
    add("UnHighlightAction", tr("Remove &highlighting"), {}, [this] {
        for (int i = 0; i < FWindow.TabGroup()->count(); ++i)
            FWindow.EditorAt(i)->SetHighlight(nullptr);
    });
    add("GoToLineAction", tr("&Go to line..."), QKeySequence(Qt::CTRL | Qt::Key_G), [this] {
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

bool TWindowSearch::Prepare() {
    const QString text = FBar->FindText();
    if (text.isEmpty())
        return false;
    TZvFindOptions options = 0;
    if (FBar->MatchCase())
        options |= frCase;
    if (FBar->WholeWord())
        options |= frWord;
    std::u16string find = ToU16(text);
    if (FBar->RegularExpression()) {
        options |= frRegExp;
        find = ProcessRegExReplace(find);
    }
    if (FSearch->Prepare(find, options))
        return true;
    Status(QString::fromStdString(FSearch->Error()));
    return false;
}

void TWindowSearch::Select(TEditorWidget& editor, const TSearchHit& hit) {
    editor.Run([&](TZvMemo& memo) { memo.SetSelection(hit.Start, hit.End); });
}

void TWindowSearch::ShowHighlight() {
    TEditorWidget* active = FWindow.ActiveEditor();
    for (int i = 0; i < FWindow.TabGroup()->count(); ++i) {
        TEditorWidget* editor = FWindow.EditorAt(i);
        const bool same = active && editor->TextDocument() == active->TextDocument();
        editor->SetHighlight(same && FBar->HighlightAll() && !FSearch->Empty() ? FSearch : nullptr);
    }
}

void TWindowSearch::SearchAsTyped() {
    TEditorWidget* editor = FWindow.ActiveEditor();
    if (!editor)
        return;
    if (FBar->FindText().isEmpty()) {
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
    if (FBar->FindText().isEmpty()) {
        const QString seed = SeedText(*editor);
        if (seed.isEmpty())
            return false;
        const QSignalBlocker quiet(FBar->FindField());
        FBar->FindField()->setText(seed);
    }
    if (!Prepare())
        return false;
    TZvMemo& memo = editor->Memo();
    const TZvMemoStrings& lines = memo.Lines();
    TZvPos start = memo.Caret(), end = memo.Caret();
    if (memo.HasSelection())
        memo.OrderedSelection(start, end);
    std::optional<TSearchHit> hit =
        backward ? FSearch->FindBackward(lines, start) : FSearch->FindForward(lines, end);
    if (!hit && FHelper.Prompt(LangText("Messages", "021", "Message"),
                               LangText("Messages", "088", "Message"), pfYesNo, prYes) == prYes)
        hit = backward ? FSearch->FindBackward(lines, TextEnd(lines))
                       : FSearch->FindForward(lines, {0, 0});
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
    std::u16string replacement = ToU16(FBar->ReplaceText());
    if (FSearch->Options() & frRegExp)
        replacement = ProcessRegExReplace(replacement);
    bool replaced = false;
    editor->Run([&](TZvMemo& memo) {
        replaced = ReplaceSelection(memo, *FSearch, {replacement, false});
    });
    FindNext(false);
    return replaced;
}

std::int64_t TWindowSearch::ReplaceAll() {
    TEditorWidget* editor = FWindow.ActiveEditor();
    if (!editor || !Prepare())
        return 0;
    std::u16string replacement = ToU16(FBar->ReplaceText());
    if (FSearch->Options() & frRegExp)
        replacement = ProcessRegExReplace(replacement);
    std::int64_t count = 0;
    editor->Run([&](TZvMemo& memo) {
        TZvPos from{0, 0}, to = TTextSearch::kTextEnd;
        if (memo.HasSelection() && memo.SelStart().Y != memo.SelEnd().Y)
            memo.OrderedSelection(from, to);
        count = zv::ReplaceAll(memo, *FSearch, {replacement, false}, from, to);
    });
    Status(Lang("FindReplace", "117", "%1 replaced").arg(count));
    return count;
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
    editor->Run([&](TZvMemo& target) {
        const TZvPos p = target.Wrapped({column - 1, line - 1});
        target.SetTextCursor(std::min(p.X, target.RowLength(p.Y)), p.Y);
    });
    editor->setFocus();
    return true;
}

void TWindowSearch::Status(const QString& text) {
    FWindow.statusBar()->showMessage(text, 5000);
}

} // namespace zv
