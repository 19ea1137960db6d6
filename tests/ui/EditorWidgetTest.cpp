// The editor widget off screen, driven by QTest key and mouse events (typing, moving,
// selecting, drag and drop inside the widget) and by the commands the window's actions run
// (clipboard, undo and redo, saving), and the modified signal.
#include "ui/EditorWidget.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "support/ZvTestSupport.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <fstream>

namespace {

// Opens the drop handler: a drop without a running drag can't travel the event loop.
class TTestEditor : public zv::TEditorWidget {
public:
    using zv::TEditorWidget::dropEvent;
};

class EditorWidgetTest : public ::testing::Test {
protected:
    void SetUp() override {
        lines.SetDefaultSysTextType(zv::sttUnix);
        widget.resize(500, 300);
        widget.show();
        widget.setFocus();
    }
    void Load(const std::string& utf8) {
        lines.LoadFromBytes(utf8);
        widget.SetLines(&lines);
    }
    std::u16string Text() const { return lines.GetTextWithLinefeeds(); }
    // A command as the window's action runs it (their keys belong to the window).
    void Command(void (zv::TZvMemo::*command)()) {
        widget.Run([command](zv::TZvMemo& memo) { (memo.*command)(); });
    }
    QPoint PointOf(int x, int y) {
        // The middle of the cell in front of which column x stands.
        const auto& memo = widget.Memo();
        const QRect caret = widget.CaretRect();
        const int left = caret.x() - static_cast<int>(memo.TextLength(memo.FCurY, memo.FCurX));
        const int height = caret.height();
        return {left + static_cast<int>(memo.TextLength(y, x)) + 1,
                (y - widget.TopRow()) * height + height / 2};
    }

