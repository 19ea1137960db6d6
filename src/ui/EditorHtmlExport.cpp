// HTML export of an editor: the range, the page, the file and the clipboard.
#include "ui/EditorHtmlExport.h"

#include "syntax/HtmlExport.h"
#include "ui/EditorWidget.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>

#include <cerrno>
#include <cstring>
#include <fstream>

namespace zv {

std::string EditorHtml(TEditorWidget& editor, bool selectionOnly) {
    const TZvMemoStrings& lines = *editor.Lines();
    TZvPos from{0, 0}, to{0, std::max(lines.Count() - 1, 0)};
    to.X = lines.Count() > 0 ? lines.GetLineLength(to.Y) : 0;
    if (selectionOnly && editor.Memo().HasSelection())
        editor.Memo().OrderedSelection(from, to);
    THtmlExportOptions options;
    options.Colour = editor.PaintColours();
    options.Title = std::filesystem::path(lines.FileName()).filename().u16string();
    if (TDocumentScan* scan = editor.Scan())
        return GetRangeAsHtml(scan->Scanner(), from.X, from.Y, to.X, to.Y, options);
    // No syntax: the same page, every run in the text colour.
    const TMemoStyleHost plain;
    const TScanContext ctx(plain, {});
    TLineScanner scanner(lines, ctx);
    return GetRangeAsHtml(scanner, from.X, from.Y, to.X, to.Y, options);
}

bool SaveToHTML(TEditorWidget& editor, const std::filesystem::path& file, std::string& error) {
    const std::string page = EditorHtml(editor, false);
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    if (out)
        out.write(page.data(), std::streamsize(page.size()));
    if (out.flush())
        return true;
    error = std::strerror(errno);
    return false;
}

void CopyHTMLToClipboard(TEditorWidget& editor) {
    const std::string page = EditorHtml(editor, true);
    auto* data = new QMimeData;
    data->setHtml(QString::fromStdString(page));
    const TZvMemo& memo = editor.Memo();
    std::u16string text;
    if (memo.HasSelection())
        text = memo.GetSelection();
    else
        for (int row = 0; row < editor.Lines()->Count(); ++row) {
            if (row > 0 && !editor.Lines()->IsLineWrapped(row))
                text += u'\n';
            text += editor.Lines()->Get(row);
        }
    data->setText(QString::fromStdU16String(text));
    QApplication::clipboard()->setMimeData(data);
}

} // namespace zv
