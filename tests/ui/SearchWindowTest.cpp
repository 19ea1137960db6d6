// Searching in the real window, with the keys a user presses: the quick find bar selects the
// first hit as the text is typed and paints every hit, F3 and Shift+F3 step through what find
// all lists (wrapping after the question), replace all writes what sed writes and one undo
// takes it back (the bytes on disk), find all's items follow edits, and go to line.
#include "UiFixtures.h"
#include "ZvMemoControl/TextSearch.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "shell/Settings.h"
#include "shell/ZvIniFiles.h"
#include "ui/QuickFindBar.h"
#include "ui/SearchDialog.h"
#include "ui/WindowSearch.h"

#include <QCheckBox>
#include <QComboBox>
#include <QInputDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStatusBar>
#include <QTabBar>
#include <QTimer>
#include <QToolButton>

namespace {

// The shipped syntax files, before the first look-up of the data root fixes it.
const bool kTreeRoot = ::setenv("ZEVRIT_ROOT", ZV_TEST_TREE, 1) == 0;

using zv::TSearchHit;
using zv::TZvPos;

const std::string kText = "alpha needle beta\n"
                          "no match here\n"
                          "needle needle; Needle\n"
                          "last line with a needle\n";

class SearchWindowTest : public zvtest::TShownWindowTest {
protected:
    SearchWindowTest() : TShownWindowTest("zv-search-ui") {}
    void SetUp() override {
        zv::TMemIniFileW settings;
        settings.WriteInteger("EditorMisc", "DefaultEncoding", 65001);
        helper.SetCustomize(settings);
        TShownWindowTest::SetUp();
        editor = &Open("text.txt", kText);
    }
    std::pair<TZvPos, TZvPos> Selection() const {
        TZvPos s, e;
        editor->Memo().OrderedSelection(s, e);
        return {s, e};
    }
    // Pixels of the viewport painted in the hit colour.
    int HitPixels() const {
        const QImage image = editor->viewport()->grab().toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                count += QColor(image.pixel(x, y)) == zv::TEditorWidget::kHitBack;
        return count;
    }
    QPushButton* Button(const QString& text) const {
        for (QPushButton* b : window->Search().Bar().findChildren<QPushButton*>())
            if (b->text() == text)
                return b;
        return nullptr;
    }

