// The structure lists: the outer list walks the items in row order, with a level that rises
// at each listed item and falls when its block ends; methods named with a class part are
// gathered under that class, which need not be declared in the document.
#include "syntax/CodeLists.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace zv {

namespace {

bool IsBlank(char16_t c) {
    return c == u' ' || c == u'\t' || c == 0xA0;
}

char16_t Lower(char16_t c) {
    return (c >= u'A' && c <= u'Z') ? char16_t(c + 32) : c;
}

// Step 5a: the text up to one unit before the first of "{", "(", ":", ";" outside "<...>";
// the whole text when the stop is at its start or there is none. An unclosed "<" ends it.
// The class separator (such as "::") is passed over: it is part of the name.
std::u16string_view CutAtParameters(std::u16string_view s, std::u16string_view separator) {
    for (std::size_t i = 0; i < s.size(); ++i) {
        char16_t c = s[i];
        if (!separator.empty() && s.substr(i).starts_with(separator)) {
            i += separator.size() - 1;
            continue;
        }
        if (c == u'<') {
            std::size_t close = s.find(u'>', i);
            if (close == std::u16string_view::npos)
                return s;
            i = close;
            continue;
        }
        if (c == u'{' || c == u'(' || c == u':' || c == u';') {
            if (i == 0)
                return s;
            std::u16string_view cut = s.substr(0, i);
            while (!cut.empty() && IsBlank(cut.back()))
                cut.remove_suffix(1);
            return cut;
        }
    }
    return s;
}

// Step 5b-c: the class part of a qualified name, or empty.
std::u16string ClassOfQualified(std::u16string_view text, std::u16string_view separator) {
    std::u16string_view s = CutAtParameters(text, separator);
    std::size_t at = s.find(separator);
    if (separator.empty() || at == std::u16string_view::npos)
        return {};
    s = s.substr(0, at);
    std::size_t blank = s.find_last_of(u" \t\u00A0*&");
    if (blank != std::u16string_view::npos && blank + 1 < s.size())
        s = s.substr(blank + 1);
    return std::u16string(s);
}

// Step 5f: `name` stands in `text` at its end or followed by a blank, "{", "(", ":" or ";".
bool HoldsName(std::u16string_view text, std::u16string_view name) {
    if (name.empty() || text.size() < name.size())
        return false;
    for (std::size_t p = 0; p + name.size() <= text.size(); ++p) {
        bool same = true;
        for (std::size_t i = 0; same && i < name.size(); ++i)
            same = Lower(text[p + i]) == Lower(name[i]);
        if (!same)
            continue;
        std::size_t e = p + name.size();
        if (e == text.size())
            return true;
        char16_t c = text[e];
        if (IsBlank(c) || c == u'{' || c == u'(' || c == u':' || c == u';')
            return true;
    }
    return false;
}

char16_t IconDigit(TCEListItemType k) {
    switch (k) {
    case ceStruct:
        return u'0';
    case ceFunction:
    case ceMethod:
    case ceLocalMethod:
        return u'1';
    case ceConstructor:
        return u'5';
    case ceDestructor:
        return u'6';
    case ceProperty:
    case ceLine:
        return u'2';
    case ceEnum:
        return u'3';
    case ceClass:
    case ceClassName:
        return u'7';
    case ceNS:
        return u'8';
    default:
        return u'4';
    }
}

TCEListObjectType Entry(const TStructureItem& item, const TCodeStructure& s) {
    TCEListObjectType e;
    e.sShort = e.sLong = item.Text;
    e.itemType = item.Kind;
    e.idNr = item.IdNr;
    e.nLevel = item.Level;
    e.Row = item.Row;
    if (item.Parent >= 0) {
        const TStructureItem& p = s.Items[static_cast<std::size_t>(item.Parent)];
        e.sLongParent = p.Text;
        e.itemTypeParent = p.Kind;
    }
    return e;
}

} // namespace

TCEListItemTypes DefaultOuterTypes() {
    return {ceStruct, ceEnum,    ceClass,   ceClassName, ceNS,
            ceTag,    ceTagHead, ceTagBody, ceTagStyle,  ceTagScript};
}

TCEListItemTypes DefaultMemberTypes() {
    return {ceFunction, ceMethod,      ceConstructor, ceDestructor,
            ceProperty, ceLocalMethod, ceStruct,      ceEnum};
}

std::u16string MemberText(std::u16string_view headText, TCEListItemType kind,
                          std::u16string_view separator) {
    std::u16string_view s = CutAtParameters(headText, separator);
    if ((kind == ceMethod || kind == ceConstructor || kind == ceDestructor) && !separator.empty()) {
        std::size_t at = s.rfind(separator);
        if (at != std::u16string_view::npos) {
            std::size_t b = at;
            while (b > 0 && !IsBlank(s[b - 1]) && s[b - 1] != u'*' && s[b - 1] != u'&')
                --b;
            return std::u16string(s.substr(0, b)) + std::u16string(s.substr(at + separator.size()));
        }
    }
    return std::u16string(s);
}

