// The one close button that follows the current tab, and the middle click.
#include "ui/TabCloser.h"

#include <QMouseEvent>
#include <QStyle>
#include <QTabBar>
#include <QToolButton>

namespace zv {

TTabCloser::TTabCloser(QTabBar& bar) : QObject(&bar), FBar(bar) {
    bar.installEventFilter(this);
}

void TTabCloser::Follow(int current) {
    // The bar deletes the buttons of a tab it removes, so the button is looked for, not
    // remembered by its tab; the one found is taken back and a new one made for the tab.
    if (FButton) {
        for (int i = 0; i < FBar.count(); ++i)
            if (FBar.tabButton(i, QTabBar::RightSide) == FButton) {
                FBar.setTabButton(i, QTabBar::RightSide, nullptr);
                break;
            }
        FButton->deleteLater();
        FButton = nullptr;
    }
    if (current < 0 || current >= FBar.count())
        return;
    auto* button = new QToolButton(&FBar);
    button->setAutoRaise(true);
    button->setIcon(FBar.style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    button->setToolTip(tr("Close"));
    connect(button, &QToolButton::clicked, this, [this, button] {
        for (int i = 0; i < FBar.count(); ++i)
            if (FBar.tabButton(i, QTabBar::RightSide) == button)
                return emit closeRequested(i);
    });
    FBar.setTabButton(current, QTabBar::RightSide, button);
    FButton = button;
}

bool TTabCloser::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonRelease) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() == Qt::MiddleButton) {
            if (const int index = FBar.tabAt(mouse->position().toPoint()); index >= 0) {
                emit closeRequested(index);
                return true;
            }
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace zv
