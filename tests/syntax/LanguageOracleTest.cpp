// The shipped keyword lists against the languages' own tools: what an installed interpreter,
// compiler or build tool says its keywords, built-ins and commands are. A tool that is not
// installed skips its test.
#include "SyntaxTestFiles.h"

#include "syntax/ZvSyntax.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <optional>
#include <set>
#include <sstream>

namespace zv {
namespace {

using test::ShippedSyntaxFolder;
using test::U16;

// The blank-separated words a shell command prints; nullopt when it fails or prints nothing.
// A lone "." is left out: the scripts print it last, so an empty list still answers.
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
        if (w != ".")
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
    for (const char* punctuation : {"{", "}", "!", "[[", "]]", ":", "["})
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

// The words joined for a command line, each quoted for the shell (some end in "?").
std::string Arguments(const std::set<std::string>& words) {
    std::string out;
    for (const std::string& w : words)
        out += " '" + w + "'";
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

// The words of `file`'s "Reserved" group (more than `atLeast` of them) that `compiler` takes
// as a variable's name in a source of one `declaration` a line (its "W" the word); nullopt
// when there is no compiler.
std::optional<std::set<std::string>> ReservedWordsAccepted(const std::string& file,
                                                           std::size_t atLeast,
                                                           const std::string& declaration,
                                                           const std::string& compiler) {
    const std::set<std::string> ours = ShippedWords(file, u"Reserved");
    EXPECT_GT(ours.size(), atLeast) << file;
    test::TTempDir dir;
    std::string source; // line n declares a variable named by the n-th word
    for (const std::string& w : ours)
        source += declaration.substr(0, declaration.find('W')) + w +
                  declaration.substr(declaration.find('W') + 1) + "\n";
    const auto path = test::WriteFile(dir.Path() / "words", source);
    auto refused = WordsOf(compiler + " -fsyntax-only -fmax-errors=0 '" + path.string() +
                           "' 2>&1 | sed -n 's/^.*words:\\([0-9]*\\):[0-9]*: error:.*/\\1/p'");
    if (!refused)
        return std::nullopt;
    std::set<std::string> accepted;
    int line = 0;
    for (const std::string& w : ours)
        if (!refused->count(std::to_string(++line)))
            accepted.insert(w);
    return accepted;
}

TEST(LanguageOracle, CAndCppReservedWordsCannotNameAVariable) {
    const auto cpp = ReservedWordsAccepted("cpp.syx", 60, "int W;", "c++ -x c++ -std=c++20");
    const auto c = ReservedWordsAccepted("c.syx", 30, "int W = 0;", "cc -x c -std=c2x");
    if (!cpp || !c)
        GTEST_SKIP() << "no C or C++ compiler";
    // Identifiers with a special meaning only in their place.
    EXPECT_EQ(Missing(*cpp, {"final", "override", "import", "module"}), "");
    // The keywords C23 adds, which a compiler older than C23 still takes as names.
    EXPECT_EQ(Missing(*c, {"alignas", "alignof", "constexpr", "static_assert", "thread_local",
                           "typeof", "typeof_unqual"}),
              "");
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
    std::set<std::string> expected = reserved;
    expected.insert(constants.begin(), constants.end());
    EXPECT_EQ(Missing(expected, *keywords), ""); // each is reserved by the compiler
    EXPECT_EQ(Missing(*keywords, expected), ""); // no contextual word is
    EXPECT_GT(reserved.size(), 30u);             // the groups are still there under these names
    EXPECT_FALSE(contextual.empty());
}

TEST(LanguageOracle, LuaReservedWordsAndLibraryNames) {
    const std::set<std::string> reserved = ShippedWords("lua.syx", u"Reserved");
    const std::set<std::string> constants = ShippedWords("lua.syx", u"Constants");
    const std::set<std::string> library = ShippedWords("lua.syx", u"Library");
    std::set<std::string> all = reserved;
    all.insert(constants.begin(), constants.end());
    all.insert(library.begin(), library.end());
    // The words Lua refuses as a local's name, and the names that evaluate to nothing.
    auto refused = WordsOf("lua5.4 -e 'for i = 1, #arg do if not load(\"local \" .. arg[i] .. "
                           "\" = 1\") then io.write(arg[i], \" \") end end print(\".\")' "
                           "/dev/null" +
                           Arguments(all));
    auto undefined = WordsOf("lua5.4 -e 'for i = 1, #arg do local f = load(\"return \" .. arg[i]) "
                             "if not f or f() == nil then io.write(arg[i], \" \") end end "
                             "print(\".\")' /dev/null" +
                             Arguments(all));
    if (!refused || !undefined)
        GTEST_SKIP() << "lua5.4 is not installed";
    std::set<std::string> keywords = reserved;
    keywords.insert({"true", "false", "nil"});
    EXPECT_EQ(Missing(keywords, *refused), "");
    EXPECT_EQ(Missing(*refused, keywords), "");
    // Every library name and constant is defined, but the keywords and a method's receiver.
    std::set<std::string> valueless = keywords;
    valueless.insert("self");
    EXPECT_GT(library.size(), 20u);
    EXPECT_EQ(Missing(*undefined, valueless), "");
}

TEST(LanguageOracle, RubyReservedWordsCannotBeAssignedAndMethodsExist) {
    std::set<std::string> reserved = ShippedWords("ruby.syx", u"Reserved");
    const std::set<std::string> constants = ShippedWords("ruby.syx", u"Constants");
    reserved.insert(constants.begin(), constants.end());
    ASSERT_GT(reserved.size(), 35u);
    auto refused = WordsOf("ruby -e 'ARGV.each { |w| begin; eval(\"#{w} = 1\"); "
                           "rescue SyntaxError; print w, \" \"; end }; puts \".\"'" +
                           Arguments(reserved));
    const std::set<std::string> methods = ShippedWords("ruby.syx", u"Methods");
    auto unknown = WordsOf("ruby -e 'ARGV.each { |w| print w, \" \" unless [Object.new, "
                           "Module.new, Class.new].any? { |o| o.respond_to?(w, true) } }; "
                           "puts \".\"'" +
                           Arguments(methods));
    if (!refused || !unknown)
        GTEST_SKIP() << "ruby is not installed";
    EXPECT_EQ(Missing(reserved, *refused), ""); // each is a keyword
    EXPECT_FALSE(methods.empty());
    EXPECT_EQ(Missing(*unknown, {}), ""); // each is a method every object or class has
}

TEST(LanguageOracle, PhpReservedWordsAreTokensAndConstantsAreDefined) {
    const std::set<std::string> reserved = ShippedWords("php.syx", u"Reserved");
    ASSERT_GT(reserved.size(), 60u);
    // The words PHP's own tokenizer reads as a name rather than a keyword.
    auto names = WordsOf("php -r 'foreach (array_slice($argv, 1) as $w) { $t = token_get_all("
                         "\"<?php $w x\")[1]; if (is_array($t) && $t[0] == T_STRING) echo "
                         "\"$w \"; } echo \".\";' --" +
                         Arguments(reserved));
    const std::set<std::string> constants = ShippedWords("php.syx", u"Constants");
    // A constant is defined, or a magic constant the tokenizer knows.
    auto unknown = WordsOf("php -r 'foreach (array_slice($argv, 1) as $w) { $t = token_get_all("
                           "\"<?php $w\")[1]; if (!defined($w) && is_array($t) && $t[0] == "
                           "T_STRING) echo \"$w \"; } echo \".\";' --" +
                           Arguments(constants));
    if (!names || !unknown)
        GTEST_SKIP() << "php is not installed";
    EXPECT_EQ(Missing(*names, {}), "");
    // Class names with a special meaning inside a class.
    EXPECT_EQ(Missing(*unknown, {"self", "parent"}), "");
}

// Go's own packages list its keywords (go/token) and its predeclared names by kind (go/types).
constexpr std::string_view kGoPredeclared = R"(package main

import (
	"fmt"
	"go/token"
	"go/types"
)

func main() {
	for t := token.Token(0); t < 256; t++ {
		if t.IsKeyword() {
			fmt.Print("Reserved:", t.String(), " ")
		}
	}
	for _, name := range types.Universe.Names() {
		switch types.Universe.Lookup(name).(type) {
		case *types.TypeName:
			fmt.Print("Types:", name, " ")
		case *types.Const, *types.Nil:
			fmt.Print("Constants:", name, " ")
		case *types.Builtin:
			fmt.Print("Builtins:", name, " ")
		}
	}
	fmt.Println(".")
}
)";

TEST(LanguageOracle, ErlangReservedWordsAreTheScannersOwn) {
    const std::set<std::string> ours = ShippedWords("erlang.syx", u"Reserved");
    // The words erl's own scanner reserves, or a language feature (maybe ... else) adds. A
    // failing erl writes no crash dump into the working folder.
    auto reserved = WordsOf(
        "ERL_CRASH_DUMP_SECONDS=0 WORDS='" + Arguments(ours) +
        "' erl -noshell -eval 'F = lists:append([erl_features:keywords(X) || X <- "
        "erl_features:all()]), Ws = [list_to_atom(W) || W <- string:tokens(os:getenv(\"WORDS\"), "
        "\" \\x27\")], io:format(\". ~s~n\", [lists:join(\" \", [atom_to_list(W) || W <- Ws, "
        "erl_scan:reserved_word(W) orelse lists:member(W, F)])]), halt().'");
    if (!reserved)
        GTEST_SKIP() << "erl is not installed";
    EXPECT_EQ(Missing(ours, *reserved), "");
    // Every word of the scanner's fixed table (its source, from erlang-src) is ours.
    auto table = WordsOf("sed -n \"s/^f_reserved_word('\\([a-z]*\\)') -> true;/\\1/p\" "
                         "/usr/lib/erlang/lib/stdlib-*/src/erl_scan.erl");
    if (table) {
        EXPECT_EQ(Missing(*table, ours), "");
    }
}

TEST(LanguageOracle, RReservedWordsAreThoseRRenames) {
    // make.names appends "." to exactly the reserved words; T and F are ordinary variables.
    std::set<std::string> ours = ShippedWords("r.syx", u"Reserved");
    for (const std::string& w : ShippedWords("r.syx", u"Constants"))
        if (w != "T" && w != "F")
            ours.insert(w);
    auto renamed =
        WordsOf("Rscript -e 'w <- commandArgs(TRUE); cat(\". \", w[make.names(w) != w])'" +
                Arguments(ours));
    if (!renamed)
        GTEST_SKIP() << "Rscript is not installed";
    EXPECT_EQ(Missing(ours, *renamed), "");
}

TEST(LanguageOracle, NimReservedWordsAreTheCompilersList) {
    // The list the nim package ships beside its compiler.
    auto keywords = WordsOf("cat /usr/lib/nim/doc/keywords.txt");
    if (!keywords)
        GTEST_SKIP() << "nim is not installed";
    const std::set<std::string> ours = ShippedWords("nim.syx", u"Reserved");
    EXPECT_EQ(Missing(*keywords, ours), "");
    EXPECT_EQ(Missing(ours, *keywords), "");
}

// The words Free Pascal (in its Object Pascal mode) refuses as the name of a variable.
std::optional<std::set<std::string>> PascalRefusedNames(const std::set<std::string>& words) {
    if (!WordsOf("command -v fpc"))
        return std::nullopt;
    // One folder a word, eight compilers at a time. The word stands in as "{}", which a
    // temporary folder's name (letters and digits) never holds.
    return WordsOf("d=$(mktemp -d) && printf '%s\\n'" + Arguments(words) +
                   " | xargs -P 8 -I {} sh -c 'mkdir \"$0/{}\" && cd \"$0/{}\" && printf "
                   "\"program p;\\nvar {}: integer;\\nbegin\\nend.\\n\" > w.pas && "
                   "{ fpc -Mobjfpc -s w.pas >/dev/null 2>&1 || echo {}; }' \"$d\"; echo .; "
                   "rm -rf \"$d\"");
}

TEST(LanguageOracle, PascalReservedWordsCannotNameAVariableAndDirectivesCan) {
    const std::set<std::string> reserved = ShippedWords("pascal.syx", u"Reserved");
    const std::set<std::string> directives = ShippedWords("pascal.syx", u"Directives");
    auto refusedReserved = PascalRefusedNames(reserved);
    auto refusedDirectives = PascalRefusedNames(directives);
    if (!refusedReserved || !refusedDirectives)
        GTEST_SKIP() << "fpc is not installed";
    EXPECT_EQ(Missing(reserved, *refusedReserved), "");
    EXPECT_EQ(Missing(*refusedDirectives, {}), "");
}

TEST(LanguageOracle, GoGroupsAreTheKeywordsAndPredeclaredNames) {
    test::TTempDir dir;
    const auto program = test::WriteFile(dir.Path() / "words.go", kGoPredeclared);
    const std::string d = dir.Path().string();
    auto listed = WordsOf("cd '" + d + "' && GOCACHE='" + d + "/cache' GOPATH='" + d +
                          "/gopath' GOFLAGS= go run words.go");
    if (!listed)
        GTEST_SKIP() << "go is not installed";
    std::map<std::string, std::set<std::string>> go;
    for (const std::string& entry : *listed)
        if (const auto colon = entry.find(':'); colon != std::string::npos)
            go[entry.substr(0, colon)].insert(entry.substr(colon + 1));
    for (const char* group : {"Reserved", "Types", "Constants"}) {
        const std::set<std::string> ours = ShippedWords("go.syx", Utf8ToUtf16(group));
        EXPECT_EQ(Missing(go[group], ours), "") << group;
        EXPECT_EQ(Missing(ours, go[group]), "") << group;
    }
    const std::set<std::string> builtins = ShippedWords("go.syx", u"Builtins");
    EXPECT_GT(go["Builtins"].size(), 10u);
    EXPECT_EQ(Missing(go["Builtins"], builtins), "");
    // The built-ins of Go 1.21, which an older toolchain does not know yet.
    std::set<std::string> newer = go["Builtins"];
    newer.insert({"clear", "max", "min"});
    EXPECT_EQ(Missing(builtins, newer), "");
}

} // namespace
} // namespace zv
