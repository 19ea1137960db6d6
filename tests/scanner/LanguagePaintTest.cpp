// The literal forms each language of the later definition files brings, opened by file name
// (or first line) as the editor opens them: what would run on as a string or comment when
// the file described the language wrongly must end where the language says.
#include "PaintedColourSupport.h"

namespace zv::test {
namespace {

const TCase kCases[] = {
    // Block comments nest.
    {"a.scala",
     "/* a /* b */ c */ val x = 1\n",
     {{" c */", nullptr, "Comment"}, {"val", nullptr, "Keyword:val"}}},
    {"a.nim",
     "#[ a #[ b ]# c ]#\nlet x = 1\n",
     {{" c ]#", nullptr, "Comment"}, {"let", nullptr, "Keyword:let"}}},
    {"a.jl",
     "#= a #= b =# c =#\nx = 1\n",
     {{" c =#", nullptr, "Comment"}, {"1", nullptr, "Number"}}},
    // Raw and line strings, sigils, character literals and quoted names.
    {"a.dart", "var p = r'C:\\'; var n = 1;\n", {{"var n", "var", "Keyword:var"}}},
    // Quotes inside an interpolation do not end its string.
    {"b.dart",
     "var s = 'a ${m['k']} b'; var n = 1;\n",
     {{"'a ${m['k']} b'", nullptr, "String"}, {"var n", "var", "Keyword:var"}}},
    {"a.scala",
     "val s = s\"a ${m(\"k\")} b\"; val n = 1\n",
     {{"\"a ${m(\"k\")} b\"", nullptr, "String"}, {"val n", "val", "Keyword:val"}}},
    {"b.ex",
     "s = \"a #{m[\"k\"]} b\" # c\n",
     {{"\"a #{m[\"k\"]} b\"", nullptr, "String"}, {"# c", nullptr, "Comment"}}},
    {"b.jl",
     "s = \"a $(f(\"k\")) b\" # c\n",
     {{"\"a $(f(\"k\")) b\"", nullptr, "String"}, {"# c", nullptr, "Comment"}}},
    {"a.groovy",
     "def s = \"a ${m[\"k\"]} b\"; def n = 1\n",
     {{"\"a ${m[\"k\"]} b\"", nullptr, "String"}, {"def n", "def", "Keyword:def"}}},
    {"a.ex",
     "r = ~r/\"#/ <> ?\" <> to_string(match?(1))\nx = 1 # c\n",
     {{"~r/\"#/", nullptr, "Block:#Sigil in slashes"},
      {"?\"", nullptr, "Block:#Character"},
      {"# c", nullptr, "Comment"}}},
    {"a.erl",
     "f() -> {'a%b', $\"}. % c\n",
     {{"'a%b'", nullptr, "Block:Quoted atom"},
      {"$\"", nullptr, "Block:#Character"},
      {"% c", nullptr, "Comment"}}},
    {"a.zig",
     "const s =\n    \\\\a \"b [c]\n;\nconst n = 1;\n",
     {{"\\\\a \"b [c]", nullptr, "Block:Multi-line string line"},
      {"const n", "const", "Keyword:const"}}},
    {"a.R",
     "`a # b` <- 1 # c\nif (TRUE) x\n",
     {{"`a # b`", nullptr, "Block:Quoted name"},
      {"<-", nullptr, "Symbol"},
      {"if", nullptr, "Keyword:if"}}},
    {"a.m",
     "NSString *s = @\"a // b\"; @interface X @end\n",
     {{"a // b", nullptr, "String"}, {"@interface", nullptr, "Group:Directives"}}},
    {"a.f90",
     "print *, 'it''s' ! c\nIF (x .AND. y) THEN\n",
     {{"! c", nullptr, "Comment"},
      {"IF", nullptr, "Keyword:if"},
      {".AND.", nullptr, "Group:Operators"}}},
    {"a.f",
     "C     sum\n      CHARACTER*5 S ! c\n* star\n",
     {{"sum", nullptr, "Comment"},
      {"CHARACTER", nullptr, "Keyword:character"},
      {"! c", nullptr, "Comment"},
      {"star", nullptr, "Comment"}}},
    {"a.pas",
     "{ a } (* b *) x := 1; // c\nbegin end.\n",
     {{"(* b *)", nullptr, "Comment"}, {"begin", nullptr, "Keyword:begin"}}},
    {"build.gradle",
     "def s = $/it's/$\nprintln 1 // c\n",
     {{"$/it's/$", nullptr, "Block:Dollar slashy string"}, {"// c", nullptr, "Comment"}}},
    {"a.tex",
     "\\section{A} 5\\% b % c\n",
     {{"\\section", nullptr, "Group:Control words"}, {"% c", nullptr, "Comment"}}},
    // Names and first lines.
    {"Jenkinsfile", "node { echo 'x' } // c\n", {{"// c", nullptr, "Comment"}}},
    {"report", "#!/usr/bin/env Rscript\nx <- 1 # c\n", {{"# c", nullptr, "Comment"}}},
    {"tool", "#!/usr/bin/escript\nmain(_) -> ok. % c\n", {{"% c", nullptr, "Comment"}}},
};

TEST(LanguagePaint, EachLanguageEndsItsLiteralsWhereItSays) {
    ExpectPaintedColours(kCases);
}

} // namespace
} // namespace zv::test
