// The JSON commands: the command's lines are joined, reformatted by FormatJson and written
// back as one replace step; text that is not JSON is left alone and the reason told.
#include "ZvMemoControl/JsonFormat.h"
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoLineBlock.h"
#include "ZvMemoControl/ZvMemoUndo.h"

namespace zv {

namespace {

bool ReformatJson(TZvMemo& memo, int indent, TJsonError* error) {
    int first = 0, last = 0;
    CommandRows(memo, false, first, last);
    TJsonError found;
    const bool changed =
        RunLineCommand(memo, false, std::make_unique<TReplaceUndo>(),
                       [&](const TLineList& lines, TLineList& result) {
                           std::u16string json;
                           for (int i = 0; i < lines.Count(); ++i) {
                               if (i > 0)
                                   json.push_back(u'\n');
                               json.append(lines.Text(i));
                           }
                           std::u16string formatted;
                           if (!FormatJson(json, indent, formatted, found) || formatted == json) {
                               result = lines; // unchanged: nothing is written or recorded
                               return;
                           }
                           TRowArena arena;
                           std::u16string_view rest = formatted;
                           for (;;) {
                               const std::size_t end = rest.find(u'\n');
                               result.Add(arena.Add(rest.substr(0, end)), leDocument);
                               if (end == rest.npos)
                                   break;
                               rest.remove_prefix(end + 1);
                           }
                       });
    if (found.Problem != TJsonProblem::None)
        found.Line += static_cast<std::size_t>(first);
    if (error)
        *error = found;
    return changed;
}

} // namespace

bool TZvMemo::acnJSONPrettyPrint(int indent, TJsonError* error) {
    return ReformatJson(*this, std::max(indent, 0), error);
}

bool TZvMemo::acnJSONMinify(TJsonError* error) {
    return ReformatJson(*this, -1, error);
}

} // namespace zv
