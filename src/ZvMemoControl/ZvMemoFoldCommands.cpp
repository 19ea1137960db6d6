// The control's side of folding: the fold commands, rows revealed where the caret, a search
// or a go-to lands, and folds opened before an edit would put rows among hidden ones. Every
// write of fold flags happens with the document's reader paused: its thread reads row flags.
#include "ZvMemoControl/ZvMemo.h"

#include "ZvMemoControl/ZvMemoFolds.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <algorithm>

namespace zv {

bool TZvCustomMemo::WithFolds(const std::function<bool(TZvMemoStrings&)>& work) {
    bool changed = false;
    FDoc->WithReaderPaused([&] { changed = work(*FLines); });
    if (!changed)
        return false;
    if (FLines->GetHiddenLine(FCurY)) { // the caret goes to the head that hid its row
        const int row = PrevVisibleRow(FCurY);
        FCurY = row;
        FCurX = std::min(FCurX, RowLength(row));
        ClearSelection();
        NotifyCursor();
    }
    if (FOnInvalidate)
        FOnInvalidate(0, -1);
    return true;
}

bool TZvCustomMemo::RevealRow(int row) {
    if (!FLines->GetHiddenLine(row))
        return false;
    return WithFolds([row](TZvMemoStrings& lines) { return OpenNodesOnHiddenLine(lines, row); });
}

void TZvCustomMemo::OpenFoldsForEdit(TZvPos from, TZvPos to, bool breaks) {
    // Typing on a closed fold's head keeps it closed; an edit across rows, or one that adds
    // a line end there, opens the folds it touches so no new row lands among hidden ones.
    const bool rows = breaks || from.Y != to.Y;
    bool needed = false;
    for (int row = from.Y; row <= to.Y && !needed; ++row)
        needed = FLines->GetHiddenLine(row) || (rows && IsFoldClosed(*FLines, row));
    if (!needed)
        return;
    WithFolds([&](TZvMemoStrings& lines) {
        bool opened = false;
        for (int row = from.Y; row <= to.Y; ++row) {
            opened = OpenNodesOnHiddenLine(lines, row) || opened;
            if (rows && IsFoldClosed(lines, row))
                opened = ToggleNode(lines, row, true) || opened;
        }
        return opened;
    });
}

bool TZvCustomMemo::ToggleFoldAt(int row) {
    if (!IsFoldHead(*FLines, row))
        return false;
    const bool open = IsFoldClosed(*FLines, row);
    return WithFolds([&](TZvMemoStrings& lines) { return ToggleNode(lines, row, open); });
}

bool TZvCustomMemo::acnFoldAll() {
    return WithFolds([](TZvMemoStrings& lines) { return CloseAllNodes(lines) > 0; });
}

bool TZvCustomMemo::acnUnfoldAll() {
    return WithFolds([](TZvMemoStrings& lines) { return OpenAllNodes(lines) > 0; });
}

bool TZvCustomMemo::acnFoldLevel(int level) {
    return WithFolds(
        [level](TZvMemoStrings& lines) { return CloseNodesOfLevel(lines, level) > 0; });
}

bool TZvCustomMemo::acnToggleCurrentFold() {
    if (IsFoldHead(*FLines, FCurY) && IsFoldClosed(*FLines, FCurY))
        return ToggleFoldAt(FCurY);
    return WithFolds([this](TZvMemoStrings& lines) { return CloseNearestNode(lines, FCurY); });
}

bool TZvCustomMemo::acnGoToFoldStart() {
    int head = FoldHeadAround(*FLines, FCurY);
    if (head == FCurY) { // on a head already: the head of the fold around this one
        head = FCurY - 1;
        while (head >= 0) {
            head = FoldHeadAround(*FLines, head);
            if (head < 0 || GetNodeEndFromTopLine(*FLines, head) >= FCurY)
                break;
            --head; // a fold that ended above: look further up
        }
    }
    if (head < 0)
        return false;
    SetTextCursor(0, head);
    return true;
}

bool TZvCustomMemo::acnGoToFoldEnd() {
    const int head = FoldHeadAround(*FLines, FCurY);
    if (head < 0)
        return false;
    const int end = GetNodeEndFromTopLine(*FLines, head);
    if (end == FCurY)
        return false;
    SetTextCursor(RowLength(end), end); // a closed fold opens to show it
    return true;
}

bool TZvCustomMemo::acnCloseCurrentNestedNodes() {
    const int head = FoldHeadAround(*FLines, FCurY);
    return head >= 0 && WithFolds([head](TZvMemoStrings& lines) {
               return CloseNestedNodes(lines, head, false) > 0;
           });
}

bool TZvCustomMemo::acnCloseCurrentNestedRegions() {
    const int head = RegionHeadAround(*FLines, FCurY);
    return head >= 0 && WithFolds([head](TZvMemoStrings& lines) {
               return CloseNestedNodes(lines, head, true) > 0;
           });
}

bool TZvCustomMemo::acnAddSelectionFold() {
    const int first = HasSelection() ? std::min(FSelStartY, FSelEndY) : FCurY;
    const int last = HasSelection() ? std::max(FSelStartY, FSelEndY) : FCurY;
    if (last <= first)
        return false;
    FDoc->WithReaderPaused([&] { SelNodesAdd(*FLines, first, last); });
    ClearSelection();
    SetTextCursor(0, first);
    return ToggleFoldAt(first);
}

bool TZvCustomMemo::acnRemoveSelectionFold() {
    return WithFolds([this](TZvMemoStrings& lines) { return SelNodesRemove(lines, FCurY); });
}

} // namespace zv
