// The shipped keyword lists against the languages' own tools: what an installed interpreter,
// compiler or build tool says its keywords, built-ins and commands are. A tool that is not
// installed skips its test.
#include "SyntaxTestFiles.h"

#include "syntax/ZvSyntax.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <optional>
#include <set>
#include <sstream>

namespace zv {
namespace {

using test::ShippedSyntaxFolder;
using test::U16;

// The blank-separated words a shell command prints; nullopt when it fails or prints nothing.
std::optional<std::set<std::string>> WordsOf(const std::string& command) {
    FILE* pipe = popen((command + " 2>/dev/null").c_str(), "r");
    if (!pipe)
        return std::nullopt;
    std::string out;
    char buffer[4096];
    for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        out.append(buffer, n);
    if (pclose(pipe) != 0 || out.empty())
        return std::nullopt;
    std::set<std::string> words;
    std::istringstream in(out);
    for (std::string w; in >> w;)
        words.insert(w);
    return words;
}

// The words of the keyword groups of a shipped file; with `group`, of that group only.
std::set<std::string> ShippedWords(const std::string& file, std::u16string_view group = {}) {
    TZvSyntax syntax;
    EXPECT_TRUE(
        syntax.LoadStyleFromFile(nullptr, U16(ShippedSyntaxFolder() / file), u"Oracle", 0, u""));
    std::set<std::string> words;
    if (!syntax.LastStyles())
        return words;
    for (const TKeyWord& g : syntax.LastStyles()->FKeyWords)
        if (group.empty() || g.Name == group)
            for (const std::u16string& w : g.KeyWords.Words())
                words.insert(Utf16ToUtf8(w));
    return words;
}

// The members of `from` that `in` lacks, for a readable failure.
std::string Missing(const std::set<std::string>& from, const std::set<std::string>& in) {
    std::string out;
    for (const std::string& w : from)
        if (!in.count(w))
            out += w + " ";
    return out;
}

TEST(LanguageOracle, PythonKeywordsAndBuiltinsAreColouredAndNothingElse) {
    // -S leaves out the names the interactive site module adds (exit, quit, license, ...).
    auto python = WordsOf("python3 -S -c \"import keyword, builtins; print(*keyword.kwlist, "
                          "*keyword.softkwlist, *[b for b in dir(builtins) if b[:1].islower()])\"");
    if (!python)
        GTEST_SKIP() << "python3 is not installed";
    python->erase("_"); // the soft keyword of a match wildcard is an ordinary name elsewhere
    const std::set<std::string> ours = ShippedWords("python.syx");
    EXPECT_EQ(Missing(*python, ours), "");
    // Without -S: the names the site module adds (help, exit, ...) may be coloured too.
    auto all = WordsOf("python3 -c \"import keyword, builtins; print(*keyword.kwlist, "
                       "*keyword.softkwlist, *dir(builtins))\"");
    ASSERT_TRUE(all);
    // Conventional names that are neither keywords nor built-ins, coloured on purpose.
    all->insert({"self", "cls", "__init__", "__main__", "__file__"});
    EXPECT_EQ(Missing(ours, *all), "");
}

TEST(LanguageOracle, ShellReservedWordsAndBuiltinsMatchBash) {
    auto reserved = WordsOf("bash -c 'compgen -k'");
    auto builtins = WordsOf("bash -c 'compgen -b'");
    if (!reserved || !builtins)
        GTEST_SKIP() << "bash is not installed";
    for (const char* punctuation : {"{", "}", "!", "[[", "]]", ".", ":", "["})
        reserved->erase(punctuation), builtins->erase(punctuation);
    EXPECT_EQ(Missing(*reserved, ShippedWords("shell.syx", u"Reserved")), "");
    EXPECT_EQ(Missing(*builtins, ShippedWords("shell.syx", u"Builtins")), "");
    EXPECT_EQ(Missing(ShippedWords("shell.syx", u"Reserved"), *reserved), "");
    EXPECT_EQ(Missing(ShippedWords("shell.syx", u"Builtins"), *builtins), "");
}

TEST(LanguageOracle, EveryCMakeCommandWeColourExists) {
    auto commands = WordsOf("cmake --help-command-list");
    if (!commands)
        GTEST_SKIP() << "cmake is not installed";
    const std::set<std::string> ours = ShippedWords("cmake.syx", u"Commands");
    EXPECT_GT(ours.size(), 100u);
    EXPECT_EQ(Missing(ours, *commands), "");
}

TEST(LanguageOracle, JavaScriptGlobalsWeColourExist) {
    auto globals = WordsOf("node -e \"console.log(Object.getOwnPropertyNames(globalThis).join(' "
                           "'))\"");
    if (!globals)
        GTEST_SKIP() << "node is not installed";
    // Literals, a browser's globals, and a function's own arguments.
    globals->insert({"true", "false", "null", "document", "window", "arguments"});
    for (std::u16string_view group : {u"Objects", u"Constants"}) {
        const std::set<std::string> ours = ShippedWords("javascript.syx", group);
        EXPECT_FALSE(ours.empty());
        EXPECT_EQ(Missing(ours, *globals), "") << Utf16ToUtf8(group);
    }
}

// The words joined for a command line (the shipped words are letters, digits, "_" and "-").
std::string Arguments(const std::set<std::string>& words) {
    std::string out;
    for (const std::string& w : words)
        out += " " + w;
    return out;
}

TEST(LanguageOracle, JavaScriptReservedWordsCannotNameAVariable) {
    const std::set<std::string> ours = ShippedWords("javascript.syx", u"Reserved");
    ASSERT_GT(ours.size(), 30u);
    // The words node accepts as a variable name in strict code.
    auto names = WordsOf("node -e 'const ok = []; for (const w of process.argv.slice(1)) { try { "
                         "new Function(\"\\\"use strict\\\"; var \" + w + \";\"); "
                         "ok.push(w); } catch (e) {} } console.log(\". \" + ok.join(\" \"))'" +
                         Arguments(ours));
    if (!names)
        GTEST_SKIP() << "node is not installed";
    names->erase(".");
    // Keywords only in their place: they stay names elsewhere, even in strict code.
    const std::set<std::string> contextual{"async", "await", "from", "get", "of", "set"};
    EXPECT_EQ(Missing(*names, contextual), "");
}

TEST(LanguageOracle, RustReservedWordsCannotNameAFunction) {
    std::set<std::string> ours = ShippedWords("rust.syx", u"Reserved");
    ASSERT_GT(ours.size(), 30u);
    ours.merge(ShippedWords("rust.syx", u"Constants"));
    test::TTempDir dir;
    std::string source;
    for (const std::string& w : ours)
        source += "fn " + w + "() {}\n";
    const auto file = test::WriteFile(dir.Path() / "words.rs", source);
    // The words rustc refuses as a function name, keyword or reserved keyword alike.
    auto keywords = WordsOf("rustc --edition 2021 --crate-type lib --emit=metadata -o '" +
                            (dir.Path() / "words.rmeta").string() + "' '" + file.string() +
                            "' 2>&1 | sed -n 's/.*found \\(reserved \\)\\{0,1\\}keyword "
                            "`\\([^`]*\\)`.*/\\2/p'");
    if (!keywords)
        GTEST_SKIP() << "rustc is not installed";
    // Constants that are ordinary names (variants of the prelude), and the weak keyword union.
    for (const char* name : {"None", "Some", "Ok", "Err", "union"})
        keywords->insert(name);
    EXPECT_EQ(Missing(ours, *keywords), "");
}

TEST(LanguageOracle, CppReservedWordsCannotNameAVariable) {
    const std::set<std::string> ours = ShippedWords("cpp.syx", u"Reserved");
    ASSERT_GT(ours.size(), 60u);
    test::TTempDir dir;
    std::string source; // line n declares a variable named by the n-th word
    for (const std::string& w : ours)
        source += "int " + w + ";\n";
    const auto file = test::WriteFile(dir.Path() / "words.cpp", source);
    auto refused =
        WordsOf("c++ -std=c++20 -fsyntax-only -fmax-errors=0 '" + file.string() +
                "' 2>&1 | sed -n 's/^.*words\\.cpp:\\([0-9]*\\):[0-9]*: error:.*/\\1/p'");
    if (!refused)
        GTEST_SKIP() << "no C++ compiler";
    std::set<std::string> accepted;
    int line = 0;
    for (const std::string& w : ours)
        if (!refused->count(std::to_string(++line)))
            accepted.insert(w);
    // Identifiers with a special meaning only in their place.
    EXPECT_EQ(Missing(accepted, {"final", "override", "import", "module"}), "");
}

TEST(LanguageOracle, PerlWordsWeColourAreCoreKeywordsOrFunctions) {
    std::set<std::string> ours = ShippedWords("perl.syx", u"Reserved");
    ours.merge(ShippedWords("perl.syx", u"Builtins"));
    ASSERT_GT(ours.size(), 80u);
    // perl knows a word as CORE:: exactly when it is a keyword or built-in function; the
    // closing "." keeps the output from being empty when every word passes.
    auto unknown = WordsOf("perl -e 'for (@ARGV) { print \"$_ \" unless eval { prototype "
                           "\"CORE::$_\"; 1 } } print \".\"' --" +
                           Arguments(ours));
    if (!unknown)
        GTEST_SKIP() << "perl is not installed";
    unknown->erase(".");
    EXPECT_EQ(Missing(*unknown, {}), "");
}

TEST(LanguageOracle, JavaReservedWordsAreKeywordsAndContextualOnesAreNot) {
    test::TTempDir dir;
    const auto program =
        test::WriteFile(dir.Path() / "Keywords.java",
                        "public class Keywords { public static void main(String[] args) {\n"
                        "  StringBuilder out = new StringBuilder(\".\");\n"
                        "  for (String w : args) if (javax.lang.model.SourceVersion.isKeyword(w))\n"
                        "    out.append(' ').append(w);\n"
                        "  System.out.println(out); } }\n");
    const std::set<std::string> reserved = ShippedWords("java.syx", u"Reserved");
    const std::set<std::string> constants = ShippedWords("java.syx", u"Constants");
    const std::set<std::string> contextual = ShippedWords("java.syx", u"Contextual");
    std::set<std::string> all = reserved;
    all.insert(constants.begin(), constants.end());
    all.insert(contextual.begin(), contextual.end());
    auto keywords = WordsOf("java '" + program.string() + "'" + Arguments(all));
    if (!keywords)
        GTEST_SKIP() << "java is not installed";
    keywords->erase(".");
    std::set<std::string> expected = reserved;
    expected.insert(constants.begin(), constants.end());
    EXPECT_EQ(Missing(expected, *keywords), ""); // each is reserved by the compiler
    EXPECT_EQ(Missing(*keywords, expected), ""); // no contextual word is
    EXPECT_GT(reserved.size(), 30u);             // the groups are still there under these names
    EXPECT_FALSE(contextual.empty());
}

} // namespace
} // namespace zv
