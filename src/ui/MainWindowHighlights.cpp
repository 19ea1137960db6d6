// The window's highlight commands: mark the word or selection at the caret in the active
// view's highlight lists (as a word, a whole word or an exact selection), unmark it, and
// clear every list.
#include "ui/MainWindow.h"

#include "ZvMemoControl/ZvMemo.h"
#include "ui/ActionDef.h"
#include "ui/Actions.h"
#include "ui/EditorWidget.h"
#include "ui/HighlightExpressionsDialog.h"

#include <QMenu>

namespace zv {
namespace {

// The selection, or else the word at the caret (empty: nothing to mark).
std::u16string MarkedText(TZvMemo& memo) {
    return memo.HasSelection() ? memo.GetSelection() : memo.WordAtCursor();
}

} // namespace

void TMainWindow::CreateHighlightActions() {
    TActionList& list = FActions->List();
    const auto hasEditor = [this] { return ActiveEditor() != nullptr; };
    // Changes the active view's lists with `change`, then repaints it.
    const auto onLists = [this](std::function<void(THighlightLists&, TZvMemo&)> change) {
        return [this, change] {
            OnActiveEditor([&](TEditorWidget& e) {
                change(e.Highlights(), e.Memo());
                e.viewport()->update();
            });
        };
    };
    const auto add = [&](const TActionDef& def, THighlightList target, TZvFindOptions options) {
        list.Add(MakeAction(def, onLists([target, options](THighlightLists& l, TZvMemo& m) {
                                l.Add(target, MarkedText(m), options);
                            }),
                            hasEditor));
    };
    add({"HighlightTextAction", "Search", "490", "Highlight &word"}, THighlightList::Words, frCase);
    add({"HighlightWholeWordAction", "Search", "491", "Highlight w&hole word"},
        THighlightList::Words, frCase | frWord);
    add({"HighlightSelectionAction", "Search", "492", "Highlight &selection"},
        THighlightList::Selections, frCase);
    list.Add(MakeAction({"UnHighlightTextAction", "Search", "493", "&Unhighlight word"},
                        onLists([](THighlightLists& l, TZvMemo& m) {
                            const std::u16string text = MarkedText(m);
                            l.Remove(THighlightList::Words, text);
                            l.Remove(THighlightList::Selections, text);
                        }),
                        hasEditor));
    list.Add(MakeAction({"UnHighlightSelectionAction", "Search", "596", "Unhighlight s&election"},
                        onLists([](THighlightLists& l, TZvMemo& m) {
                            l.Remove(THighlightList::Selections, MarkedText(m));
                        }),
                        hasEditor));
    list.Add(MakeAction(
        {"HighlightExpressionsAction", "Search", "597", "Highlight e&xpressions..."},
        [this] {
            OnActiveEditor([this](TEditorWidget& e) {
                THighlightExpressionsDialog dialog(this, e.Highlights(),
                                                   [&e] { e.viewport()->update(); });
                dialog.exec();
            });
        },
        hasEditor));
    list.Add(MakeAction({"UnHighlightAllAction", "Search", "494", "Unhighlight &all"},
                        onLists([](THighlightLists& l, TZvMemo&) { l.ClearAll(); }), hasEditor));
}

void TMainWindow::FillHighlightMenu(QMenu& menu) {
    FActions->AddTo(menu,
                    {"HighlightTextAction", "HighlightWholeWordAction", "HighlightSelectionAction",
                     "-", "UnHighlightTextAction", "UnHighlightSelectionAction",
                     "UnHighlightAllAction", "-", "HighlightExpressionsAction"});
}

} // namespace zv
