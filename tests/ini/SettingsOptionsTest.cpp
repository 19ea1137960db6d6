// The options records against the shipped default settings: the shipped values are the
// readers' defaults but for the Linux choices. Options written to a settings file reach an
// editor and change what it does: its keys, the form of a new document, the colours of a
// loaded syntax, and the backups of a save.
#include "IniTestSupport.h"
#include "memo_edit/MemoFixture.h"

#include "ZvMemoControl/DocumentSave.h"
#include "common/Utf.h"
#include "shell/DataFolders.h"
#include "shell/MemoOptions.h"
#include "shell/SettingsOptions.h"
#include "shell/ZvIniFiles.h"
#include "syntax/ColourWalk.h"
#include "syntax/TypeColors.h"

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
    customize.BlankAtStartup = true;   // an empty window has nothing to type into
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

// The selection colours of the active theme are followed into a loaded syntax below.
TEST(SettingsOptions, TextOptionsComeFromTheActiveThemeSection) {
    TMemIniFileW ini;
    ini.WriteString("VisualThemes", "ActiveTheme", "Dusk");
    ini.WriteInteger("Theme_Dusk", "URLStyle", 4);
    ini.WriteInteger("Theme_Windows", "URLStyle", 1);
    EXPECT_EQ(TextElement(LoadTextOptions(ini), u"URL").Style, 4);
    EXPECT_TRUE(UsesTerminalFont(u".NFO"));
    EXPECT_FALSE(UsesTerminalFont(u".txt"));
}

// The option fields of a control, in one comparable list.
std::vector<int> OptionFields(TZvCustomMemo& m) {
    return {m.FAutoIndent,
            m.FAutoCloseBraces,
            m.FAutoCloseBracesText,
            m.FTabAsSpaces,
            m.DocState().FPreserveTab,
            m.DocState().FTabSize,
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
            m.DocState().FDetectUTF8,
            m.DocState().FDetectAll};
}

TEST(MemoOptions, MissingKeysLeaveAnEditorAsConstructed) {
    TZvMemo fresh, applied;
    SetMemoMiscOptions(applied, TMemIniFileW());
    EXPECT_EQ(OptionFields(applied), OptionFields(fresh));
}

// Settings written through a real file in the settings' own form, then read back as at start-up.
template <class Fill> std::filesystem::path WriteSettings(const test::TTempDir& dir, Fill fill) {
    const auto file = dir.Path() / "Zevrit.ini";
    TMemIniFileW ini(file);
    fill(ini);
    EXPECT_TRUE(ini.UpdateFile());
    return file;
}

