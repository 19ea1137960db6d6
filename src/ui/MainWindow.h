// The Zevrit main window: one tab group of editor widgets, the File menu, and the view
// side of the main object.
#pragma once

#include "shell/MainForm.h"
#include "shell/MainFormHelper.h"

#include <QMainWindow>

class QTabWidget;

namespace zv {

class TEditorWidget;

class TMainWindow : public QMainWindow, public IMainView, public IDocumentListener {
    Q_OBJECT
public:
    explicit TMainWindow(TMainFormHelper& helper, QWidget* parent = nullptr);
    ~TMainWindow() override;

    // IMainView
    bool IsVisible() const override;
    bool IsMinimized() const override;
    void BringUp() override;
    void ShowLine(int line) override;

    // IDocumentListener
    void DocumentAdded(TDocument& doc) override;
    void DocumentRemoved(TDocument& doc) override;
    void DocumentActivated(TDocument& doc) override;
    void DocumentReloaded(TDocument& doc) override;

    QTabWidget* TabGroup() const { return FTabs; }
    TEditorWidget* EditorAt(int index) const;

private:
    void CreateMenus();
    void OpenFileClick();
    void SaveClick();
    void CloseTabClick(int index);
    void TabChanged(int index);
    int IndexOf(const TDocument& doc) const;
    void UpdateTitle();

    TMainFormHelper& FHelper;
    QTabWidget* FTabs;
    bool FSyncingTabs = false; // set while the helper drives the tab group
};

} // namespace zv
