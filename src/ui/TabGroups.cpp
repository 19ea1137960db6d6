// The tab groups: six tab lists in a splitter, their signals tagged with the group.
#include "ui/TabGroups.h"

#include "ui/TabCloser.h"

#include <QTabBar>
#include <QTabWidget>

namespace zv {

TTabGroups::TTabGroups(QWidget* parent) : QSplitter(Qt::Horizontal, parent) {
    setChildrenCollapsible(false);
    for (int g = 0; g < kCount; ++g) {
        auto* tabs = new QTabWidget(this);
        tabs->setObjectName(QStringLiteral("TabGroup%1").arg(g));
        tabs->setDocumentMode(true);
        tabs->setMovable(false); // the helper keeps a group's documents in tab order
        addWidget(tabs);
        tabs->setVisible(g == 0);
        FGroups[g] = tabs;
        FClosers[g] = new TTabCloser(*tabs->tabBar());
        connect(tabs, &QTabWidget::tabCloseRequested, this,
                [this, g](int index) { emit closeRequested(g, index); });
        connect(FClosers[g], &TTabCloser::closeRequested, this,
                [this, g](int index) { emit closeRequested(g, index); });
        connect(tabs, &QTabWidget::currentChanged, this, [this, g](int index) {
            FClosers[g]->Follow(index);
            emit currentChanged(g, index);
        });
    }
}

QTabWidget* TTabGroups::Group(int group) const {
    return group >= 0 && group < kCount ? FGroups[group] : nullptr;
}

bool TTabGroups::IsShown(int group) const {
    return group == 0 || (Group(group) && !Group(group)->isHidden());
}

void TTabGroups::SetShown(int group, bool shown) {
    if (group <= 0 || group >= kCount || IsShown(group) == shown)
        return;
    FGroups[group]->setVisible(shown);
    if (!shown)
        return;
    // A group that appears takes an equal share of the width.
    QList<int> sizes = this->sizes();
    int visible = 0, total = 0;
    for (int g = 0; g < kCount; ++g)
        if (IsShown(g)) {
            ++visible;
            total += sizes[g];
        }
    for (int g = 0; g < kCount; ++g)
        sizes[g] = IsShown(g) ? std::max(total, width()) / visible : 0;
    setSizes(sizes);
}

int TTabGroups::GroupOf(const QWidget* page) const {
    for (int g = 0; g < kCount; ++g)
        if (page && FGroups[g]->indexOf(const_cast<QWidget*>(page)) >= 0)
            return g;
    return -1;
}

void TTabGroups::SetTabBarsVisible(bool visible) {
    for (QTabWidget* tabs : FGroups)
        tabs->tabBar()->setVisible(visible);
}

bool TTabGroups::TabBarsVisible() const {
    return !FGroups[0]->tabBar()->isHidden();
}

} // namespace zv
