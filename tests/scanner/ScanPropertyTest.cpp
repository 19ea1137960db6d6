// Properties of the scanner over random documents and random edits, for several syntaxes:
// valid stored states always equal a fresh scan, an edit's redraw range reaches every row
// whose state it changed, the colouring walk ends where the scanner says, runs tile the row,
// and the HTML export carries exactly the text.
#include "ScanTestSupport.h"

#include "syntax/HtmlExport.h"

#include <cctype>
#include <optional>
#include <random>

namespace zv::test {
namespace {

struct TCase {
    std::string Syntax;
    std::vector<std::u16string> Pieces; // fragments random text is made of
};

const std::vector<TCase>& Cases() {
    static const std::vector<TCase> cases = {
        {"c",
         {u"int x = 1;", u"/* open", u"close */", u"\"str", u"\"", u"'c'", u"// line", u"{", u"}",
          u"#define A 1", u"0x1F", u"abc", u" ", u"/** @param d */", u"\\", u"(", u")"}},
        {"html",
         {u"<div class=\"a\">", u"</div>", u"<script>", u"</script>", u"var x = 1; // c",
          u"<style>", u"</style>", u"a { color: red; }", u"<!--", u"-->", u"&amp;",
          u"<?php echo 1; ?>", u"\"", u"/* c */", u"<", u">", u"'"}},
        {"shell",
         {u"cat <<EOF", u"EOF", u"echo \"$x\"", u"# comment", u"'q'", u"${v}", u"x=1", u"\"", u"`",
          u"\\\""}},
        {"python", {u"\"\"\"", u"def f():", u"# c", u"'s'", u"x = 0x10", u"'''", u"\"", u"@dec"}},
        {"xml", {u"<a b=\"c\">", u"</a>", u"<![CDATA[", u"]]>", u"<!--", u"-->", u"&lt;", u"\""}},
    };
    return cases;
}

std::u16string RandomRow(std::mt19937& rng, const TCase& c) {
    std::u16string row;
    const int pieces = int(rng() % 5);
    for (int i = 0; i < pieces; ++i) {
        row += c.Pieces[rng() % c.Pieces.size()];
        if (rng() % 2)
            row += u' ';
    }
    return row;
}

std::u16string RandomText(std::mt19937& rng, const TCase& c, int rows) {
    std::u16string text;
    for (int i = 0; i < rows; ++i)
        text += RandomRow(rng, c) + u"\n";
    return text;
}

// One random edit as the editing core makes it: change rows, then tell the scanner. Returns
// the rows it asks to redraw when the edit stayed inside one row, else nothing.
std::optional<TRedrawRange> RandomEdit(std::mt19937& rng, TScanDoc& d, const TCase& c) {
    const int count = d.Store.Count();
    const int row = int(rng() % std::max(count, 1));
    const unsigned kind = rng() % 5;
    switch (kind) {
    case 0:
    case 1: {
        const int len = d.Store.GetLineLength(row);
        d.Store.InsertAt(row, c.Pieces[rng() % c.Pieces.size()], 1 + int(rng() % (len + 1)));
        break;
    }
    case 2: {
        const int len = d.Store.GetLineLength(row);
        if (len > 0)
            d.Store.DeleteAt(row, 1 + int(rng() % len), 1 + int(rng() % 4));
        break;
    }
    case 3:
        d.Store.Insert(row, RandomRow(rng, c));
        break;
    default:
        if (count > 1)
            d.Store.Delete(row);
        break;
    }
    d.Scanner->ClearLineStylesFrom(row);
    const TRedrawRange redraw = d.Scanner->InvalidateLine(std::min(row, d.Store.Count() - 1));
    return kind < 3 ? std::optional(redraw) : std::nullopt;
}

TEST(ScanProperties, StatesAfterRandomEditsAndSweepEqualAFreshScan) {
    for (const TCase& c : Cases())
        for (unsigned seed = 1; seed <= 12; ++seed) {
            std::mt19937 rng(seed);
            TScanDoc d(c.Syntax, RandomText(rng, c, 30));
            ASSERT_TRUE(d.Loaded) << c.Syntax;
            d.SweepAll();
            const std::string where = c.Syntax + " seed " + std::to_string(seed);
            for (int edit = 0; edit < 40; ++edit) {
                const auto before = d.FreshStates();
                const auto redraw = RandomEdit(rng, d, c);
                if (rng() % 3 == 0) // the painter asks for rows in between
                    d.Scanner->GetUpStyle(int(rng() % d.Store.Count()));
                d.ExpectStatesFresh(where, false);
                // Rows below the redraw range keep their states, swept or not.
                if (redraw && redraw->Last >= 0) {
                    const auto after = d.FreshStates();
                    for (int row = redraw->Last + 1; row < d.Store.Count(); ++row)
                        ASSERT_TRUE(after[row] == before[row]) << where << " row " << row;
                }
                if (HasFatalFailure())
                    return;
            }
            d.SweepAll();
            d.ExpectStatesFresh(where);
            if (HasFatalFailure())
                return;
        }
}

TEST(ScanProperties, ColouringWalkEndsInTheStoredStateAndTilesTheRow) {
    for (const TCase& c : Cases())
        for (unsigned seed = 20; seed < 26; ++seed) {
            std::mt19937 rng(seed);
            TScanDoc d(c.Syntax, RandomText(rng, c, 40));
            d.SweepAll();
            for (int row = 0; row < d.Store.Count(); ++row) {
                TStyle end, stored;
                const auto runs = RowRuns(*d.Scanner, row, &end);
                ASSERT_TRUE(d.Scanner->States().Get(row, stored));
                end.FBooleanArray |= 1u;
                EXPECT_TRUE(end == stored) << c.Syntax << " seed " << seed << " row " << row;
                int at = 0;
                for (const TColourRun& r : runs) {
                    ASSERT_EQ(r.Start, at) << c.Syntax << " row " << row;
                    ASSERT_GT(r.Length, 0);
                    at += r.Length;
                }
                EXPECT_EQ(at, d.Store.GetLineLength(row)) << c.Syntax << " row " << row;
            }
        }
}

// Text of an exported page: tags removed as a browser's tokenizer reads them ("<" starts a
// tag only before a letter, "/" or "!"), entities decoded.
std::string StripHtml(std::string_view html) {
    std::string out;
    for (std::size_t i = 0; i < html.size();) {
        const char next = i + 1 < html.size() ? html[i + 1] : 0;
        if (html[i] == '<' &&
            (std::isalpha(static_cast<unsigned char>(next)) || next == '/' || next == '!')) {
            i = html.find('>', i) + 1;
            continue;
        }
        if (html.substr(i, 5) == "&amp;") {
            out += '&';
            i += 5;
            continue;
        }
        out += html[i++];
    }
    return out;
}

TEST(ScanProperties, HtmlExportWithoutTagsIsTheText) {
    for (const TCase& c : Cases())
        for (unsigned seed = 40; seed < 44; ++seed) {
            std::mt19937 rng(seed);
            std::u16string text = RandomText(rng, c, 25);
            text += u"\tsee\t https://example.org/a?b=1&c=2 here \u00e9\u4e2d\U0001F600";
            TScanDoc d(c.Syntax, text);
            std::string page;
            GetAsHtml(*d.Ctx, d.Store, {}, [&](std::string_view s) { page += s; });
            const auto open = page.find("<pre");
            const auto body = page.find('\n', open) + 1;
            const auto end = page.rfind("\n</pre>");
            ASSERT_NE(open, std::string::npos);
            std::u16string rows; // the text as the store holds it, rows joined by line ends
            for (int row = 0; row < d.Store.Count(); ++row)
                rows += (row ? u"\n" : u"") + std::u16string(d.Store.Get(row));
            EXPECT_EQ(StripHtml(std::string_view(page).substr(body, end - body)), Utf16ToUtf8(rows))
                << c.Syntax << " seed " << seed;
            THtmlExportOptions bw;
            bw.Colours = false;
            bw.TabSize = 4;
            for (int row = 0; row < d.Store.Count(); ++row) {
                const std::u16string_view t = d.Store.Get(row);
                EXPECT_EQ(StripHtml(GetHTMLLine(*d.Scanner, row, {})), Utf16ToUtf8(t));
                // Black and white: tabs expanded to the next multiple of 4, blanks as U+00A0.
                std::u16string shown;
                for (char16_t ch : t)
                    if (ch == u'\t')
                        shown.append(4 - shown.size() % 4, u'\u00A0');
                    else
                        shown += ch == u' ' ? u'\u00A0' : ch;
                EXPECT_EQ(StripHtml(GetHTMLLine(*d.Scanner, row, bw)), Utf16ToUtf8(shown));
            }
        }
}

} // namespace
} // namespace zv::test
