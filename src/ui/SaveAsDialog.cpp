// Builds the save dialog's rows for the file's form and reads them back.
#include "ui/SaveAsDialog.h"

#include "ZvMemoControl/CodePages.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>

namespace zv {
namespace {

bool CanHaveBom(std::uint32_t codePage) {
    return codePage == cpUTF8 || codePage == cpUTF16LE || codePage == cpUTF16BE;
}

} // namespace

TSaveAsDialog::TSaveAsDialog(QWidget* parent, const TDocument& doc, const QString& caption)
    : QFileDialog(parent, caption, QString::fromStdString(doc.FFilePath)),
      FEncoding(new QComboBox(this)), FBom(new QCheckBox(tr("Byte order mark"), this)),
      FLineEnds(new QComboBox(this)) {
    setAcceptMode(QFileDialog::AcceptSave);
    setOption(QFileDialog::DontUseNativeDialog); // a native dialog takes no rows of ours
    const TZvMemoStrings& lines = doc.Lines();
    for (const TCodePageInfo& page : KnownCodePages())
        if (IsCodePageSupported(page.CodePage))
            FEncoding->addItem(QStringLiteral("%1 (%2)").arg(page.Name).arg(page.CodePage),
                               page.CodePage);
    FEncoding->setCurrentIndex(std::max(0, FEncoding->findData(lines.CodePage())));
    FBom->setChecked(lines.UseBOM());
    const auto bomFollows = [this] {
        const bool can = CanHaveBom(FEncoding->currentData().toUInt());
        FBom->setEnabled(can);
        if (!can)
            FBom->setChecked(false);
    };
    connect(FEncoding, &QComboBox::currentIndexChanged, this, bomFollows);
    bomFollows();
    FLineEnds->addItem(tr("Windows (CR LF)"), static_cast<int>(sttWindows));
    FLineEnds->addItem(tr("Unix (LF)"), static_cast<int>(sttUnix));
    FLineEnds->addItem(tr("Macintosh (CR)"), static_cast<int>(sttMac));
    const int kind = static_cast<int>(lines.SysTextType());
    if (kind >= static_cast<int>(sttMixedWindows)) // mixed ends stay unless another is chosen
        FLineEnds->insertItem(0, tr("As they are (mixed)"), -1);
    FLineEnds->setCurrentIndex(std::max(0, FLineEnds->findData(kind < 3 ? kind : -1)));
    AddRow(tr("Encoding:"), FEncoding);
    AddRow(QString(), FBom);
    AddRow(tr("Line ends:"), FLineEnds);
}

void TSaveAsDialog::AddRow(const QString& label, QWidget* field) {
    auto* grid = qobject_cast<QGridLayout*>(layout());
    if (!grid)
        return;
    const int row = grid->rowCount();
    if (!label.isEmpty())
        grid->addWidget(new QLabel(label, this), row, 0);
    grid->addWidget(field, row, 1);
}

TSaveAsChoice TSaveAsDialog::Choice() const {
    TSaveAsChoice choice;
    if (result() != QDialog::Accepted || selectedFiles().isEmpty())
        return choice;
    choice.FileName = selectedFiles().front().toStdString();
    choice.CodePage = FEncoding->currentData().toUInt();
    choice.BOM = FBom->isChecked() ? 1 : 0;
    choice.LineEnds = FLineEnds->currentData().toInt();
    return choice;
}

} // namespace zv