TEST(MemoOptions, WrittenSettingsChangeWhatTheKeysDo) {
    test::TTempDir dir;
    const auto file = WriteSettings(dir, [](TMemIniFileW& ini) {
        ini.WriteInteger("EditorMisc", "TabSize", 8);
        ini.WriteBool("EditorMisc", "AutoIndent", false);
        ini.WriteBool("EditorMisc", "AutoCloseBracesText", true);
        ini.WriteBool("EditorMisc", "CopyLineToClipboard", true);
        ini.WriteBool("EditorMisc", "NotepadCursor", true);
        ini.WriteInteger("EditorMisc", "DefaultEncoding", 1251);
    });
    test::TMemoFixture fx("  ab\ncd");
    TMemoryClipboard clipboard;
    TEditorServices services;
    services.Clipboard = &clipboard;
    fx.memo.SetServices(services);
    SetMemoMiscOptions(fx.memo, TMemIniFileW(file));
    EXPECT_EQ(fx.memo.DocState().FDefaultEncoding, 1251);

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

// A new document typed as "a", Enter, "b" and saved to bytes.
std::string NewDocumentBytes(const TCustomIniFile& settings) {
    TZvMemoStrings lines;
    TZvMemo memo;
    memo.SetLines(&lines);
    ApplyNewDocumentOptions(memo, ReadMemoMiscOptions(settings, 1252));
    memo.KeyPress(u'a');
    memo.EnterPress();
    memo.KeyPress(u'b');
    return lines.SaveToBytes();
}

TEST(MemoOptions, NewDocumentsTakeEncodingMarkAndLineEndsFromTheSettings) {
    EXPECT_EQ(NewDocumentBytes(TMemIniFileW()), "a\r\nb"); // ANSI, no mark, CR LF
    test::TTempDir dir;
    const auto file = WriteSettings(dir, [](TMemIniFileW& ini) {
        ini.WriteInteger("EditorMisc", "DefaultEncoding", 1200);
        ini.WriteBool("EditorMisc", "DefaultEncodingBOM", true);
        ini.WriteBool("EditorMisc", "TypeUnix", true);
    });
    EXPECT_EQ(NewDocumentBytes(TMemIniFileW(file)), std::string("\xFF\xFE"
                                                                "a\0\n\0b\0",
                                                                8));
    TMemIniFileW mac(file);
    mac.WriteBool("EditorMisc", "TypeUnix", false);
    mac.WriteBool("EditorMisc", "TypeMac", true);
    mac.WriteInteger("EditorMisc", "DefaultEncoding", 65001);
    EXPECT_EQ(NewDocumentBytes(mac), "\xEF\xBB\xBF"
                                     "a\rb");
    // The shipped settings: UTF-8 without a mark, LF.
    EXPECT_EQ(NewDocumentBytes(TMemIniFileW(kShipped)), "a\nb");
}

// The colour and font of plain text in the set a syntax load leaves in force.
TCharStyle PlainText(const TMemoStyleHost& host) {
    TColourRun run;
    run.Info.Set = host.FStyles.get();
    return RunStyle(run, TColourOptions{});
}

TEST(TextOptions, ThemeElementsReachTheLoadedSyntax) {
    test::TTempDir dir;
    const auto syntax = dir.Path() / "words.syx";
    test::WriteAll(syntax, "[Keywords]\nW=word\n");
    const auto colors = dir.Path() / "Colors.ini";
    test::WriteAll(colors, "[Light]\nText=#102030,#FFFFFF,\n[Dark]\nText=#C0C0C0,#000000,\n");
    const auto file = WriteSettings(dir, [](TMemIniFileW& ini) {
        ini.WriteString("EditorMisc", "ColorTheme", "Dark");
        ini.WriteString("VisualThemes", "ActiveTheme", "Dusk");
        ini.WriteInteger("Theme_Dusk", "SelectionColorBk", 0x00FF8000);
        ini.WriteInteger("Theme_Dusk", "BraceHighlightColorBk", 0x00FFFFFF); // the last colour
        ini.WriteInteger("Theme_Dusk", "SelectionColor", 0x01000000);        // past them
        ini.WriteInteger("Theme_Dusk", "ControlCharColor", -16777208);       // a system colour
    });
    auto load = [&](const TCustomIniFile& settings) {
        const TTypeColors scheme(colors, settings);
        TZvSyntax loader;
        loader.SetColorSource(&scheme);
        TMemoStyleHost host;
        EXPECT_TRUE(
            loader.LoadStyleFromFile(&host, Utf8ToUtf16(syntax.string()), u"Words", 0, u""));
        return host;
    };

    TMemIniFileW settings(file);
    TMemoStyleHost host = load(settings);
    ASSERT_TRUE(host.FStyles);
    EXPECT_EQ(PlainText(host).FTextColor, 0xC0C0C0u); // the dark theme of the token colours
    EXPECT_EQ(host.FStyles->FSelBkColor, 0x00FF8000u);
    EXPECT_EQ(host.FStyles->FBraceHighlightColor, 0x00FFFFFFu);
    EXPECT_EQ(host.FStyles->FSelColor, kNoColor);
    EXPECT_EQ(host.FStyles->FControlCharColor, kNoColor); // left to the painter's palette

    // The theme's default text colour wins over the token colours' plain text.
    settings.WriteInteger("Theme_Dusk", "DefaultColor", 0x00332211);
    settings.WriteInteger("Theme_Dusk", "DefaultStyle", fsItalic);
    host = load(settings);
    EXPECT_EQ(PlainText(host).FTextColor, 0x332211u);
    EXPECT_EQ(PlainText(host).FStyle, fsItalic);
    settings.WriteString("EditorMisc", "ColorTheme", "Light");
    settings.WriteString("VisualThemes", "ActiveTheme", "Windows");
    EXPECT_EQ(PlainText(load(settings)).FTextColor, 0x302010u);
}

TEST(CustomizeOptions, BackupKeysDecideWhereASaveLeavesItsBackup) {
    test::TTempDir dir;
    const auto doc = dir.Path() / "doc.txt";
    const auto folder = dir.Path() / "backups";
    std::filesystem::create_directories(folder);
    test::WriteAll(doc, "old\n");
    auto save = [&](const TCustomIniFile& settings, std::string_view text) {
        TZvSaveOptions options;
        ApplyBackupOptions(ReadCustomizeOptions(settings), options);
        TZvTextDocument document;
        document.Lines().LoadFromBytes(text);
        std::string error;
        EXPECT_EQ(SaveDocument(document, doc.string(), options, error), TZvSaveResult::Written)
            << error;
    };
    save(TMemIniFileW(), "new\n"); // no backup by default
    EXPECT_EQ(test::FolderNames(dir.Path()), (std::vector<std::string>{"backups", "doc.txt"}));

    const auto file = WriteSettings(dir, [&](TMemIniFileW& ini) {
        ini.WriteBool("Save", "Backup", true);
        ini.WriteBool("Save", "BackupExtension", true);
        ini.WriteBool("Save", "BackupToFolder", true);
        ini.WriteString("Save", "BackupFolderPath", Utf8ToUtf16(folder.string()));
    });
    save(TMemIniFileW(file), "newer\n");
    const auto backups = test::FolderNames(folder);
    ASSERT_EQ(backups.size(), 1u);
    EXPECT_TRUE(backups[0].starts_with("doc_(") && backups[0].ends_with(".txt.bak")) << backups[0];
    EXPECT_EQ(test::ReadAll(folder / backups[0]), "new\n");
    EXPECT_EQ(test::ReadAll(doc), "newer\n");
}

} // namespace
} // namespace zv
