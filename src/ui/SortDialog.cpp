// Builds the sort dialog's rows and reads the keys back.
#include "ui/SortDialog.h"

#include "shell/Language.h"
#include "shell/Settings.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace zv {

namespace {

QString Text(const char* section, const char* key, const char* english) {
    return QString::fromStdString(LangText(section, key, english));
}

} // namespace

TSortDialog::TSortDialog(QWidget* parent, int selectionStart, int selectionEnd) : QDialog(parent) {
    setObjectName(QStringLiteral("SortDialog"));
    setWindowTitle(Text("Actions", "505", "Advanced sort").remove(QLatin1Char('&')));
    auto* layout = new QVBoxLayout(this);
    auto* sets = new QHBoxLayout;
    FSetName = new QComboBox(this);
    FSetName->setObjectName(QStringLiteral("KeySetName"));
    FSetName->setEditable(true);
    FSetName->setInsertPolicy(QComboBox::NoInsert);
    auto* label = new QLabel(Text("Misc", "500", "&Key sets:"), this);
    label->setBuddy(FSetName);
    auto* save = new QPushButton(Text("Misc", "501", "&Save set"), this);
    save->setObjectName(QStringLiteral("SaveKeySet"));
    auto* remove = new QPushButton(Text("Misc", "502", "De&lete set"), this);
    remove->setObjectName(QStringLiteral("DeleteKeySet"));
    sets->addWidget(label);
    sets->addWidget(FSetName, 1);
    sets->addWidget(save);
    sets->addWidget(remove);
    layout->addLayout(sets);
    const auto name = [this] { return FSetName->currentText().trimmed().toStdU16String(); };
    connect(FSetName, &QComboBox::textActivated, this, [this, name] {
        TSortKeySet set;
        if (LoadSortKeySet(SettingsIni(), name(), set))
            Apply(set);
    });
    connect(save, &QPushButton::clicked, this, [this, name] {
        if (SaveSortKeySet(SettingsIni(), name(), State()))
            FillSetNames();
    });
    connect(remove, &QPushButton::clicked, this, [this, name] {
        DeleteSortKeySet(SettingsIni(), name());
        FillSetNames();
    });
    for (int k = 0; k < 4; ++k) {
        TKeyRow& row = FKeys[static_cast<std::size_t>(k)];
        const QString name = QStringLiteral("Key%1").arg(k + 1);
        auto* box = new QGroupBox(this);
        auto* grid = new QGridLayout(box);
        const auto check = [&](const QString& part, const QString& caption) {
            auto* c = new QCheckBox(caption, box);
            c->setObjectName(name + part);
            return c;
        };
        const auto spin = [&](const QString& part, int minimum) {
            auto* s = new QSpinBox(box);
            s->setObjectName(name + part);
            s->setRange(minimum, 100000);
            return s;
        };
        row.Enabled =
            check(QStringLiteral("Enabled"), Text("Actions", "510", "Enable key %1").arg(k + 1));
        row.Enabled->setChecked(k == 0);
        row.Start = spin(QStringLiteral("Start"), 1);
        row.End = spin(QStringLiteral("End"), 0);
        auto* fromSelection = new QPushButton(QStringLiteral("..."), box);
        fromSelection->setToolTip(Text("Actions", "518", "Take the columns from the selection"));
        fromSelection->setEnabled(selectionStart > 0);
        connect(fromSelection, &QPushButton::clicked, this, [&row, selectionStart, selectionEnd] {
            row.Start->setValue(selectionStart);
            row.End->setValue(selectionEnd);
        });
        row.Numeric = check(QStringLiteral("Numeric"), Text("Actions", "511", "Numeric sort"));
        row.IgnoreCase = check(QStringLiteral("IgnoreCase"), Text("Actions", "512", "Ignore case"));
        row.RemoveKeyDuplicates = check(QStringLiteral("RemoveKeyDuplicates"),
                                        Text("Actions", "513", "Remove key duplicates"));
        row.OnlyKeyDuplicates = check(QStringLiteral("OnlyKeyDuplicates"),
                                      Text("Actions", "514", "Only keep key duplicates"));
        row.Ascending = new QRadioButton(Text("Actions", "343", "&Ascending"), box);
        QRadioButton* ascending = row.Ascending;
        row.Descending = new QRadioButton(Text("Actions", "344", "&Descending"), box);
        row.Descending->setObjectName(name + QStringLiteral("Descending"));
        ascending->setChecked(true);
        auto* order = new QButtonGroup(box);
        order->addButton(ascending);
        order->addButton(row.Descending);
        grid->addWidget(row.Enabled, 0, 0);
        grid->addWidget(row.Start, 0, 1);
        grid->addWidget(row.End, 0, 2);
        grid->addWidget(fromSelection, 0, 3);
        grid->addWidget(row.Numeric, 1, 0);
        grid->addWidget(row.IgnoreCase, 1, 1);
        grid->addWidget(ascending, 1, 2);
        grid->addWidget(row.Descending, 1, 3);
        grid->addWidget(row.RemoveKeyDuplicates, 2, 0, 1, 2);
        grid->addWidget(row.OnlyKeyDuplicates, 2, 2, 1, 2);
        row.Start->setToolTip(Text("Actions", "515", "Start column"));
        row.End->setToolTip(Text("Actions", "516", "End column (0: the line's end)"));
        layout->addWidget(box);
    }
    FRemoveDuplicates = new QCheckBox(Text("Actions", "517", "Remove duplicates"), this);
    FRemoveDuplicates->setObjectName(QStringLiteral("RemoveDuplicates"));
    layout->addWidget(FRemoveDuplicates);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    FillSetNames();
}

