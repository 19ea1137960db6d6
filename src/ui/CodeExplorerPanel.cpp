// The code explorer panel: takes the active editor's structure as each fold pass hands it over,
// shows the two lists, follows the caret and goes to a clicked item's line.
#include "ui/CodeExplorerPanel.h"

#include "ZvMemoControl/ZvMemoStyles.h"
#include "shell/Language.h"
#include "ui/EditorWidget.h"

#include <QLineEdit>
#include <QListWidget>
#include <QSplitter>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace zv {

namespace {

QString Lang(const char* key, const char* text) {
    return QString::fromStdString(LangText("Misc", key, text));
}

QString Shown(const TCEListObjectType& e) {
    return QString(e.nLevel * 2, QLatin1Char(' ')) + QString::fromStdU16String(e.sLong);
}

} // namespace

TCodeExplorerPanel::TCodeExplorerPanel(QWidget* parent)
    : QDockWidget(Lang("450", "Code explorer"), parent), FFilter(new QLineEdit),
      FOuter(new QListWidget), FMembers(new QListWidget), FModuleView(new QListWidget),
      FMemberPages(new QStackedWidget) {
    setObjectName(QStringLiteral("CodeExplorerDock"));
    FFilter->setObjectName(QStringLiteral("CodeExplorerFilter"));
    FFilter->setPlaceholderText(Lang("451", "Filter"));
    FFilter->setClearButtonEnabled(true);
    FOuter->setObjectName(QStringLiteral("CodeExplorerOuter"));
    FMembers->setObjectName(QStringLiteral("CodeExplorerMembers"));
    auto* split = new QSplitter(Qt::Vertical);
    split->addWidget(FOuter);
    FModuleView->setObjectName(QStringLiteral("CodeExplorerModule"));
    // One row height for all: a long list then lays out and scrolls without measuring
    // every item.
    for (QListWidget* view : {FOuter, FMembers, FModuleView})
        view->setUniformItemSizes(true);
    FMemberPages->addWidget(FMembers);
    FMemberPages->addWidget(FModuleView);
    split->addWidget(FMemberPages);
    auto* body = new QWidget;
    auto* layout = new QVBoxLayout(body);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->addWidget(FFilter);
    layout->addWidget(split, 1);
    setWidget(body);

    connect(FFilter, &QLineEdit::textChanged, this, &TCodeExplorerPanel::ApplyFilter);
    const auto outerChosen = [this](QListWidgetItem* item) {
        const int row = FOuter->row(item);
        if (row < 0 || row >= static_cast<int>(FCEList1.size()))
            return;
        FCEListIndex1 = row;
        FillMembers();
        GoTo(FCEList1[static_cast<std::size_t>(row)]);
    };
    const auto memberChosen = [this](QListWidgetItem* item) {
        const int row = MemberView()->row(item);
        if (row >= 0 && row < static_cast<int>(MemberList().size()))
            GoTo(MemberList()[static_cast<std::size_t>(row)]);
    };
    connect(FOuter, &QListWidget::itemClicked, this, outerChosen);
    connect(FOuter, &QListWidget::itemActivated, this, outerChosen);
    connect(FMembers, &QListWidget::itemClicked, this, memberChosen);
    connect(FMembers, &QListWidget::itemActivated, this, memberChosen);
    connect(FModuleView, &QListWidget::itemClicked, this, memberChosen);
    connect(FModuleView, &QListWidget::itemActivated, this, memberChosen);
}

TCodeExplorerPanel::~TCodeExplorerPanel() = default;

void TCodeExplorerPanel::Follow(TEditorWidget* editor) {
    if (editor == FEditor) {
        SyncToCaret();
        return;
    }
    disconnect(FFoldsWatch);
    FEditor = editor;
    FStructure.reset();
    if (editor)
        FFoldsWatch =
            connect(editor, &TEditorWidget::FoldsApplied, this, &TCodeExplorerPanel::TakeStructure);
    TakeStructure();
}

void TCodeExplorerPanel::TakeStructure() {
    TDocumentScan* scan = FEditor ? FEditor->Scan() : nullptr;
    std::shared_ptr<const TCodeStructure> structure;
    if (scan) {
        scan->WantStructure();
        structure = scan->Folds().Structure();
        const TZvCustomMemoStyles* styles = scan->Styles();
        FSeparator = styles ? styles->FList_Class_Separator : std::u16string();
    } else if (FEditor) {
        structure = std::make_shared<TCodeStructure>(); // plain text: only the fixed entries
    }
    if (structure == FStructure && structure)
        return;
    // An edit that left the items as they were (typing inside a body) keeps the lists.
    const bool same = structure && FStructure && structure->SameItemsAs(*FStructure);
    FStructure = std::move(structure);
    if (same)
        SyncToCaret();
    else
        FillOuter();
}

