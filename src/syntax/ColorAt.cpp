// Recognition of colour values at a text position.
#include "syntax/ColorAt.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <vector>

namespace zv {
namespace {

bool IsHex(char16_t c) {
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}
bool IsWordPart(char16_t c) {
    return IsHex(c) || (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'#' ||
           c == u'$' || c == u'_' || c == u'-';
}
char16_t Lower(char16_t c) {
    return c >= u'A' && c <= u'Z' ? char16_t(c + 32) : c;
}

std::u16string Hex(int r, int g, int b) {
    static constexpr char16_t kHex[] = u"0123456789abcdef";
    std::u16string s = u"#";
    for (int v : {r, g, b}) {
        v = std::clamp(v, 0, 255);
        s.push_back(kHex[v >> 4]);
        s.push_back(kHex[v & 15]);
    }
    return s;
}

// "#rgb", "#rrggbb", "#rrggbbaa" (or "$" in CSS files) at the start of `w`.
std::optional<std::u16string> HashForm(std::u16string_view w, bool dollar) {
    if (w.empty() || (w[0] != u'#' && !(dollar && w[0] == u'$')))
        return {};
    const auto digits = w.substr(1);
    if (!std::all_of(digits.begin(), digits.end(), IsHex))
        return {};
    std::u16string out = u"#";
    if (digits.size() == 3) {
        for (char16_t c : digits)
            out += {Lower(c), Lower(c)};
        return out;
    }
    if (digits.size() != 6 && digits.size() != 8)
        return {};
    for (char16_t c : digits.substr(0, 6))
        out.push_back(Lower(c));
    return out;
}

// One argument of a functional form, scaled: percentages to the range `full`, degrees as is.
std::optional<double> Argument(std::u16string_view a, double full) {
    while (!a.empty() && a.front() == u' ')
        a.remove_prefix(1);
    while (!a.empty() && a.back() == u' ')
        a.remove_suffix(1);
    std::string ascii;
    for (char16_t c : a)
        ascii.push_back(c < 128 ? char(c) : '?');
    bool percent = false;
    if (ascii.ends_with('%'))
        percent = true, ascii.pop_back();
    else if (ascii.ends_with("deg"))
        ascii.resize(ascii.size() - 3);
    double v = 0;
    const auto [end, ec] = std::from_chars(ascii.data(), ascii.data() + ascii.size(), v);
    if (ec != std::errc() || end != ascii.data() + ascii.size())
        return {};
    return percent ? v * full / 100.0 : v;
}

std::u16string FromHsl(double h, double s, double l) {
    const double c = (1 - std::abs(2 * l - 1)) * s;
    const double hp = std::fmod(std::fmod(h, 360) + 360, 360) / 60;
    const double x = c * (1 - std::abs(std::fmod(hp, 2) - 1));
    double r = 0, g = 0, b = 0;
    const int sector = int(hp);
    const double table[6][3] = {{c, x, 0}, {x, c, 0}, {0, c, x}, {0, x, c}, {x, 0, c}, {c, 0, x}};
    r = table[sector % 6][0], g = table[sector % 6][1], b = table[sector % 6][2];
    const double m = l - c / 2;
    return Hex(int(std::lround((r + m) * 255)), int(std::lround((g + m) * 255)),
               int(std::lround((b + m) * 255)));
}

std::u16string FromHsv(double h, double s, double v) {
    const double l = v * (1 - s / 2);
    const double sl = (l == 0 || l == 1) ? 0 : (v - l) / std::min(l, 1 - l);
    return FromHsl(h, sl, l);
}

std::optional<std::u16string> Functional(std::u16string_view name, std::u16string_view args,
                                         bool full) {
    std::vector<std::u16string_view> parts;
    const char16_t sep = args.find(u',') != std::u16string_view::npos ? u',' : u' ';
    for (std::size_t start = 0; start <= args.size();) {
        const auto end = std::min(args.find(sep, start), args.size());
        if (end > start)
            parts.push_back(args.substr(start, end - start));
        start = end + 1;
    }
    if (name == u"color" && !parts.empty() && !Argument(parts[0], 1))
        parts.erase(parts.begin()); // the colour space, "srgb"
    if (parts.size() < 3)
        return {};
    const bool rgb = name == u"rgb" || name == u"rgba";
    if (!full && !rgb)
        return {};
    if (rgb || name == u"color") {
        const double scale = name == u"color" ? 255 : 1;
        const double range = name == u"color" ? 1 : 255;
        auto r = Argument(parts[0], range), g = Argument(parts[1], range),
             b = Argument(parts[2], range);
        if (!r || !g || !b)
            return {};
        return Hex(int(std::lround(*r * scale)), int(std::lround(*g * scale)),
                   int(std::lround(*b * scale)));
    }
    auto h = Argument(parts[0], 360), s = Argument(parts[1], 1), l = Argument(parts[2], 1);
    if (!h || !s || !l)
        return {};
    if (name == u"hsl" || name == u"hsla")
        return FromHsl(*h, *s, *l);
    if (name == u"hsv" || name == u"hsva")
        return FromHsv(*h, *s, *l);
    return {};
}

// The functional form whose parentheses hold column x, or which starts at the word at x.
std::optional<std::u16string> FunctionalAround(std::u16string_view row, int x, bool full) {
    int open = -1;
    for (int i = std::min<int>(x, int(row.size()) - 1); i >= 0 && row[i] != u')'; --i)
        if (row[i] == u'(') {
            open = i;
            break;
        }
    if (open < 0) { // the caret on the name: look right for its "("
        int i = x;
        while (i < int(row.size()) && IsWordPart(row[i]))
            ++i;
        if (i >= int(row.size()) || row[i] != u'(')
            return {};
        open = i;
    }
    int nameStart = open;
    while (nameStart > 0 && IsWordPart(row[nameStart - 1]))
        --nameStart;
    std::u16string name;
    for (char16_t c : row.substr(nameStart, open - nameStart))
        name.push_back(Lower(c));
    const auto close = row.find(u')', open);
    if (close == std::u16string_view::npos)
        return {};
    return Functional(name, row.substr(open + 1, close - open - 1), full);
}

} // namespace

std::u16string GetColorAtXY(std::u16string_view row, int x, std::u16string_view syntax,
                            const TNamedColour& named) {
    const std::u16string kDefault = u"#ffffff";
    if (x < 0 || x > int(row.size()) || row.empty())
        return kDefault;
    std::u16string lower;
    for (char16_t c : syntax)
        lower.push_back(Lower(c));
    const bool css = lower == u"css" || lower == u"sass" || lower == u"scss" || lower == u"less";
    const bool full = css || lower == u"html";
    int start = std::min(x, int(row.size()) - 1), end = start;
    while (start > 0 && IsWordPart(row[start - 1]))
        --start;
    while (end < int(row.size()) && IsWordPart(row[end]))
        ++end;
    const auto word = row.substr(start, end - start);
    if (auto c = HashForm(word, css))
        return *c;
    if (auto c = FunctionalAround(row, x, full))
        return *c;
    if (full && named && !word.empty())
        if (auto c = named(word))
            return *c;
    return kDefault;
}

} // namespace zv
