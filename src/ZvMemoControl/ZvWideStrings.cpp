// Operations of the wide-string lists that need only the primitives.
#include "ZvMemoControl/ZvWideStrings.h"

#include "ZvMemoControl/ZvUniUtils.h"

#include <stdexcept>

namespace zv {

void TZvWideStrings::AddStrings(const std::vector<std::u16string>& lines) {
    BeginUpdate();
    for (const auto& line : lines)
        Add(line);
    EndUpdate();
}

bool TZvWideStrings::Equals(const TZvWideStrings& other) const {
    if (other.Count() != Count())
        return false;
    for (int row = 0; row < Count(); ++row)
        if (Get(row) != other.Get(row))
            return false;
    return true;
}

int TZvWideStrings::IndexOf(std::u16string_view s) const {
    for (int row = 0; row < Count(); ++row)
        if (CompareStrings(Get(row), s) == 0)
            return row;
    return -1;
}

int TZvWideStrings::IndexOfName(std::u16string_view name) const {
    for (int row = 0; row < Count(); ++row) {
        const auto s = Get(row);
        const auto eq = s.find(u'=');
        if (eq != std::u16string_view::npos && CompareStrings(s.substr(0, eq), name) == 0)
            return row;
    }
    return -1;
}

int TZvWideStrings::CompareStrings(std::u16string_view a, std::u16string_view b) const {
    const int c = a.compare(b);
    return c < 0 ? -1 : c > 0 ? 1 : 0;
}

int TZvWideStringList::CompareStrings(std::u16string_view a, std::u16string_view b) const {
    if (FCaseSensitive)
        return TZvWideStrings::CompareStrings(a, b);
    return TZvWideStrings::CompareStrings(WUpperCase(a), WUpperCase(b));
}

bool TZvWideStringList::Find(std::u16string_view s, int& index) const {
    int low = 0, high = Count() - 1;
    bool found = false;
    while (low <= high) {
        const int mid = (low + high) / 2;
        const int c = CompareStrings(Get(mid), s);
        if (c < 0) {
            low = mid + 1;
        } else {
            high = mid - 1;
            found = found || c == 0;
        }
    }
    index = low;
    return found;
}

int TZvWideStringList::SortedAddIndex(std::u16string_view s) const {
    int index = 0;
    if (!Find(s, index))
        return index;
    if (FDuplicates == dupIgnore)
        return -1;
    if (FDuplicates == dupError)
        throw std::runtime_error("String list does not allow duplicates");
    return index;
}

void TZvWideStringList::Sort() {
    CustomSort(
        [this](std::u16string_view a, std::u16string_view b) { return CompareStrings(a, b); });
}

void TZvWideStringList::CustomSort(
    const std::function<int(std::u16string_view, std::u16string_view)>& compare) {
    // Insertion sort through the primitives; the line store overrides this with its own.
    Changing();
    for (int i = 1; i < Count(); ++i)
        for (int j = i; j > 0 && compare(Get(j - 1), Get(j)) > 0; --j)
            Exchange(j - 1, j);
    Changed();
}

} // namespace zv
