// The key dialog: every action of the list by category, with a text filter; two fields take
// a pressed key as the shortcut and the secondary shortcut. Assign puts them on the chosen
// action (taking them from the action that held them, which it names); Remove clears the
// action's keys. OK keeps the changes, Cancel puts the shortcuts back as they were.
#pragma once

#include "shell/ActionList.h"

#include <QDialog>

#include <string>
#include <vector>

class QKeySequenceEdit;
class QLabel;
class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;

namespace zv {

class TfrmCustomKeyboard : public QDialog {
    Q_OBJECT
public:
    TfrmCustomKeyboard(QWidget* parent, TActionList& actions);

    // Chooses the action of that name in the list (tests, and the caller's current command).
    bool Select(const std::string& name);
    // Stores the fields' keys on the chosen action; returns the message shown (which
    // actions held them), empty when none did.
    QString Assign(TShortCut shortCut, TShortCut secondary);
    void Remove();

    QLineEdit& FindBox() const { return *txtFind; }
    QTreeWidget& Tree() const { return *FTree; }
    QLabel& Info() const { return *FInfo; }

    void reject() override; // ReturnActions, then closes

private:
    struct TSaved {
        TShortCut ShortCut;
        std::vector<TShortCut> Secondary;
    };
    void PrepActions();
    void ReturnActions();
    // Lists the actions whose caption, name, category or shortcut holds the filter text.
    void txtFindChange(const QString& text);
    TAction* Chosen() const;
    // Takes `key` from every action but `keep` that has it; their captions, for the message.
    QStringList TakeFromOthers(TShortCut key, const TAction& keep);

    TActionList& FActions;
    std::vector<TSaved> FSaved; // by list index
    QLineEdit* txtFind;
    QTreeWidget* FTree;
    QKeySequenceEdit* FKeyEdit;
    QKeySequenceEdit* FSecondaryEdit;
    QLabel* FInfo;
};

} // namespace zv
