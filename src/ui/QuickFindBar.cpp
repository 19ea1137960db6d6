// The quick find bar's controls and keys.
#include "ui/QuickFindBar.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace zv {

const QColor TQuickFindBar::kNotFoundBack(255, 220, 200);

TQuickFindBar::TQuickFindBar(QWidget* parent)
    : QWidget(parent), FFind(new QLineEdit(this)), FReplace(new QLineEdit(this)),
      FReplaceRow(new QWidget(this)) {
    setObjectName(QStringLiteral("QuickFindBar"));
    FFind->setObjectName(QStringLiteral("FindField"));
    FReplace->setObjectName(QStringLiteral("ReplaceField"));
    FFind->setPlaceholderText(tr("Find"));
    FReplace->setPlaceholderText(tr("Replace with"));
    FCase = Toggle(tr("Aa"), tr("Match case"), "CaseToggle");
    FWord = Toggle(tr("W"), tr("Whole words"), "WordToggle");
    FRegex = Toggle(tr(".*"), tr("Regular expression"), "RegexToggle");
    FHighlight = Toggle(tr("All"), tr("Highlight all hits"), "HighlightToggle");
    FHighlight->setChecked(true);
    const auto button = [this](QWidget* parent, const QString& text,
                               const std::function<void()>& click) {
        auto* b = new QPushButton(text, parent);
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, click);
        return b;
    };
    auto* findRow = new QHBoxLayout;
    findRow->addWidget(FFind, 1);
    for (QToolButton* t : {FCase, FWord, FRegex, FHighlight})
        findRow->addWidget(t);
    findRow->addWidget(button(this, tr("Previous"), [this] { FOnNext ? FOnNext(true) : void(); }));
    findRow->addWidget(button(this, tr("Next"), [this] { FOnNext ? FOnNext(false) : void(); }));
    findRow->addWidget(button(this, tr("Find all"), [this] { Call(FOnFindAll); }));
    auto* replaceRow = new QHBoxLayout(FReplaceRow);
    replaceRow->setContentsMargins(0, 0, 0, 0);
    replaceRow->addWidget(FReplace, 1);
    replaceRow->addWidget(button(FReplaceRow, tr("Replace"), [this] { Call(FOnReplace); }));
    replaceRow->addWidget(button(FReplaceRow, tr("Replace all"), [this] { Call(FOnReplaceAll); }));
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(4, 2, 4, 2);
    rows->addLayout(findRow);
    rows->addWidget(FReplaceRow);
    connect(FFind, &QLineEdit::textChanged, this, [this] { Call(FOnChanged); });
    connect(FFind, &QLineEdit::returnPressed, this, [this] {
        if (FOnNext)
            FOnNext(false);
    });
    connect(FReplace, &QLineEdit::returnPressed, this, [this] { Call(FOnReplace); });
    FReplaceRow->hide();
    hide();
}

QToolButton* TQuickFindBar::Toggle(const QString& text, const QString& tip, const char* name) {
    auto* t = new QToolButton(this);
    t->setText(text);
    t->setToolTip(tip);
    t->setCheckable(true);
    t->setObjectName(QString::fromLatin1(name));
    connect(t, &QToolButton::toggled, this, [this] { Call(FOnChanged); });
    return t;
}

void TQuickFindBar::Open(bool replace, const QString& text) {
    FReplaceRow->setVisible(replace);
    show();
    if (!text.isEmpty())
        FFind->setText(text);
    FFind->setFocus();
    FFind->selectAll();
}

QString TQuickFindBar::FindText() const {
    return FFind->text();
}
QString TQuickFindBar::ReplaceText() const {
    return FReplace->text();
}
bool TQuickFindBar::MatchCase() const {
    return FCase->isChecked();
}
bool TQuickFindBar::WholeWord() const {
    return FWord->isChecked();
}
bool TQuickFindBar::RegularExpression() const {
    return FRegex->isChecked();
}
bool TQuickFindBar::HighlightAll() const {
    return FHighlight->isChecked();
}

void TQuickFindBar::SetHighlightAll(bool on) {
    const QSignalBlocker quiet(FHighlight);
    FHighlight->setChecked(on);
}

void TQuickFindBar::ShowFound(bool found) {
    QPalette palette = FFind->palette();
    palette.setColor(QPalette::Base,
                     found ? QWidget::palette().color(QPalette::Base) : kNotFoundBack);
    FFind->setPalette(palette);
}

void TQuickFindBar::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        hide();
        Call(FOnClose);
        return;
    }
    QWidget::keyPressEvent(event);
}

} // namespace zv
