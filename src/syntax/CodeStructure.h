// The structure of a document for the code explorer: its named blocks (namespaces, classes,
// functions, methods), found from the syntax's fold definitions ([Fold] with a ListItem, and
// [FoldOptions] List_AsMethod and List_Exclude for blocks no definition names). The build
// walks the rows in slices, so a large document is read on the main thread a few thousand
// rows at a time and no row is ever read from another thread.
#pragma once

#include "ZvMemoControl/StyleTypes.h"
#include "ZvMemoControl/ZvWideStrings.h"
#include "syntax/ScanContext.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace zv {

// One named block. Invariants: Row <= EndRow; Parent < own index; items of a structure are
// ordered by Row, and a parent's range holds its children's head rows.
struct TStructureItem {
    std::int32_t Row = 0;    // the row holding the name
    std::int32_t EndRow = 0; // the row that closes the block (its last row)
    std::int32_t IdNr = 0;   // from kind and text: the same block keeps it over a rebuild
    std::int32_t Parent = -1;
    TCEListItemType Kind = ceNone;
    std::int8_t Level = 0; // number of enclosing items
    std::u16string Name;   // the bare name ("Foo::bar" for a qualified method)
    std::u16string Text;   // the head row, trimmed
    std::u16string Owner;  // the class part of a qualified name ("Foo" of "Foo::bar")
};

class TCodeStructure {
public:
    std::vector<TStructureItem> Items;
    std::int32_t RowCount = 0; // rows of the document it was built from
    // Items by Owner, each list in row order.
    std::unordered_map<std::u16string, std::vector<int>> ByOwner;

    // The innermost item whose range holds `row`, or -1. O(log n + depth).
    int ItemAt(int row) const;
    // The innermost item around `row` whose kind `accept` takes, or -1.
    template <class F> int ItemAt(int row, F accept) const {
        for (int i = ItemAt(row); i >= 0; i = Items[static_cast<std::size_t>(i)].Parent)
            if (accept(Items[static_cast<std::size_t>(i)].Kind))
                return i;
        return -1;
    }
    // The item with fold number `idNr`, or -1.
    int FindId(std::int32_t idNr) const;
    // The same with its head row known: O(log n).
    int FindId(std::int32_t idNr, int row) const;
};

// Builds a TCodeStructure of `rows` by the document's syntax. Rows are read only inside Step,
// which the owner calls on the thread that changes the rows; when the row count changes
// between steps the build is stale and the owner starts a new one.
class TStructureBuild {
public:
    // `rows` and `ctx` must outlive the build. Without a syntax the result is empty.
    TStructureBuild(const TZvWideStrings& rows, const TScanContext& ctx);
    ~TStructureBuild();
    TStructureBuild(const TStructureBuild&) = delete;
    TStructureBuild& operator=(const TStructureBuild&) = delete;

    // Reads at most `rowBudget` (> 0) more rows. Returns true when the build is over: done,
    // or stale (the row count changed; Result is then null).
    bool Step(int rowBudget);
    bool Stale() const { return FStale; }
    // The finished structure, null before the end or when stale.
    std::shared_ptr<const TCodeStructure> Result() const { return FResult; }

private:
    struct TState;
    std::unique_ptr<TState> FState;
    std::shared_ptr<const TCodeStructure> FResult;
    bool FStale = false;
};

// The whole build at once (tests, tools, benchmarks).
std::shared_ptr<const TCodeStructure> BuildCodeStructure(const TZvWideStrings& rows,
                                                         const TScanContext& ctx);

// Kinds that name a callable (function, method, constructor, destructor, local method).
bool IsCallableKind(TCEListItemType kind);

} // namespace zv
