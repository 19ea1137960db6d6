// The smallest inputs of errors seen on real files, each opened by its file name as the
// editor opens it and painted with the shipped colours: the characters that were painted
// wrong must now show the colour named beside them.
#include "PaintedColourSupport.h"

namespace zv::test {
namespace {

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

const TCase kCases[] = {
    // Here-documents only where they can stand.
    {"a.rb", "a << b\nputs 1\n", {{"puts", nullptr, "Keyword:puts"}, {"1", nullptr, "Number"}}},
    {"a.rb",
     "s = <<~EOS\n  x # y\nEOS\nputs 1\n",
     {{"x # y", nullptr, "String"}, {"puts", nullptr, "Keyword:puts"}}},
    {"a.sh", "cat <<< \"x\"\necho 1\n", {{"echo", nullptr, "Keyword:echo"}}},
    {"b.sh", "x=$(( a<<b ))\necho 1\n", {{"echo", nullptr, "Keyword:echo"}}},
    {"c.sh",
     "echo $'a\\'b'\necho 2 # c\n",
     {{"'a\\'b'", nullptr, "String"},
      {"echo 2", "echo", "Keyword:echo"},
      {"# c", nullptr, "Comment"}}},
    {"d.sh",
     "cat << EOF\n# x\nEOF\necho\n",
     {{"# x", nullptr, "String"}, {"echo", nullptr, "Keyword:echo"}}},
    // Raw strings, and quotes nested in interpolations.
    {"a.cpp",
     "auto s = R\"x(he said \"hi\")x\"; int i;\n",
     {{"R\"x(he said \"hi\")x\"", nullptr, "String"}, {"int", nullptr, "Keyword:int"}}},
    {"b.cpp",
     "auto s = R\"(a\nb \" c)\"; int i;\n",
     {{"b \" c)\"", nullptr, "String"}, {"int", nullptr, "Keyword:int"}}},
    {"a.rs",
     "let s = r#\"a \"b\" c\"#; let t = 1;\n",
     {{"\"b\" c\"#", nullptr, "String"},
      {"; let", "let", "Keyword:let"},
      {"1", nullptr, "Number"}}},
    {"a.cs",
     "var s = \"\"\"a \"b\" c\"\"\";\nint i;\n",
     {{"a \"b\" c", nullptr, "String"}, {"int", nullptr, "Keyword:int"}}},
    {"a.py",
     "s = f\"{x[\"a\"]} b\"\nif x: pass\n",
     {{" b\"", nullptr, "String"}, {"if", nullptr, "Keyword:if"}}},
    {"a.js",
     "s = `a ${`b`} c`; let x = 1;\n",
     {{" c`", nullptr, "String"}, {"let", nullptr, "Keyword:let"}}},
    // Server code inside HTML: the HTML text around it is no code.
    {"a.php",
     "<p>Don't panic</p>\n<?php echo 1; ?>\n<b>x</b>\n",
     {{"Don't panic", nullptr, "Text"},
      {"</p", nullptr, "TagGroup:p"},
      {"echo", nullptr, "Keyword:echo"},
      {"<b", nullptr, "TagGroup:b"}}},
    {"a.erb",
     "<p>Don't</p>\n<% if x %>\n<b>y</b>\n",
     {{"Don't", nullptr, "Text"}, {"if", nullptr, "Keyword:if"}, {"<b", nullptr, "TagGroup:b"}}},
    // CSS: hyphenated names, colours and custom properties are one token; a value is no
    // property.
    {"a.css",
     "p { font-size: 12px; color: #ff0000; --my-var: 1px; transition: color 1s; }\n",
     {{"font-size", nullptr, "Keyword:font-size"},
      {"#ff0000", nullptr, "HexNumber"},
      {"--my-var", nullptr, "Group:Variables"},
      {"color 1s", "color", "Text"}}},
    // Markup and data files.
    {"a.md",
     "Some *emph* and [link](x.md) in 2024\n- [ ] task\n",
     {{"*emph*", nullptr, "Group:Emphasis"},
      {"[link](x.md)", nullptr, "Group:Link"},
      {"2024", nullptr, "Text"},
      {"- [ ]", nullptr, "Group:ListMark"}}},
    {"a.yaml",
     "a:\n  key: v\n  anc: &x 1\n  ali: *x\n  t: !!str s\n",
     {{"key", nullptr, "Group:Key"},
      {"&x", nullptr, "Group:Anchor"},
      {"*x", nullptr, "Group:Anchor"},
      {"!!str", nullptr, "Group:Tag"}}},
    {"a.ini", "[s]\n  key = v\n", {{"key", nullptr, "Group:Key"}}},
    {"a.xml", "<a><![CDATA[ <b> ]]></a>\n", {{"<![CDATA[ <b> ]]>", nullptr, "Block:CDATA"}}},
    {"a.pl",
     "s/#//g;\nmy $s = 1; # c\n",
     {{"s/#//g", nullptr, "String"},
      {"my", nullptr, "Keyword:my"},
      {"1", nullptr, "Number"},
      {"# c", nullptr, "Comment"}}},
    {"b.rb",
     "x = /re#gex/\nputs 2\n",
     {{"/re#gex/", nullptr, "String"}, {"puts", nullptr, "Keyword:puts"}}},
    // Numbers.
    {"b.js",
     "x = .5 + 0b1010 + 0o17 + 0xFFn + a.b5;\n",
     {{".5", nullptr, "Number"},
      {"0b1010", nullptr, "Number"},
      {"0o17", nullptr, "Number"},
      {"0xFFn", nullptr, "HexNumber"},
      {".b5", "b5", "Text"}}},
    // Names and first lines.
    {"CMakeLists.txt", "project(x)\n", {{"project", nullptr, "Keyword:project"}}},
    {"Makefile.am", "ifeq (a,b)\nendif\n", {{"ifeq", nullptr, "Keyword:ifeq"}}},
    {".bashrc", "export A=1\n", {{"export", nullptr, "Keyword:export"}}},
    {"run", "#!/usr/bin/env python3\nimport os\n", {{"import", nullptr, "Keyword:import"}}},
    {"data", "<?xml version=\"1.0\"?>\n<a>x</a>\n", {{"<a", nullptr, "Tag"}}},
    {"page", "<!DOCTYPE html>\n<ul><li>x</li></ul>\n", {{"<ul", nullptr, "TagGroup:ul"}}},
    {"Dockerfile",
     "FROM debian:12\nRUN make # not a comment\n# a comment\n",
     {{"FROM", nullptr, "Keyword:FROM"},
      {"# not", nullptr, "Text"},
      {"# a comment", nullptr, "Comment"}}},
    {".gitignore",
     "# build\n!keep.o\n",
     {{"# build", nullptr, "Comment"}, {"!", nullptr, "Group:Negation"}}},
    {"tool",
     "#!/usr/bin/env -S pwsh -NoProfile\nparam($a)\n",
     {{"param", nullptr, "Keyword:param"}}},
    // JSX: an element's text is no code, its tags are tags, its braces hold code.
    {"a.jsx",
     "const a = (\n  <p class=\"x\">Don't {n > 1 ? 'b' : c} stop</p>\n);\nlet x = a < b;\n",
     {{"<p", nullptr, "Tag"},
      {"Don't", nullptr, "Text"},
      {"'b'", nullptr, "String"},
      {" stop", nullptr, "Text"},
      {"</p", nullptr, "Tag"},
      {"let", nullptr, "Keyword:let"},
      {"a < b", "<", "Symbol"}}},
    // Embedded regions: SVG takes the SVG set up to its end tag; a hyperscript body is no
    // JavaScript.
    {"s.html",
     "<svg><a href=\"x\"><text>Don't</text></a></svg>\n<a>z</a>\n",
     {{"<a href", "<a", "Tag"}, {"Don't", nullptr, "Text"}, {"<a>z", "<a", "TagGroup:a"}}},
    {"h.html",
     "<script type=\"text/hyperscript\">on click toggle .red</script>\n<script>let y;</script>\n",
     {{"toggle .red", nullptr, "Text"}, {"let", nullptr, "Keyword:let"}}},
    {"a.vue",
     "<template><p>x</p></template>\n<script>\nlet a = 1;\n</script>\n",
     {{"let", nullptr, "Keyword:let"}}},
};

TEST(PaintedColours, TheSmallestInputsOfErrorsSeenOnRealFiles) {
    const std::filesystem::path root = ShippedSyntaxFolder().parent_path();
    TTempDir temp;
    for (const TCase& c : kCases) {
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

} // namespace
} // namespace zv::test
