// Syntax loading and keyword lookups: loading "html.syx" with all its embedded languages and
// the colour scheme, as opening a document does (budget 30 ms), and the keyword lookup of the
// scanner's hot path.
#include "syntax/TypeColors.h"
#include "syntax/ZvSyntax.h"

#include "common/Utf.h"

#include <benchmark/benchmark.h>

#include <cctype>
#include <filesystem>

namespace {

const std::filesystem::path kSyntax = std::filesystem::path(ZV_SOURCE_DIR) / "data" / "Syntax";

void BM_LoadHtmlWithEmbeddedLanguages(benchmark::State& state) {
    const std::u16string file = zv::Utf8ToUtf16((kSyntax / "html.syx").string());
    const zv::TTypeColors colors(kSyntax / "Colors.ini", nullptr, u"Dark");
    zv::TZvSyntax syntax;
    syntax.SetColorSource(&colors);
    for (auto _ : state) {
        zv::TMemoStyleHost memo;
        if (!syntax.LoadStyleFromFile(&memo, file, u"HTML", 1, u"") || !memo.FHtmlStyleJS ||
            !memo.FHtmlStyleCSS || !memo.FHtmlStylePHP)
            state.SkipWithError("html.syx did not load with its embedded languages");
        benchmark::DoNotOptimize(memo.FStyles.get());
    }
}
BENCHMARK(BM_LoadHtmlWithEmbeddedLanguages)->Unit(benchmark::kMillisecond);

void BM_KeywordLookup(benchmark::State& state) {
    zv::TZvSyntax syntax;
    zv::TMemoStyleHost memo;
    syntax.LoadStyleFromFile(&memo, zv::Utf8ToUtf16((kSyntax / "cpp.syx").string()), u"C++", 1,
                             u"");
    const std::u16string row =
        u"template <class T> constexpr auto value = static_cast<unsigned long>(x) + identifier;";
    const bool caseSensitive = state.range(0) != 0;
    std::vector<std::u16string_view> words; // the word ranges a scanner would ask about
    for (std::size_t i = 0; i < row.size();) {
        std::size_t j = i;
        while (j < row.size() && (std::isalnum(row[j] & 0x7F) || row[j] == u'_'))
            ++j;
        if (j > i)
            words.push_back(std::u16string_view(row).substr(i, j - i));
        i = j + 1;
    }
    std::size_t hits = 0;
    for (auto _ : state)
        for (std::u16string_view w : words)
            hits += memo.FStyles->FindKeyword(w, caseSensitive) >= 0;
    benchmark::DoNotOptimize(hits);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(words.size()));
}
BENCHMARK(BM_KeywordLookup)->Arg(1)->Arg(0);

} // namespace

BENCHMARK_MAIN();
