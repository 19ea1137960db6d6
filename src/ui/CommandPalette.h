// The menu search (command palette): a box over the window that lists every command (by
// its menu path) and the extra items the window gives (open documents, recent files,
// sessions); typing filters, Up and Down choose, Enter runs the choice, Escape closes.
#pragma once

#include <QFrame>
#include <QPointer>

#include <functional>
#include <string>
#include <vector>

class QLineEdit;
class QListWidget;
class QMainWindow;

namespace zv {

class TWindowActions;

class TMenuSearchForm : public QFrame {
    Q_OBJECT
public:
    struct TItem {
        QString Caption;            // without "&"
        QString Path;               // "File > Sessions", or the group of an extra item
        QString ShortCut;           // shown right of the caption
        std::string Action;         // the action to run, or empty
        std::function<void()> Open; // an extra item's run (open a file, a document)
    };

    TMenuSearchForm(QMainWindow& window, TWindowActions& actions);

    // Lists the commands and `extras`, clears the box, shows the form and focuses the box;
    // the focus goes back where it was when the form closes.
    void Open(std::vector<TItem> extras);
    // The commands of the menu bar, in menu order, then actions no menu shows.
    void FillMenuList();
    // Shows the items whose caption or path holds every word of `text` (case ignored).
    void UpdateList(const QString& text);
    // Closes the form and runs the item shown in `row` of the list.
    void RunItem(int row);
    void Close();

    QLineEdit& SearchBox() const { return *FSearchBox; }
    QListWidget& ListView() const { return *FList; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Place();

    QMainWindow& FWindow;
    TWindowActions& FActions;
    QLineEdit* FSearchBox;
    QListWidget* FList;
    std::vector<TItem> FItems;
    std::vector<size_t> FShown; // the items of the list's rows, by index into FItems
    QPointer<QWidget> FReturnFocus;
};

} // namespace zv
