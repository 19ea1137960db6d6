// The window's commands on marked lines (Bookmarks menu), the clipboard variants and inserts
// (Edit menu: text, a file decoded as opening it does, HTML links to files) and the font
// commands (View menu).
#include "ui/MainWindow.h"

#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "shell/Language.h"
#include "shell/MainFormHelper.h"
#include "ui/ActionDef.h"
#include "ui/Actions.h"
#include "ui/EditorWidget.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>
#include <QUrl>

namespace zv {
namespace {

std::u16string ToU16(const QString& s) {
    return {reinterpret_cast<const char16_t*>(s.utf16()), static_cast<std::size_t>(s.size())};
}

QString Caption(const char* key, const char* fallback) {
    return QString::fromStdString(LangText("Actions", key, fallback)).remove(QLatin1Char('&'));
}

// A link to `file` named by its file name: relative to the folder of `documentPath` when the
// document has a path, else a file URL. The path is percent-encoded, the name escaped.
QString HtmlLink(const QString& file, const std::string& documentPath) {
    const QString href = documentPath.empty()
                             ? QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded)
                             : QString::fromLatin1(QUrl::toPercentEncoding(
                                   QFileInfo(QString::fromStdString(documentPath))
                                       .absoluteDir()
                                       .relativeFilePath(file),
                                   "/-._~"));
    return QStringLiteral("<a href=\"%1\">%2</a>")
        .arg(href, QFileInfo(file).fileName().toHtmlEscaped());
}

// The files the user picks in a file dialog titled by action `key`, starting in the folder
// of `documentPath`; empty when cancelled.
QStringList PickFiles(QWidget* parent, const char* key, const char* fallback,
                      const std::string& documentPath, bool several) {
    QFileDialog dialog(parent, Caption(key, fallback),
                       documentPath.empty()
                           ? QString()
                           : QFileInfo(QString::fromStdString(documentPath)).absolutePath());
    dialog.setObjectName(QStringLiteral("InsertFileDialog"));
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setFileMode(several ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles() : QStringList();
}

} // namespace

void TMainWindow::CreateClipActions() {
    TActionList& list = FActions->List();
    const auto writable = [](const TZvMemo& m) { return !m.FReadOnly; };
    const auto edit = [this, &list](const TActionDef& def, TMemoCommand command,
                                    bool (*can)(const TZvMemo&) = nullptr) {
        auto [run, update] = EditHandlers(command, can);
        list.Add(MakeAction(def, std::move(run), std::move(update)));
    };
    // A command on the active editor's view (not its text), enabled while there is one.
    const auto view = [this, &list](const TActionDef& def,
                                    std::function<void(TEditorWidget&)> command) {
        list.Add(MakeAction(
            def, [this, command] { OnActiveEditor(command); },
            [this] { return ActiveEditor() != nullptr; }));
    };
    const auto documentPath = [this] {
        const TDocument* doc = FHelper.ActiveDocument();
        return doc ? doc->FFilePath : std::string();
    };
    const auto insert = [this](const QString& text) {
        OnActiveEditor([&text](TEditorWidget& e) {
            e.Run([&text](TZvMemo& m) { m.acnInsertText(ToU16(text)); });
        });
    };
    std::function<bool()> canInsert = EditHandlers([](TZvMemo&) {}, writable).second;

    // Bookmarks: the marked lines
    edit({"BookmarkDuplicatedLinesAction", "Bookmarks", "580", "Mark duplicated l&ines"},
         [](TZvMemo& m) { m.acnBookmarkDuplicatedLines(); });
    edit(
        {"DelBookmarkedLinesAction", "Bookmarks", "581", "&Delete marked lines"},
        [](TZvMemo& m) { m.acnDelBookmarkedLines(); }, writable);
    edit(
        {"CutBookmarkedLinesAction", "Bookmarks", "582", "C&ut marked lines"},
        [](TZvMemo& m) { m.acnCutBookmarkedLines(); }, writable);
    edit({"CopyBookmarkedLinesAction", "Bookmarks", "583", "C&opy marked lines"},
         [](TZvMemo& m) { m.acnCopyBookmarkedLines(); });
    edit({"ClearBookmarksAction", "Bookmarks", "584", "Clear all mar&ks"},
         [](TZvMemo& m) { m.acnClearBookmarks(); });

    // Edit: clipboard variants
    edit({"CopyAndAppendAction", "Edit", "585", "Copy and &append"},
         [](TZvMemo& m) { m.acnCopyAndAppend(); });
    edit(
        {"CutAndAppendAction", "Edit", "586", "C&ut and append"},
        [](TZvMemo& m) { m.acnCutAndAppend(); }, writable);
    edit(
        {"CopyAndPasteAction", "Edit", "587", "Copy and &paste"},
        [](TZvMemo& m) { m.acnCopyAndPaste(); }, writable);
    edit(
        {"PasteAndSelectAction", "Edit", "588", "Paste and &select"},
        [](TZvMemo& m) { m.acnPasteAndSelect(); }, writable);

    // Edit > Insert: a cancel inserts nothing.
    list.Add(MakeAction(
        {"InsertTextAction", "Edit", "589", "&Text..."},
        [this, insert] {
            bool ok = false;
            const QString text = QInputDialog::getMultiLineText(
                this, Caption("589", "Text"),
                QString::fromStdString(LangText("Misc", "490", "Text to insert:")), QString(), &ok);
            if (ok)
                insert(text);
        },
        canInsert));
    list.Add(MakeAction(
        {"InsertFileAction", "Edit", "590", "&File..."},
        [this, insert, documentPath] {
            const QStringList files = PickFiles(this, "590", "File", documentPath(), false);
            if (files.isEmpty())
                return;
            TZvMemoStrings lines;
            std::string error;
            if (!FHelper.DecodeFile(files.front().toStdString(), 50001, lines, error)) {
                QMessageBox::warning(
                    this, QString::fromStdString(LangText("Messages", "021", "Message")),
                    QString::fromStdString(LangText("Messages", "011", "Could not open the file!") +
                                           "\n" + error));
                return;
            }
            const std::u16string text = lines.GetTextWithLinefeeds();
            insert(QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size())));
        },
        canInsert));
    const auto links = [&](const TActionDef& def, bool several) {
        list.Add(MakeAction(
            def,
            [this, insert, documentPath, several, key = def.Key, caption = def.Caption] {
                const std::string path = documentPath();
                QStringList out;
                for (const QString& file : PickFiles(this, key, caption, path, several))
                    out << HtmlLink(file, path);
                if (!out.isEmpty())
                    insert(out.join(QLatin1Char('\n')));
            },
            canInsert));
    };
    links({"InsertFileAsHtmlLinkAction", "Edit", "591", "File as HTML &link..."}, false);
    links({"InsertFilesAsHtmlLinkAction", "Edit", "592", "Files as HTML lin&ks..."}, true);

    // View: fonts
    view({"IncreaseFontSizeAction", "View", "593", "&Bigger font"},
         [](TEditorWidget& e) { e.StepFontSize(1); });
    view({"DecreaseFontSizeAction", "View", "594", "S&maller font"},
         [](TEditorWidget& e) { e.StepFontSize(-1); });
    view({"ToggleFontAction", "View", "595", "Toggle fo&nt"},
         [](TEditorWidget& e) { e.ToggleFont(); });
}

void TMainWindow::AddClipMenus(QMenu& edit, QMenu& view, QMenu& bookmarks) {
    TWindowActions& a = *FActions;
    a.AddTo(*a.AddSubMenu(edit, "124", "Clipboard e&xtras", "ClipboardMenu"),
            {"CopyAndAppendAction", "CutAndAppendAction", "CopyAndPasteAction",
             "PasteAndSelectAction"});
    a.AddTo(*a.AddSubMenu(edit, "123", "Insert &file or text", "InsertMenu"),
            {"InsertTextAction", "InsertFileAction", "InsertFileAsHtmlLinkAction",
             "InsertFilesAsHtmlLinkAction"});
    a.AddTo(view, {"-", "IncreaseFontSizeAction", "DecreaseFontSizeAction", "ToggleFontAction"});
    a.AddTo(bookmarks,
            {"-", "BookmarkDuplicatedLinesAction", "CopyBookmarkedLinesAction",
             "CutBookmarkedLinesAction", "DelBookmarkedLinesAction", "-", "ClearBookmarksAction"});
}

} // namespace zv
