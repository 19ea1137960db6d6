// The options records against the shipped default settings: the shipped values are the
// readers' defaults but for the Linux choices. Editor options written to a settings file reach an
// editor and change what its keys do.
#include "IniTestSupport.h"
#include "memo_edit/MemoFixture.h"

#include "shell/DataFolders.h"
#include "shell/MemoOptions.h"
#include "shell/SettingsOptions.h"
#include "shell/Utf.h"
#include "shell/ZvIniFiles.h"

#include <set>

namespace zv {
namespace {

const std::filesystem::path kShipped =
    DefaultSettingsPath(std::filesystem::path(ZV_TEST_TREE) / "bin");

TEST(SettingsOptions, ShippedValuesAreTheDefaultsButForLinuxChoices) {
    const TMemIniFileW shipped(kShipped);
    const TMemIniFileW empty;
    TCustomizeOptions customize = ReadCustomizeOptions(empty);
    customize.AutoUpdateCheck = false; // updates come with the system's packages
    EXPECT_TRUE(ReadCustomizeOptions(shipped) == customize);
    TMemoMiscOptions editor = ReadMemoMiscOptions(empty, 1252);
    EXPECT_EQ(editor.DefaultEncoding, 1252); // a missing key gives the ANSI code page
    editor.DefaultEncoding = 65001;          // new documents: UTF-8 without BOM, LF
    editor.DefaultEncodingBOM = false;
    editor.TypeUnix = true;
    EXPECT_TRUE(ReadMemoMiscOptions(shipped, 1252) == editor);
}

TEST(SettingsOptions, ReadersCorrectOutOfRangeValues) {
    TMemIniFileW ini;
    ini.WriteString("AutoSave", "Interval", "soon");
    ini.WriteString("Customize", "MarkdownExt", ".md;.txt");
    const TCustomizeOptions options = ReadCustomizeOptions(ini);
    EXPECT_EQ(options.AutoSaveIntervalMinutes, 10);
    EXPECT_EQ(options.MarkdownExt, u".md;.txt;");
    ini.WriteInteger("AutoSave", "Interval", -5);
    EXPECT_EQ(ReadCustomizeOptions(ini).AutoSaveIntervalMinutes, 10);
}

TEST(SettingsOptions, TextOptionsComeFromTheActiveThemeSection) {
    TMemIniFileW ini;
    ini.WriteString("VisualThemes", "ActiveTheme", "Dusk");
    ini.WriteInteger("Theme_Dusk", "SelectionColorBk", -16777203);
    ini.WriteInteger("Theme_Dusk", "URLStyle", 4);
    ini.WriteInteger("Theme_Windows", "SelectionColorBk", 1);
    const TTextOptions text = LoadTextOptions(ini);
    EXPECT_EQ(text.ActiveTheme, u"Dusk");
    EXPECT_EQ(text.Elements[1].ColorBk, -16777203);
    EXPECT_EQ(text.Elements[1].Color, static_cast<int32_t>(kNoColor));
    EXPECT_EQ(text.Elements[9].Style, 4);
    EXPECT_TRUE(UsesTerminalFont(u".NFO"));
    EXPECT_FALSE(UsesTerminalFont(u".txt"));
}

// The option fields of a control, in one comparable list.
std::vector<int> OptionFields(TZvCustomMemo& m) {
    return {m.FAutoIndent,
            m.FAutoCloseBraces,
            m.FAutoCloseBracesText,
            m.FTabAsSpaces,
            m.FPreserveTab,
            m.FTabSize,
            m.FSmartTab,
            m.FSmartBackspace,
            m.FSmartPaste,
            m.FOverwritePasteMode,
            m.FPasteDoNotMoveCursor,
            m.FCopyLineToClipboard,
            m.FAllowDragText,
            m.FSelectionMoveCaret,
            m.FTripleClickToSelectLine,
            m.FHomeKeyToLineStart,
            m.FEncloseSelectionWithParenthesis,
            m.FEncloseSelectionWithQuotes,
            m.FNotepadCursor,
            m.UndoList().FLimit,
            m.FDetectUTF8,
            m.FDetectAll};
}

TEST(MemoOptions, MissingKeysLeaveAnEditorAsConstructed) {
    TZvMemo fresh, applied;
    SetMemoMiscOptions(applied, TMemIniFileW());
    EXPECT_EQ(OptionFields(applied), OptionFields(fresh));
}

// The settings go through a real file in the settings' own form, as at start-up.
TEST(MemoOptions, WrittenSettingsChangeWhatTheKeysDo) {
    test::TTempDir dir;
    const auto file = dir.Path() / "Zevrit.ini";
    {
        TMemIniFileW ini(file);
        ini.WriteInteger("EditorMisc", "TabSize", 8);
        ini.WriteBool("EditorMisc", "AutoIndent", false);
        ini.WriteBool("EditorMisc", "AutoCloseBracesText", true);
        ini.WriteBool("EditorMisc", "CopyLineToClipboard", true);
        ini.WriteBool("EditorMisc", "NotepadCursor", true);
        ini.WriteInteger("EditorMisc", "UndoRedoSize", 2);
        ini.WriteInteger("EditorMisc", "DefaultEncoding", 1251);
        ASSERT_TRUE(ini.UpdateFile());
    }
    test::TMemoFixture fx("  ab\ncd");
    TMemoryClipboard clipboard;
    TEditorServices services;
    services.Clipboard = &clipboard;
    fx.memo.SetServices(services);
    SetMemoMiscOptions(fx.memo, TMemIniFileW(file));
    EXPECT_EQ(fx.memo.FDefaultEncoding, 1251);

    fx.memo.SetTextCursor(2, 0);
    fx.memo.KeyPress(u'\t'); // spaces to the next stop of 8
    EXPECT_EQ(fx.Text(), u"        ab\ncd");
    fx.memo.EnterPress(); // no indent copied
    fx.memo.GoEnd(0);
    fx.memo.KeyPress(u'(');
    EXPECT_EQ(fx.Text(), u"        \nab()\ncd");

    fx.memo.SetTextCursor(2, 2);
    fx.memo.MoveCursor(1, 0, 0); // the caret can't pass the row's end
    EXPECT_EQ(fx.memo.Caret(), (TZvPos{2, 2}));
    fx.memo.CopyToClipboard(); // no selection: the whole line
    std::u16string copied;
    bool wholeLine = false;
    clipboard.GetText(copied, wholeLine);
    EXPECT_EQ(copied, u"cd\n");
    EXPECT_TRUE(wholeLine);
}

TEST(MemoOptions, ALowerUndoLimitDropsTheOldestRecordsAtOnce) {
    test::TMemoFixture fx("");
    for (int i = 0; i < 5; ++i) {
        fx.memo.SetTextCursor(0, 0);
        fx.memo.KeyPress(u'x');
    }
    TMemIniFileW ini;
    ini.WriteInteger("EditorMisc", "UndoRedoSize", 3);
    SetMemoMiscOptions(fx.memo, ini);
    EXPECT_EQ(fx.memo.UndoList().Count(), 3);
    ini.WriteInteger("EditorMisc", "UndoRedoSize", 0); // no limit
    SetMemoMiscOptions(fx.memo, ini);
    for (int i = 0; i < 150; ++i) {
        fx.memo.SetTextCursor(0, 0);
        fx.memo.KeyPress(u'y');
    }
    EXPECT_EQ(fx.memo.UndoList().Count(), 153);
}

} // namespace
} // namespace zv
