// A list of strings with hashed lookups by whole string and by name (the text before "=").
#pragma once

#include "shell/IniName.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace zv {

// Lines in order, each optionally owning a nested list (a settings file keeps its sections
// as a list of names whose objects are the section's lines). Lookups ignore case and cost
// one hash probe; among equal strings or names the lowest index wins.
// Both hash tables are kept exact after every change, so const lookups never write and
// may run on several threads at once while nobody changes the list.
class THashedStringList {
public:
    THashedStringList() = default;
    THashedStringList(THashedStringList&&) noexcept = default;
    THashedStringList& operator=(THashedStringList&&) noexcept = default;

    int Count() const { return static_cast<int>(FItems.size()); }
    // index must lie in [0, Count()) for every indexed call below.
    const std::u16string& Strings(int index) const { return FItems[index].Text; }
    // The name: text before the first "=" with blanks (space, tab) around it cut. Empty for a
    // line without "=", and for a comment line (first non-blank character ";").
    std::u16string_view Names(int index) const;
    // Everything behind the first "=", untouched; empty for a line without "=".
    std::u16string_view ValueFromIndex(int index) const;
    // The nested list of the line, or null.
    THashedStringList* Objects(int index) const { return FItems[index].Object.get(); }

    int Add(std::u16string text, std::unique_ptr<THashedStringList> object = nullptr);
    // index in [0, Count()]; moves later lines down and rebuilds the tables.
    void Insert(int index, std::u16string text,
                std::unique_ptr<THashedStringList> object = nullptr);
    void SetString(int index, std::u16string text);
    void Delete(int index);
    void Clear();
    // Moves line from to position to (both in range), as removing then inserting it.
    void Move(int from, int to);
    // Stable sort, ignoring case.
    void Sort();

    // Lowest index of a line equal to text ignoring case, or -1.
    int IndexOf(TIniName text) const;
    // Lowest index of a line whose name equals name ignoring case, or -1. Empty names are
    // never found.
    int IndexOfName(TIniName name) const;

private:
    struct TItem {
        std::u16string Text;
        uint32_t NameStart = 0;
        uint32_t NameLength = 0; // 0: the line has no name
        std::unique_ptr<THashedStringList> Object;
    };
    using TIndex = std::unordered_multimap<uint64_t, uint32_t>;

    static void FindName(TItem& item);
    void IndexItem(uint32_t index);
    void UnindexItem(uint32_t index);
    void Rebuild();
    template <class Equal> int Lowest(const TIndex& table, uint64_t hash, Equal equal) const;

    std::vector<TItem> FItems;
    TIndex FTextIndex; // folded hash of Text -> index, one entry per line
    TIndex FNameIndex; // folded hash of the name -> index, one entry per named line
};

} // namespace zv
