// The window actions of the column block commands (clear, fill, insert before, numbers,
// statistics) and of aligning delimited lines, with the Edit submenu that shows them.
#include "ui/MainWindow.h"

#include "shell/Language.h"
#include "ui/ActionDef.h"
#include "ui/Actions.h"
#include "ui/ColumnDialogs.h"
#include "ui/EditorWidget.h"

#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>

namespace zv {
namespace {

QString Text(const char* section, const char* key, const char* english) {
    return QString::fromStdString(LangText(section, key, english));
}

std::u16string ToU16(const QString& text) {
    return {reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())};
}

// What the statistics message says of `stats`.
QString StatisticsText(const TZvMemo::TColumnStats& stats) {
    if (stats.Count == 0)
        return Text("Messages", "351", "The block holds no numbers.");
    const auto number = [](double v) { return QString::number(v, 'g', 15); };
    return Text("Messages", "350", "Numbers: %1, sum: %2, minimum: %3, maximum: %4, average: %5")
        .arg(stats.Count)
        .arg(number(stats.Sum), number(stats.Min), number(stats.Max), number(stats.Average()));
}

} // namespace

void TMainWindow::CreateColumnActions() {
    TActionList& list = FActions->List();
    // Block commands need a column block in a writable, unwrapped document; numbers go to a
    // caret list too.
    bool (*hasBlock)(const TZvMemo&) = [](const TZvMemo& m) {
        return !m.FReadOnly && !m.DocState().FWordWrap && m.FColumnMode && m.HasSelection();
    };
    bool (*hasPlaces)(const TZvMemo&) = [](const TZvMemo& m) {
        return !m.FReadOnly && !m.DocState().FWordWrap &&
               (m.FMultiEditMode || (m.FColumnMode && m.HasSelection()));
    };
    bool (*writable)(const TZvMemo&) = [](const TZvMemo& m) { return !m.FReadOnly; };
    const auto when = [this](bool (*can)(const TZvMemo&)) {
        return EditHandlers([](TZvMemo&) {}, can).second;
    };
    {
        auto [run, update] = EditHandlers([](TZvMemo& m) { m.acnColumnClear(); }, hasBlock);
        list.Add(MakeAction({"ColumnClearAction", "Edit", "560", "&Clear block"}, std::move(run),
                            std::move(update)));
    }
    // Fill and insert before ask for their text first; a cancel changes nothing.
    const auto askText = [this](const char* key, const char* caption,
                                void (*command)(TZvMemo&, std::u16string_view)) {
        return [this, key, caption, command] {
            bool ok = false;
            const QString text = QInputDialog::getText(
                this, Text("Actions", key, caption).remove(QLatin1Char('&')),
                Text("Misc", "479", "Text:"), QLineEdit::Normal, QString(), &ok);
            if (ok && !text.isEmpty())
                OnActiveEditor([&text, command](TEditorWidget& e) {
                    e.Run([&text, command](TZvMemo& m) { command(m, ToU16(text)); });
                });
        };
    };
    list.Add(MakeAction({"ColumnFillAction", "Edit", "561", "&Fill block..."},
                        askText("561", "&Fill block...",
                                [](TZvMemo& m, std::u16string_view t) { m.acnColumnFill(t); }),
                        when(hasBlock)));
    list.Add(
        MakeAction({"ColumnInsertBeforeAction", "Edit", "562", "&Insert before block..."},
                   askText("562", "&Insert before block...",
                           [](TZvMemo& m, std::u16string_view t) { m.acnColumnInsertBefore(t); }),
                   when(hasBlock)));
    list.Add(MakeAction(
        {"ColumnInsertNumbersAction", "Edit", "563", "Insert &numbers..."},
        [this] {
            TEditorWidget* editor = ActiveEditor();
            if (!editor)
                return;
            TNumbersDialog dialog(this, editor->Memo().FNumEveryLine);
            if (dialog.exec() != QDialog::Accepted)
                return;
            editor->Run([&dialog](TZvMemo& m) {
                m.FNumEveryLine = dialog.EveryLine();
                m.InsertNumbers(dialog.Start(), dialog.Step(), dialog.Hex());
            });
        },
        when(hasPlaces)));
    list.Add(MakeAction(
        {"ColumnStatisticsAction", "Edit", "564", "Block &statistics"},
        [this] {
            if (const TEditorWidget* editor = ActiveEditor())
                QMessageBox::information(
                    this, Text("Actions", "564", "Block statistics").remove(QLatin1Char('&')),
                    StatisticsText(editor->Memo().acnColumnStatistics()));
        },
        when(nullptr)));
    list.Add(MakeAction(
        {"ColumnAlignTextAction", "Edit", "565", "&Align text in columns..."},
        [this] {
            TEditorWidget* editor = ActiveEditor();
            if (!editor)
                return;
            TAlignDialog dialog(this);
            if (dialog.exec() != QDialog::Accepted || dialog.Separator().empty())
                return;
            editor->Run([&dialog](TZvMemo& m) {
                m.acnColumnAlignText(dialog.Separator(), dialog.Tabs(), dialog.RemoveSeparators());
            });
        },
        when(writable)));
}

void TMainWindow::AddColumnMenu(QMenu& edit) {
    TWindowActions& a = *FActions;
    a.AddTo(*a.AddSubMenu(edit, "122", "Column bloc&k", "ColumnMenu"),
            {"ColumnClearAction", "ColumnFillAction", "ColumnInsertBeforeAction",
             "ColumnInsertNumbersAction", "-", "ColumnStatisticsAction", "-",
             "ColumnAlignTextAction"});
}

} // namespace zv
