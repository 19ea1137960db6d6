// Reading the CSS help file with pugixml, and the value lists and hints made from it.
#include "ZvMemoControl/StyleCssHelp.h"

#include "ZvMemoControl/CaseFold.h"
#include "common/Utf.h"

#include <pugixml.hpp>

#include <algorithm>

namespace zv {

namespace {

constexpr std::u16string_view kGlobal = u"@global";

std::u16string Attribute(const pugi::xml_node& node, const char* name) {
    return Utf8ToUtf16(node.attribute(name).as_string());
}

// "$(name)" -> "name"; empty when `value` is no reference.
std::u16string_view ReferenceName(std::u16string_view value) {
    if (value.size() > 3 && value.starts_with(u"$(") && value.ends_with(u")"))
        return value.substr(2, value.size() - 3);
    return {};
}

} // namespace

TCssHelp::TCssHelp(const std::filesystem::path& file) {
    pugi::xml_document doc;
    if (!doc.load_file(file.c_str()))
        return;
    for (const pugi::xml_node& property : doc.document_element().child("properties")) {
        if (std::string_view(property.name()) != "property")
            continue;
        TEntry entry{Attribute(property, "name"), {}};
        if (entry.Name.empty())
            continue;
        for (const pugi::xml_node& value : property.children("value")) {
            TCssValue v{Attribute(value, "name"), Attribute(value, "syntax"),
                        Attribute(value, "version"), Attribute(value, "restriction")};
            if (!v.Name.empty())
                entry.Values.push_back(std::move(v));
        }
        FEntries.push_back(std::move(entry));
    }
}

const TCssHelp::TEntry* TCssHelp::Find(std::u16string_view name) const {
    if (name.ends_with(u":"))
        name.remove_suffix(1);
    for (const TEntry& e : FEntries)
        if (EqualsAsciiNoCase(e.Name, name))
            return &e;
    return nullptr;
}

const TCssHelp::TEntry* TCssHelp::FindReference(std::u16string_view name) const {
    if (const TEntry* list = Find(u"@" + std::u16string(name)))
        return list;
    return Find(name);
}

std::vector<std::u16string> TCssHelp::Properties() const {
    std::vector<std::u16string> names;
    for (const TEntry& e : FEntries)
        if (!e.Name.starts_with(u"@"))
            names.push_back(e.Name);
    return names;
}

void TCssHelp::Expand(const TEntry& entry, std::vector<const TEntry*>& seen,
                      std::vector<TCssValue>& out) const {
    seen.push_back(&entry);
    for (const TCssValue& v : entry.Values) {
        const std::u16string_view ref = ReferenceName(v.Name);
        if (ref.empty()) {
            out.push_back(v);
            continue;
        }
        const TEntry* target = FindReference(ref);
        if (target && std::find(seen.begin(), seen.end(), target) == seen.end())
            Expand(*target, seen, out);
    }
}

std::vector<TCssValue> TCssHelp::Values(std::u16string_view property) const {
    std::vector<TCssValue> out;
    const TEntry* entry = Find(property);
    if (!entry || entry->Name.starts_with(u"@"))
        return out;
    std::vector<const TEntry*> seen;
    Expand(*entry, seen, out);
    if (const TEntry* global = Find(kGlobal);
        global && std::find(seen.begin(), seen.end(), global) == seen.end())
        Expand(*global, seen, out);
    return out;
}

std::u16string TCssHelp::Hint(std::u16string_view property, std::u16string_view value) const {
    const std::vector<TCssValue> values = Values(property);
    std::u16string hint;
    for (const TCssValue& v : values) {
        if (!value.empty() && EqualsAsciiNoCase(v.Name, value)) {
            hint = v.Name + (v.Syntax.empty() ? u"" : u": " + v.Syntax);
            return v.Version.empty() ? hint : hint + u" (CSS " + v.Version + u")";
        }
    }
    for (const TCssValue& v : values)
        hint += (hint.empty() ? u"" : u" | ") + v.Name;
    return hint;
}

std::vector<std::u16string> TCssHelp::DanglingReferences() const {
    std::vector<std::u16string> dangling;
    for (const TEntry& e : FEntries)
        for (const TCssValue& v : e.Values)
            if (const auto ref = ReferenceName(v.Name); !ref.empty() && !FindReference(ref))
                dangling.push_back(e.Name + u": " + std::u16string(ref));
    return dangling;
}

} // namespace zv
