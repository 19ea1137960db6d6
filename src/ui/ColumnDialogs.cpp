// Builds the column commands' dialogs and reads their answers.
#include "ui/ColumnDialogs.h"

#include "shell/Language.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QSpinBox>

#include <limits>

namespace zv {
namespace {

QString Text(const char* section, const char* key, const char* english) {
    return QString::fromStdString(LangText(section, key, english));
}

// OK and Cancel under the form.
void AddButtons(QDialog& dialog, QFormLayout& form) {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    form.addRow(buttons);
}

template <typename TWidget> TWidget* Named(TWidget* widget, const char* name) {
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
}

} // namespace

TNumbersDialog::TNumbersDialog(QWidget* parent, bool everyLine) : QDialog(parent) {
    setObjectName(QStringLiteral("NumbersDialog"));
    setWindowTitle(Text("Misc", "470", "Insert numbers"));
    auto* form = new QFormLayout(this);
    // The spin boxes hold 32-bit values; the counter itself runs in 64 bits.
    const auto spin = [this](const char* name, int value) {
        auto* s = Named(new QSpinBox(this), name);
        s->setRange(std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
        s->setValue(value);
        return s;
    };
    FStart = spin("Start", 1);
    FStep = spin("Step", 1);
    FHex = Named(new QCheckBox(Text("Misc", "473", "&Hexadecimal"), this), "Hex");
    FEveryLine =
        Named(new QCheckBox(Text("Misc", "474", "Number &blank lines too"), this), "EveryLine");
    FEveryLine->setChecked(everyLine);
    form->addRow(Text("Misc", "471", "&Start:"), FStart);
    form->addRow(Text("Misc", "472", "S&tep:"), FStep);
    form->addRow(FHex);
    form->addRow(FEveryLine);
    AddButtons(*this, *form);
}

std::int64_t TNumbersDialog::Start() const {
    return FStart->value();
}

std::int64_t TNumbersDialog::Step() const {
    return FStep->value();
}

bool TNumbersDialog::Hex() const {
    return FHex->isChecked();
}

bool TNumbersDialog::EveryLine() const {
    return FEveryLine->isChecked();
}

TAlignDialog::TAlignDialog(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("AlignDialog"));
    setWindowTitle(Text("Misc", "475", "Align text in columns"));
    auto* form = new QFormLayout(this);
    FSeparator = Named(new QLineEdit(QStringLiteral(","), this), "Separator");
    FTabs = Named(new QCheckBox(Text("Misc", "477", "Pad with &tabs"), this), "Tabs");
    FRemove = Named(new QCheckBox(Text("Misc", "478", "&Remove the separators"), this),
                    "RemoveSeparators");
    form->addRow(Text("Misc", "476", "S&eparator:"), FSeparator);
    form->addRow(FTabs);
    form->addRow(FRemove);
    AddButtons(*this, *form);
}

std::u16string TAlignDialog::Separator() const {
    const QString text = FSeparator->text();
    return {reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())};
}

bool TAlignDialog::Tabs() const {
    return FTabs->isChecked();
}

bool TAlignDialog::RemoveSeparators() const {
    return FRemove->isChecked();
}

} // namespace zv
