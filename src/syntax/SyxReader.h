// The reader of ".syx" definition files: fills one style set from the file's lines, section by
// section, with the format's quirks (a section ends at its first empty line; a repeated
// section adds to the first). Behaviour is silent as the format asks; anything odd an author
// would want to know about is also reported as a warning for the authoring check.
#pragma once

#include "ZvMemoControl/MemoStyleHost.h"
#include "ZvMemoControl/ZvMemoStyles.h"

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace zv {

// The name lists a load reports (for naming colour rows) and the claimed extensions.
struct TSyxNames {
    TStringList KeyWords, Tags, Blocks;
    std::u16string StandardExtensions;
};

struct TSyxTarget {
    TZvCustomMemoStyles& Styles;
    TMemoStyleHost* Memo; // nullptr: name lists only; [Options], [FoldOptions], [Region] and
                          // [Fold] are then skipped
    TSyxNames& Names;
    std::vector<std::string>& Warnings;
};

// Resets what [Options] would reset, whether or not the file has the section.
void ResetForLoad(TSyxTarget& target);

// Reads all sections of a file's lines (line 1 may be the alias directive: it is a comment
// to this reader).
void ReadSyxLines(const std::vector<std::u16string>& lines, TSyxTarget& target);

// After the sections: numbers-as-symbols, the structure hint lines, the fold word index and
// the compiled regular expressions.
void FinishSyxLoad(TSyxTarget& target);

// Section readers, one per section; `lines` are the section's lines up to its end.
void ReadOptionsLine(TSyxTarget& target, std::u16string_view key, std::u16string_view value);
void EnterFoldOptions(TSyxTarget& target);
void ReadFoldOptionsLine(TSyxTarget& target, std::u16string_view key, std::u16string_view value);
void ReadBlockLine(TSyxTarget& target, std::u16string_view property, std::u16string_view value);
void ReadFoldLine(TSyxTarget& target, std::u16string_view property, std::u16string_view value);

// Helpers shared by the section readers.

// The value named `name` (compared exactly) in a table of names and values, else `none`.
template <class T, std::size_t N>
T FindByName(const std::array<std::pair<std::u16string_view, T>, N>& table,
             std::u16string_view name, T none) {
    for (const auto& [key, value] : table)
        if (key == name)
            return value;
    return none;
}

std::vector<std::u16string> SplitBar(std::u16string_view text);
std::u16string_view TrimBlanks(std::u16string_view text);
void Warn(TSyxTarget& target, std::string message);

} // namespace zv
