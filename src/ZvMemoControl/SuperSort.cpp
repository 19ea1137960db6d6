// Key cutting, comparison and the stable sort behind the sort commands.
#include "ZvMemoControl/SuperSort.h"

#include "ZvMemoControl/ZvUniUtils.h"

#include <algorithm>
#include <charconv>
#include <chrono>

namespace zv {

namespace {

// A unit mapped so that comparing mapped units gives code point order (surrogates above the
// rest of the basic plane), upper-cased first when asked.
inline std::uint32_t Weight(char16_t c, bool upper) {
    if (upper)
        c = UpperChar(c);
    if (c < 0xD800)
        return c;
    return c >= 0xE000 ? c - 0x800u : c + 0x2000u;
}

// A line's key as the sort compares it. Prefix packs the weights of the first four units
// (zero-padded), so most comparisons never touch the text.
struct TKeyItem {
    std::uint64_t Prefix;
    const char16_t* Text;
    std::uint32_t Length;
    std::uint32_t Index;
    double Number;
};

std::uint64_t PrefixOf(std::u16string_view s, bool upper) {
    std::uint64_t p = 0;
    for (std::size_t i = 0; i < 4; ++i)
        p = (p << 16) | (i < s.size() ? Weight(s[i], upper) & 0xFFFF : 0);
    return p;
}

double LeadingNumber(std::u16string_view s) {
    std::size_t i = 0;
    while (i < s.size() && (s[i] == u' ' || s[i] == u'\t'))
        ++i;
    char buf[64];
    std::size_t n = 0;
    if (i < s.size() && s[i] == u'-')
        buf[n++] = '-', ++i;
    bool point = false, digits = false;
    for (; i < s.size() && n < sizeof buf; ++i) {
        const char16_t c = s[i];
        if (c >= u'0' && c <= u'9')
            digits = true;
        else if (c != u'.' || point)
            break;
        point = point || c == u'.';
        buf[n++] = static_cast<char>(c);
    }
    double value = 0;
    if (digits)
        std::from_chars(buf, buf + n, value);
    return value == 0 ? 0 : value; // -0 equals 0
}

// <0, 0, >0 as a's key orders before, with or after b's (ascending).
int Compare(const TKeyItem& a, const TKeyItem& b, const TSortKey& key) {
    if (key.Numeric)
        return a.Number < b.Number ? -1 : a.Number > b.Number ? 1 : 0;
    if (a.Prefix != b.Prefix)
        return a.Prefix < b.Prefix ? -1 : 1;
    const std::uint32_t n = std::min(a.Length, b.Length);
    for (std::uint32_t i = 4; i < n; ++i) {
        const std::uint32_t x = Weight(a.Text[i], key.IgnoreCase);
        const std::uint32_t y = Weight(b.Text[i], key.IgnoreCase);
        if (x != y)
            return x < y ? -1 : 1;
    }
    return a.Length < b.Length ? -1 : a.Length > b.Length ? 1 : 0;
}

int Ordered(const TKeyItem& a, const TKeyItem& b, const TSortKey& key) {
    const int c = Compare(a, b, key);
    return key.Descending ? -c : c;
}

std::vector<TKeyItem> Items(const std::vector<std::u16string_view>& lines, const TSortKey& key,
                            int tabSize) {
    std::vector<TKeyItem> items(lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const auto text = TSuperSort::KeyText(lines[i], key, tabSize);
        TKeyItem& item = items[i];
        item.Text = text.data();
        item.Length = static_cast<std::uint32_t>(text.size());
        item.Index = static_cast<std::uint32_t>(i);
        item.Prefix = key.Numeric ? 0 : PrefixOf(text, key.IgnoreCase);
        item.Number = key.Numeric ? LeadingNumber(text) : 0;
    }
    return items;
}

// Applies one key's duplicate filter to `order` (a sorted order of lines).
void FilterKey(const std::vector<TKeyItem>& items, const TSortKey& key,
               std::vector<std::uint32_t>& order) {
    std::vector<std::uint32_t> kept;
    kept.reserve(order.size());
    for (std::size_t i = 0; i < order.size();) {
        std::size_t j = i + 1;
        while (j < order.size() && Compare(items[order[i]], items[order[j]], key) == 0)
            ++j;
        if (key.RemoveKeyDuplicates)
            kept.push_back(order[i]);
        else if (j - i > 1)
            kept.insert(kept.end(), order.begin() + static_cast<std::ptrdiff_t>(i),
                        order.begin() + static_cast<std::ptrdiff_t>(j));
        i = j;
    }
    order.swap(kept);
}

} // namespace

std::u16string_view TSuperSort::KeyText(std::u16string_view line, const TSortKey& key,
                                        int tabSize) {
    if (key.Field > 0) {
        std::size_t from = 0;
        for (int f = 1; f < key.Field; ++f) {
            const std::size_t at = line.find(key.Delimiter, from);
            if (at == std::u16string_view::npos)
                return {};
            from = at + 1;
        }
        const std::size_t to = line.find(key.Delimiter, from);
        return line.substr(from, to == std::u16string_view::npos ? line.npos : to - from);
    }
    const int start = std::max(key.Start, 1);
    if (line.find(u'\t') == std::u16string_view::npos) { // columns are units
        if (static_cast<std::size_t>(start) > line.size())
            return {};
        const std::size_t count = key.End <= 0 ? line.npos : std::max(key.End - start + 1, 0);
        return line.substr(static_cast<std::size_t>(start - 1), count);
    }
    const int tab = std::max(tabSize, 1);
    std::size_t from = line.size(), to = line.size();
    int col = 1; // column of unit i
    for (std::size_t i = 0; i < line.size(); ++i) {
        const int width = line[i] == u'\t' ? tab - (col - 1) % tab : 1;
        if (from == line.size() && col + width - 1 >= start)
            from = i;
        if (key.End > 0 && col > key.End) {
            to = i;
            break;
        }
        col += width;
    }
    return line.substr(from, std::max(to, from) - from);
}

std::vector<std::uint32_t> TSuperSort::Sort(const std::vector<std::u16string_view>& lines,
                                            const std::vector<TSortKey>& keys) {
    const auto started = std::chrono::steady_clock::now();
    std::vector<std::uint32_t> order(lines.size());
    if (keys.size() == 1) { // sorting the items themselves keeps the keys near each other
        std::vector<TKeyItem> items = Items(lines, keys[0], FTabSize);
        const TSortKey& key = keys[0];
        std::stable_sort(items.begin(), items.end(), [&key](const TKeyItem& a, const TKeyItem& b) {
            return Ordered(a, b, key) < 0;
        });
        for (std::size_t i = 0; i < items.size(); ++i)
            order[i] = items[i].Index;
        if (key.RemoveKeyDuplicates || key.OnlyKeepKeyDuplicates) {
            std::vector<TKeyItem> byLine(items.size());
            for (const TKeyItem& item : items)
                byLine[item.Index] = item;
            FilterKey(byLine, key, order);
        }
    } else {
        std::vector<std::vector<TKeyItem>> items;
        for (const TSortKey& key : keys)
            items.push_back(Items(lines, key, FTabSize));
        for (std::size_t i = 0; i < order.size(); ++i)
            order[i] = static_cast<std::uint32_t>(i);
        std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
            for (std::size_t k = 0; k < keys.size(); ++k)
                if (const int c = Ordered(items[k][a], items[k][b], keys[k]))
                    return c < 0;
            return false;
        });
        for (std::size_t k = 0; k < keys.size(); ++k)
            if (keys[k].RemoveKeyDuplicates || keys[k].OnlyKeepKeyDuplicates)
                FilterKey(items[k], keys[k], order);
    }
    FSortTime = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
    return order;
}

