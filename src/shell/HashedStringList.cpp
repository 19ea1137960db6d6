// A list of strings with hashed lookups by whole string and by name (the text before "=").
#include "shell/HashedStringList.h"

#include <algorithm>

namespace zv {

namespace {

bool IsBlank(char16_t c) {
    return c == u' ' || c == u'\t';
}

} // namespace

void THashedStringList::FindName(TItem& item) {
    const std::u16string_view text = item.Text;
    item.NameStart = item.NameLength = 0;
    const size_t eq = text.find(u'=');
    const size_t first = text.find_first_not_of(u" \t");
    if (eq == std::u16string_view::npos || first == std::u16string_view::npos || first >= eq ||
        text[first] == u';')
        return;
    size_t end = eq;
    while (end > first && IsBlank(text[end - 1]))
        --end;
    item.NameStart = static_cast<uint32_t>(first);
    item.NameLength = static_cast<uint32_t>(end - first);
}

std::u16string_view THashedStringList::Names(int index) const {
    const TItem& item = FItems[index];
    return std::u16string_view(item.Text).substr(item.NameStart, item.NameLength);
}

std::u16string_view THashedStringList::ValueFromIndex(int index) const {
    const std::u16string_view text = FItems[index].Text;
    const size_t eq = text.find(u'=');
    return eq == std::u16string_view::npos ? std::u16string_view() : text.substr(eq + 1);
}

void THashedStringList::IndexItem(uint32_t index) {
    FTextIndex.emplace(FoldedHash(std::u16string_view(FItems[index].Text)), index);
    if (FItems[index].NameLength != 0)
        FNameIndex.emplace(FoldedHash(Names(static_cast<int>(index))), index);
}

void THashedStringList::UnindexItem(uint32_t index) {
    auto drop = [index](TIndex& table, uint64_t hash) {
        auto [first, last] = table.equal_range(hash);
        for (auto it = first; it != last; ++it)
            if (it->second == index) {
                table.erase(it);
                return;
            }
    };
    drop(FTextIndex, FoldedHash(std::u16string_view(FItems[index].Text)));
    if (FItems[index].NameLength != 0)
        drop(FNameIndex, FoldedHash(Names(static_cast<int>(index))));
}

void THashedStringList::Rebuild() {
    FTextIndex.clear();
    FNameIndex.clear();
    for (uint32_t i = 0; i < FItems.size(); ++i)
        IndexItem(i);
}

int THashedStringList::Add(std::u16string text, std::unique_ptr<THashedStringList> object) {
    TItem& item = FItems.emplace_back();
    item.Text = std::move(text);
    item.Object = std::move(object);
    FindName(item);
    IndexItem(static_cast<uint32_t>(FItems.size() - 1));
    return Count() - 1;
}

void THashedStringList::Insert(int index, std::u16string text,
                               std::unique_ptr<THashedStringList> object) {
    if (index == Count()) {
        Add(std::move(text), std::move(object));
        return;
    }
    TItem item;
    item.Text = std::move(text);
    item.Object = std::move(object);
    FindName(item);
    FItems.insert(FItems.begin() + index, std::move(item));
    Rebuild();
}

void THashedStringList::SetString(int index, std::u16string text) {
    UnindexItem(static_cast<uint32_t>(index));
    FItems[index].Text = std::move(text);
    FindName(FItems[index]);
    IndexItem(static_cast<uint32_t>(index));
}

void THashedStringList::Delete(int index) {
    if (index == Count() - 1) {
        UnindexItem(static_cast<uint32_t>(index));
        FItems.pop_back();
        return;
    }
    FItems.erase(FItems.begin() + index);
    Rebuild();
}

void THashedStringList::Clear() {
    FItems.clear();
    FTextIndex.clear();
    FNameIndex.clear();
}

void THashedStringList::Move(int from, int to) {
    if (from == to)
        return;
    if (from < to)
        std::rotate(FItems.begin() + from, FItems.begin() + from + 1, FItems.begin() + to + 1);
    else
        std::rotate(FItems.begin() + to, FItems.begin() + from, FItems.begin() + from + 1);
    Rebuild();
}

void THashedStringList::Sort() {
    std::stable_sort(FItems.begin(), FItems.end(), [](const TItem& a, const TItem& b) {
        return FoldedCompare(a.Text, b.Text) < 0;
    });
    Rebuild();
}

template <class Equal>
int THashedStringList::Lowest(const TIndex& table, uint64_t hash, Equal equal) const {
    int best = -1;
    auto [first, last] = table.equal_range(hash);
    for (auto it = first; it != last; ++it) {
        const int index = static_cast<int>(it->second);
        if ((best < 0 || index < best) && equal(index))
            best = index;
    }
    return best;
}

int THashedStringList::IndexOf(TIniName text) const {
    return Lowest(FTextIndex, text.Hash(),
                  [&](int index) { return text.Matches(FItems[index].Text); });
}

int THashedStringList::IndexOfName(TIniName name) const {
    return Lowest(FNameIndex, name.Hash(), [&](int index) { return name.Matches(Names(index)); });
}

} // namespace zv
