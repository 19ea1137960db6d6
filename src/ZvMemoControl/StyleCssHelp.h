// The CSS help file of a CSS-family syntax ("<syntax>.xml" beside its ".syx"): the properties
// with the values each takes, from which completion lists and value hints are made.
//
//   <css><properties>
//     <property name="@global"><value name="inherit" version="2.0"/></property>
//     <property name="@color"><value name="red"/></property>
//     <property name="color"><value name="$(color)"/></property>
//   </properties></css>
//
// "@global" holds the values every property takes; other names beginning "@" are lists that
// "$(name)" pulls in (a list "@name" before a property "name"). A value may carry "syntax",
// "version" and "restriction".
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

struct TCssValue {
    std::u16string Name, Syntax, Version, Restriction;
};

class TCssHelp {
public:
    // Parses `file`; a missing or malformed file gives an empty help.
    explicit TCssHelp(const std::filesystem::path& file);

    bool Empty() const { return FEntries.empty(); }

    // The property names in file order, without the lists whose names begin "@".
    std::vector<std::u16string> Properties() const;

    // The values of `property` (a trailing ":" dropped, letter case ignored) in file order,
    // with "$(name)" references expanded (a reference to a list already taken is skipped), and
    // the "@global" values behind them. Empty for an unknown property.
    std::vector<TCssValue> Values(std::u16string_view property) const;

    // The hint for a value being typed: the value's syntax and version when `value` is one of
    // the property's values, else the property's values joined by " | ".
    std::u16string Hint(std::u16string_view property, std::u16string_view value) const;

    // The "$(name)" references that name no list or property, one "property: name" each.
    std::vector<std::u16string> DanglingReferences() const;

private:
    struct TEntry {
        std::u16string Name;
        std::vector<TCssValue> Values;
    };
    const TEntry* Find(std::u16string_view name) const;
    const TEntry* FindReference(std::u16string_view name) const;
    void Expand(const TEntry& entry, std::vector<const TEntry*>& seen,
                std::vector<TCssValue>& out) const;

    std::vector<TEntry> FEntries;
};

} // namespace zv
