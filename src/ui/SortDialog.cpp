// Builds the sort dialog's rows and reads the keys back.
#include "ui/SortDialog.h"

#include "shell/Language.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
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
        auto* ascending = new QRadioButton(Text("Actions", "343", "&Ascending"), box);
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
}

std::vector<TSortKey> TSortDialog::Keys() const {
    std::vector<TSortKey> keys;
    for (const TKeyRow& row : FKeys) {
        if (!row.Enabled->isChecked())
            continue;
        TSortKey key;
        key.Start = row.Start->value();
        key.End = row.End->value();
        key.Numeric = row.Numeric->isChecked();
        key.IgnoreCase = row.IgnoreCase->isChecked();
        key.Descending = row.Descending->isChecked();
        key.RemoveKeyDuplicates = row.RemoveKeyDuplicates->isChecked();
        key.OnlyKeepKeyDuplicates = row.OnlyKeyDuplicates->isChecked();
        keys.push_back(key);
    }
    return keys;
}

bool TSortDialog::RemoveDuplicates() const {
    return FRemoveDuplicates->isChecked();
}

} // namespace zv
