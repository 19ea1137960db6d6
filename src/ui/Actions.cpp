// QActions that follow the action list: triggering one runs the list's action.
#include "ui/Actions.h"

#include "shell/Language.h"

#include <QAbstractEventDispatcher>
#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QThread>
#include <QWidget>

#include <set>

namespace zv {
namespace {

QString Text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

QList<QKeySequence> Sequences(const std::vector<TShortCut>& keys) {
    QList<QKeySequence> sequences;
    for (const TShortCut key : keys) {
        sequences << QKeySequence(key);
        // Shift+Tab arrives as Backtab on most platforms.
        if (key.key() == Qt::Key_Tab && (key.keyboardModifiers() & Qt::ShiftModifier))
            sequences << QKeySequence(QKeyCombination(key.keyboardModifiers(), Qt::Key_Backtab));
    }
    return sequences;
}

} // namespace

TWindowActions::TWindowActions(QWidget& window) : QObject(&window), FWindow(window) {
    qApp->installEventFilter(this);
    // The idle moment: the event loop is about to wait.
    if (auto* dispatcher = QAbstractEventDispatcher::instance(thread()))
        connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this,
                &TWindowActions::UpdateActions);
}

TWindowActions::~TWindowActions() {
    qApp->removeEventFilter(this);
}

void TWindowActions::Bind() {
    const auto& actions = FList.Actions();
    for (size_t i = FQActions.size(); i < actions.size(); ++i) {
        TAction& action = *actions[i];
        auto* qaction = new QAction(Text(action.Caption), &FWindow);
        qaction->setObjectName(Text(action.Name));
        qaction->setCheckable(action.Checkable);
        connect(qaction, &QAction::triggered, this, [this, &action] { FList.Execute(action); });
        FQActions.push_back(qaction);
        FBuiltinCaptions.push_back(action.Caption);
        FWindow.addAction(qaction); // its shortcut works without a menu showing it
    }
    SetActionsLanguage();
    ApplyShortCuts();
    UpdateActions();
}

QAction* TWindowActions::Get(std::string_view name) const {
    const auto& actions = FList.Actions();
    for (size_t i = 0; i < FQActions.size(); ++i)
        if (actions[i]->Name == name)
            return FQActions[i];
    return nullptr;
}

QMenu* TWindowActions::AddMenu(QMenuBar& bar, const char* key, const char* caption,
                               const char* objectName) {
    return Titled(bar.addMenu(QString()), key, caption, objectName);
}

QMenu* TWindowActions::AddSubMenu(QMenu& parent, const char* key, const char* caption,
                                  const char* objectName) {
    return Titled(parent.addMenu(QString()), key, caption, objectName);
}

QMenu* TWindowActions::Titled(QMenu* menu, const char* key, const char* caption,
                              const char* objectName) {
    menu->setTitle(Text(LangText("Menu", key, caption)));
    menu->setObjectName(QString::fromLatin1(objectName));
    FMenus.push_back({menu, key, caption});
    return menu;
}

void TWindowActions::AddTo(QWidget& target, const std::vector<const char*>& names) const {
    for (const char* name : names) {
        if (std::string_view(name) == "-") {
            auto* separator = new QAction(&target);
            separator->setSeparator(true);
            target.addAction(separator);
        } else if (QAction* action = Get(name)) {
            target.addAction(action);
        }
    }
}

void TWindowActions::HideEmptyMenus(QMenuBar& bar) {
    for (QAction* top : bar.actions()) {
        QMenu* menu = top->menu();
        if (!menu)
            continue;
        bool any = false;
        for (const QAction* item : menu->actions())
            any = any || (!item->isSeparator() && item->isVisible());
        top->setVisible(any);
    }
}

void TWindowActions::SetActionsLanguage() {
    const auto& actions = FList.Actions();
    for (size_t i = 0; i < FQActions.size(); ++i) {
        TAction& action = *actions[i];
        if (!action.CaptionKey.empty())
            action.Caption =
                LangText(action.CaptionSection.empty() ? "Actions" : action.CaptionSection,
                         action.CaptionKey, FBuiltinCaptions[i]);
        FQActions[i]->setText(Text(action.Caption));
    }
    for (const TMenuText& menu : FMenus)
        menu.Menu->setTitle(Text(LangText("Menu", menu.Key, menu.Caption)));
}

void TWindowActions::ApplyShortCuts() {
    std::set<int> taken;
    const auto& actions = FList.Actions();
    for (size_t i = 0; i < FQActions.size(); ++i) {
        const TAction& action = *actions[i];
        std::vector<TShortCut> keys;
        if (HasShortCut(action.ShortCut))
            keys.push_back(action.ShortCut);
        keys.insert(keys.end(), action.SecondaryShortCuts.begin(), action.SecondaryShortCuts.end());
        std::erase_if(keys,
                      [&taken](TShortCut key) { return !taken.insert(key.toCombined()).second; });
        FQActions[i]->setShortcuts(Sequences(keys));
    }
}

void TWindowActions::SyncState(const TAction& action, QAction& qaction) const {
    qaction.setEnabled(action.Enabled);
    if (action.Checkable)
        qaction.setChecked(action.Checked);
}

void TWindowActions::UpdateActions() {
    if (FUpdating)
        return;
    FUpdating = true;
    FList.FMainformActive = FWindow.isActiveWindow();
    FList.UpdateAll();
    const auto& actions = FList.Actions();
    for (size_t i = 0; i < FQActions.size(); ++i)
        SyncState(*actions[i], *FQActions[i]);
    FUpdating = false;
}

bool TWindowActions::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        auto* widget = qobject_cast<QWidget*>(watched);
        if (widget && widget->window() == &FWindow) {
            FList.KeyPressed();
            UpdateActions();
        }
    } else if (event->type() == QEvent::KeyRelease &&
               !static_cast<QKeyEvent*>(event)->isAutoRepeat()) {
        FList.KeyReleased();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace zv
