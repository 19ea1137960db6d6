// Message boxes for TQtPrompt; the "do not ask again" box maps yes to 14.
#include "ui/QtPrompt.h"

#include "shell/Language.h"

#include <QCheckBox>
#include <QMessageBox>
#include <QPushButton>

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
    case pfYesNoToAll:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::YesToAll | QMessageBox::NoToAll;
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
    case prYesToAll:
    case prAlways:
        return QMessageBox::YesToAll;
    case prNoToAll:
        return QMessageBox::NoToAll;
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
    case QMessageBox::YesToAll:
        return prYesToAll;
    case QMessageBox::NoToAll:
        return prNoToAll;
    default:
        return prOk;
    }
}

// The language file's captions for the buttons that have one.
void NameButtons(QMessageBox& box) {
    const std::pair<QMessageBox::StandardButton, QString> names[] = {
        {QMessageBox::Yes, QString::fromStdString(LangText("Buttons", "204", "&Yes"))},
        {QMessageBox::No, QString::fromStdString(LangText("Buttons", "205", "&No"))},
        {QMessageBox::YesToAll, QString::fromStdString(LangText("Buttons", "216", "Yes to &All"))},
        {QMessageBox::NoToAll, QString::fromStdString(LangText("Buttons", "215", "N&o to All"))},
    };
    for (const auto& [button, name] : names)
        if (QAbstractButton* shown = box.button(button))
            shown->setText(name);
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
    NameButtons(box);
    QPushButton* always = nullptr;
    if (flags & pfAlwaysButton)
        always = box.addButton(QString::fromStdString(LangText("Misc", "323", "Al&ways")),
                               QMessageBox::AcceptRole);
    QCheckBox* notAgain = nullptr;
    if (flags & pfNotAgainBox) {
        notAgain = new QCheckBox(QObject::tr("Do not ask again"), &box);
        box.setCheckBox(notAgain);
    }
    const int button = box.exec();
    if (always && box.clickedButton() == always)
        return prAlways;
    const int answer = AnswerFor(button);
    return answer == prYes && notAgain && notAgain->isChecked() ? prYesNotAgain : answer;
}

void TQtPrompt::ShowMessage(const std::string& text) {
    QMessageBox::information(FParent, QStringLiteral("Zevrit"), QString::fromStdString(text));
}

} // namespace zv
