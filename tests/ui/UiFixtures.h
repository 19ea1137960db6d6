// Shared by the window tests: a question answered from a script, and the main window shown
// and active as a user meets it.
#pragma once

#include "platform/Prompt.h"
#include "shell/MainFormHelper.h"
#include "support/ZvTestSupport.h"
#include "ui/Actions.h"
#include "ui/EditorWidget.h"
#include "ui/MainWindow.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace zvtest {

// Answers questions from a script (cancel once it runs out) and remembers what was asked
// and told, and each question's buttons.
class TScriptedPrompt : public zv::IPrompt {
public:
    int Prompt(const std::string&, const std::string& text, unsigned flags, int) override {
        Asked.push_back(text);
        Flags.push_back(flags);
        if (Answers.empty())
            return zv::prCancel;
        const int answer = Answers.front();
        Answers.pop_front();
        return answer;
    }
    void ShowMessage(const std::string& text) override { Asked.push_back(text); }
    std::deque<int> Answers;
    std::vector<std::string> Asked;
    std::vector<unsigned> Flags; // of the questions only
};

// The main window of `helper`, shown and active.
inline std::unique_ptr<zv::TMainWindow> ShownWindow(zv::TMainFormHelper& helper) {
    TheApp<QApplication>();
    auto window = std::make_unique<zv::TMainWindow>(helper);
    window->show();
    QApplication::setActiveWindow(window.get());
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    return window;
}

// Writes `bytes` to `file`, opens it in the window as the user's open does, and gives its
// editor the focus.
inline zv::TEditorWidget& OpenInWindow(zv::TMainFormHelper& helper, zv::TMainWindow& window,
                                       const std::filesystem::path& file,
                                       const std::string& bytes) {
    WriteAll(file, bytes);
    zv::TLoadFileArgs args;
    args.FileName = file.string();
    EXPECT_TRUE(helper.LoadFile(args));
    zv::TEditorWidget& editor = *window.ActiveEditor();
    editor.setFocus();
    return editor;
}

// Runs `action` as a click on its item in the menu named `menuName` (a menu of the bar or a
// submenu): the item must be there and enabled.
inline void ClickInMenu(zv::TMainWindow& window, const char* menuName, const char* action) {
    auto* menu = window.menuBar()->findChild<QMenu*>(QString::fromLatin1(menuName));
    ASSERT_NE(menu, nullptr) << menuName;
    QAction* item = window.Actions().Get(action);
    ASSERT_TRUE(menu->actions().contains(item)) << action << " is not in " << menuName;
    window.Actions().UpdateActions();
    ASSERT_TRUE(item->isEnabled()) << action;
    item->trigger();
}

// The output of the shell `pipeline` run on `input`, written to `file` and named by $1.
inline std::string ToolOutput(const std::filesystem::path& file, const std::string& input,
                              const std::string& pipeline) {
    WriteAll(file, input);
    int status = 0;
    const std::string out =
        RunOutput("sh -c '" + pipeline + "' sh '" + file.string() + "'", status);
    EXPECT_EQ(status, 0) << pipeline;
    return out;
}

// A test with the shown window of a helper that answers from a script, and files of its own
// folder opened as the user opens them.
class TShownWindowTest : public ::testing::Test {
protected:
    explicit TShownWindowTest(const std::string& folder) : temp(folder) {}
    void SetUp() override { window = ShownWindow(helper); }
    zv::TEditorWidget& Open(const std::string& name, const std::string& bytes) {
        return OpenInWindow(helper, *window, dir / name, bytes);
    }

    TTempDir temp;
    const std::filesystem::path dir = temp.Path();
    TScriptedPrompt prompt;
    zv::TMainFormHelper helper{prompt};
    std::unique_ptr<zv::TMainWindow> window;
};

// The editor's rows joined by LF, in UTF-8.
inline std::string EditorText(const zv::TEditorWidget& editor) {
    std::string text;
    for (int row = 0; row < editor.Memo().RowCount(); ++row) {
        const std::u16string_view line = editor.Memo().RowText(row);
        text += (row > 0 ? "\n" : "") +
                QString::fromUtf16(line.data(), static_cast<qsizetype>(line.size())).toStdString();
    }
    return text;
}

} // namespace zvtest
