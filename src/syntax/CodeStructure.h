// The structure of a document for the code explorer: its named blocks (namespaces, classes,
// functions, methods), found from the syntax's fold definitions ([Fold] with a ListItem, and
// [FoldOptions] List_AsMethod and List_Exclude for blocks no definition names). The document's
// background thread builds it with each fold pass and hands both over in one step; markup
// tags come from that pass's folds.
#pragma once

#include "ZvMemoControl/StyleTypes.h"
#include "ZvMemoControl/ZvMemoFolds.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "syntax/ScanContext.h"

#include <atomic>
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
    // True when both list the same items (kind, text and rows), so lists made of one serve
    // the other. Linear in the items.
    bool SameItemsAs(const TCodeStructure& other) const;
    // The item with fold number `idNr`, or -1.
    int FindId(std::int32_t idNr) const;
    // The same with its head row known: O(log n).
    int FindId(std::int32_t idNr, int row) const;
};

// Builds the TCodeStructure of `rows` by the document's syntax; without a syntax it is empty.
// `fromThread`: the background thread's way, each row read under the store's lock, while the
// main thread keeps the rows unchanged (the reader's pause); false on the main thread. Null
// when `halt` stopped it. `folds`, a fold pass over the same rows, gives the markup tags
// (folds the syntax names ceTag and its kin); without it there are none. Linear in the rows,
// one row scan each.
std::shared_ptr<const TCodeStructure>
BuildCodeStructure(const TZvMemoStrings& rows, const TScanContext& ctx, bool fromThread = false,
                   const std::atomic<bool>* halt = nullptr, const TFoldTemp* folds = nullptr);

// Kinds that name a callable (function, method, constructor, destructor, local method).
bool IsCallableKind(TCEListItemType kind);

} // namespace zv
