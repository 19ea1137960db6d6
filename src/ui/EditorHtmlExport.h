// An editor's text as an HTML page coloured as the editor paints it: saved to a file (Save as
// HTML) or put on the clipboard (copy as HTML).
#pragma once

#include <filesystem>
#include <string>

namespace zv {

class TEditorWidget;

// The page of the selection, or of the whole text when nothing is selected. A document
// without a syntax is written in the plain text colour.
std::string EditorHtml(TEditorWidget& editor, bool selectionOnly);

// Writes the page of the whole text to `file` as UTF-8. False, with `error` saying why, when
// the file cannot be written.
bool SaveToHTML(TEditorWidget& editor, const std::filesystem::path& file, std::string& error);

// Puts the page of the selection (of the whole text when nothing is selected) on the
// clipboard as HTML, with the same text as plain text beside it.
void CopyHTMLToClipboard(TEditorWidget& editor);

} // namespace zv
