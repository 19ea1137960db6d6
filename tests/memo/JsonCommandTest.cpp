// The JSON commands through the control against Python's json module on real JSON files of
// the system and on random JSON: pretty print equals json.tool, minify equals a compact
// json.dump, text Python refuses is refused and left alone, and undo gives the original.
#include "MemoTestUtil.h"
#include "ZvMemoControl/JsonFormat.h"
#include "memo_edit/MemoFixture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>

namespace zv::test {
namespace {

// Reads file names, one a line, from argv[1]; for the n-th writes into folder argv[2]:
// n.valid when json.load takes it, n.canonical when besides Python writes its every string
// and number back as written and no object repeats a key (so its output may be compared
// byte for byte), n.pretty<indent> by json.tool and n.min by a compact json.dump. One
// Python for all files: it starts slowly.
constexpr const char* kPythonScript = R"(import json, json.tool, re, sys
token = re.compile(r'"(?:[^"\\]|\\.)*"|-?(?:0|[1-9][0-9]*)(?:\.[0-9]+)?(?:[eE][+-]?[0-9]+)?')
def canonical(text):
    odd = []
    def pairs(items):
        if len({k for k, _ in items}) != len(items): odd.append(1)
        return dict(items)
    json.loads(text, object_pairs_hook=pairs, parse_constant=odd.append)
    same = all(json.dumps(json.loads(m.group()), ensure_ascii=False) == m.group()
               for m in token.finditer(text))
    return same and not odd and "\r" not in text and not text.startswith("\ufeff")
names, folder = open(sys.argv[1], encoding="utf-8").read().splitlines(), sys.argv[2]
for n, name in enumerate(names):
    out = folder + "/" + str(n)
    try:
        text = open(name, "rb").read().decode("utf-8")
        value = json.loads(text)
    except Exception:
        continue
    open(out + ".valid", "w").close()
    if not canonical(text):
        continue
    open(out + ".canonical", "w").close()
    for indent in ("0", "2", "4"):
        sys.argv[1:] = ["--indent", indent, "--no-ensure-ascii", name, out + ".pretty" + indent]
        json.tool.main()
    with open(out + ".min", "w", encoding="utf-8") as f:
        json.dump(value, f, separators=(",", ":"), ensure_ascii=False)
)";

// What Python makes of one file; the texts only when Canonical.
struct TPythonView {
    bool Valid = false, Canonical = false;
    std::string Pretty[3]; // indents 0, 2, 4
    std::string Minified;
};
constexpr int kIndents[3] = {0, 2, 4};

std::vector<TPythonView> AskPython(const std::vector<std::string>& files) {
    TTempDir dir("zv-json-py");
    WriteAll(dir / "oracle.py", kPythonScript);
    std::string list;
    for (const std::string& file : files)
        list += file + "\n";
    WriteAll(dir / "list", list);
    int status = 0;
    RunOutput("python3 " + (dir / "oracle.py").string() + " " + (dir / "list").string() + " " +
                  dir.Path().string(),
              status);
    EXPECT_EQ(status, 0);
    std::vector<TPythonView> views(files.size());
    for (std::size_t n = 0; n < files.size(); ++n) {
        const std::string out = (dir / std::to_string(n)).string();
        views[n].Valid = std::filesystem::exists(out + ".valid");
        views[n].Canonical = std::filesystem::exists(out + ".canonical");
        if (!views[n].Canonical)
            continue;
        for (int i = 0; i < 3; ++i)
            views[n].Pretty[i] = ReadAll(out + ".pretty" + std::to_string(kIndents[i]));
        views[n].Minified = ReadAll(out + ".min");
    }
    return views;
}

// Python ends its output with a line end only in json.tool; the control keeps the text's
// own final line end.
std::string WithFinalEnd(std::string text, bool end) {
    if (!text.empty() && text.back() == '\n')
        text.pop_back();
    return end ? text + "\n" : text;
}

// Pretty prints at several indents and minifies `bytes` in the control, comparing with
// Python; each command undoes to the original bytes.
void ExpectPythonOutput(const TPythonView& python, const std::string& bytes,
                        const std::string& name) {
    SCOPED_TRACE(name);
    const bool end = !bytes.empty() && bytes.back() == '\n';
    for (int i = 0; i < 3; ++i) {
        TMemoFixture f(bytes);
        const bool changed = f.memo.acnJSONPrettyPrint(kIndents[i]);
        EXPECT_EQ(f.Bytes(), WithFinalEnd(python.Pretty[i], end)) << kIndents[i];
        EXPECT_EQ(changed, f.Bytes() != bytes);
        if (changed) {
            ASSERT_TRUE(f.memo.Undo());
            EXPECT_EQ(f.Bytes(), bytes);
        }
    }
    TMemoFixture f(bytes);
    const bool changed = f.memo.acnJSONMinify();
    EXPECT_EQ(f.Bytes(), WithFinalEnd(python.Minified, end));
    EXPECT_EQ(changed, f.Bytes() != bytes);
    if (changed) {
        ASSERT_TRUE(f.memo.Undo());
        EXPECT_EQ(f.Bytes(), bytes);
    }
}

TEST(JsonCommandTest, SystemJsonFilesMatchPython) {
    if (!HaveProgram("python3"))
        GTEST_SKIP() << "no python3";
    const std::string list =
        RunOutput("find /usr/share -name \"*.json\" -size -300k 2>/dev/null | sort | head -n 80");
    std::vector<std::string> files;
    std::size_t from = 0;
    for (std::size_t end; (end = list.find('\n', from)) != list.npos; from = end + 1)
        files.push_back(list.substr(from, end - from));
    const auto python = AskPython(files);
    int compared = 0;
    for (std::size_t n = 0; n < files.size(); ++n)
        if (python[n].Canonical) {
            ExpectPythonOutput(python[n], ReadAll(files[n]), files[n]);
            ++compared;
        }
    if (compared < 5)
        GTEST_SKIP() << "only " << compared << " system JSON files Python writes back as written";
}

// Random JSON that Python writes back token for token: unique keys, numbers without
// exponents or trailing zeros, strings escaped as Python escapes them; blanks anywhere.
class TJsonGenerator {
public:
    explicit TJsonGenerator(unsigned seed) : FRng(seed) {}

