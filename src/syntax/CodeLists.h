// The code explorer's two lists over a document's structure: FCEList1, the outer items
// (namespaces, classes, structures, tags), and FCEList2, the members of the item selected in
// it, with the records of the items around the caret.
#pragma once

#include "syntax/CodeStructure.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace zv {

// A set of TCEListItemType, one bit for each kind.
class TCEListItemTypes {
public:
    TCEListItemTypes() = default;
    TCEListItemTypes(std::initializer_list<TCEListItemType> kinds) {
        for (TCEListItemType k : kinds)
            FBits |= Bit(k);
    }
    bool Has(TCEListItemType k) const { return (FBits & Bit(k)) != 0; }
    TCEListItemTypes& operator+=(TCEListItemType k) {
        FBits |= Bit(k);
        return *this;
    }

private:
    static std::uint64_t Bit(TCEListItemType k) { return std::uint64_t(1) << (k & 63); }
    std::uint64_t FBits = 0;
};

// The kinds the outer list shows by default, and those of the member list.
TCEListItemTypes DefaultOuterTypes();
TCEListItemTypes DefaultMemberTypes();

// One entry of a list.
struct TCEListObjectType {
    std::u16string sShort;      // the key: for members the icon digit, then the text
    std::u16string sLong;       // the trimmed text of the head row (members: cut at "(")
    std::u16string sLongParent; // text of the enclosing item
    TCEListItemType itemType = ceNone;
    TCEListItemType itemTypeB = ceNone; // ceClassName: methods found by a qualified name too
    TCEListItemType itemTypeParent = ceNone;
    std::int32_t idNr = 0; // 0 for the fixed entries and classes known only by name
    std::int32_t nLevel = 0;
    std::int32_t Row = -1; // the head row; -1 for entries without a head
};

struct TCEListObjectRec {
    std::u16string sLong, sLongParent;
    TCEListItemType liType = ceNone;
    bool operator==(const TCEListObjectRec&) const = default;
};

// Texts of the fixed entries after "Module" (to-do, bookmarks, favourites) by key of the
// language file's "Misc" section; empty function: those entries are left out.
using TLanguageReader = std::function<std::u16string(const char* key)>;

// GetMainFoldList: FCEList1 of `structure`, keeping kinds in `types`, methods named
// "Class<separator>method" collected under their class; `caretRow` fills `classRec`.
void GetMainFoldList(const TCodeStructure& structure, int caretRow, TCEListItemTypes types,
                     std::u16string_view separator, std::vector<TCEListObjectType>& list,
                     TCEListObjectRec& classRec, const TLanguageReader& language = {});

// GetMethodFoldList: FCEList2, the members of `item` (an entry of FCEList1) in row order,
// kinds in `types`; the member around `caretRow` goes to `methodRec`. "Module" and classes
// known only by name look through the whole document.
void GetMethodFoldList(const TCodeStructure& structure, const TCEListObjectType& item, int caretRow,
                       TCEListItemTypes types, std::u16string_view separator,
                       std::vector<TCEListObjectType>& list, TCEListObjectRec& methodRec);

// GetFunctionList: every callable of the document in row order.
std::vector<TCEListObjectType> GetFunctionList(const TCodeStructure& structure,
                                               std::u16string_view separator);

// The entry text of a member: the head text up to the first of "{", "(", ":", ";" outside
// "<...>", and without the class part in front of `separator` for methods.
std::u16string MemberText(std::u16string_view headText, TCEListItemType kind,
                          std::u16string_view separator);

// The index in `list` of the entry around `caretRow`: the innermost whose head row and end
// lie around it, by the structure's ranges; -1 when none. Cheap: no rebuild.
int CurrentEntry(const TCodeStructure& structure, const std::vector<TCEListObjectType>& list,
                 int caretRow);

} // namespace zv
