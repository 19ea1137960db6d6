// The sort commands and duplicate removal: the lines are ordered as views of the store's
// rows and written back as one change, so a million lines make one undo record.
#include "ZvMemoControl/SuperSort.h"
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoCommandUndo.h"
#include "ZvMemoControl/ZvMemoLineBlock.h"

#include <unordered_set>

namespace zv {

namespace {

std::vector<std::u16string_view> Views(const TLineList& lines) {
    std::vector<std::u16string_view> views(lines.Lines.size());
    for (std::size_t i = 0; i < views.size(); ++i)
        views[i] = lines.Lines[i].View();
    return views;
}

// The lines in `order`, with the line ends left where they stood.
void Reorder(const TLineList& lines, const std::vector<std::uint32_t>& order, TLineList& result) {
    result.Lines.reserve(order.size());
    for (std::uint32_t i : order)
        result.Lines.push_back(lines.Lines[i]);
    result.Ends.assign(lines.Ends.begin(),
                       lines.Ends.begin() +
                           static_cast<std::ptrdiff_t>(order.empty() ? 0 : order.size() - 1));
}

} // namespace

bool TZvMemo::acnSort(int start, int end, bool descending, bool ignoreCase, bool numeric,
                      bool removeDuplicates) {
    TSortKey key;
    key.Start = start;
    key.End = end;
    key.Descending = descending;
    key.IgnoreCase = ignoreCase;
    key.Numeric = numeric;
    return acnAdvancedSort({key}, removeDuplicates);
}

bool TZvMemo::acnSortSelectedLines() {
    return acnSort(1, 0, false, false, false, false);
}

bool TZvMemo::acnSortSelectedLinesDesc() {
    return acnSort(1, 0, true, false, false, false);
}

bool TZvMemo::acnSortSelectedLinesNumeric() {
    return acnSort(1, 0, false, false, true, false);
}

bool TZvMemo::acnSortSelectedLinesNumericDesc() {
    return acnSort(1, 0, true, false, true, false);
}

bool TZvMemo::acnAdvancedSort(const std::vector<TSortKey>& keys, bool removeDuplicates) {
    if (keys.empty() || DocState().FTextDiffMode)
        return false;
    return RunLineCommand(*this, false, std::make_unique<TSortUndo>(),
                          [&](const TLineList& lines, TLineList& result) {
                              const auto views = Views(lines);
                              TSuperSort sort;
                              sort.FTabSize = DocState().FTabSize;
                              std::vector<std::uint32_t> order = sort.Sort(views, keys);
                              if (removeDuplicates)
                                  TSuperSort::RemoveDuplicates(views, order);
                              Reorder(lines, order, result);
                          });
}

bool TZvMemo::acnDeleteDuplicateLines() {
    return RunLineCommand(*this, false, std::make_unique<TDeleteLinesUndo>(),
                          [](const TLineList& lines, TLineList& result) {
                              std::unordered_set<std::u16string_view> seen;
                              seen.reserve(lines.Lines.size());
                              std::vector<std::uint32_t> order;
                              for (int i = 0; i < lines.Count(); ++i)
                                  if (seen.insert(lines.Text(i)).second)
                                      order.push_back(static_cast<std::uint32_t>(i));
                              Reorder(lines, order, result);
                          });
}

} // namespace zv
