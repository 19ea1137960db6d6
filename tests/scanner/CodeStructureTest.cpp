// The code explorer's structure and lists on documents with a shipped syntax: the cases of the
// class-and-method gathering, and the item around the caret against a plain walk over every
// item.
#include "ScanTestSupport.h"

#include "syntax/CodeLists.h"

namespace zv::test {
namespace {

const char16_t* kCpp = uR"(namespace app {
struct Point { int x; };
}
class Shape {
public:
    virtual double Area() const { return 0; }
    void Move(int dx, int dy)
    {
        x += dx; // a brace in a comment: {
        const char* s = "}";
    }
};
double Shape::Scale(double f) { return f; }
void Shape::Draw() {
}
int Widget::Paint(std::map<int, std::vector<int>> m) {
    if (m.empty()) {
        return 0;
    }
    return 1;
}
void Widget::Resize() {}
int main(int argc, char** argv) {
    return 0;
}
)";

std::vector<std::string> Texts(const std::vector<TCEListObjectType>& list) {
    std::vector<std::string> out;
    for (const auto& e : list)
        out.push_back(Utf16ToUtf8(e.sLong));
    return out;
}

TEST(CodeStructure, ListsGatherQualifiedMethodsUnderTheirClass) {
    TScanDoc doc("cpp", kCpp);
    ASSERT_TRUE(doc.Loaded);
    auto s = BuildCodeStructure(doc.Store, *doc.Ctx);
    std::vector<TCEListObjectType> outer;
    TCEListObjectRec classRec;
    // Caret in Widget::Paint (row 17): the class known only by name is the outer item.
    GetMainFoldList(*s, 17, DefaultOuterTypes(), u"::", outer, classRec);
    EXPECT_EQ(Texts(outer), (std::vector<std::string>{"namespace app {", "struct Point { int x; };",
                                                      "class Shape {", "Widget", "Module"}));
    EXPECT_EQ(outer[1].nLevel, 1);
    EXPECT_EQ(outer[1].sLongParent, u"namespace app {");
    // Shape is declared: its outside methods mark it and add no second entry.
    EXPECT_EQ(outer[2].itemTypeB, ceClassName);
    EXPECT_EQ(outer[2].nLevel, 0);
    EXPECT_EQ(outer[3].itemType, ceClassName);
    EXPECT_EQ(classRec, (TCEListObjectRec{u"Widget", u"", ceClassName}));

    std::vector<TCEListObjectType> members;
    TCEListObjectRec methodRec;
    GetMethodFoldList(*s, outer[2], 8, DefaultMemberTypes(), u"::", members, methodRec);
    EXPECT_EQ(Texts(members), (std::vector<std::string>{"virtual double Area", "void Move",
                                                        "double Scale", "void Draw"}));
    EXPECT_EQ(methodRec.sLong, u"void Move"); // the comment's and the string's braces don't count
    GetMethodFoldList(*s, outer[3], 0, DefaultMemberTypes(), u"::", members, methodRec);
    // Generic parameters do not stop the cut at the parameter list.
    EXPECT_EQ(Texts(members), (std::vector<std::string>{"int Paint", "void Resize"}));
    GetMethodFoldList(*s, outer[4], 0, DefaultMemberTypes(), u"::", members, methodRec);
    EXPECT_EQ(Texts(members).back(), "int main");
}

TEST(CodeStructure, DocumentWithoutHeadsHasOnlyTheFixedEntries) {
    TScanDoc doc("cpp", u"int x = 1;\n// void f() {\nconst char* s = \"g() {\";\n");
    auto s = BuildCodeStructure(doc.Store, *doc.Ctx);
    EXPECT_TRUE(s->Items.empty());
    std::vector<TCEListObjectType> outer;
    TCEListObjectRec rec;
    GetMainFoldList(*s, 0, DefaultOuterTypes(), u"::", outer, rec,
                    [](const char* key) { return u"key " + Utf8ToUtf16(key); });
    EXPECT_EQ(Texts(outer), (std::vector<std::string>{"Module", "key 155", "key 399", "key 074"}));
}

// The entry around the caret, found by the structure's ranges, is the innermost listed item
// that a plain walk over all items finds, on every row.
TEST(CodeStructure, CurrentEntryMatchesAPlainWalk) {
    for (const char* syntax : {"cpp", "python"}) {
        std::u16string text = syntax == std::string("cpp")
                                  ? kCpp
                                  : u"class A:\n    def f(self):\n"
                                    u"        x = (1,\n2)\n\n"
                                    u"    def g(self):\n        pass\n"
                                    u"def top():\n    '''doc\nclass X:\n'''\n"
                                    u"    return 1\n";
        TScanDoc doc(syntax, text);
        auto s = BuildCodeStructure(doc.Store, *doc.Ctx);
        ASSERT_GE(s->Items.size(), 3u) << syntax;
        const auto all = GetFunctionList(*s, u"::");
        for (int row = 0; row < doc.Store.Count(); ++row) {
            int expected = -1;
            for (std::size_t k = 0; k < all.size(); ++k) {
                const auto& item = s->Items[static_cast<std::size_t>(s->FindId(all[k].idNr))];
                if (item.Row <= row && row <= item.EndRow)
                    expected = static_cast<int>(k); // later heads lie inside earlier ones
            }
            int got = CurrentEntry(*s, all, row);
            if (expected < 0)
                EXPECT_TRUE(got < 0 || !IsCallableKind(all[static_cast<std::size_t>(got)].itemType))
                    << syntax << " row " << row;
            else
                EXPECT_EQ(got, expected) << syntax << " row " << row;
        }
    }
}

} // namespace
} // namespace zv::test