namespace {

bool ReadInt(std::u16string_view s, std::int32_t& value) {
    std::string ascii;
    for (char16_t c : s) {
        if (c > 0x7F)
            return false;
        ascii.push_back(static_cast<char>(c));
    }
    const auto [end, ec] = std::from_chars(ascii.data(), ascii.data() + ascii.size(), value);
    return ec == std::errc() && end == ascii.data() + ascii.size();
}

} // namespace

std::vector<std::uint32_t> TSuperSort::SortStrings(const std::vector<std::u16string_view>& lines,
                                                   const std::vector<std::u16string>& switches,
                                                   unsigned options) {
    TSortKey key;
    FIsSwitches = !switches.empty();
    for (const std::u16string& sw : switches) {
        const char16_t letter = sw.size() >= 2 ? static_cast<char16_t>(sw[1] | 0x20) : 0;
        if (sw.empty() || sw[0] != u'-')
            continue;
        if (letter == u'd') {
            FDelimiter = sw.size() > 2 ? sw[2] : u'\t';
            FIsDelimited = true;
        } else if (letter == u'f') {
            if (!ReadInt(std::u16string_view(sw).substr(2), FFieldNum) || FFieldNum < 1)
                throw TSortSwitchError("Invalid -f Switch");
            FIsDelimited = true;
        } else if (letter == u'k') {
            const auto columns = std::u16string_view(sw).substr(2);
            const std::size_t comma = columns.find(u',');
            if (comma == columns.npos || !ReadInt(columns.substr(0, comma), FStartPos) ||
                !ReadInt(columns.substr(comma + 1), FEndPos))
                throw TSortSwitchError("Invalid -k Switch: Make sure the keys have both start "
                                       "and end column values.");
            FIsPositional = true;
        }
    }
    FDescending = options & soDescending;
    FIgnoreCase = options & soIgnoreCase;
    FIgnoreBlank = options & soIgnoreBlank;
    FEvalNumeric = options & soNumeric;
    key.Descending = FDescending;
    key.IgnoreCase = FIgnoreCase;
    key.Numeric = FEvalNumeric;
    if (FIsDelimited) {
        key.Field = std::max(FFieldNum, 1);
        key.Delimiter = FDelimiter;
    } else if (FIsPositional) {
        key.Start = FStartPos;
        key.End = FEndPos;
    }
    if (!FIgnoreBlank)
        return Sort(lines, {key});
    // Blanks ahead of the key do not count: sort views that start behind them.
    std::vector<std::u16string_view> trimmed(lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        auto k = KeyText(lines[i], key, FTabSize);
        while (!k.empty() && (k.front() == u' ' || k.front() == u'\t'))
            k.remove_prefix(1);
        trimmed[i] = k;
    }
    TSortKey whole = key;
    whole.Start = 1, whole.End = 0, whole.Field = 0;
    return Sort(trimmed, {whole});
}

void TSuperSort::RemoveDuplicates(const std::vector<std::u16string_view>& lines,
                                  std::vector<std::uint32_t>& order) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < order.size(); ++i)
        if (kept == 0 || lines[order[i]] != lines[order[kept - 1]])
            order[kept++] = order[i];
    order.resize(kept);
}

} // namespace zv
