// Helpers of the fold tests: each row's fold data written out, for comparing two documents,
// and a fresh pass over a copy of a text.
#pragma once

#include "ScanTestSupport.h"

#include "ZvMemoControl/ZvMemoFolds.h"
#include "syntax/FoldPass.h"

#include <string>
#include <vector>

namespace zv::test {

// The fold data of each row as text: head and end flags, level, list item, closed and
// hidden, and for a head the row its fold ends on (numbers differ between documents; the
// rows they lead to must not).
inline std::vector<std::string> FoldRows(const TZvMemoStrings& lines) {
    std::vector<std::string> out;
    for (int row = 0; row < lines.Count(); ++row) {
        const TAttribute& a = lines.GetLineAttribute(row);
        std::string s;
        for (auto [bit, mark] : {std::pair{abNodeHead, 'H'},
                                 {abNodeEnd, 'E'},
                                 {abNodeComment, 'C'},
                                 {abRgn_Begin, 'R'},
                                 {abRgn_End, 'r'},
                                 {abNodeClosed, 'X'},
                                 {abRgn_Closed, 'x'},
                                 {abHidden, '.'}})
            if (a.GetValue(bit))
                s += mark;
        if (a.GetValue2(ab2NodeEndBefore))
            s += 'b';
        if (!s.empty() && s != ".") {
            s += " L" + std::to_string(a.Extra().NodeLevel) + "/" +
                 std::to_string(a.Extra().Rgn_Level) + " i" +
                 std::to_string(int(a.Extra().ceListItem)) + " ends" +
                 std::to_string(a.Extra().NodeTopIdNrList.size());
            if (IsFoldHead(lines, row))
                s += " to " + std::to_string(GetNodeEndFromTopLine(lines, row));
        }
        out.push_back(std::to_string(row) + ": " + s);
    }
    return out;
}

// The folds a fresh document of `text` gets: a full scan, a pass, and its hand-over.
inline std::vector<std::string> FreshFoldRows(const std::string& syntax, std::u16string_view text,
                                              int tabSize = 4) {
    TScanDoc doc(syntax, text);
    doc.SweepAll();
    TFoldTemp temp;
    TFoldPassOptions options;
    options.TabSize = tabSize;
    EXPECT_TRUE(RunFoldPass(*doc.Scanner, options, temp, false));
    UpdateFoldData(doc.Store, temp);
    return FoldRows(doc.Store);
}

} // namespace zv::test