    std::string Document() {
        std::string text = Blank() + Value(0) + Blank();
        return FRng() % 2 ? text + "\n" : text;
    }

private:
    int Pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(FRng); }

    std::string Blank() {
        static const char* blanks[] = {"", "", "", " ", "\n", "\t", "  \n  "};
        return blanks[Pick(7)];
    }

    std::string String() {
        static const char* pieces[] = {"a",
                                       "Z",
                                       " ",
                                       "\xc3\xa9",
                                       "\xe4\xb8\xad",
                                       "\xf0\x9f\x98\x80",
                                       "\\\"",
                                       "\\\\",
                                       "\\n",
                                       "\\t",
                                       "\\u0001",
                                       "\\u001f",
                                       "/",
                                       "'",
                                       "\x7f",
                                       "{",
                                       "]",
                                       ":,"};
        std::string s = "\"";
        for (int n = Pick(6); n > 0; --n)
            s += pieces[Pick(18)];
        return s + "\"";
    }

    std::string Number() {
        const int whole = Pick(2000) - 1000;
        switch (Pick(4)) {
        case 0:
            return std::to_string(whole);
        case 1:
            return "123456789012345678901234567890";
        default: {
            std::string s = (whole < 0 ? "-" : "") + std::to_string(std::abs(whole)) + "." +
                            std::to_string(Pick(100));
            return s + std::to_string(1 + Pick(9));
        }
        }
    }

    std::string Container(int depth, bool object) {
        const int n = Pick(5);
        std::string s = object ? "{" : "[";
        for (int i = 0; i < n; ++i) {
            s += Blank();
            if (i > 0)
                s += "," + Blank();
            if (object)
                s += "\"k" + std::to_string(i) + String().substr(1) + Blank() + ":" + Blank();
            s += Value(depth + 1) + Blank();
        }
        return s + Blank() + (object ? "}" : "]");
    }