void GetMainFoldList(const TCodeStructure& structure, int caretRow, TCEListItemTypes types,
                     std::u16string_view separator, std::vector<TCEListObjectType>& list,
                     TCEListObjectRec& classRec, const TLanguageReader& language) {
    list.clear();
    classRec = {};
    int level = 0;
    TCEListItemType parentKind = ceNone;
    std::u16string parentText;
    std::unordered_map<std::u16string, std::size_t> classAt; // ceClass entries by name
    std::unordered_set<std::u16string> handled;              // class names of step 5
    std::vector<int> stack; // end rows of the listed items still open
    for (const TStructureItem& item : structure.Items) {
        while (!stack.empty() && stack.back() < item.Row) {
            stack.pop_back();
            level = std::max(level - 1, 0);
            parentKind = ceNone;
        }
        TCEListItemType k = item.Kind;
        if (types.Has(k)) {
            TCEListObjectType e = Entry(item, structure);
            e.nLevel = level;
            e.itemTypeParent = ceNone;
            e.sLongParent.clear();
            if (k == ceNS || k == ceTagHead || k == ceTagBody) {
                ++level;
                parentKind = k;
                parentText = e.sLong;
            } else {
                if (k != ceTagStyle && k != ceTagScript)
                    ++level;
                e.itemTypeParent = parentKind;
                if (parentKind != ceNone)
                    e.sLongParent = parentText;
            }
            if (caretRow >= item.Row && caretRow <= item.EndRow)
                classRec = {e.sLong, e.sLongParent, k};
            if (k == ceClass)
                classAt[item.Name] = list.size();
            list.push_back(std::move(e));
            if (k != ceTagStyle && k != ceTagScript)
                stack.push_back(item.EndRow);
        } else if (types.Has(ceClassName) && k == ceMethod && !separator.empty()) {
            std::u16string name = ClassOfQualified(item.Text, separator);
            if (name.empty())
                continue;
            if (caretRow >= item.Row && caretRow <= item.EndRow &&
                (classRec.sLong.empty() || classRec.sLong == name))
                classRec = {name, {}, ceClassName};
            if (!handled.insert(name).second)
                continue; // listed, or its class marked, already
            TCEListObjectType e;
            e.sShort = e.sLong = name;
            e.itemType = ceClassName;
            e.nLevel = level;
            e.Row = item.Row; // keeps the list in row order for CurrentEntry
            parentKind = ceNone;
            parentText.clear();
            // The class declared at this level (the latest of that name) takes its methods.
            auto declared = classAt.find(name);
            if (declared != classAt.end() && list[declared->second].nLevel == level &&
                HoldsName(list[declared->second].sLong, name))
                list[declared->second].itemTypeB = ceClassName;
            else
                list.push_back(std::move(e));
        }
    }
    TCEListObjectType module;
    module.sShort = module.sLong = u"Module";
    module.itemType = ceModule;
    list.push_back(module);
    if (language) {
        const std::pair<const char*, TCEListItemType> fixed[] = {
            {"155", ceTodo}, {"399", ceBookmark}, {"074", ceFavorite}};
        for (const auto& [key, kind] : fixed) {
            TCEListObjectType e;
            e.sShort = e.sLong = language(key);
            e.itemType = kind;
            list.push_back(std::move(e));
        }
    }
}

