// The code explorer: a dockable panel with the outer items of the active document (namespaces,
// classes, structures) above the members of the selected one, a filter box over both, the
// items around the caret kept selected as the caret moves, and a click that goes to an item's
// line. The structure comes with each fold pass of the editor's background thread, so the main
// thread never reads the document's rows for it.
#pragma once

#include "syntax/CodeLists.h"

#include <QDockWidget>
#include <QPointer>

#include <memory>

class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QStackedWidget;

namespace zv {

class TEditorWidget;

class TCodeExplorerPanel : public QDockWidget {
    Q_OBJECT
public:
    explicit TCodeExplorerPanel(QWidget* parent = nullptr);
    ~TCodeExplorerPanel() override;

    // The editor to explore (null: none). The same editor again only brings the selection in
    // step with its caret, which costs a search of the structure, never a rebuild.
    void Follow(TEditorWidget* editor);

    // The structure in force: null until the first fold pass that built it is in.
    const TCodeStructure* Structure() const { return FStructure.get(); }
    // The lists as shown (FCEList1, FCEList2) and the selected indices (-1 none).
    const std::vector<TCEListObjectType>& OuterList() const { return FCEList1; }
    const std::vector<TCEListObjectType>& MemberList() const {
        return FShowingModule ? FModuleList : FCEList2;
    }
    int OuterIndex() const { return FCEListIndex1; }
    int MemberIndex() const { return FCEListIndex2; }
    QListWidget* OuterView() const { return FOuter; }
    QListWidget* MemberView() const { return FShowingModule ? FModuleView : FMembers; }
    QLineEdit* FilterBox() const { return FFilter; }

private:
    void TakeStructure(); // the editor's latest structure, shown when it is new
    void FillOuter();     // FCEList1 from the structure, then the members
    void FillMembers();   // FCEList2 of the selected outer entry
    void FillModule();    // FModuleList and its view
    void SyncToCaret();   // selects the entries around the caret
    void ApplyFilter();
    void GoTo(const TCEListObjectType& entry);
    void SelectRow(QListWidget* view, int row);

    QPointer<TEditorWidget> FEditor;
    QMetaObject::Connection FFoldsWatch;
    QLineEdit* FFilter;
    QListWidget* FOuter;
    QListWidget* FMembers;
    // "Module" lists every free function: built once per structure and kept, so the caret
    // going in and out of classes never refills a long list.
    QListWidget* FModuleView;
    QStackedWidget* FMemberPages;
    std::vector<TCEListObjectType> FModuleList;
    bool FShowingModule = false;
    std::shared_ptr<const TCodeStructure> FStructure;
    std::vector<TCEListObjectType> FCEList1, FCEList2;
    TCEListObjectRec CEClassRec, CEMethodRec;
    int FCEListIndex1 = -1, FCEListIndex2 = -1;
    int FMembersOf = -1;     // the outer index FCEList2 was built for
    bool FSelecting = false; // the panel moves its own selection: no navigation
    std::u16string FSeparator;
};

} // namespace zv
