// The menu search over the window's commands and extra items.
#include "ui/CommandPalette.h"

#include "shell/KeyMap.h"
#include "ui/Actions.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QVBoxLayout>

#include <set>

namespace zv {
namespace {

QString WithoutAccelerator(QString caption) {
    caption.remove(QRegularExpression(QStringLiteral("&(?!&)")));
    return caption;
}

// Walks a menu and its submenus; `seen` holds the actions listed so far.
void WalkMenu(const QMenu& menu, const QString& path, const TActionList& list,
              std::set<std::string>& seen, std::vector<TMenuSearchForm::TItem>& items) {
    for (QAction* action : menu.actions()) {
        if (action->isSeparator() || !action->isVisible())
            continue;
        if (const QMenu* sub = action->menu()) {
            WalkMenu(*sub, path + QStringLiteral(" > ") + WithoutAccelerator(sub->title()), list,
                     seen, items);
            continue;
        }
        const std::string name = action->objectName().toStdString();
        const TAction* model = list.Find(name);
        if (!model || !seen.insert(name).second)
            continue;
        items.push_back({WithoutAccelerator(action->text()),
                         path,
                         QString::fromStdString(ShortCutToText(model->ShortCut)),
                         name,
                         {}});
    }
}

} // namespace

TMenuSearchForm::TMenuSearchForm(QMainWindow& window, TWindowActions& actions)
    : QFrame(&window), FWindow(window), FActions(actions), FSearchBox(new QLineEdit(this)),
      FList(new QListWidget(this)) {
    setObjectName(QStringLiteral("MenuSearchForm"));
    setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    setAutoFillBackground(true);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(FSearchBox);
    layout->addWidget(FList);
    FList->setFocusPolicy(Qt::NoFocus); // the box keeps the focus; Up and Down move here
    FSearchBox->installEventFilter(this);
    connect(FSearchBox, &QLineEdit::textChanged, this, &TMenuSearchForm::UpdateList);
    connect(FList, &QListWidget::itemActivated, this,
            [this](QListWidgetItem* item) { RunItem(FList->row(item)); });
    // Clicking elsewhere closes it.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (isVisible() && now && !isAncestorOf(now))
            hide();
    });
    hide();
}

void TMenuSearchForm::Open(std::vector<TItem> extras) {
    FReturnFocus = QApplication::focusWidget();
    FillMenuList();
    for (TItem& item : extras)
        FItems.push_back(std::move(item));
    FSearchBox->clear();
    UpdateList({});
    Place();
    show();
    raise();
    FSearchBox->setFocus();
}

void TMenuSearchForm::Place() {
    const QRect area = FWindow.centralWidget() ? FWindow.centralWidget()->geometry() : rect();
    const int width = std::max(300, area.width() * 3 / 5);
    setGeometry(area.left() + (area.width() - width) / 2, area.top() + 4, width,
                std::min(area.height() - 8, 360));
}

void TMenuSearchForm::FillMenuList() {
    FItems.clear();
    const TActionList& list = FActions.List();
    std::set<std::string> seen;
    for (QAction* top : FWindow.menuBar()->actions())
        if (const QMenu* menu = top->menu(); menu && top->isVisible())
            WalkMenu(*menu, WithoutAccelerator(menu->title()), list, seen, FItems);
    for (const auto& action : list.Actions())
        if (seen.insert(action->Name).second)
            FItems.push_back({WithoutAccelerator(QString::fromStdString(action->Caption)),
                              QString::fromStdString(action->Category),
                              QString::fromStdString(ShortCutToText(action->ShortCut)),
                              action->Name,
                              {}});
}

void TMenuSearchForm::UpdateList(const QString& text) {
    const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    FList->clear();
    FShown.clear();
    for (size_t i = 0; i < FItems.size(); ++i) {
        const TItem& item = FItems[i];
        const QString haystack = item.Caption + QLatin1Char(' ') + item.Path;
        bool all = true;
        for (const QString& word : words)
            all = all && haystack.contains(word, Qt::CaseInsensitive);
        if (!all)
            continue;
        QString line = item.Caption + QStringLiteral("  \u2014  ") + item.Path;
        if (!item.ShortCut.isEmpty())
            line += QStringLiteral("  (") + item.ShortCut + QLatin1Char(')');
        FList->addItem(line);
        FShown.push_back(i);
    }
    if (FList->count() > 0)
        FList->setCurrentRow(0);
}

void TMenuSearchForm::Close() {
    hide();
    if (FReturnFocus)
        FReturnFocus->setFocus();
}

void TMenuSearchForm::RunItem(int row) {
    if (row < 0 || static_cast<size_t>(row) >= FShown.size())
        return;
    const TItem item = FItems[FShown[static_cast<size_t>(row)]]; // Close may refill
    Close();
    if (!item.Action.empty())
        FActions.List().Execute(item.Action);
    else if (item.Open)
        item.Open();
}

bool TMenuSearchForm::eventFilter(QObject* watched, QEvent* event) {
    if (watched != FSearchBox || event->type() != QEvent::KeyPress)
        return QFrame::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    switch (key->key()) {
    case Qt::Key_Escape:
        Close();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        RunItem(FList->currentRow());
        return true;
    case Qt::Key_Up:
    case Qt::Key_Down: {
        const int step = key->key() == Qt::Key_Up ? -1 : 1;
        const int count = FList->count();
        if (count > 0)
            FList->setCurrentRow((FList->currentRow() + step + count) % count);
        return true;
    }
    default:
        return QFrame::eventFilter(watched, event);
    }
}

} // namespace zv