void GetMethodFoldList(const TCodeStructure& structure, const TCEListObjectType& item, int caretRow,
                       TCEListItemTypes types, std::u16string_view separator,
                       std::vector<TCEListObjectType>& list, TCEListObjectRec& methodRec) {
    list.clear();
    methodRec = {};
    int head = -1;
    const bool byName = item.itemType == ceClassName || item.itemTypeB == ceClassName;
    if (item.itemType != ceModule && item.itemType != ceClassName && item.itemType != ceNone) {
        // The item's own head: by id, else by kind and text.
        head = item.idNr != 0 ? structure.FindId(item.idNr, item.Row) : -1;
        for (std::size_t i = 0; head < 0 && i < structure.Items.size(); ++i)
            if (structure.Items[i].Kind == item.itemType && structure.Items[i].Text == item.sLong)
                head = static_cast<int>(i);
        if (head < 0)
            return;
    } else if (item.itemType != ceModule && !byName) {
        return;
    }
    // The candidates in row order: the item's own range, with the methods named by its class
    // when it has them; for "Module" every item.
    std::vector<int> candidates;
    if (head >= 0) {
        const int end = structure.Items[static_cast<std::size_t>(head)].EndRow;
        for (int i = head + 1; i < static_cast<int>(structure.Items.size()) &&
                               structure.Items[static_cast<std::size_t>(i)].Row <= end;
             ++i)
            candidates.push_back(i);
    }
    if (byName) {
        const std::u16string& name =
            head >= 0 ? structure.Items[static_cast<std::size_t>(head)].Name : item.sLong;
        if (auto it = structure.ByOwner.find(name); it != structure.ByOwner.end()) {
            const std::size_t own = candidates.size();
            candidates.insert(candidates.end(), it->second.begin(), it->second.end());
            std::inplace_merge(candidates.begin(), candidates.begin() + static_cast<long>(own),
                               candidates.end());
            candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
        }
    }
    const bool module = item.itemType == ceModule;
    const int count =
        module ? static_cast<int>(structure.Items.size()) : static_cast<int>(candidates.size());
    int around = -1;
    for (int k = 0; k < count; ++k) {
        const int i = module ? k : candidates[static_cast<std::size_t>(k)];
        const TStructureItem& s = structure.Items[static_cast<std::size_t>(i)];
        if (!types.Has(s.Kind))
            continue;
        // Module: the functions that no class or structure holds, nor names by its class.
        if (module && (!IsCallableKind(s.Kind) || !s.Owner.empty() ||
                       (s.Parent >= 0 &&
                        !IsCallableKind(structure.Items[static_cast<std::size_t>(s.Parent)].Kind) &&
                        structure.Items[static_cast<std::size_t>(s.Parent)].Kind != ceNS)))
            continue;
        TCEListObjectType e = Entry(s, structure);
        e.sLong = MemberText(s.Text, s.Kind, separator);
        e.sShort = std::u16string(1, IconDigit(s.Kind)) + e.sLong;
        if (caretRow >= s.Row && caretRow <= s.EndRow)
            around = static_cast<int>(list.size());
        list.push_back(std::move(e));
    }
    if (around >= 0) {
        const TCEListObjectType& e = list[static_cast<std::size_t>(around)];
        methodRec = {e.sLong, e.sLongParent, e.itemType};
    }
}

std::vector<TCEListObjectType> GetFunctionList(const TCodeStructure& structure,
                                               std::u16string_view separator) {
    std::vector<TCEListObjectType> list;
    for (const TStructureItem& s : structure.Items) {
        if (!IsCallableKind(s.Kind))
            continue;
        TCEListObjectType e = Entry(s, structure);
        e.sLong = MemberText(s.Text, s.Kind, separator);
        e.sShort = std::u16string(1, IconDigit(s.Kind)) + e.sLong;
        list.push_back(std::move(e));
    }
    return list;
}

int CurrentEntry(const TCodeStructure& structure, const std::vector<TCEListObjectType>& list,
                 int caretRow) {
    auto byRow = [&](const TStructureItem& s) -> int {
        auto it = std::lower_bound(
            list.begin(), list.end(), s.Row,
            [](const TCEListObjectType& e, int row) { return e.Row >= 0 && e.Row < row; });
        for (; it != list.end() && it->Row == s.Row; ++it)
            if (it->idNr == s.IdNr)
                return static_cast<int>(it - list.begin());
        return -1;
    };
    int innermost = structure.ItemAt(caretRow);
    for (int i = innermost; i >= 0; i = structure.Items[static_cast<std::size_t>(i)].Parent) {
        int at = byRow(structure.Items[static_cast<std::size_t>(i)]);
        if (at >= 0)
            return at;
    }
    // A method known by its qualified name selects its class's entry.
    for (int i = innermost; i >= 0; i = structure.Items[static_cast<std::size_t>(i)].Parent) {
        const TStructureItem& s = structure.Items[static_cast<std::size_t>(i)];
        if (!IsCallableKind(s.Kind))
            continue;
        std::size_t cut = s.Name.rfind(u':');
        if (cut == std::u16string::npos)
            cut = s.Name.rfind(u'.');
        if (cut == std::u16string::npos)
            continue;
        std::u16string cls = s.Name.substr(0, cut);
        while (!cls.empty() && (cls.back() == u':' || cls.back() == u'.'))
            cls.pop_back();
        std::size_t last = cls.find_last_of(u":.");
        if (last != std::u16string::npos)
            cls = cls.substr(last + 1);
        for (std::size_t k = 0; k < list.size(); ++k)
            if (list[k].sLong == cls ||
                (list[k].itemTypeB == ceClassName && HoldsName(list[k].sLong, cls)))
                return static_cast<int>(k);
    }
    return -1;
}

} // namespace zv
