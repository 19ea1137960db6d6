// The editor widget's selections that need the scanner's view of the text: the brace pair at
// or around the caret and the text it encloses, and a markup element from its opening tag to
// its closing one.
#include "ui/EditorWidget.h"

#include "ZvMemoControl/ZvMemoStrings.h"

namespace zv {

bool TEditorWidget::BracesAtCaret(TZvPos& open, TZvPos& close) {
    if (!FScan || FMemo.FCurY >= FLines->Count())
        return false;
    const TBracePair pair = FindBracePair(FScan->Scanner(), FMemo.FCurX, FMemo.FCurY, true);
    if (pair.Left.x < 0 || !pair.Matched)
        return false;
    // The pair comes as the brace found and its partner; in document order the first opens.
    open = {pair.Left.x, pair.Left.Y};
    close = {pair.Right.x, pair.Right.Y};
    if (close < open)
        std::swap(open, close);
    return true;
}

bool TEditorWidget::SelectBraceEnclosed(bool withBraces) {
    TZvPos open, close;
    if (!BracesAtCaret(open, close))
        return false;
    if (withBraces)
        ++close.X;
    else
        ++open.X;
    FMemo.SetSelection(open, close);
    AfterCommand();
    return true;
}

bool TEditorWidget::SelectTag() {
    const TTagPosData tag = TagPair();
    if (tag.StartY < 0)
        return false;
    TZvPos end{tag.StartEndX + tag.StartEndLen, tag.StartEndY}; // a tag without a partner
    if (tag.EndY >= 0) {
        const std::u16string_view row = FMemo.RowText(tag.EndY);
        const std::size_t close = row.find(u'>', static_cast<std::size_t>(tag.EndX + tag.EndLen));
        end = {close == std::u16string_view::npos ? static_cast<int>(row.size())
                                                  : static_cast<int>(close) + 1,
               tag.EndY};
    }
    FMemo.SetSelection({tag.StartX, tag.StartY}, end);
    AfterCommand();
    return true;
}

} // namespace zv
