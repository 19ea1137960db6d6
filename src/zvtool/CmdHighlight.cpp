// zvtool highlight [--syntax NAME] [--tokens] FILE: the document coloured by its syntax, as an
// HTML page on standard output, or as a token dump (one run per line: row, UTF-16 column,
// length and kind, tab-separated) for tests and comparisons with other tools.
#include "zvtool/CommandRegistry.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/OpenTextFile.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "common/RootFolder.h"
#include "common/Utf.h"
#include "syntax/ColourWalk.h"
#include "syntax/HtmlExport.h"
#include "syntax/LineScanner.h"
#include "syntax/SyntaxSelect.h"
#include "syntax/TypeColors.h"

#include <charconv>
#include <cstdio>
#include <filesystem>
#include <unistd.h>

namespace zv::tool {
namespace {

namespace fs = std::filesystem;

struct THighlightArgs {
    std::string File, Syntax;
    bool Tokens = false;
};

bool ParseArgs(const std::vector<std::string>& args, THighlightArgs& out) {
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--tokens")
            out.Tokens = true;
        else if (args[i] == "--syntax" && i + 1 < args.size())
            out.Syntax = args[++i];
        else if (args[i].starts_with("--") || !out.File.empty())
            return false;
        else
            out.File = args[i];
    }
    return !out.File.empty();
}

// Loads the syntax named on the command line (a type, or a file name in Syntax/), else the
// one the file's extension selects. False with a message when a named syntax is unknown.
bool LoadSyntax(const THighlightArgs& a, TMemoStyleHost& host, TZvSyntax& syntax) {
    TSyntaxEnvironment env;
    env.Root = GetRootFolder(); // the editor's own root, so its syntax files are ours
    static const TTypeColors colors(env.Root / "Syntax" / "Colors.ini", nullptr, u"Light");
    syntax.SetColorSource(&colors);
    TSyntaxSelector selector(env, syntax);
    host.FHtmlMultiSyntax = true; // as the editor's default: PHP and ERB pages are HTML
    if (a.Syntax.empty()) {
        selector.LoadStyleFromFile(host, a.File);
        return true;
    }
    if (!selector.LoadStyleFromType(host, Utf8ToUtf16(a.Syntax)).empty() && host.FStyles)
        return true;
    const fs::path file = env.Root / "Syntax" / (a.Syntax + ".syx");
    if (syntax.LoadStyleFromFile(&host, Utf8ToUtf16(file.string()), Utf8ToUtf16(a.Syntax), 1, u""))
        return true;
    std::fprintf(stderr, "zvtool highlight: unknown syntax '%s' (no type and no %s)\n",
                 a.Syntax.c_str(), file.string().c_str());
    return false;
}

// The dump's name of a run: comments, strings, numbers and keywords by their class; keyword
// groups after the first carry their number.
std::string DumpKind(const TColourRun& run) {
    const TRunInfo& i = run.Info;
    switch (i.Kind) {
    case TTokenKind::DocComment:
    case TTokenKind::LineComment:
        return "comment";
    case TTokenKind::HexNumber:
        return "number";
    case TTokenKind::Keyword:
        return i.Index > 0 ? "keyword" + std::to_string(i.Index + 1) : "keyword";
    case TTokenKind::Url:
        return i.Outer == TTokenKind::Text ? "url" : DumpKind({0, 0, {i.Outer}});
    case TTokenKind::Block:
        if (i.Set && i.Index >= 0 && i.Index < int(i.Set->FBlocks.size()) &&
            i.Set->FBlocks[i.Index].ForceColor)
            return "string";
        return "block";
    default:
        return TokenKindName(i.Kind);
    }
}

void AppendNumber(std::string& out, long long v) {
    char buf[24];
    const auto r = std::to_chars(buf, buf + sizeof buf, v);
    out.append(buf, r.ptr);
}

// Rows cut from one long line (wrapped continuations) are reported in line coordinates.
void DumpTokens(const TScanContext& ctx, const TZvMemoStrings& store) {
    TStyle state;
    ClearStyle(state, true);
    TLineScanner scanner(store, ctx); // the editor's own row scan: cut rows join their line
    std::string out;
    int line = -1, offset = 0;
    for (int row = 0; row < store.Count(); ++row) {
        if (row > 0 && store.IsLineWrapped(row))
            offset += store.GetLineLength(row - 1);
        else
            ++line, offset = 0;
        for (const TColourRun& r : RowRunsFrom(scanner, row, state)) {
            AppendNumber(out, line);
            out.push_back('\t');
            AppendNumber(out, offset + r.Start);
            out.push_back('\t');
            AppendNumber(out, r.Length);
            out.push_back('\t');
            out += DumpKind(r);
            out.push_back('\n');
        }
        if (out.size() > 65536) {
            std::fwrite(out.data(), 1, out.size(), stdout);
            out.clear();
        }
    }
    std::fwrite(out.data(), 1, out.size(), stdout);
}

int RunHighlight(const std::vector<std::string>& args) {
    THighlightArgs a;
    if (!ParseArgs(args, a)) {
        std::fprintf(stderr, "usage: zvtool highlight [--syntax NAME] [--tokens] FILE\n");
        return 2;
    }
    TZvMemoStrings store;
    TFileType type;
    std::string error;
    if (!OpenTextFile(store, a.File, cpAutoDetect, type, error)) {
        std::fprintf(stderr, "zvtool highlight: %s\n", error.c_str());
        return 1;
    }
    TMemoStyleHost host;
    TZvSyntax syntax;
    if (!LoadSyntax(a, host, syntax))
        return 1;
    TScanOptions scan;
    scan.FWordWrap = true; // rows cut from an overlong line continue it
    const TScanContext ctx(host, scan);
    if (a.Tokens) {
        DumpTokens(ctx, store);
        return 0;
    }
    THtmlExportOptions options;
    options.Title = Utf8ToUtf16(fs::path(a.File).filename().string());
    GetAsHtml(ctx, store, options,
              [](std::string_view piece) { std::fwrite(piece.data(), 1, piece.size(), stdout); });
    return std::fflush(stdout) == 0 ? 0 : 1;
}

const Registration kHighlight({"highlight", "highlight [--syntax NAME] [--tokens] FILE",
                               "the file coloured by its syntax: HTML page, or a token dump",
                               RunHighlight});

} // namespace
} // namespace zv::tool