void TSortDialog::FillSetNames() {
    const QString typed = FSetName->currentText();
    FSetName->clear();
    for (const std::u16string& n : SortKeySetNames(SettingsIni()))
        FSetName->addItem(QString::fromStdU16String(n));
    FSetName->setCurrentIndex(-1); // none picked: the first pick loads
    FSetName->setEditText(typed);
}

TSortKeySet TSortDialog::State() const {
    TSortKeySet set;
    for (std::size_t i = 0; i < FKeys.size(); ++i) {
        const TKeyRow& row = FKeys[i];
        TSortKeySet::TRow& out = set.Rows[i];
        out.Enabled = row.Enabled->isChecked();
        out.Key.Start = row.Start->value();
        out.Key.End = row.End->value();
        out.Key.Numeric = row.Numeric->isChecked();
        out.Key.IgnoreCase = row.IgnoreCase->isChecked();
        out.Key.Descending = row.Descending->isChecked();
        out.Key.RemoveKeyDuplicates = row.RemoveKeyDuplicates->isChecked();
        out.Key.OnlyKeepKeyDuplicates = row.OnlyKeyDuplicates->isChecked();
    }
    set.RemoveDuplicates = FRemoveDuplicates->isChecked();
    return set;
}

void TSortDialog::Apply(const TSortKeySet& set) {
    for (std::size_t i = 0; i < FKeys.size(); ++i) {
        const TKeyRow& row = FKeys[i];
        const TSortKeySet::TRow& in = set.Rows[i];
        row.Enabled->setChecked(in.Enabled);
        row.Start->setValue(in.Key.Start);
        row.End->setValue(in.Key.End);
        row.Numeric->setChecked(in.Key.Numeric);
        row.IgnoreCase->setChecked(in.Key.IgnoreCase);
        row.RemoveKeyDuplicates->setChecked(in.Key.RemoveKeyDuplicates);
        row.OnlyKeyDuplicates->setChecked(in.Key.OnlyKeepKeyDuplicates);
        (in.Key.Descending ? row.Descending : row.Ascending)->setChecked(true);
    }
    FRemoveDuplicates->setChecked(set.RemoveDuplicates);
}

std::vector<TSortKey> TSortDialog::Keys() const {
    std::vector<TSortKey> keys;
    for (const TSortKeySet::TRow& row : State().Rows)
        if (row.Enabled)
            keys.push_back(row.Key);
    return keys;
}

bool TSortDialog::RemoveDuplicates() const {
    return FRemoveDuplicates->isChecked();
}

} // namespace zv
