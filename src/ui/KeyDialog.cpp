// The key dialog over the action list.
#include "ui/KeyDialog.h"

#include "shell/KeyMap.h"
#include "shell/Language.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <map>

namespace zv {
namespace {

QString Lang(const char* key, const char* fallback) {
    return QString::fromStdString(LangText("Misc", key, fallback));
}

QString Plain(const std::string& caption) {
    return QString::fromStdString(caption).remove(QLatin1Char('&'));
}

QString KeyText(TShortCut key) {
    return QString::fromStdString(ShortCutToText(key));
}

// The first key of what the field recorded, in the form the key map can write.
TShortCut FieldKey(const QKeySequenceEdit& edit) {
    const QKeySequence sequence = edit.keySequence();
    return sequence.isEmpty() ? TShortCut() : TextToShortCut(ShortCutToText(sequence[0]));
}

} // namespace

TfrmCustomKeyboard::TfrmCustomKeyboard(QWidget* parent, TActionList& actions)
    : QDialog(parent), FActions(actions), txtFind(new QLineEdit(this)),
      FTree(new QTreeWidget(this)), FKeyEdit(new QKeySequenceEdit(this)),
      FSecondaryEdit(new QKeySequenceEdit(this)), FInfo(new QLabel(this)) {
    setWindowTitle(Lang("410", "Keyboard shortcuts"));
    txtFind->setPlaceholderText(Lang("411", "Filter"));
    FTree->setColumnCount(3);
    FTree->setHeaderLabels(
        {Lang("412", "Command"), Lang("413", "Shortcut"), Lang("414", "Secondary shortcut")});
    FTree->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    auto* assign = new QPushButton(Lang("415", "&Assign"), this);
    auto* remove = new QPushButton(Lang("416", "&Remove"), this);
    auto* keys = new QFormLayout;
    keys->addRow(Lang("413", "Shortcut"), FKeyEdit);
    keys->addRow(Lang("414", "Secondary shortcut"), FSecondaryEdit);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(assign);
    buttons->addWidget(remove);
    buttons->addStretch();
    auto* box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(txtFind);
    layout->addWidget(FTree);
    layout->addLayout(keys);
    layout->addLayout(buttons);
    layout->addWidget(FInfo);
    layout->addWidget(box);
    connect(txtFind, &QLineEdit::textChanged, this, &TfrmCustomKeyboard::txtFindChange);
    connect(assign, &QPushButton::clicked, this,
            [this] { Assign(FieldKey(*FKeyEdit), FieldKey(*FSecondaryEdit)); });
    connect(remove, &QPushButton::clicked, this, &TfrmCustomKeyboard::Remove);
    connect(box, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(FTree, &QTreeWidget::currentItemChanged, this, [this] {
        const TAction* action = Chosen();
        FKeyEdit->setKeySequence(action ? QKeySequence(action->ShortCut) : QKeySequence());
        FSecondaryEdit->setKeySequence(action && !action->SecondaryShortCuts.empty()
                                           ? QKeySequence(action->SecondaryShortCuts.front())
                                           : QKeySequence());
    });
    resize(640, 520);
    PrepActions();
    txtFindChange({});
}

void TfrmCustomKeyboard::PrepActions() {
    FSaved.clear();
    for (const auto& action : FActions.Actions())
        FSaved.push_back({action->ShortCut, action->SecondaryShortCuts});
}

void TfrmCustomKeyboard::ReturnActions() {
    const auto& actions = FActions.Actions();
    for (size_t i = 0; i < FSaved.size() && i < actions.size(); ++i) {
        actions[i]->ShortCut = FSaved[i].ShortCut;
        actions[i]->SecondaryShortCuts = FSaved[i].Secondary;
    }
}

void TfrmCustomKeyboard::reject() {
    ReturnActions();
    QDialog::reject();
}

void TfrmCustomKeyboard::txtFindChange(const QString& text) {
    const std::string chosen = Chosen() ? Chosen()->Name : std::string();
    FTree->clear();
    std::map<std::string, QTreeWidgetItem*> categories; // made in list order of first use
    for (const auto& action : FActions.Actions()) {
        if (action->Tag < 0)
            continue;
        const QString caption = Plain(action->Caption);
        const QString key = KeyText(action->ShortCut);
        const QString second = action->SecondaryShortCuts.empty()
                                   ? QString()
                                   : KeyText(action->SecondaryShortCuts.front());
        const QString all = caption + QLatin1Char(' ') + QString::fromStdString(action->Name) +
                            QLatin1Char(' ') + QString::fromStdString(action->Category) +
                            QLatin1Char(' ') + key + QLatin1Char(' ') + second;
        if (!text.isEmpty() && !all.contains(text, Qt::CaseInsensitive))
            continue;
        QTreeWidgetItem*& category = categories[action->Category];
        if (!category) {
            category = new QTreeWidgetItem(FTree, {QString::fromStdString(action->Category)});
            category->setFlags(Qt::ItemIsEnabled);
            category->setExpanded(true);
        }
        auto* item = new QTreeWidgetItem(category, {caption, key, second});
        item->setData(0, Qt::UserRole, QString::fromStdString(action->Name));
    }
    if (!chosen.empty())
        Select(chosen);
}

bool TfrmCustomKeyboard::Select(const std::string& name) {
    const QString wanted = QString::fromStdString(name);
    for (int c = 0; c < FTree->topLevelItemCount(); ++c) {
        QTreeWidgetItem* category = FTree->topLevelItem(c);
        for (int i = 0; i < category->childCount(); ++i)
            if (category->child(i)->data(0, Qt::UserRole).toString() == wanted) {
                FTree->setCurrentItem(category->child(i));
                return true;
            }
    }
    return false;
}

TAction* TfrmCustomKeyboard::Chosen() const {
    const QTreeWidgetItem* item = FTree->currentItem();
    return item ? FActions.Find(item->data(0, Qt::UserRole).toString().toStdString()) : nullptr;
}

QStringList TfrmCustomKeyboard::TakeFromOthers(TShortCut key, const TAction& keep) {
    QStringList held;
    if (!HasShortCut(key))
        return held;
    for (const auto& action : FActions.Actions()) {
        if (action.get() == &keep)
            continue;
        const bool primary = action->ShortCut == key;
        const auto erased = std::erase(action->SecondaryShortCuts, key);
        if (primary)
            action->ShortCut = {};
        if (primary || erased > 0)
            held << Plain(action->Caption);
    }
    return held;
}

QString TfrmCustomKeyboard::Assign(TShortCut shortCut, TShortCut secondary) {
    TAction* action = Chosen();
    if (!action)
        return {};
    QStringList held = TakeFromOthers(shortCut, *action);
    held << TakeFromOthers(secondary, *action);
    action->ShortCut = shortCut;
    action->SecondaryShortCuts.clear();
    if (HasShortCut(secondary) && secondary != shortCut)
        action->SecondaryShortCuts.push_back(secondary);
    const QString message =
        held.isEmpty() ? QString()
                       : Lang("417", "Taken from: %1").arg(held.join(QStringLiteral(", ")));
    FInfo->setText(message);
    txtFindChange(txtFind->text());
    return message;
}

void TfrmCustomKeyboard::Remove() {
    if (TAction* action = Chosen()) {
        action->ShortCut = {};
        action->SecondaryShortCuts.clear();
        FInfo->clear();
        txtFindChange(txtFind->text());
    }
}

} // namespace zv
