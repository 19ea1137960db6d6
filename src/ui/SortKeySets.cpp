// The stored form of a key set: per key "<flags>:<start>:<end>" with six 0/1 flags (enabled,
// numeric, ignore case, remove key duplicates, only key duplicates, descending), the four
// keys and then the whole-line duplicate flag, joined by ';'.
#include "ui/SortKeySets.h"

#include <charconv>
#include <sstream>

namespace zv {
namespace {

constexpr const char* kSection = "SortKeySets";

std::string Encode(const TSortKeySet& set) {
    std::string out;
    for (const TSortKeySet::TRow& r : set.Rows) {
        const TSortKey& k = r.Key;
        for (bool flag : {r.Enabled, k.Numeric, k.IgnoreCase, k.RemoveKeyDuplicates,
                          k.OnlyKeepKeyDuplicates, k.Descending})
            out += flag ? '1' : '0';
        out += ':' + std::to_string(k.Start) + ':' + std::to_string(k.End) + ';';
    }
    return out + (set.RemoveDuplicates ? '1' : '0');
}

bool ReadInt(const std::string& text, std::int32_t& value) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

bool Decode(const std::string& text, TSortKeySet& set) {
    std::istringstream parts(text);
    std::string part;
    TSortKeySet read;
    for (TSortKeySet::TRow& r : read.Rows) {
        std::string flags, start, end;
        if (!std::getline(parts, part, ';'))
            return false;
        std::istringstream fields(part);
        if (!std::getline(fields, flags, ':') || !std::getline(fields, start, ':') ||
            !std::getline(fields, end) || flags.size() != 6 || !ReadInt(start, r.Key.Start) ||
            !ReadInt(end, r.Key.End))
            return false;
        TSortKey& k = r.Key;
        bool* targets[] = {&r.Enabled,
                           &k.Numeric,
                           &k.IgnoreCase,
                           &k.RemoveKeyDuplicates,
                           &k.OnlyKeepKeyDuplicates,
                           &k.Descending};
        for (std::size_t i = 0; i < flags.size(); ++i)
            *targets[i] = flags[i] == '1';
    }
    if (!std::getline(parts, part) || part.size() != 1)
        return false;
    read.RemoveDuplicates = part == "1";
    set = read;
    return true;
}

} // namespace

std::vector<std::u16string> SortKeySetNames(const TCustomIniFile& ini) {
    return ini.ReadSection(kSection);
}

bool SaveSortKeySet(TCustomIniFile& ini, const std::u16string& name, const TSortKeySet& set) {
    if (name.empty() || name.find(u'=') != std::u16string::npos || name.front() == u';' ||
        name.front() == u' ' || name.back() == u' ')
        return false;
    ini.WriteString(kSection, name, Encode(set));
    return true;
}

bool LoadSortKeySet(const TCustomIniFile& ini, const std::u16string& name, TSortKeySet& set) {
    return !name.empty() && Decode(ini.ReadString(kSection, name, std::string_view()), set);
}

void DeleteSortKeySet(TCustomIniFile& ini, const std::u16string& name) {
    ini.DeleteKey(kSection, name);
}

} // namespace zv