void TCodeExplorerPanel::FillOuter() {
    FOuter->clear();
    FMembers->clear();
    FModuleView->clear();
    FCEList1.clear();
    FCEList2.clear();
    FModuleList.clear();
    FCEListIndex1 = FCEListIndex2 = FMembersOf = -1;
    if (!FStructure || !FEditor)
        return;
    GetMainFoldList(*FStructure, FEditor->CaretRow(), DefaultOuterTypes(), FSeparator, FCEList1,
                    CEClassRec);
    QStringList texts;
    texts.reserve(static_cast<qsizetype>(FCEList1.size()));
    for (const TCEListObjectType& e : FCEList1)
        texts.push_back(Shown(e));
    FOuter->addItems(texts);
    FillModule();
    SyncToCaret();
    ApplyFilter();
}

void TCodeExplorerPanel::FillModule() {
    TCEListObjectType module;
    module.itemType = ceModule;
    GetMethodFoldList(*FStructure, module, FEditor->CaretRow(), DefaultMemberTypes(), FSeparator,
                      FModuleList, CEMethodRec);
    QStringList texts;
    texts.reserve(static_cast<qsizetype>(FModuleList.size()));
    for (const TCEListObjectType& e : FModuleList)
        texts.push_back(QString::fromStdU16String(e.sLong));
    FModuleView->addItems(texts);
}

void TCodeExplorerPanel::FillMembers() {
    FCEListIndex2 = -1;
    FMembersOf = FCEListIndex1;
    FShowingModule = FCEListIndex1 >= 0 &&
                     FCEList1[static_cast<std::size_t>(FCEListIndex1)].itemType == ceModule;
    FMemberPages->setCurrentWidget(MemberView());
    if (FShowingModule)
        return;
    FMembers->clear();
    FCEList2.clear();
    if (!FStructure || !FEditor || FCEListIndex1 < 0)
        return;
    GetMethodFoldList(*FStructure, FCEList1[static_cast<std::size_t>(FCEListIndex1)],
                      FEditor->CaretRow(), DefaultMemberTypes(), FSeparator, FCEList2, CEMethodRec);
    QStringList texts;
    texts.reserve(static_cast<qsizetype>(FCEList2.size()));
    for (const TCEListObjectType& e : FCEList2)
        texts.push_back(QString::fromStdU16String(e.sLong));
    FMembers->addItems(texts);
    if (!FFilter->text().trimmed().isEmpty()) // new rows show; only a filter hides some
        ApplyFilter();
}

void TCodeExplorerPanel::SyncToCaret() {
    if (!FStructure || !FEditor || FCEList1.empty())
        return;
    const int row = FEditor->CaretRow();
    int outer = CurrentEntry(*FStructure, FCEList1, row);
    if (outer < 0) // outside every class: the document's own functions
        for (std::size_t i = 0; i < FCEList1.size(); ++i)
            if (FCEList1[i].itemType == ceModule)
                outer = static_cast<int>(i);
    FCEListIndex1 = outer;
    if (outer != FMembersOf)
        FillMembers();
    SelectRow(FOuter, outer);
    FCEListIndex2 = CurrentEntry(*FStructure, MemberList(), row);
    SelectRow(MemberView(), FCEListIndex2);
}

void TCodeExplorerPanel::SelectRow(QListWidget* view, int row) {
    FSelecting = true;
    view->setCurrentRow(row);
    if (row >= 0)
        view->scrollToItem(view->item(row));
    FSelecting = false;
}

void TCodeExplorerPanel::ApplyFilter() {
    const QString text = FFilter->text().trimmed();
    const auto apply = [&text](QListWidget* view, const std::vector<TCEListObjectType>& list) {
        for (int i = 0; i < view->count() && i < static_cast<int>(list.size()); ++i) {
            const bool fixed = list[static_cast<std::size_t>(i)].Row < 0 &&
                               list[static_cast<std::size_t>(i)].itemType != ceClassName;
            view->item(i)->setHidden(!fixed && !text.isEmpty() &&
                                     !view->item(i)->text().contains(text, Qt::CaseInsensitive));
        }
    };
    apply(FOuter, FCEList1);
    apply(FMembers, FCEList2);
    apply(FModuleView, FModuleList);
}

void TCodeExplorerPanel::GoTo(const TCEListObjectType& entry) {
    if (FSelecting || !FEditor || entry.Row < 0)
        return;
    FEditor->ShowRow(entry.Row);
    FEditor->setFocus();
}

} // namespace zv
