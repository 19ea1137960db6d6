// The text commands of the editor as window actions (case, lines, sort, blanks and tabs,
// comments, alignment, markup, date and word count), and the Edit and Format submenus
// that show them.
#include "ui/MainWindow.h"

#include "ZvMemoControl/JsonFormat.h"
#include "shell/Language.h"
#include "ui/ActionDef.h"
#include "ui/Actions.h"
#include "ui/EditorWidget.h"
#include "ui/SortDialog.h"

#include <QInputDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>

namespace zv {

namespace {

// Tells why the text is not JSON and where.
void ShowJsonError(QWidget* parent, const TJsonError& error) {
    const char* reasons[][2] = {{"343", "a character that cannot stand there"},
                                {"344", "the text ends too early"},
                                {"345", "a control character or a bad escape in a string"},
                                {"346", "a number without digits"}};
    const auto* reason = reasons[static_cast<int>(error.Problem) - 1];
    QMessageBox::warning(
        parent, QString::fromStdString(LangText("Messages", "021", "Message")),
        QString::fromStdString(
            LangText("Messages", "342", "The text is not JSON: %3, at line %1, column %2."))
            .arg(error.Line)
            .arg(error.Column)
            .arg(QString::fromStdString(LangText("Messages", reason[0], reason[1]))));
}

} // namespace

void TMainWindow::CreateTextActions() {
    TActionList& list = FActions->List();
    // Every command here but the word count changes the text: writable documents only.
    bool (*canChange)(const TZvMemo&) = [](const TZvMemo& m) { return !m.FReadOnly; };
    const auto change = [this, &list, canChange](const TActionDef& def, TMemoCommand command) {
        auto [run, update] = EditHandlers(command, canChange);
        list.Add(MakeAction(def, std::move(run), std::move(update)));
    };

    // Edit > Convert case
    change({"UppercaseAction", "Edit", "330", "&Upper case"}, [](TZvMemo& m) { m.acnUpperCase(); });
    change({"LowercaseAction", "Edit", "331", "&Lower case"}, [](TZvMemo& m) { m.acnLowerCase(); });
    change({"InvertCaseAction", "Edit", "332", "&Invert case"},
           [](TZvMemo& m) { m.acnInvertCase(); });
    change({"CapitalizeAction", "Edit", "333", "&Capitalize"},
           [](TZvMemo& m) { m.acnCapitalize(); });

    // Edit > Lines
    change({"MoveLinesUpAction", "Edit", "334", "Move lines &up"},
           [](TZvMemo& m) { m.acnMoveLinesUp(); });
    change({"MoveLinesDownAction", "Edit", "335", "Move lines &down"},
           [](TZvMemo& m) { m.acnMoveLinesDown(); });
    // The number of copies is asked first; a cancel changes nothing.
    std::function<bool()> writable = EditHandlers([](TZvMemo&) {}, canChange).second;
    list.Add(MakeAction(
        {"DuplicateLinesNTimesAction", "Edit", "358", "Duplicate lines N ti&mes..."},
        [this] {
            bool ok = false;
            const int times = QInputDialog::getInt(
                this,
                QString::fromStdString(LangText("Actions", "358", "Duplicate lines"))
                    .remove(QLatin1Char('&')),
                QString::fromStdString(LangText("Misc", "421", "Copies:")), 1, 1, 10000, 1, &ok);
            if (ok)
                OnActiveEditor([times](TEditorWidget& e) {
                    e.Run([times](TZvMemo& m) { m.acnDuplicateLineTimes(times); });
                });
        },
        std::move(writable)));
    change({"JoinLinesAction", "Edit", "336", "&Join lines"}, [](TZvMemo& m) { m.acnJoinLines(); });
    change({"SplitLinesAction", "Edit", "337", "&Split lines at the margin"},
           [](TZvMemo& m) { m.acnSplitLines(); });
    change({"DeleteBlankLinesAction", "Edit", "338", "Delete &blank lines"},
           [](TZvMemo& m) { m.acnDeleteBlankLines(); });
    change({"DeleteRedundantBlankLinesAction", "Edit", "339", "Delete &redundant blank lines"},
           [](TZvMemo& m) { m.acnCompressLines(true); });
    change({"DeleteDuplicateLinesAction", "Edit", "340", "Delete du&plicate lines"},
           [](TZvMemo& m) { m.acnDeleteDuplicateLines(); });
    change({"DeleteToEndOfLineAction", "Edit", "341", "Delete to line &end"},
           [](TZvMemo& m) { m.acnDeleteToEndOfLine(); });
    change({"DeleteToBeginOfLineAction", "Edit", "342", "Delete to line s&tart"},
           [](TZvMemo& m) { m.acnDeleteToBeginOfLine(); });

    // Edit > Sort
    change({"SortLinesAction", "Edit", "343", "&Ascending"},
           [](TZvMemo& m) { m.acnSortSelectedLines(); });
    change({"SortLinesDescAction", "Edit", "344", "&Descending"},
           [](TZvMemo& m) { m.acnSortSelectedLinesDesc(); });
    change({"SortLinesNumericAction", "Edit", "345", "&Numeric ascending"},
           [](TZvMemo& m) { m.acnSortSelectedLinesNumeric(); });
    change({"SortLinesNumericDescAction", "Edit", "346", "N&umeric descending"},
           [](TZvMemo& m) { m.acnSortSelectedLinesNumericDesc(); });

    // The dialog's "..." buttons take the selection's columns.
    list.Add(MakeAction(
        {"AdvancedSortAction", "Edit", "505", "Ad&vanced sort..."},
        [this] {
            TEditorWidget* editor = ActiveEditor();
            if (!editor)
                return;
            const TZvMemo& memo = editor->Memo();
            const bool selected = memo.HasSelection();
            const int from = std::min(memo.SelStart().X, memo.SelEnd().X);
            const int to = std::max(memo.SelStart().X, memo.SelEnd().X);
            TSortDialog dialog(this, selected ? from + 1 : 0,
                               selected ? std::max(to, from + 1) : 0);
            if (dialog.exec() != QDialog::Accepted || dialog.Keys().empty())
                return;
            const auto keys = dialog.Keys();
            const bool unique = dialog.RemoveDuplicates();
            editor->Run([&](TZvMemo& m) { m.acnAdvancedSort(keys, unique); });
        },
        EditHandlers([](TZvMemo&) {}, canChange).second));

    change({"TimeDateAction", "Edit", "356", "Insert date and ti&me"},
           [](TZvMemo& m) { m.acnInsertDateTime(); });

    // Format
    change({"IndentByFoldAction", "Format", "622", "Indent by f&old level"},
           [](TZvMemo& m) { m.acnIndentByFold(); });
    change({"RemoveTrailingSpacesAction", "Format", "347", "Remove &trailing spaces"},
           [](TZvMemo& m) { m.acnRemoveTrailingWhiteSpaces(); });
    change({"ConvertTabsToSpacesAction", "Format", "348", "Tabs to &spaces"},
           [](TZvMemo& m) { m.acnConvertTabsToSpaces(); });
    change({"ConvertSpacesToTabsAction", "Format", "349", "Spaces to t&abs"},
           [](TZvMemo& m) { m.acnConvertSpacesToTabs(); });
    change({"CommentAction", "Format", "350", "Toggle &comment", {"Ctrl+/"}},
           [](TZvMemo& m) { m.ToggleCommentBlock(); });
    change({"LeftAlignBlockAction", "Format", "351", "Align &left"},
           [](TZvMemo& m) { m.acnBlockAlignLeft(); });
    change({"CenterAlignBlockAction", "Format", "352", "Align ce&ntre"},
           [](TZvMemo& m) { m.acnBlockAlignCenter(); });
    change({"RightAlignBlockAction", "Format", "353", "Align &right"},
           [](TZvMemo& m) { m.acnBlockAlignRight(); });
    change({"ReformatParagraphAction", "Format", "506", "Re&format paragraph"},
           [](TZvMemo& m) { m.acnReformatParagraph(); });
    change({"StripTagsAction", "Format", "354", "Strip ta&gs"},
           [](TZvMemo& m) { m.acnStripTags(); });
    change({"AddHtmlLineBreaksAction", "Format", "355", "Add &HTML line breaks"},
           [](TZvMemo& m) { m.acnAddHtmlLineBreaks(); });

    // Format > JSON: one tab width a level; text that is not JSON is told, not changed.
    const auto json = [this, &list, canChange](const TActionDef& def, bool pretty) {
        list.Add(MakeAction(
            def,
            [this, pretty] {
                OnActiveEditor([this, pretty](TEditorWidget& e) {
                    TJsonError error;
                    e.Run([&](TZvMemo& m) {
                        pretty ? m.acnJSONPrettyPrint(m.DocState().FTabSize, &error)
                               : m.acnJSONMinify(&error);
                    });
                    if (error.Problem != TJsonProblem::None)
                        ShowJsonError(this, error);
                });
            },
            EditHandlers([](TZvMemo&) {}, canChange).second));
    };
    json({"JsonPrettyPrintAction", "Format", "500", "&Pretty print"}, true);
    json({"JsonMinifyAction", "Format", "501", "&Minify"}, false);

    // Format > Remove: the characters to remove are asked first; a cancel changes nothing.
    list.Add(MakeAction(
        {"RemoveCharactersAction", "Format", "502", "&Characters..."},
        [this] {
            bool ok = false;
            const QString chars = QInputDialog::getText(
                this,
                QString::fromStdString(LangText("Actions", "502", "Characters"))
                    .remove(QLatin1Char('&')),
                QString::fromStdString(LangText("Actions", "507", "Characters to remove:")),
                QLineEdit::Normal, QString(), &ok);
            if (ok && !chars.isEmpty())
                OnActiveEditor([&chars](TEditorWidget& e) {
                    e.Run([&chars](TZvMemo& m) {
                        m.acnRemoveCharactersFromText(
                            std::u16string_view(reinterpret_cast<const char16_t*>(chars.utf16()),
                                                static_cast<std::size_t>(chars.size())));
                    });
                });
        },
        EditHandlers([](TZvMemo&) {}, canChange).second));
    change({"RemoveZeroWidthSpacesAction", "Format", "503", "&Zero-width spaces"},
           [](TZvMemo& m) { m.acnRemoveZeroWidthSpaces(); });
    list.Add(MakeAction(
        {"CheckZeroWidthSpacesAction", "Format", "504", "Chec&k for zero-width spaces"},
        [this] {
            const TEditorWidget* editor = ActiveEditor();
            if (!editor)
                return;
            const bool found = editor->Memo().CheckForZeroWidthSpaces();
            QMessageBox::information(
                this, QString::fromStdString(LangText("Messages", "021", "Message")),
                QString::fromStdString(
                    found ? LangText("Actions", "508", "The text holds zero-width spaces.")
                          : LangText("Actions", "509", "The text holds no zero-width spaces.")));
        },
        EditHandlers([](TZvMemo&) {}).second));

    // Tools: the count is told, the text stays.
    std::function<bool()> hasFocus = EditHandlers([](TZvMemo&) {}).second;
    list.Add(MakeAction(
        {"WordCountAction", "Tools", "357", "&Word count"},
        [this] {
            const TEditorWidget* editor = ActiveEditor();
            if (!editor)
                return;
            const TZvMemo::TWordCount n = editor->Memo().acnWordCount();
            QMessageBox::information(
                this,
                QString::fromStdString(LangText("Actions", "357", "Word count"))
                    .remove(QLatin1Char('&')),
                QString::fromStdString(
                    LangText("Misc", "420", "Words: %1, lines: %2, characters: %3"))
                    .arg(n.Words)
                    .arg(n.Lines)
                    .arg(n.Chars));
        },
        std::move(hasFocus)));
}

void TMainWindow::AddTextMenus(QMenu& edit, QMenu& format) {
    TWindowActions& a = *FActions;
    edit.addSeparator();
    a.AddTo(*a.AddSubMenu(edit, "105", "Co&nvert case", "ConvertCaseMenu"),
            {"UppercaseAction", "LowercaseAction", "InvertCaseAction", "CapitalizeAction"});
    a.AddTo(*a.AddSubMenu(edit, "106", "L&ines", "LinesMenu"),
            {"MoveLinesUpAction", "MoveLinesDownAction", "DuplicateLinesNTimesAction", "-",
             "JoinLinesAction", "SplitLinesAction", "-", "DeleteBlankLinesAction",
             "DeleteRedundantBlankLinesAction", "DeleteDuplicateLinesAction", "-",
             "DeleteToEndOfLineAction", "DeleteToBeginOfLineAction"});
    a.AddTo(*a.AddSubMenu(edit, "107", "&Sort", "SortMenu"),
            {"SortLinesAction", "SortLinesDescAction", "SortLinesNumericAction",
             "SortLinesNumericDescAction", "-", "AdvancedSortAction"});
    a.AddTo(edit, {"TimeDateAction"});
    a.AddTo(format, {"IndentByFoldAction", "-", "RemoveTrailingSpacesAction",
                     "ConvertTabsToSpacesAction", "ConvertSpacesToTabsAction", "-", "CommentAction",
                     "-", "LeftAlignBlockAction", "CenterAlignBlockAction", "RightAlignBlockAction",
                     "ReformatParagraphAction", "-", "StripTagsAction", "AddHtmlLineBreaksAction"});
    a.AddTo(*a.AddSubMenu(format, "118", "&JSON", "JsonMenu"),
            {"JsonPrettyPrintAction", "JsonMinifyAction"});
    a.AddTo(
        *a.AddSubMenu(format, "119", "R&emove", "RemoveMenu"),
        {"RemoveCharactersAction", "RemoveZeroWidthSpacesAction", "CheckZeroWidthSpacesAction"});
}

} // namespace zv