    const std::filesystem::path file = dir / "text.txt";
    zv::TEditorWidget* editor = nullptr;
};

TEST_F(SearchWindowTest, QuickFindSelectsAsTypedPaintsEveryHitAndShowsNotFound) {
    QTest::keyClick(editor, Qt::Key_F, Qt::ControlModifier);
    zv::TQuickFindBar& bar = window->Search().Bar();
    ASSERT_TRUE(bar.isVisible());
    ASSERT_EQ(QApplication::focusWidget(), bar.FindField());
    QTest::keyClicks(bar.FindField(), "need");
    EXPECT_EQ(Selection(), std::make_pair(TZvPos{6, 0}, TZvPos{10, 0}));
    QTest::keyClicks(bar.FindField(), "le;");
    EXPECT_EQ(Selection(), std::make_pair(TZvPos{7, 2}, TZvPos{14, 2}));
    QTest::keyClick(bar.FindField(), Qt::Key_Backspace);
    QApplication::processEvents();
    EXPECT_GT(HitPixels(), 100) << "the hits not selected are painted";
    EXPECT_NE(bar.FindField()->palette().color(QPalette::Base), zv::TQuickFindBar::kNotFoundBack);

    QTest::keyClicks(bar.FindField(), "zz");
    EXPECT_EQ(bar.FindField()->palette().color(QPalette::Base), zv::TQuickFindBar::kNotFoundBack);
    QApplication::processEvents();
    EXPECT_EQ(HitPixels(), 0);

    QTest::keyClick(bar.FindField(), Qt::Key_Escape);
    EXPECT_FALSE(bar.isVisible());
}

TEST_F(SearchWindowTest, F3VisitsWhatFindAllListsAndWrapsAfterTheQuestion) {
    QTest::keyClick(editor, Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(window->Search().Bar().FindField(), "needle");
    const int count = window->Search().FindAll();
    ASSERT_EQ(count, 5); // case-insensitive: "Needle" too
    std::vector<std::pair<TZvPos, TZvPos>> listed;
    for (int i = 0; i < count; ++i) {
        window->Search().Results().setCurrentRow(i);
        emit window->Search().Results().itemActivated(window->Search().Results().item(i));
        listed.push_back(Selection());
    }
    editor->setFocus();
    editor->Memo().SetTextCursor(0, 0);
    std::vector<std::pair<TZvPos, TZvPos>> forward;
    for (int i = 0; i < count; ++i) {
        QTest::keyClick(editor, Qt::Key_F3);
        forward.push_back(Selection());
    }
    EXPECT_EQ(forward, listed);
    // With the question off the search wraps at once, silently.
    zv::SettingsIni().WriteBool("Search", "ContinueMessage", false);
    QTest::keyClick(editor, Qt::Key_F3);
    zv::SettingsIni().WriteBool("Search", "ContinueMessage", true);
    EXPECT_EQ(Selection(), listed.front());
    EXPECT_TRUE(prompt.Asked.empty());
    editor->Memo().SetSelection(listed.back().first, listed.back().second);
    prompt.Answers = {zv::prYes};
    QTest::keyClick(editor, Qt::Key_F3);
    EXPECT_EQ(Selection(), listed.front()) << "wrapped to the first hit";
    EXPECT_EQ(prompt.Asked.size(), 1u);
    // Backward from the start wraps to the last hit, then walks back.
    prompt.Answers = {zv::prYes};
    std::vector<std::pair<TZvPos, TZvPos>> backward;
    for (int i = 0; i < count; ++i) {
        QTest::keyClick(editor, Qt::Key_F3, Qt::ShiftModifier);
        backward.push_back(Selection());
    }
    EXPECT_EQ(std::vector(backward.rbegin(), backward.rend()), listed);
    // Refused, the search stops where it was.
    prompt.Answers = {zv::prNo};
    QTest::keyClick(editor, Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(Selection(), listed.front());
    // A word the user selects becomes the text of F3.
    window->Search().Bar().FindField()->setText("alpha");
    editor->setFocus();
    editor->Memo().SetSelection({15, 2}, {21, 2});
    QTest::keyClick(editor, Qt::Key_F3);
    EXPECT_EQ(Selection(), std::make_pair(TZvPos{17, 3}, TZvPos{23, 3}));
    EXPECT_EQ(window->Search().Bar().FindText(), "Needle");
}

TEST_F(SearchWindowTest, ReplaceAllWritesWhatSedWritesAndOneUndoTakesItBack) {
    QTest::keyClick(editor, Qt::Key_H, Qt::ControlModifier);
    zv::TQuickFindBar& bar = window->Search().Bar();
    bar.FindField()->clear();
    QTest::keyClicks(bar.FindField(), "(n)eed(le)");
    bar.findChild<QToolButton*>("RegexToggle")->setChecked(true);
    bar.findChild<QToolButton*>("CaseToggle")->setChecked(true);
    QTest::keyClicks(bar.ReplaceField(), "\\2-\\1\\t$$");
    QTest::mouseClick(Button("Replace all"), Qt::LeftButton);
    QTest::keyClick(editor, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(zvtest::ReadAll(file),
              zvtest::RunOutput("sed -E 's/(n)eed(le)/\\2-\\1\\t$/g' " + file.string()));
    editor->setFocus();
    QTest::keyClick(editor, Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(editor, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(zvtest::ReadAll(file), kText);
}

TEST_F(SearchWindowTest, FoundItemsFollowEditsAndGoToLineTakesLineAndColumn) {
    QTest::keyClick(editor, Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(window->Search().Bar().FindField(), "last");
    ASSERT_EQ(window->Search().FindAll(), 1);
    editor->setFocus();
    editor->Memo().SetTextCursor(0, 0);
    QTest::keyClicks(editor, "new first line");
    QTest::keyClick(editor, Qt::Key_Return);
    QListWidget& results = window->Search().Results();
    emit results.itemActivated(results.item(0));
    EXPECT_EQ(Selection(), std::make_pair(TZvPos{0, 4}, TZvPos{4, 4}));

    const auto goTo = [&](const QString& where) {
        QTimer::singleShot(0, [where] {
            auto* dialog = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            dialog->setTextValue(where);
            dialog->accept();
        });
        QApplication::setActiveWindow(window.get()); // back from the last dialog
        QTest::keyClick(editor, Qt::Key_G, Qt::ControlModifier);
    };
    goTo("3: 7");
    EXPECT_EQ(editor->Memo().Caret(), (TZvPos{6, 2}));
    EXPECT_FALSE(editor->Memo().HasSelection());
    goTo("60");
    EXPECT_EQ(editor->Memo().Caret(), (TZvPos{6, 2})) << "out of range: the caret stays";
    EXPECT_TRUE(window->statusBar()->currentMessage().contains("out of range"))
        << window->statusBar()->currentMessage().toStdString();
}

zv::TSearchDialog& OpenDialog(QWidget* from) {
    QTest::keyClick(from, Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
    auto* dialog = qobject_cast<zv::TSearchDialog*>(QApplication::activeWindow());
    if (!dialog)
        dialog = from->window()->findChild<zv::TSearchDialog*>();
    EXPECT_NE(dialog, nullptr);
    return *dialog;
}

void Click(zv::TSearchDialog& dialog, const char* button) {
    QTest::mouseClick(dialog.findChild<QPushButton*>(button), Qt::LeftButton);
}

TEST_F(SearchWindowTest, DialogReplacesAsAnsweredAndRemembersItsHistory) {
    zv::TSearchDialog& dialog = OpenDialog(editor);
    ASSERT_TRUE(dialog.isVisible());
    dialog.findChild<QTabBar*>()->setCurrentIndex(1);
    dialog.FindCombo()->setEditText("needle");
    dialog.ReplaceCombo()->setEditText("pin");
    dialog.findChild<QCheckBox*>("Case")->setChecked(true);
    dialog.findChild<QComboBox*>("ScopeCombo")->setCurrentIndex(zv::TSearchRequest::scDocument);
    prompt.Answers = {zv::prYes, zv::prNo, zv::prYesToAll};
    Click(dialog, "ReplaceButton");
    ASSERT_EQ(prompt.Asked.size(), 3u);
    EXPECT_NE(prompt.Asked[0].find("\"needle\" -> \"pin\""), std::string::npos);
    editor->setFocus();
    QTest::keyClick(editor, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(zvtest::ReadAll(file), "alpha pin beta\n"
                                     "no match here\n"
                                     "needle pin; Needle\n"
                                     "last line with a pin\n");

    // A text with a line break survives the history's round trip through the settings.
    dialog.FindCombo()->setEditText(zv::ToFieldText("a\r\nb\tc"));
    dialog.close();
    dialog.Open(false, {}, false);
    EXPECT_EQ(zv::FromFieldText(dialog.FindCombo()->currentText()), "a\r\nb\tc");
    EXPECT_EQ(dialog.FindCombo()->count(), 3) << "the word it opened with, needle, the new text";
    EXPECT_TRUE(dialog.findChild<QCheckBox*>("Case")->isChecked() == false)
        << "the Find page keeps its own options";
    dialog.findChild<QTabBar*>()->setCurrentIndex(1);
    EXPECT_TRUE(dialog.findChild<QCheckBox*>("Case")->isChecked());
    // A lower limit trims the list at the next close, not before.
    zv::SettingsIni().WriteInteger("Search", "FindHistoryMax", 1);
    EXPECT_EQ(dialog.FindCombo()->count(), 3);
    dialog.close();
    EXPECT_EQ(
        zv::SplitHistory(zv::SettingsIni().ReadString("Find", "FindMRU", std::u16string_view()))
            .size(),
        1);
}

TEST_F(SearchWindowTest, SkipCommentsAndStringsAskTheScanner) {
    const std::filesystem::path code = temp.Path() / "code.c";
    zvtest::WriteAll(code, "int x; /* x in a comment */\nchar* s = \"x\"; // x\nx = 1;\n");
    zv::TLoadFileArgs args;
    args.FileName = code.string();
    ASSERT_TRUE(helper.LoadFile(args));
    editor = window->ActiveEditor();
    zv::TSearchRequest request;
    request.Find = "x";
    request.Options = zv::frCase | zv::frWord;
    request.Scope = zv::TSearchRequest::scDocument;
    EXPECT_EQ(window->Search().FindAll(request), 5);
    request.Options |= zv::frSkipComments;
    EXPECT_EQ(window->Search().FindAll(request), 3);
    request.Options |= zv::frSkipStrings;
    EXPECT_EQ(window->Search().FindAll(request), 2);
}

} // namespace
