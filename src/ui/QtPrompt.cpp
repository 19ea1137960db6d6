// Message boxes for TQtPrompt; the "do not ask again" box maps yes to 14.
#include "ui/QtPrompt.h"

#include <QCheckBox>
#include <QMessageBox>

namespace zv {
namespace {

QMessageBox::StandardButtons ButtonsFor(unsigned flags) {
    switch (flags & pfButtonsMask) {
    case pfOkCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case pfYesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case pfYesNo:
        return QMessageBox::Yes | QMessageBox::No;
    default:
        return QMessageBox::Ok;
    }
}

QMessageBox::StandardButton ButtonFor(int answer) {
    switch (answer) {
    case prYes:
    case prYesNotAgain:
        return QMessageBox::Yes;
    case prNo:
        return QMessageBox::No;
    case prCancel:
        return QMessageBox::Cancel;
    default:
        return QMessageBox::Ok;
    }
}

int AnswerFor(int button) {
    switch (button) {
    case QMessageBox::Yes:
        return prYes;
    case QMessageBox::No:
        return prNo;
    case QMessageBox::Cancel:
        return prCancel;
    default:
        return prOk;
    }
}

} // namespace

int TQtPrompt::Prompt(const std::string& caption, const std::string& text, unsigned flags,
                      int defaultAnswer) {
    QMessageBox box(FParent);
    box.setWindowTitle(QString::fromStdString(caption));
    box.setText(QString::fromStdString(text));
    box.setIcon((flags & pfWarning) == pfWarning ? QMessageBox::Warning : QMessageBox::Question);
    box.setStandardButtons(ButtonsFor(flags));
    box.setDefaultButton(ButtonFor(defaultAnswer));
    QCheckBox* notAgain = nullptr;
    if (flags & pfNotAgainBox) {
        notAgain = new QCheckBox(QObject::tr("Do not ask again"), &box);
        box.setCheckBox(notAgain);
    }
    const int answer = AnswerFor(box.exec());
    return answer == prYes && notAgain && notAgain->isChecked() ? prYesNotAgain : answer;
}

void TQtPrompt::ShowMessage(const std::string& text) {
    QMessageBox::information(FParent, QStringLiteral("Zevrit"), QString::fromStdString(text));
}

} // namespace zv
