// HTML export: escaping, spans, anchors and the page around the rows.
#include "syntax/HtmlExport.h"

#include <algorithm>
#include <array>

namespace zv {
namespace {

constexpr std::size_t kFlushBytes = 64 * 1024;

void AppendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out.push_back(char(c));
    } else if (c < 0x800) {
        out.push_back(char(0xC0 | (c >> 6)));
        out.push_back(char(0x80 | (c & 0x3F)));
    } else if (c < 0x10000) {
        out.push_back(char(0xE0 | (c >> 12)));
        out.push_back(char(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(char(0x80 | (c & 0x3F)));
    } else {
        out.push_back(char(0xF0 | (c >> 18)));
        out.push_back(char(0x80 | ((c >> 12) & 0x3F)));
        out.push_back(char(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(char(0x80 | (c & 0x3F)));
    }
}

// Escaped UTF-8 of text; a lone surrogate becomes U+FFFD.
void AppendEscaped(std::string& out, std::u16string_view t) {
    for (std::size_t i = 0; i < t.size();) {
        // Plain ASCII, the bulk of source text, is copied a stretch at a time.
        std::size_t j = i;
        while (j < t.size() && t[j] < 0x80 && t[j] != u'<' && t[j] != u'&')
            ++j;
        if (j > i) {
            const std::size_t at = out.size();
            out.resize(at + (j - i));
            std::transform(t.begin() + i, t.begin() + j, out.begin() + at,
                           [](char16_t c) { return char(c); });
            i = j;
            continue;
        }
        const char16_t c = t[i++];
        if (c == u'<')
            out += "<samp><</samp>";
        else if (c == u'&')
            out += "&amp;";
        else if (c >= 0xD800 && c < 0xDC00 && i < t.size() && t[i] >= 0xDC00 && t[i] < 0xE000)
            AppendUtf8(out, 0x10000 + ((char32_t(c) - 0xD800) << 10) + (t[i++] - 0xDC00));
        else if (c >= 0xD800 && c < 0xE000)
            AppendUtf8(out, 0xFFFD);
        else
            AppendUtf8(out, c);
    }
}

void AppendHtmlColour(std::string& out, TColor c) {
    static constexpr char kHex[] = "0123456789abcdef";
    char s[7] = {'#'};
    for (int i = 0; i < 3; ++i) {
        const unsigned byte = (c >> (8 * i)) & 0xFF;
        s[1 + 2 * i] = kHex[byte >> 4];
        s[2 + 2 * i] = kHex[byte & 15];
    }
    out.append(s, sizeof s);
}

// The opening tags of recent colour pairs, so that opening a span is one copy. Direct-mapped:
// a source file uses a handful of colours.
class TSpanOpenings {
public:
    std::string_view Get(const TCharStyle& style) {
        TEntry& e = FEntries[(style.FTextColor * 31u + style.FBkColor) % FEntries.size()];
        if (e.Length == 0 || e.Text != style.FTextColor || e.Bk != style.FBkColor)
            Build(e, style);
        return {e.Chars.data(), e.Length};
    }

private:
    struct TEntry {
        TColor Text = 0, Bk = 0;
        std::size_t Length = 0; // 0: empty
        std::array<char, 64> Chars{};
    };
    static void Build(TEntry& e, const TCharStyle& style) {
        std::string s = "<span style=\"";
        if (style.FBkColor != kNoColor) {
            s += "background-color: ";
            AppendHtmlColour(s, style.FBkColor);
            s += ";";
        }
        s += "color: ";
        AppendHtmlColour(s, style.FTextColor);
        s += ";\">";
        e.Text = style.FTextColor;
        e.Bk = style.FBkColor;
        e.Length = s.size();
        std::copy(s.begin(), s.end(), e.Chars.begin());
    }
    std::array<TEntry, 16> FEntries;
};

void AppendStyledRun(std::string& out, std::u16string_view text, const TCharStyle& style) {
    static thread_local TSpanOpenings openings;
    out += openings.Get(style);
    AppendEscaped(out, text);
    out += "</span>";
}

bool SameColours(const TCharStyle& a, const TCharStyle& b) {
    return a.FTextColor == b.FTextColor && a.FBkColor == b.FBkColor;
}

} // namespace

std::string HtmlColour(TColor c) {
    std::string s;
    AppendHtmlColour(s, c);
    return s;
}

void AppendHtmlRow(std::u16string_view text, const std::vector<TColourRun>& runs,
                   const THtmlExportOptions& options, std::string& out) {
    // Neighbouring runs of the same colours (a symbol beside plain text of its colour, say)
    // are written as one span: the page shows the same, and is smaller.
    std::size_t k = 0;
    while (k < runs.size()) {
        const TColourRun& run = runs[k++];
        int end = run.Start + run.Length;
        if (run.Info.Kind == TTokenKind::Url) {
            // The span inside the anchor gives the link the painted colour, not the reader's.
            const auto piece = text.substr(run.Start, run.Length);
            out += "<a href=\"";
            AppendEscaped(out, piece);
            out += "\">";
            AppendStyledRun(out, piece, RunStyle(run, options.Colour));
            out += "</a>";
            continue;
        }
        const TCharStyle style = RunStyle(run, options.Colour);
        for (; k < runs.size() && runs[k].Start == end && runs[k].Info.Kind != TTokenKind::Url;
             ++k) {
            const TColourRun& next = runs[k];
            // The common case, a neighbour of the same kind and set, has the same colours.
            if ((next.Info.Kind != run.Info.Kind || next.Info.Set != run.Info.Set ||
                 next.Info.Index != run.Info.Index || next.Info.Block != run.Info.Block ||
                 next.Info.Kind == TTokenKind::Brace) &&
                !SameColours(RunStyle(next, options.Colour), style))
                break;
            end += next.Length;
        }
        AppendStyledRun(out, text.substr(run.Start, end - run.Start), style);
    }
}

void AppendHtmlRowBW(std::u16string_view text, const THtmlExportOptions& options,
                     std::string& out) {
    const int tab = std::max(options.TabSize, 1);
    int column = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        if (c == u'\t') {
            do
                out += "\u00A0";
            while (++column % tab);
            continue;
        }
        if (c == u' ')
            out += "\u00A0";
        else
            AppendEscaped(out,
                          text.substr(i, 1 + (c >= 0xD800 && c < 0xDC00 && i + 1 < text.size())));
        if (c >= 0xD800 && c < 0xDC00 && i + 1 < text.size())
            ++i;
        ++column;
    }
}

std::string GetHTMLLine(TLineScanner& scanner, int row, const THtmlExportOptions& options) {
    std::string out;
    const std::u16string_view text = scanner.Store().Get(row);
    if (options.Colours)
        AppendHtmlRow(text, RowRuns(scanner, row), options, out);
    else
        AppendHtmlRowBW(text, options, out);
    return out;
}

namespace {

void AppendPageHead(std::string& out, const TScanContext& ctx, const THtmlExportOptions& options) {
    const TZvCustomMemoStyles* set = ctx.Host().FStyles.get();
    const TColor fg = set ? set->FTextColor : 0, bg = set ? set->FBkColor : 0xFFFFFF;
    out += "<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>";
    AppendEscaped(out, options.Title);
    out += "</title>\n</head>\n<body style=\"background-color: " + HtmlColour(bg) +
           ";\">\n<pre style=\"color: " + HtmlColour(fg) + ";\">\n";
}

constexpr std::string_view kPageTail = "\n</pre>\n</body>\n</html>\n";

} // namespace

void GetAsHtml(const TScanContext& ctx, const TZvMemoStrings& store,
               const THtmlExportOptions& options,
               const std::function<void(std::string_view)>& write) {
    std::string out;
    AppendPageHead(out, ctx, options);
    TStyle state;
    ClearStyle(state, true);
    TScanScratch scratch;
    TRunCollector runs;
    for (int row = 0; row < store.Count(); ++row) {
        // Rows are joined by line ends; a continuation joins its line without one.
        if (row > 0 && !store.IsLineWrapped(row))
            out.push_back('\n');
        const std::u16string_view text = store.Get(row);
        if (options.Colours) {
            runs.Runs.clear();
            TScanRequest request;
            request.Text = text;
            request.Sink = &runs;
            request.NextRowIsWrapped = ctx.Options().FWordWrap && store.IsLineWrapped(row + 1);
            ScanRow(ctx, request, state, scratch);
            AppendHtmlRow(text, runs.Runs, options, out);
        } else
            AppendHtmlRowBW(text, options, out);
        if (out.size() >= kFlushBytes) {
            write(out);
            out.clear();
        }
    }
    out += kPageTail;
    write(out);
}

std::string GetRangeAsHtml(TLineScanner& scanner, int fromX, int fromY, int toX, int toY,
                           const THtmlExportOptions& options) {
    const TZvMemoStrings& store = scanner.Store();
    std::string out;
    AppendPageHead(out, scanner.Context(), options);
    fromY = std::max(fromY, 0);
    toY = std::min(toY, store.Count() - 1);
    TStyle state = scanner.GetUpStyle(fromY - 1);
    std::vector<TColourRun> cut;
    for (int row = fromY; row <= toY; ++row) {
        if (row > fromY && !store.IsLineWrapped(row))
            out.push_back('\n');
        const std::u16string_view text = store.Get(row);
        const int a = row == fromY ? std::clamp(fromX, 0, int(text.size())) : 0;
        const int b = row == toY ? std::clamp(toX, a, int(text.size())) : int(text.size());
        const auto runs = RowRunsFrom(scanner, row, state);
        if (!options.Colours) {
            AppendHtmlRowBW(text.substr(a, b - a), options, out);
            continue;
        }
        // The runs cut to [a, b), counted from a.
        cut.clear();
        for (TColourRun run : runs) {
            const int s = std::max(run.Start, a), e = std::min(run.Start + run.Length, b);
            if (s >= e)
                continue;
            run.Start = s - a;
            run.Length = e - s;
            cut.push_back(run);
        }
        AppendHtmlRow(text.substr(a, b - a), cut, options, out);
    }
    out += kPageTail;
    return out;
}

} // namespace zv
