// The highlight expressions dialog: the list of expressions with their options and colours,
// and the fields of a new one.
#include "ui/HighlightExpressionsDialog.h"

#include "shell/Language.h"
#include "ui/RunPainter.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace zv {
namespace {

QString Text(const char* section, const char* key, const char* fallback) {
    return QString::fromStdString(LangText(section, key, fallback));
}

// 0x00BBGGRR of a "#rrggbb" (or any colour name Qt knows); kNoColor when invalid.
TColor ColourOf(const QString& name) {
    const QColor c = QColor::fromString(name.trimmed());
    if (!c.isValid())
        return kNoColor;
    return static_cast<TColor>(c.red()) | static_cast<TColor>(c.green()) << 8 |
           static_cast<TColor>(c.blue()) << 16;
}

} // namespace

THighlightExpressionsDialog::THighlightExpressionsDialog(QWidget* parent, THighlightLists& lists,
                                                         std::function<void()> changed)
    : QDialog(parent), FLists(lists), FChanged(std::move(changed)), FList(new QListWidget(this)),
      FText(new QLineEdit(this)), FCase(new QCheckBox(Text("Misc", "492", "Match &case"), this)),
      FWord(new QCheckBox(Text("Misc", "493", "&Whole word"), this)),
      FRegEx(new QCheckBox(Text("Misc", "494", "Regular e&xpression"), this)),
      FBack(new QLineEdit(QStringLiteral("#ffff00"), this)),
      FFore(new QLineEdit(QStringLiteral("#000000"), this)) {
    setObjectName(QStringLiteral("HighlightExpressionsDialog"));
    setWindowTitle(Text("Misc", "491", "Highlight expressions"));
    FList->setObjectName(QStringLiteral("ExpressionList"));
    FText->setObjectName(QStringLiteral("ExpressionText"));
    FRegEx->setObjectName(QStringLiteral("ExpressionRegEx"));
    FCase->setObjectName(QStringLiteral("ExpressionCase"));
    FWord->setObjectName(QStringLiteral("ExpressionWord"));
    FBack->setObjectName(QStringLiteral("ExpressionBackground"));
    FFore->setObjectName(QStringLiteral("ExpressionTextColor"));
    auto* form = new QFormLayout;
    form->addRow(Text("Misc", "495", "&Text:"), FText);
    form->addRow(FCase);
    form->addRow(FWord);
    form->addRow(FRegEx);
    form->addRow(Text("Misc", "496", "&Background:"), FBack);
    form->addRow(Text("Misc", "497", "Text c&olour:"), FFore);
    auto* add = new QPushButton(Text("Misc", "498", "&Add"), this);
    auto* remove = new QPushButton(Text("Misc", "499", "&Remove"), this);
    add->setObjectName(QStringLiteral("AddExpression"));
    remove->setObjectName(QStringLiteral("RemoveExpression"));
    connect(add, &QPushButton::clicked, this, [this] { AddClick(); });
    connect(remove, &QPushButton::clicked, this, [this] { RemoveClick(); });
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(add);
    buttons->addWidget(remove);
    auto* close = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(close, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(FList);
    layout->addLayout(form);
    layout->addLayout(buttons);
    layout->addWidget(close);
    Fill();
}

void THighlightExpressionsDialog::Fill() {
    FList->clear();
    for (const auto& e : FLists.Entries(THighlightList::Expressions)) {
        auto* item = new QListWidgetItem(
            QString::fromUtf16(e.Text.data(), static_cast<qsizetype>(e.Text.size())), FList);
        item->setBackground(ToQColor(e.Colours.Back));
        item->setForeground(ToQColor(e.Colours.Text));
    }
}

void THighlightExpressionsDialog::AddClick() {
    const QString text = FText->text();
    const std::u16string_view view(reinterpret_cast<const char16_t*>(text.utf16()),
                                   static_cast<std::size_t>(text.size()));
    if (!FLists.AddHighlightExpression(view, FCase->isChecked(), FWord->isChecked(),
                                       FRegEx->isChecked(), ColourOf(FBack->text()),
                                       ColourOf(FFore->text()))) {
        QMessageBox::warning(
            this, windowTitle(),
            Text("Messages", "360", "The expression is empty, listed already or not valid."));
        return;
    }
    Fill();
    FChanged();
}

void THighlightExpressionsDialog::RemoveClick() {
    const QListWidgetItem* item = FList->currentItem();
    if (!item)
        return;
    const QString text = item->text();
    FLists.RemoveHighlightExpression(std::u16string_view(
        reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())));
    Fill();
    FChanged();
}

} // namespace zv
