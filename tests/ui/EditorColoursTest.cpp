// Syntax colours in the real window: files opened through the main object show the colours
// of their syntax (taken from the loaded style set, not from the painter), the brace pair at
// the caret and the tag pair are marked, and an edit recolours the rows it changes at once.
#include "platform/Prompt.h"
#include "shell/MainFormHelper.h"
#include "support/ZvTestSupport.h"
#include "syntax/BackgroundThread.h"
#include "ui/EditorWidget.h"
#include "ui/MainWindow.h"
#include "ui/RunPainter.h"

#include <QApplication>
#include <QEventLoop>
#include <QImage>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <fstream>

namespace fs = std::filesystem;

namespace {

using namespace std::chrono_literals;

class EditorColoursTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        // The syntax files come from the built tree; set before the root is first asked for.
        ::setenv("ZEVRIT_ROOT", ZV_TEST_TREE, 1);
        zvtest::TheApp<QApplication>();
    }
    // Opens `text` as file `name` in the window and returns its editor, painted and swept.
    zv::TEditorWidget* Open(const std::string& name, const std::string& text) {
        std::ofstream(dir / name, std::ios::binary) << text;
        zv::TLoadFileArgs args;
        args.FileName = (dir / name).string();
        if (!helper.LoadFile(args))
            return nullptr;
        window.resize(900, 500);
        window.show();
        auto* editor = window.EditorAt(window.TabGroup()->count() - 1);
        window.TabGroup()->setCurrentWidget(editor);
        QFont font = editor->font(); // large enough for glyph stems in their exact colour
        font.setPixelSize(26);
        editor->setFont(font);
        QApplication::processEvents();
        return editor;
    }
    // The set's style colour of a token kind, as painted.
    static QColor Colour(const zv::TCharStyle& style) { return zv::ToQColor(style.FTextColor); }
    // The colour of the keyword group that holds `word`.
    static QColor KeywordColour(const zv::TZvCustomMemoStyles& set, std::u16string_view word) {
        const int group = set.FindKeyword(word, set.FKeywordCase);
        return group < 0 ? QColor() : zv::ToQColor(set.FKeyWords[group].Color);
    }
    const zv::TZvCustomMemoStyles& Set(zv::TEditorWidget* editor) {
        return *editor->Scan()->Styles();
    }

    zvtest::TTempDir temp{"zv-colours"};
    const fs::path dir = temp.Path();
    zv::THeadlessPrompt prompt{false};
    zv::TMainFormHelper helper{prompt};
    zv::TMainWindow window{helper};
};

// Pixels of row `row`'s band (viewport coordinates) of `colour`: the stems of large glyphs
// keep it, while antialiased edges of other text are blends that stay off it.
int PixelsOf(zv::TEditorWidget* editor, int row, const QColor& colour) {
    const QImage image = editor->viewport()->grab().toImage();
    const int height = editor->CaretRect().height();
    const int top = (row - editor->TopRow()) * height;
    int count = 0;
    for (int y = std::max(top, 0); y < std::min(top + height, image.height()); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QColor c = image.pixelColor(x, y);
            count += std::abs(c.red() - colour.red()) + std::abs(c.green() - colour.green()) +
                         std::abs(c.blue() - colour.blue()) <
                     8;
        }
    return count;
}

