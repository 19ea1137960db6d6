// A file opened as the editor opens it, for tests of the painted colours: chosen by its name
// and first line through the extension map, loaded with the shipped colour scheme, and cut
// into runs by the scanner as the painter cuts them.
#pragma once

#include "ScanTestSupport.h"
#include "syntax/SyntaxSelect.h"
#include "syntax/TypeColors.h"

namespace zv::test {

class TPaintedFile {
public:
    // Writes `text` as `name` into `dir` and opens it; `root` holds Syntax/ (and Types.ini).
    TPaintedFile(const std::filesystem::path& root, const std::filesystem::path& dir,
                 const std::string& name, std::string_view text)
        : FColors(root / "Syntax" / "Colors.ini", nullptr, u"Light") {
        const auto path = WriteFile(dir / name, text);
        FSyntax.SetColorSource(&FColors);
        TSyntaxSelector selector(TSyntaxEnvironment{nullptr, nullptr, root, {}, {}}, FSyntax);
        Type = selector.SetSyntaxStyle(path, FHost, text.size());
        FStore.SetTextStr(Utf8ToUtf16(text));
        FCtx = std::make_unique<TScanContext>(FHost, TScanOptions{});
        FScanner = std::make_unique<TLineScanner>(FStore, *FCtx);
    }

    // The painted run of every character of `find`'s first occurrence in the text (rows
    // joined by "\n"); empty when it does not occur.
    std::vector<TColourRun> RunsOf(std::u16string_view find) {
        std::u16string all;
        for (int row = 0; row < FStore.Count(); ++row)
            all.append(FStore.Get(row)).append(u"\n");
        std::vector<TColourRun> out;
        const auto at = all.find(find);
        if (at == all.npos)
            return out;
        int row = 0, column = int(at);
        while (column > int(FStore.Get(row).size()))
            column -= int(FStore.Get(row).size()) + 1, ++row;
        for (std::size_t i = 0; i < find.size(); ++i, ++column) {
            if (column >= int(FStore.Get(row).size())) { // the row break
                out.push_back(TColourRun{column, 1, {}});
                row += 1, column = -1;
                continue;
            }
            const auto runs = RowRuns(*FScanner, row);
            const TColourRun* run = RunAt(runs, column);
            out.push_back(run ? *run : TColourRun{column, 1, {}});
        }
        return out;
    }

    std::u16string Type;
    const TMemoStyleHost& Host() const { return FHost; }

private:
    TTypeColors FColors;
    TZvSyntax FSyntax;
    TMemoStyleHost FHost;
    TZvMemoStrings FStore;
    std::unique_ptr<TScanContext> FCtx;
    std::unique_ptr<TLineScanner> FScanner;
};

// The text colour a colour key gives in `set`: a token kind ("String", "Number", "Text",
// ...), "Keyword:<word>" (the group listing the word), "Group:<name>" (a group by name),
// "TagGroup:<tag>", "Block:<name>". kNoColor for a key the set cannot answer.
inline TColor ExpectedColour(const TZvCustomMemoStyles& s, std::string_view key) {
    const auto text = [&](const TCharStyle& c) {
        return c.FTextColor != kNoColor ? c.FTextColor : s.FTextColor;
    };
    const std::u16string arg = Utf8ToUtf16(key.substr(key.find(':') + 1));
    if (key.starts_with("Keyword:")) {
        const int g = s.FindKeyword(arg, s.FKeywordCase);
        return g < 0 ? kNoColor : s.FKeyWords[g].Color;
    }
    if (key.starts_with("Group:")) {
        for (const TKeyWord& g : s.FKeyWords)
            if (g.Name == arg || g.Name == u"#" + arg)
                return g.Color;
        return kNoColor;
    }
    if (key.starts_with("TagGroup:")) {
        const int g = s.FindTag(arg, false);
        return g < 0 ? kNoColor : s.FTags[g].Color;
    }
    if (key.starts_with("Block:")) {
        for (const TBlock& b : s.FBlocks)
            if (b.Name == arg)
                return b.Color;
        return kNoColor;
    }
    const std::pair<std::string_view, const TCharStyle*> kinds[] = {
        {"String", &s.FStringStyle},
        {"Comment", &s.FCommentStyle},
        {"Number", &s.FNumberStyle},
        {"HexNumber", &s.FHexNumberStyle},
        {"Symbol", &s.FSymbolsStyle},
        {"SymbolWordsA", &s.FSymbolWordsAStyle},
        {"SymbolWordsB", &s.FSymbolWordsBStyle},
        {"SymbolWordsC", &s.FSymbolWordsCStyle},
        {"AttributeValue", &s.FAttributeValue},
    };
    for (const auto& [name, style] : kinds)
        if (key == name)
            return text(*style);
    if (key == "Tag")
        return s.FTagColor;
    if (key == "Text")
        return s.FTextColor;
    return kNoColor;
}

// A file's name and text, and the colours some of its characters must be painted in.
struct TCheck {
    const char* Find;   // text whose first occurrence holds the characters to check
    const char* Part;   // the characters inside it to check; null: all of Find
    const char* Colour; // key of ExpectedColour
};

struct TCase {
    const char* File;
    const char* Text;
    std::vector<TCheck> Checks;
};

// Opens each case's file from a temporary folder with the shipped syntax set and expects
// every checked character in its colour.
template <std::size_t N> void ExpectPaintedColours(const TCase (&cases)[N]) {
    const std::filesystem::path root = ShippedSyntaxFolder().parent_path();
    TTempDir temp;
    for (const TCase& c : cases) {
        TPaintedFile file(root, temp.Path(), c.File, c.Text);
        ASSERT_TRUE(file.Host().FStyles) << c.File << " has a syntax";
        for (const TCheck& check : c.Checks) {
            const std::u16string find = Utf8ToUtf16(check.Find);
            const std::u16string part = Utf8ToUtf16(check.Part ? check.Part : check.Find);
            const auto all = file.RunsOf(find);
            ASSERT_FALSE(all.empty()) << c.File << ": " << check.Find;
            const std::size_t from = find.find(part);
            for (std::size_t i = from; i < from + part.size(); ++i) {
                const TColourRun& run = all[i];
                const TZvCustomMemoStyles& set =
                    run.Info.Set ? *run.Info.Set : *file.Host().FStyles;
                const TColor expected = ExpectedColour(set, check.Colour);
                ASSERT_NE(expected, kNoColor) << c.File << ": no colour for " << check.Colour;
                EXPECT_EQ(RunStyle(run, {}).FTextColor, expected)
                    << c.File << " (" << Utf16ToUtf8(file.Type) << "): character " << i << " of \""
                    << check.Find << "\" should be " << check.Colour << ", is "
                    << TokenKindName(run.Info.Kind);
            }
        }
    }
}

} // namespace zv::test