    std::string Value(int depth) {
        const int kind = Pick(depth < 5 ? 8 : 5);
        switch (kind) {
        case 0:
            return String();
        case 1:
            return Number();
        case 2:
            return "true";
        case 3:
            return "false";
        case 4:
            return "null";
        case 5:
        case 6:
            return Container(depth, kind == 5);
        default: // deep nesting
            return std::string(60, '[') + Value(depth + 1) + std::string(60, ']');
        }
    }

    std::mt19937 FRng;
};

// Writes each text to a file of `dir`; their names.
std::vector<std::string> WriteFiles(const TTempDir& dir, const std::vector<std::string>& texts) {
    std::vector<std::string> files;
    for (const std::string& text : texts) {
        files.push_back((dir / (std::to_string(files.size()) + ".json")).string());
        WriteAll(files.back(), text);
    }
    return files;
}

TEST(JsonCommandTest, RandomJsonMatchesPythonAndSelectionKeepsTheRest) {
    if (!HaveProgram("python3"))
        GTEST_SKIP() << "no python3";
    TJsonGenerator generate(31);
    std::vector<std::string> texts;
    for (int round = 0; round < 60; ++round)
        texts.push_back(generate.Document());
    // A selection reformats the lines it touches only.
    const std::string json = "{\"a\": [1, 2.5, \"x\"],\n \"b\": {}}";
    texts.push_back(json);
    TTempDir dir("zv-json");
    const auto python = AskPython(WriteFiles(dir, texts));
    for (std::size_t n = 0; n + 1 < texts.size(); ++n) {
        ASSERT_TRUE(python[n].Canonical) << texts[n];
        ExpectPythonOutput(python[n], texts[n], texts[n]);
    }
    TMemoFixture f("before\n" + json + "\nafter\n");
    f.memo.SetSelection({2, 1}, {3, 2});
    ASSERT_TRUE(f.memo.acnJSONPrettyPrint(2));
    EXPECT_EQ(f.Bytes(), "before\n" + python.back().Pretty[1] + "after\n");
}

TEST(JsonCommandTest, TextPythonRefusesIsRefusedAndLeftAlone) {
    if (!HaveProgram("python3"))
        GTEST_SKIP() << "no python3";
    TJsonGenerator generate(37);
    std::mt19937 rng(41);
    std::vector<std::string> texts;
    while (texts.size() < 300) {
        std::string text = generate.Document();
        // One character dropped, doubled or cut off behind it (ASCII ones, so the text
        // stays UTF-8), or a tab put in (raw, it may not stand in a string).
        const std::size_t at = std::uniform_int_distribution<std::size_t>(0, text.size() - 1)(rng);
        if (static_cast<unsigned char>(text[at]) >= 0x80)
            continue;
        if (rng() % 4 == 0)
            text.insert(at, 1, '\t');
        else if (rng() % 3 == 0)
            text.erase(at, 1);
        else if (rng() % 2)
            text.insert(at, 1, text[at]);
        else
            text.resize(at);
        texts.push_back(text);
    }
    TTempDir dir("zv-json");
    const auto python = AskPython(WriteFiles(dir, texts));
    int refused = 0;
    for (std::size_t n = 0; n < texts.size(); ++n) {
        const std::string& text = texts[n];
        TMemoFixture f(text);
        TJsonError error;
        const bool changed = f.memo.acnJSONMinify(&error);
        SCOPED_TRACE(text);
        EXPECT_EQ(error.Problem == TJsonProblem::None, python[n].Valid);
        if (!python[n].Valid) {
            ++refused;
            EXPECT_FALSE(changed);
            EXPECT_FALSE(f.memo.CanUndo());
            EXPECT_EQ(f.Bytes(), text);
            EXPECT_GE(error.Line, 1u);
            EXPECT_GE(error.Column, 1u);
        }
    }
    EXPECT_GT(refused, 100);
}

} // namespace
} // namespace zv::test