TEST_F(EditorColoursTest, CFileShowsItsColoursAndBracesAndAnEditRecolours) {
    auto* editor = Open("a.c", "/* header */\n"
                               "int main(void) {\n"
                               "    return f(\"text\", 42);\n"
                               "}\n");
    ASSERT_NE(editor, nullptr);
    ASSERT_NE(editor->Scan(), nullptr) << "a .c file gets its syntax";
    ASSERT_TRUE(editor->Scan()->Thread().WaitComplete(10s)) << "the thread sweeps the rows";
    const auto& set = Set(editor);
    const QColor comment = Colour(set.FCommentStyle), string = Colour(set.FStringStyle);
    const QColor keyword = KeywordColour(set, u"int");
    ASSERT_TRUE(comment.isValid() && string.isValid() && keyword.isValid());
    ASSERT_NE(comment, keyword);
    EXPECT_GT(PixelsOf(editor, 0, comment), 10);
    EXPECT_GT(PixelsOf(editor, 1, keyword), 10) << "int";
    EXPECT_GT(PixelsOf(editor, 2, string), 10) << "\"text\"";
    EXPECT_EQ(PixelsOf(editor, 1, comment), 0);
    EXPECT_EQ(PixelsOf(editor, 2, comment), 0);

    // The caret in front of "{" marks it and its partner three rows down.
    const QColor braceBack = zv::TRunPaintOptions{}.BraceBack;
    EXPECT_EQ(PixelsOf(editor, 3, braceBack), 0);
    editor->Memo().SetTextCursor(15, 1);
    const zv::TBracePair pair = editor->BracePair();
    EXPECT_TRUE(pair.Matched);
    EXPECT_EQ(pair.Right, (zv::TBracePoint{0, 3}));
    EXPECT_GT(PixelsOf(editor, 1, braceBack), 10);
    EXPECT_GT(PixelsOf(editor, 3, braceBack), 10);

    // Opening a comment at the start of row 1 turns every row below into comment at once,
    // without waiting for the thread; undo brings the keyword colours back.
    editor->Memo().SetTextCursor(0, 1);
    QTest::keyClicks(editor, "/*");
    EXPECT_EQ(PixelsOf(editor, 1, keyword), 0);
    EXPECT_EQ(PixelsOf(editor, 2, string), 0);
    EXPECT_GT(PixelsOf(editor, 2, comment), 10);
    QTest::keyClick(editor, Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(editor, Qt::Key_Z, Qt::ControlModifier);
    ASSERT_EQ(editor->Lines()->Get(1), u"int main(void) {");
    EXPECT_GT(PixelsOf(editor, 1, keyword), 10);
    EXPECT_GT(PixelsOf(editor, 2, string), 10);
    ASSERT_TRUE(editor->Scan()->Thread().WaitComplete(10s));
    EXPECT_GT(PixelsOf(editor, 2, string), 10) << "the sweep keeps the colours";
}

TEST_F(EditorColoursTest, HtmlFileShowsTagsAndMarksTheTagPair) {
    auto* editor = Open("c.html", "<html>\n<body>\n<p class=\"x\">text</p>\n</body>\n</html>\n");
    ASSERT_NE(editor, nullptr);
    ASSERT_NE(editor->Scan(), nullptr);
    const auto& set = Set(editor);
    const QColor tag = zv::ToQColor(set.FTagColor);
    ASSERT_TRUE(tag.isValid());
    EXPECT_GT(PixelsOf(editor, 2, tag), 10);
    editor->Memo().SetTextCursor(1, 2); // inside "<p"
    const zv::TTagPosData tags = editor->TagPair();
    EXPECT_EQ(tags.StartY, 2);
    EXPECT_EQ(tags.EndY, 2);
    EXPECT_EQ(tags.EndX, 17) << "</p";
    // The mark is a translucent yellow over the row's background.
    const QImage image = editor->viewport()->grab().toImage();
    const int middle = (2 - editor->TopRow()) * editor->CaretRect().height() + 2;
    const QColor under = image.pixelColor(image.width() - 1, middle);
    const QColor over(0xFF, 0xD7, 0x00);
    const double a = 0x60 / 255.0;
    const QColor mark(int(over.red() * a + under.red() * (1 - a)),
                      int(over.green() * a + under.green() * (1 - a)),
                      int(over.blue() * a + under.blue() * (1 - a)));
    EXPECT_GT(PixelsOf(editor, 2, mark), 10) << "the tag pair is painted";
    editor->Memo().SetTextCursor(0, 5); // the empty last row: no tag
    EXPECT_EQ(editor->TagPair().StartY, -1);
    EXPECT_EQ(PixelsOf(editor, 2, mark), 0);
}

// Bytes a file's encoding cannot read show as red boxes, one per byte, and only they do.
TEST_F(EditorColoursTest, BytesThatDoNotDecodeArePaintedApart) {
    const QColor red(0xE0, 0x30, 0x30);
    auto* broken = Open("broken.txt", "\xEF\xBB\xBFok\n\xFF\xFE\xFD\xFC\xFB\xFA after\n");
    ASSERT_NE(broken, nullptr);
    EXPECT_EQ(broken->Lines()->InvalidBytesKept(), 6);
    EXPECT_EQ(PixelsOf(broken, 0, red), 0) << "a row of valid text";
    const int six = PixelsOf(broken, 1, red);
    auto* fewer = Open("fewer.txt", "\xEF\xBB\xBFok\n\xFF\xFE\xFD after\n");
    ASSERT_NE(fewer, nullptr);
    const int three = PixelsOf(fewer, 1, red);
    EXPECT_GT(three, 50);
    EXPECT_NEAR(six, 2 * three, three / 4) << "a box per byte";
}

// The first sweep of a big file runs beside the window: the event loop keeps turning, keys
// typed meanwhile (a new row included) are handled at once, and the sweep still ends with
// the states a fresh scan gives.
TEST_F(EditorColoursTest, TheWindowKeepsRunningDuringTheFirstSweep) {
    constexpr int kRows = 300'000; // the sweep yields 1 ms every 500 rows: 0.6 s at least
    std::u16string text;
    for (int i = 0; i < kRows; ++i)
        text += i % 5 == 0   ? u"/* a comment\n"
                : i % 5 == 1 ? u"   ends here */\n"
                             : u"int f(int a) { return a + 1; }\n";
    zv::TZvMemoStrings lines;
    lines.SetTextStr(text);
    zv::TEditorWidget editor;
    editor.SetBackgroundTiming({0ms, 1ms, 100ms, 500ms});
    editor.resize(600, 400);
    editor.SetLines(&lines);
    const zv::TTypeColors colors(std::filesystem::path(ZV_TEST_TREE) / "Syntax" / "Colors.ini",
                                 nullptr, u"Light");
    editor.SetSyntaxForFile(dir / "big.c", ZV_TEST_TREE, colors);
    ASSERT_NE(editor.Scan(), nullptr);
    editor.show();
    const zv::TLineScanner& scanner = editor.Scan()->Scanner();

    int turns = 0; // turns of the event loop while the sweep is past the screen, not done
    QEventLoop loop;
    QTimer tick;
    tick.setInterval(1);
    QObject::connect(&tick, &QTimer::timeout, [&] {
        const int valid = scanner.States().ValidRows();
        if (valid > 1000 && valid < lines.Count() && ++turns == 5) {
            QTest::keyClicks(&editor, "x");
            QTest::keyClick(&editor, Qt::Key_Return);
        }
        if (scanner.Complete() && turns >= 5)
            loop.quit();
    });
    QTimer::singleShot(60s, &loop, &QEventLoop::quit);
    tick.start();
    loop.exec();
    EXPECT_GE(turns, 5) << "the event loop stood still during the sweep";
    ASSERT_EQ(lines.Get(0), u"x");
    ASSERT_EQ(lines.Count(), kRows + 2); // the text's last line end leaves an empty row
    ASSERT_TRUE(editor.Scan()->Thread().WaitComplete(30s));

    editor.Scan()->PauseReading();
    zv::TStyle fresh;
    zv::ClearStyle(fresh, true);
    zv::TScanScratch scratch;
    for (int row = 0; row < lines.Count(); ++row) {
        zv::TScanRequest request;
        request.Text = lines.Get(row);
        zv::ScanRow(editor.Scan()->Context(), request, fresh, scratch);
        fresh.FBooleanArray |= 1u;
        zv::TStyle stored;
        ASSERT_TRUE(scanner.States().Get(row, stored)) << row;
        ASSERT_TRUE(stored == fresh) << "row " << row;
    }
    editor.Scan()->ResumeReading();
}

} // namespace
