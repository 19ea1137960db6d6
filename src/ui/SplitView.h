// A tab page of the main window and its views. A page is one editor, or a split page: a
// splitter inside the tab holding two editors of the same document, each with its own caret
// and scroll. How the editors are made and bound is the window's.
#pragma once

#include <QSplitter>

#include <vector>

namespace zv {

class TEditorWidget;

// The split inside a tab: the page's first editor and a second view of its document.
class TSplitPage : public QSplitter {
    Q_OBJECT
public:
    // `first` moves into the page, above (Qt::Vertical) or left of (Qt::Horizontal) `second`;
    // both get half the room.
    TSplitPage(Qt::Orientation orientation, TEditorWidget& first, TEditorWidget& second);
    TEditorWidget* First() const;
    TEditorWidget* Second() const;
};

// The editors of a tab page in order (the page's own first); empty for anything else.
std::vector<TEditorWidget*> EditorsOfPage(QWidget* page);
// The tab page that holds `editor`: the editor itself or the split page around it.
QWidget* PageOfEditor(TEditorWidget& editor);

} // namespace zv