    QApplication& app = zvtest::TheApp<QApplication>(); // before any widget
    zv::TZvMemoStrings lines;
    TTestEditor widget;
};

TEST_F(EditorWidgetTest, TypingEnterBackspaceUndoRedoAndShiftSelect) {
    Load("hello\nworld");
    QTest::keyClick(&widget, Qt::Key_End);
    QTest::keyClicks(&widget, "!!");
    QTest::keyClick(&widget, Qt::Key_Return);
    QTest::keyClicks(&widget, "x");
    QTest::keyClick(&widget, Qt::Key_Backspace);
    EXPECT_EQ(Text(), u"hello!!\n\nworld");
    EXPECT_EQ(widget.CaretRow(), 1);
    Command(&zv::TZvMemo::acnUndo);
    Command(&zv::TZvMemo::acnUndo);
    EXPECT_EQ(Text(), u"hello\nworld");
    Command(&zv::TZvMemo::acnRedo);
    EXPECT_EQ(Text(), u"hello!!\nx\nworld");
    QTest::keyClick(&widget, Qt::Key_Home);
    QTest::keyClick(&widget, Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(widget.Memo().GetSelection(), u"x");
    QTest::keyClicks(&widget, "Z"); // typing replaces the selection
    EXPECT_EQ(Text(), u"hello!!\nZ\nworld");
}

// Home toggles between the first non-blank and column 0; which comes first is the option's.
TEST_F(EditorWidgetTest, HomeGoesToTheFirstNonBlankOrTheLineStartAsTheOptionSays) {
    Load("\t  code");
    for (const bool lineStartFirst : {false, true}) {
        widget.Memo().FHomeKeyToLineStart = lineStartFirst;
        widget.Memo().SetTextCursor(6, 0); // inside "code"
        QTest::keyClick(&widget, Qt::Key_Home);
        EXPECT_EQ(widget.Memo().Caret().X, lineStartFirst ? 3 : 0) << lineStartFirst;
        QTest::keyClick(&widget, Qt::Key_Home);
        EXPECT_EQ(widget.Memo().Caret().X, lineStartFirst ? 0 : 3) << lineStartFirst;
        QTest::keyClick(&widget, Qt::Key_Home, Qt::ShiftModifier);
        EXPECT_EQ(widget.Memo().GetSelection(), u"\t  ") << lineStartFirst;
    }
}

TEST_F(EditorWidgetTest, ClipboardCopyCutPasteUseLfText) {
    Load("one\ntwo");
    Command(&zv::TZvMemo::acnSelectAll);
    Command(&zv::TZvMemo::acnCopy);
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "one\ntwo");
    Command(&zv::TZvMemo::acnCut);
    EXPECT_EQ(Text(), u"");
    Command(&zv::TZvMemo::acnPaste);
    Command(&zv::TZvMemo::acnPaste);
    EXPECT_EQ(Text(), u"one\ntwoone\ntwo");
}

TEST_F(EditorWidgetTest, WholeLineMarkTravelsInThePrivateMimeType) {
    Load("first\nsecond");
    widget.Memo().FCopyLineToClipboard = true;
    Command(&zv::TZvMemo::acnCopy);
    const QMimeData* data = QApplication::clipboard()->mimeData();
    ASSERT_TRUE(data);
    EXPECT_TRUE(data->hasFormat(zv::kWholeLineMime));
    QTest::keyClick(&widget, Qt::Key_Down);
    Command(&zv::TZvMemo::acnPaste);
    EXPECT_EQ(Text(), u"first\nfirst\nsecond");
}

TEST_F(EditorWidgetTest, MouseClickDragSelectAndDoubleClickWord) {
    Load("alpha beta gamma");
    QTest::mouseClick(widget.viewport(), Qt::LeftButton, {}, PointOf(6, 0));
    EXPECT_EQ(widget.Memo().Caret(), (zv::TZvPos{6, 0}));
    QTest::mousePress(widget.viewport(), Qt::LeftButton, {}, PointOf(0, 0));
    QMouseEvent move(QEvent::MouseMove, PointOf(5, 0),
                     widget.viewport()->mapToGlobal(PointOf(5, 0)), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(widget.viewport(), &move);
    QTest::mouseRelease(widget.viewport(), Qt::LeftButton, {}, PointOf(5, 0));
    EXPECT_EQ(widget.Memo().GetSelection(), u"alpha");
    QTest::mouseDClick(widget.viewport(), Qt::LeftButton, {}, PointOf(12, 0));
    EXPECT_EQ(widget.Memo().GetSelection(), u"gamma");
}

// A drop from outside copies; a move of the own selection is one undo step.
TEST_F(EditorWidgetTest, DropsCopyFromOutsideAndMoveTheOwnSelection) {
    Load("abc def");
    widget.Memo().SetSelection({0, 0}, {3, 0});
    QMimeData data;
    data.setText("abc");
    QDropEvent drop(PointOf(7, 0), Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    widget.dropEvent(&drop);
    EXPECT_EQ(Text(), u"abc defabc"); // from outside: a copy
    widget.Memo().Undo();
    EXPECT_EQ(Text(), u"abc def");
    widget.Memo().SetSelection({0, 0}, {3, 0});
    ASSERT_TRUE(widget.Memo().DropText(7, 0, widget.Memo().GetSelection(), true));
    EXPECT_EQ(Text(), u" defabc");
    Command(&zv::TZvMemo::acnUndo);
    EXPECT_EQ(Text(), u"abc def");
}

TEST_F(EditorWidgetTest, InputMethodCommitTypesText) {
    Load("");
    QInputMethodEvent compose(QStringLiteral("ni"), {});
    QApplication::sendEvent(&widget, &compose);
    EXPECT_EQ(Text(), u"");
    QInputMethodEvent commit;
    commit.setCommitString(QString::fromUtf8("\xe4\xbd\xa0"));
    QApplication::sendEvent(&widget, &commit);
    EXPECT_EQ(Text(), u"\u4f60");
    EXPECT_EQ(widget.inputMethodQuery(Qt::ImCursorPosition).toInt(), 1);
}

// Saving writes through the codec: the file's encoding, BOM and line ends stay. The
// modified signal follows the saved state: a key and Backspace that give the saved text
// back, or an undo to it, leave the document unmodified.
TEST_F(EditorWidgetTest, SaveKeepsTheFilesEncodingAndTheSignalFollowsTheSavedState) {
    zvtest::TTempDir dir("zv-editor");
    const std::string path = (dir / "u16.txt").string();
    const auto utf16le = [](std::u16string_view s) {
        std::string bytes = "\xFF\xFE";
        for (char16_t c : s)
            bytes += {static_cast<char>(c & 0xFF), static_cast<char>(c >> 8)};
        return bytes;
    };
    std::ofstream(path, std::ios::binary) << utf16le(u"\u00e9t\u00e9\r\nline\r\n");
    lines.SetCodePage(50001);
    ASSERT_TRUE(lines.LoadFromFile(path));
    widget.SetLines(&lines);
    QSignalSpy spy(&widget, &zv::TEditorWidget::ModifiedChanged);
    QTest::keyClick(&widget, Qt::Key_Down);
    QTest::keyClicks(&widget, "x");
    EXPECT_TRUE(widget.IsModified());
    QTest::keyClick(&widget, Qt::Key_Backspace);
    EXPECT_FALSE(widget.IsModified());
    QTest::keyClicks(&widget, "new ");
    widget.Save();
    EXPECT_FALSE(widget.IsModified());
    EXPECT_EQ(zvtest::ReadAll(path), utf16le(u"\u00e9t\u00e9\r\nnew line\r\n"));
    QTest::keyClicks(&widget, "c");
    Command(&zv::TZvMemo::acnUndo);
    EXPECT_FALSE(widget.IsModified());
    EXPECT_EQ(spy.count(), 6);
    for (int i = 0; i < spy.count(); ++i)
        EXPECT_EQ(spy[i][0].toBool(), i % 2 == 0) << i; // set and cleared in turn
}

TEST_F(EditorWidgetTest, CaretStaysInViewWhileTypingDownALongDocument) {
    std::string text;
    for (int i = 0; i < 2000; ++i)
        text += "row\n";
    Load(text);
    for (int i = 0; i < 50; ++i)
        QTest::keyClick(&widget, Qt::Key_Return);
    EXPECT_EQ(widget.CaretRow(), 50);
    EXPECT_LE(widget.TopRow(), 50);
    EXPECT_GT(widget.TopRow() + widget.VisibleRowCount(), 50);
}

} // namespace
