// Closing tabs from the tab bar: a close button on the current tab only, and a middle click
// on any tab. A button on every tab would make each added tab lay out all the others, which
// turns opening hundreds of files at once from milliseconds into seconds.
#pragma once

#include <QObject>
#include <QPointer>
#include <QToolButton>

class QTabBar;

namespace zv {

class TTabCloser : public QObject {
    Q_OBJECT
public:
    // Serves `bar`; `closeRequested(index)` is emitted for the tab to close.
    explicit TTabCloser(QTabBar& bar);

    // The current tab changed: the button moves to it.
    void Follow(int current);

signals:
    void closeRequested(int index);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QTabBar& FBar;
    QPointer<QToolButton> FButton; // on the current tab; null once the bar deleted it
};

} // namespace zv
