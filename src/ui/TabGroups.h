// The six tab groups of the main window, side by side in one splitter. Group 0 always shows;
// the others show only while the window asks for them. Each group has the one close button
// that follows its current tab.
#pragma once

#include <QSplitter>

#include <array>

class QTabWidget;

namespace zv {

class TTabCloser;

class TTabGroups : public QSplitter {
    Q_OBJECT
public:
    static constexpr int kCount = 6;

    explicit TTabGroups(QWidget* parent = nullptr);

    // The tab list of group `group` (0..kCount-1; null outside).
    QTabWidget* Group(int group) const;
    bool IsShown(int group) const;
    // Shows or hides a group (group 0 always shows). A hidden group keeps its tabs.
    void SetShown(int group, bool shown);
    // The group whose tab list holds `page` as a tab, or -1.
    int GroupOf(const QWidget* page) const;
    // Shows or hides the tab bars of all groups.
    void SetTabBarsVisible(bool visible);
    bool TabBarsVisible() const;

signals:
    // A tab's close button or a middle click on it.
    void closeRequested(int group, int index);
    // The current tab of a group changed (-1: the group has no tab now).
    void currentChanged(int group, int index);

private:
    std::array<QTabWidget*, kCount> FGroups{};  // children of this splitter
    std::array<TTabCloser*, kCount> FClosers{}; // owned by the groups' tab bars
};

} // namespace zv
