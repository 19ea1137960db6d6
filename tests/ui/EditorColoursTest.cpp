// Syntax colours in the real window: files opened through the main object show the colours
// of their syntax (taken from the loaded style set, not from the painter), the brace pair at
// the caret and the tag pair are marked, and an edit recolours the rows it changes at once.
#include "platform/Prompt.h"
#include "shell/MainFormHelper.h"
#include "support/ZvTestSupport.h"
#include "syntax/BackgroundThread.h"
#include "syntax/HtmlExport.h"
#include "ui/EditorHtmlExport.h"
#include "ui/EditorWidget.h"
#include "ui/MainWindow.h"
#include "ui/RunPainter.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QEventLoop>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <map>

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
    editor->Memo().SetTextCursor(19, 2); // inside "</p": the same pair
    EXPECT_EQ(editor->TagPair(), tags);
    editor->Memo().SetTextCursor(0, 5); // the empty last row: no tag
    EXPECT_EQ(editor->TagPair().StartY, -1);
    EXPECT_EQ(PixelsOf(editor, 2, mark), 0);
}

// Python's HTML parser reads a page back: the text of its <pre> (entities decoded, the line
// break behind "<pre>" dropped as HTML drops it) and, per UTF-16 unit, the colour and the
// back colour of the innermost element that sets them.
constexpr const char* kReadPage = R"(
import json, re, sys
from html.parser import HTMLParser
class Page(HTMLParser):
    def __init__(self):
        super().__init__(convert_charrefs=True)
        self.stack, self.text, self.fg, self.bg, self.pre = [(None, None)], [], [], [], False
    def handle_starttag(self, tag, attrs):
        if tag not in ('body', 'pre', 'span', 'a', 'samp'):
            return
        style = dict(attrs).get('style') or ''
        fg = re.search(r'(?:^|[;\s])color:\s*(#[0-9a-f]{6})', style)
        bg = re.search(r'background-color:\s*(#[0-9a-f]{6})', style)
        top = self.stack[-1]
        self.stack.append((fg[1] if fg else top[0], bg[1] if bg else top[1]))
        self.pre = self.pre or tag == 'pre'
    def handle_endtag(self, tag):
        if tag in ('body', 'pre', 'span', 'a', 'samp'):
            self.stack.pop()
        self.pre = self.pre and tag != 'pre'
    def handle_data(self, data):
        if not self.pre:
            return
        for ch in data:
            n = 2 if ord(ch) > 0xFFFF else 1
            self.text.append(ch)
            self.fg += [self.stack[-1][0]] * n
            self.bg += [self.stack[-1][1]] * n
p = Page()
p.feed(open(sys.argv[1], encoding='utf-8').read())
p.close()
text = ''.join(p.text)
skip = 1 if text.startswith('\n') else 0
print(json.dumps({'text': text[skip:], 'fg': p.fg[skip:], 'bg': p.bg[skip:]}))
)";

struct TReadPage {
    QString Text;
    QJsonArray Fg, Bg;
};

TReadPage ReadPage(const fs::path& dir, const std::string& page) {
    std::ofstream(dir / "page.html", std::ios::binary) << page;
    std::ofstream(dir / "read_page.py") << kReadPage;
    const std::string json = zvtest::RunOutput("python3 " + (dir / "read_page.py").string() + " " +
                                               (dir / "page.html").string());
    const QJsonObject o = QJsonDocument::fromJson(QByteArray::fromStdString(json)).object();
    return {o["text"].toString(), o["fg"].toArray(), o["bg"].toArray()};
}

// The painted runs of every row of `editor` (all on screen), by one paint.
std::map<int, std::vector<zv::TColourRun>> PaintedRuns(zv::TEditorWidget* editor) {
    std::map<int, std::vector<zv::TColourRun>> painted;
    editor->FOnRowPainted = [&](int row, const std::vector<zv::TColourRun>& runs) {
        painted[row] = runs;
    };
    editor->viewport()->grab();
    editor->FOnRowPainted = nullptr;
    return painted;
}

