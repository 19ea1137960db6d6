// The program's own lists of wide (UTF-16) strings: TZvWideStrings, the abstract list with
// update nesting and the operations that need only reading and the primitives, and
// TZvWideStringList, which adds sorting, binary search and the duplicates rule. The line
// store (TZvMemoStrings) is the one concrete list and keeps the rows itself.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

class TZvWideStrings {
public:
    virtual ~TZvWideStrings() = default;

    // Primitives of a concrete list. Out-of-range reads answer empty.
    virtual int Count() const = 0;
    virtual std::u16string_view Get(int row) const = 0;
    virtual int Add(std::u16string_view s) = 0;
    virtual void Insert(int row, std::u16string_view s) = 0;
    virtual void Delete(int row) = 0;
    virtual void Clear() = 0;
    virtual void Exchange(int a, int b) = 0;

    void Append(std::u16string_view s) { Add(s); }
    void AddStrings(const std::vector<std::u16string>& lines);
    // Same number of rows with the same text.
    bool Equals(const TZvWideStrings& other) const;
    // First row equal to `s` (by the list's comparison), or -1.
    int IndexOf(std::u16string_view s) const;
    // Row of the first "name=value" row whose name matches, or -1.
    int IndexOfName(std::u16string_view name) const;

    // Nested updates: change events wait until the outermost EndUpdate.
    void BeginUpdate() { ++FUpdateCount; }
    void EndUpdate() {
        if (FUpdateCount > 0 && --FUpdateCount == 0)
            UpdatesEnded();
    }
    int UpdateCount() const { return FUpdateCount; }

    // Which encoding the next load and save use (at most one set; see the codec).
    bool FSaveUnicode = false;
    bool FSaved = false;

protected:
    // -1, 0 or 1; case-sensitive here, as the list says in TZvWideStringList.
    virtual int CompareStrings(std::u16string_view a, std::u16string_view b) const;
    virtual void UpdatesEnded() {}
    int FUpdateCount = 0;
};

enum TDuplicates : std::uint8_t { dupIgnore, dupAccept, dupError };

class TZvWideStringList : public TZvWideStrings {
public:
    // Binary search in a sorted list: true when found; `index` is where `s` is or would go.
    bool Find(std::u16string_view s, int& index) const;
    void Sort();
    virtual void
    CustomSort(const std::function<int(std::u16string_view, std::u16string_view)>& compare);

    bool FCaseSensitive = false;
    TDuplicates FDuplicates = dupAccept; // for Add to a sorted list
    bool FSorted = false;                // Add keeps the order
    std::function<void()> OnChange;
    std::function<void()> OnChanging;

protected:
    int CompareStrings(std::u16string_view a, std::u16string_view b) const override;
    // Where Add puts `s` in a sorted list: the row, or -1 when a duplicate is ignored.
    // Throws std::runtime_error for a duplicate with dupError.
    int SortedAddIndex(std::u16string_view s) const;
    void UpdatesEnded() override { Changed(); }
    void Changed() {
        if (FUpdateCount == 0 && OnChange)
            OnChange();
    }
    void Changing() {
        if (FUpdateCount == 0 && OnChanging)
            OnChanging();
    }
};

} // namespace zv
