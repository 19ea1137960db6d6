// Named key sets of the advanced sort: the dialog's four keys and its whole-line duplicate
// box, kept by name in the settings store (section "SortKeySets").
#pragma once

#include "ZvMemoControl/SuperSort.h"
#include "shell/ZvIniFiles.h"

#include <array>
#include <string>
#include <vector>

namespace zv {

struct TSortKeySet {
    struct TRow {
        bool Enabled = false;
        TSortKey Key;
    };
    std::array<TRow, 4> Rows{};
    bool RemoveDuplicates = false;
};

// The names of the stored sets, in the store's order.
std::vector<std::u16string> SortKeySetNames(const TCustomIniFile& ini);
// Stores `set` under `name` (replacing a set of that name, names ignore case). False, and
// nothing stored, for a name that is empty, holds "=" or starts with ";" or a blank.
bool SaveSortKeySet(TCustomIniFile& ini, const std::u16string& name, const TSortKeySet& set);
// The set stored under `name`; false, `set` untouched, when there is none or it is damaged.
bool LoadSortKeySet(const TCustomIniFile& ini, const std::u16string& name, TSortKeySet& set);
void DeleteSortKeySet(TCustomIniFile& ini, const std::u16string& name);

} // namespace zv