// The page read back holds the text of [from, to) of `editor`, rows joined by a line break,
// each character in the colours it was painted in.
void ExpectPainted(zv::TEditorWidget* editor, zv::TZvPos from, zv::TZvPos to,
                   const TReadPage& page) {
    auto painted = PaintedRuns(editor);
    const zv::TZvMemoStrings& lines = *editor->Lines();
    ASSERT_EQ(int(painted.size()), lines.Count()) << "every row is on screen";
    const zv::TColor back = editor->Scan()->Styles()->FBkColor;
    QString text;
    int i = 0;
    for (int row = from.Y; row <= to.Y; ++row) {
        if (row > from.Y)
            text += QLatin1Char('\n'), ++i;
        const std::u16string_view t = lines.Get(row);
        const int end = row == to.Y ? to.X : int(t.size());
        for (int x = row == from.Y ? from.X : 0; x < end; ++x, ++i) {
            text += QChar(t[x]);
            const zv::TColourRun* run = zv::RunAt(painted[row], x);
            ASSERT_NE(run, nullptr) << row << ":" << x;
            const zv::TCharStyle style = zv::RunStyle(*run, editor->PaintColours());
            const zv::TColor bg = style.FBkColor != zv::kNoColor ? style.FBkColor : back;
            ASSERT_LT(i, page.Fg.size());
            EXPECT_EQ(page.Fg[i].toString().toStdString(), zv::HtmlColour(style.FTextColor))
                << "row " << row << " column " << x << " " << zv::TokenKindName(run->Info.Kind);
            EXPECT_EQ(page.Bg[i].toString().toStdString(), zv::HtmlColour(bg))
                << "row " << row << " column " << x;
        }
    }
    EXPECT_EQ(page.Text.section(QLatin1Char('\n'), 0, to.Y - from.Y), text);
}

// Save as HTML and copy as HTML write what the editor shows: the page's text is the
// document's (or the selection's) text, and every character has the colour it is painted in.
TEST_F(EditorColoursTest, HtmlExportShowsThePaintedColoursAndTheText) {
    auto* php = Open("e.php", "<p class=\"a\">Don't & <b>see</b>\n"
                              "<?php\n"
                              "\t$x = \"caf\xC3\xA9 \xF0\x9F\x98\x80\" . 0x1F; // a < b\n"
                              "/* {[( */ if ($x) { echo f(1, [2]); }\n"
                              "?>\n"
                              "<i>\xE6\x97\xA5\xE6\x9C\xAC</i> &amp; end\n");
    auto* c = Open("e.c", "int main(void) { // see https://example.org/?a=1&b=2 <here>\n"
                          "\treturn f(\"a & b\", '<', 0x1F, 2.5e3); /* } */\n"
                          "}\n");
    for (auto* editor : {php, c}) {
        ASSERT_NE(editor, nullptr);
        ASSERT_NE(editor->Scan(), nullptr);
        window.TabGroup()->setCurrentWidget(editor);
        std::string error;
        const fs::path file = dir / (editor->Lines()->FileName() + ".html");
        ASSERT_TRUE(zv::SaveToHTML(*editor, file, error)) << error;
        const int last = editor->Lines()->Count() - 1;
        ExpectPainted(editor, {0, 0}, {int(editor->Lines()->Get(last).size()), last},
                      ReadPage(dir, zvtest::ReadAll(file)));
    }

    // Edit > Copy as HTML copies the selection.
    window.TabGroup()->setCurrentWidget(php);
    QAction* copy = nullptr;
    for (QAction* a : window.menuBar()->findChild<QMenu*>("EditMenu")->actions())
        copy = a->objectName() == "CopyAsHtmlAction" ? a : copy;
    ASSERT_NE(copy, nullptr) << "in the Edit menu";
    php->setFocus();
    php->Memo().SetSelection({5, 0}, {12, 3});
    copy->trigger();
    const QMimeData* data = QApplication::clipboard()->mimeData();
    ASSERT_TRUE(data->hasHtml());
    ExpectPainted(php, {5, 0}, {12, 3}, ReadPage(dir, data->html().toStdString()));
    EXPECT_EQ(data->text().toStdU16String(), php->Memo().GetSelection());
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
