// The companion ".ini" of a syntax: completion entries, tag lists, hints and the user menu.
// These loaders fill lists on the main thread; the scanner never reads what they change.
#include "ZvMemoControl/ZvMemoStyles.h"

#include "ZvMemoControl/CaseFold.h"
#include "ZvMemoControl/StyleCssHelp.h"
#include "common/Utf.h"
#include "shell/ZvIniFiles.h"

#include <algorithm>
#include <charconv>

namespace zv {

namespace {

constexpr int kMaxReferenceDepth = 32;
constexpr std::u16string_view kTagComplete = u"TagComplete";

// "first|second+icon": without "|" first is empty; without "+" there is no icon.
struct TEntryParts {
    std::u16string_view First, Second;
    char16_t Icon = 0;
};

TEntryParts SplitEntry(std::u16string_view entry) {
    TEntryParts parts;
    const std::size_t bar = entry.find(u'|');
    std::u16string_view rest = entry;
    if (bar != entry.npos) {
        parts.First = entry.substr(0, bar);
        rest = entry.substr(bar + 1);
    }
    const std::size_t plus = rest.rfind(u'+');
    parts.Second = rest.substr(0, plus);
    if (plus != rest.npos) {
        std::u16string_view icon = rest.substr(plus + 1);
        while (!icon.empty() && (icon.back() == u' ' || icon.back() == u'\t'))
            icon.remove_suffix(1);
        if (!icon.empty())
            parts.Icon = icon.back();
    }
    return parts;
}

std::vector<std::u16string_view> SplitEntries(std::u16string_view value) {
    std::vector<std::u16string_view> entries;
    for (std::size_t start = 0; start <= value.size();) {
        const std::size_t sep = value.find(u"##", start);
        const std::u16string_view e = value.substr(start, sep - start);
        if (!e.empty())
            entries.push_back(e);
        if (sep == value.npos)
            break;
        start = sep + 2;
    }
    return entries;
}

std::u16string Between(std::u16string_view key, char16_t open, char16_t close) {
    std::u16string s(key);
    const std::size_t a = s.find(open), b = s.rfind(close);
    if (a != s.npos && b != s.npos && b > a)
        s.erase(a, b - a + 1);
    return s;
}

} // namespace

void TZvCustomMemoStyles::OpenCompanion() {
    std::filesystem::path path(Utf16ToUtf8(FSyntaxPathName));
    path.replace_extension(".ini");
    std::error_code ec;
    if (FSyntaxPathName.empty() || !std::filesystem::is_regular_file(path, ec))
        return;
    auto ini = std::make_shared<TMemIniFileW>(path);
    if (ini->LoadStatus() == TIniLoadStatus::Loaded)
        SynIni = std::move(ini);
}

TCompletionItem TZvCustomMemoStyles::CreateBitmap(char16_t iconChar) const {
    TCompletionItem item;
    item.Icon = iconChar;
    return item;
}

void TZvCustomMemoStyles::LoadKeyList(std::u16string_view section, std::u16string_view key,
                                      TCompletionList& list) {
    LoadKeyListDepth(section, key, list, 0);
}

void TZvCustomMemoStyles::LoadKeyListDepth(std::u16string_view section, std::u16string_view key,
                                           TCompletionList& list, int depth) {
    if (!SynIni || depth > kMaxReferenceDepth)
        return;
    if (list.capacity() < 64)
        list.reserve(64);
    if (IsCssFamily() && key.find(u'@') == key.npos) {
        for (const TCssValue& v : CssHelp().Values(key)) {
            TCompletionItem item = CreateBitmap(u'v');
            item.Name = item.Insert = v.Name;
            item.Detail = v.Syntax;
            list.push_back(std::move(item));
        }
        return;
    }
    const bool tagComplete = section == kTagComplete;
    std::u16string value = SynIni->ReadString(section, key, u"");
    if (value.empty() && !tagComplete) {
        value = SynIni->ReadString(section, std::u16string(key) + u"+", u"");
        if (value.empty())
            value = SynIni->ReadString(section, std::u16string(key) + u"*", u"");
    }
    if (value.empty() && tagComplete) {
        const std::u16string name = Between(Between(key, u'(', u')'), u'[', u']');
        if (SynIni->ValueExists(section, u"*" + name)) {
            value = SynIni->ReadString(section, u"*" + name, u"");
        } else if (const std::size_t dot = name.rfind(u'.'); dot != name.npos) {
            value = SynIni->ReadString(section, u"*" + name.substr(dot), u"");
            if (value.empty())
                value = SynIni->ReadString(section, u"*" + name.substr(dot + 1), u"");
        }
    }
    const bool cssReference = IsCssFamily() && key.find(u'@') != key.npos;
    for (std::u16string_view entry : SplitEntries(value)) {
        if (entry.starts_with(u"@")) {
            LoadKeyListDepth(section, entry.substr(0, entry.find(u'|')), list, depth + 1);
            continue;
        }
        const TEntryParts parts = SplitEntry(entry);
        TCompletionItem item = CreateBitmap(parts.Icon);
        if (cssReference) {
            item.Name = item.Insert = parts.First;
            item.Detail = parts.Second;
        } else {
            item.Name = parts.First.empty() ? parts.Second : parts.First;
            item.Insert = parts.Second;
        }
        list.push_back(std::move(item));
    }
    if (!tagComplete && depth == 0)
        std::stable_sort(list.begin(), list.end(), [](const auto& a, const auto& b) {
            return FoldedCompare(a.Name, b.Name) < 0;
        });
}

void TZvCustomMemoStyles::LoadTagList(TCompletionList& list) {
    if (!SynIni)
        return;
    if (FTagList.empty()) {
        for (const std::u16string& key : SynIni->ReadSection(kTagComplete)) {
            if (key.empty() || key.starts_with(u"/") || key.starts_with(u"@"))
                continue;
            std::u16string name = key;
            char16_t icon = u't';
            if (name.back() == u'+' || name.back() == u'*') {
                icon = name.back() == u'+' ? u'u' : u'w';
                name.pop_back();
            }
            TCompletionItem item = CreateBitmap(icon);
            item.Name = item.Insert = name;
            FTagList.push_back(std::move(item));
        }
    }
    list.insert(list.end(), FTagList.begin(), FTagList.end());
}

void TZvCustomMemoStyles::LoadStopTagList(TCompletionList& list) {
    if (!SynIni)
        return;
    if (FEndTagList.empty()) {
        for (const std::u16string& key : SynIni->ReadSection(kTagComplete)) {
            if (key.size() < 2 || !key.starts_with(u"/"))
                continue;
            TCompletionItem item = CreateBitmap(u't');
            item.Name = key.substr(1);
            item.Insert = item.Name + u">";
            FEndTagList.push_back(std::move(item));
        }
    }
    list.insert(list.end(), FEndTagList.begin(), FEndTagList.end());
}

void TZvCustomMemoStyles::LoadHintList() {
    if (!SynIni)
        return;
    FHintParameter.FParameters = SynIni->ReadSectionValues(u"Hints");
}

void TZvCustomMemoStyles::LoadUserMenu(TCompletionList& list, bool skipFlag) {
    if (!SynIni)
        return;
    if (!FMenuLoaded && IsCssFamily()) {
        FMenuLoaded = true;
        for (const std::u16string& property : CssHelp().Properties()) {
            TCompletionItem item = CreateBitmap(u'p');
            item.Name = item.Insert = property;
            FMenuList.push_back(std::move(item));
        }
    }
    if (!FMenuLoaded) {
        FMenuLoaded = true;
        for (const std::u16string& line : SynIni->ReadSectionValues(u"UserMenu")) {
            std::u16string_view entry = line;
            if (const std::size_t eq = entry.find(u'='); eq != entry.npos)
                entry.remove_prefix(eq + 1);
            const TEntryParts parts = SplitEntry(entry);
            TCompletionItem item;
            item.Name = parts.First;
            item.Insert = parts.Second;
            item.Icon = parts.Icon == u'-' ? char16_t(0) : parts.Icon; // no icon: no item
            FMenuList.push_back(std::move(item));
        }
    }
    for (TCompletionItem item : FMenuList) {
        if (skipFlag) {
            if (item.Name.starts_with(u"\u00BB") || item.Name.starts_with(u"&"))
                continue;
            if (!item.Insert.empty())
                item.Insert.erase(0, 1);
        }
        list.push_back(std::move(item));
    }
}

const TCssHelp& TZvCustomMemoStyles::CssHelp() {
    if (!FCSSXML) {
        std::filesystem::path path(Utf16ToUtf8(FSyntaxPathName));
        path.replace_extension(".xml");
        std::error_code ec;
        if (!std::filesystem::exists(path, ec)) // SCSS and Less take the values of CSS
            path.replace_filename("css.xml");
        FCSSFileDate = std::filesystem::last_write_time(path, ec);
        if (ec)
            FCSSFileDate = {};
        FCSSXML = std::make_shared<const TCssHelp>(path);
    }
    return *FCSSXML;
}

std::u16string TZvCustomMemoStyles::LoadCSSHint(std::u16string_view property,
                                                std::u16string_view value) {
    return IsCssFamily() ? CssHelp().Hint(property, value) : std::u16string();
}

void TZvCustomMemoStyles::LoadSection(std::u16string_view section, TStringList& list) const {
    if (!SynIni)
        return;
    if (list.capacity() < 64)
        list.reserve(64);
    for (std::u16string& line : SynIni->ReadSectionValues(section))
        list.push_back(std::move(line));
}

TStringList TZvCustomMemoStyles::ReadNumberedSection(std::u16string_view section) const {
    TStringList lines;
    if (!SynIni)
        return lines;
    for (int n = 1;; ++n) {
        char buf[16];
        const auto end = std::to_chars(buf, buf + sizeof buf, n).ptr;
        const std::string key(buf, end);
        if (!SynIni->ValueExists(section, key))
            break;
        lines.push_back(SynIni->ReadString(section, key, u""));
    }
    return lines;
}

} // namespace zv
