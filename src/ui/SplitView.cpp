// Split pages: two views of one document inside one tab.
#include "ui/SplitView.h"

#include "ui/EditorWidget.h"

namespace zv {

TSplitPage::TSplitPage(Qt::Orientation orientation, TEditorWidget& first, TEditorWidget& second)
    : QSplitter(orientation) {
    setChildrenCollapsible(false);
    addWidget(&first);
    addWidget(&second);
    first.show(); // a widget taken out of a tab list was hidden there
    second.show();
    setSizes({1, 1}); // even halves
}

TEditorWidget* TSplitPage::First() const {
    return qobject_cast<TEditorWidget*>(widget(0));
}

TEditorWidget* TSplitPage::Second() const {
    return qobject_cast<TEditorWidget*>(widget(1));
}

std::vector<TEditorWidget*> EditorsOfPage(QWidget* page) {
    if (auto* editor = qobject_cast<TEditorWidget*>(page))
        return {editor};
    std::vector<TEditorWidget*> editors;
    if (auto* split = qobject_cast<TSplitPage*>(page))
        for (TEditorWidget* editor : {split->First(), split->Second()})
            if (editor)
                editors.push_back(editor);
    return editors;
}

QWidget* PageOfEditor(TEditorWidget& editor) {
    if (auto* split = qobject_cast<TSplitPage*>(editor.parentWidget()))
        return split;
    return &editor;
}

} // namespace zv
