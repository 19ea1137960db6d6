// zvtool outline [--syntax NAME] FILE: the code explorer's structure of a file, one JSON
// object a line: name, kind, first and last row (1-based), nesting level; a page's tags too.
// Scripts compare it with other tools' tag lists.
#include "zvtool/CommandRegistry.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/OpenTextFile.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "common/RootFolder.h"
#include "common/Utf.h"
#include "syntax/CodeStructure.h"
#include "syntax/FoldPass.h"
#include "syntax/LineScanner.h"
#include "syntax/SyntaxSelect.h"

#include <cstdio>

namespace zv::tool {
namespace {

const char* KindName(TCEListItemType k) {
    switch (k) {
    case ceStruct:
        return "struct";
    case ceEnum:
        return "enum";
    case ceClass:
        return "class";
    case ceNS:
        return "namespace";
    case ceFunction:
        return "function";
    case ceMethod:
        return "method";
    case ceConstructor:
        return "constructor";
    case ceDestructor:
        return "destructor";
    case ceProperty:
        return "property";
    case ceLocalMethod:
        return "local";
    case ceDefine:
        return "define";
    case ceTag:
    case ceTagStyle:
    case ceTagScript:
    case ceTagHead:
    case ceTagBody:
        return "tag";
    default:
        return "other";
    }
}

std::string JsonString(std::u16string_view s) {
    std::string out = "\"";
    for (char c : Utf16ToUtf8(s)) {
        if (c == '"' || c == '\\')
            out.push_back('\\');
        if (static_cast<unsigned char>(c) < 0x20)
            continue;
        out.push_back(c);
    }
    return out + "\"";
}

int RunOutline(const std::vector<std::string>& args) {
    std::string file, type;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--syntax" && i + 1 < args.size())
            type = args[++i];
        else if (!args[i].starts_with("--") && file.empty())
            file = args[i];
        else
            file.clear(), i = args.size();
    }
    if (file.empty()) {
        std::fprintf(stderr, "usage: zvtool outline [--syntax NAME] FILE\n");
        return 2;
    }
    TZvMemoStrings store;
    TFileType fileType;
    std::string error;
    if (!OpenTextFile(store, file, cpAutoDetect, fileType, error)) {
        std::fprintf(stderr, "zvtool outline: %s\n", error.c_str());
        return 1;
    }
    TSyntaxEnvironment env;
    env.Root = GetRootFolder();
    TZvSyntax syntax;
    TSyntaxSelector selector(env, syntax);
    TMemoStyleHost host;
    host.FHtmlMultiSyntax = true;
    if (type.empty())
        selector.LoadStyleFromFile(host, file);
    else
        selector.LoadStyleFromType(host, Utf8ToUtf16(type));
    if (!host.FStyles) {
        std::fprintf(stderr, "zvtool outline: no syntax for %s\n", file.c_str());
        return 1;
    }
    const TScanContext ctx(host, TScanOptions{});
    // The tags of a page come from a fold pass, which needs every row's state.
    TLineScanner scanner(store, ctx);
    const std::atomic<bool> halt{false};
    TFoldTemp folds;
    const bool swept = scanner.Sweep(halt) && RunFoldPass(scanner, {}, folds, false);
    const auto structure = BuildCodeStructure(store, ctx, false, nullptr, swept ? &folds : nullptr);
    for (const TStructureItem& item : structure->Items)
        std::printf("{\"name\": %s, \"kind\": \"%s\", \"line\": %d, \"end\": %d, \"level\": %d}\n",
                    JsonString(item.Name).c_str(), KindName(item.Kind), item.Row + 1,
                    item.EndRow + 1, item.Level);
    return std::fflush(stdout) == 0 ? 0 : 1;
}

const Registration kOutline({"outline", "outline [--syntax NAME] FILE",
                             "the code explorer's structure of the file, as JSON lines",
                             RunOutline});

} // namespace
} // namespace zv::tool
