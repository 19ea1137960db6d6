// Options read from the main settings at start-up and after the options dialog: the plain
// records that the main object, the editors and the painter take their options from.
#pragma once

#include "ZvMemoControl/StyleTypes.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace zv {

class TCustomIniFile;
struct TZvSaveOptions;

// "Customize", "Window", "VisualThemes", "AutoSave", "Save", "OptionsEditMisc": the
// program-wide options. Member defaults are the defaults of a missing key.
struct TCustomizeOptions {
    bool LoadInTab = true;
    std::u16string Language;
    bool DisplaySplash = true;
    bool BlankAtStartup = false;
    bool DelayTabLoad = false;
    bool SaveMain = true;
    bool CloseAndSaveSession = false;
    bool CloseToTray = false;
    bool MinimizeToTray = false;
    bool MinimizeNoFiles = false;
    bool CloseOnNoFiles = false;
    bool RemoveInvalidMRU = false;
    int32_t MenuRecent = 15;
    int32_t MenuRecentlyClosed = 50;
    int32_t MenuStyle = 2;
    int32_t ToolbarSize = 1;
    bool Mappings = true;
    bool AutoUpdateCheck = true;
    bool SaveDictionary = true;
    bool ClipSyncEnabled = false;
    std::u16string MarkdownExt = u".markdown;.mdown;.md;.mkdn;"; // always ends with ";"

    bool WindowMaximized = false;
    bool WindowMinimized = false;
    bool SaveTabLayout = false;
    std::array<bool, 5> TabGroup{}; // "TabGroup1".."TabGroup5"
    bool ShowCrashOpenDialog = true;

    std::u16string ActiveVCLStyle = u"Windows";
    std::u16string ActiveDockPanelStyle = u"VCLStyle";
    std::u16string ActiveTheme = u"Windows";

    bool AutoSaveEnable = false;
    bool AutoSaveReset = false;
    int32_t AutoSaveIntervalMinutes = 10; // a bad or non-positive value counts as 10
    bool AutoSaveOnlyActive = true;

    bool Backup = false;
    bool BackupAuto = false;
    int32_t MaxBackupFiles = 1; // backups of one file kept; below 1 counts as 1
    bool BackupExtension = false;
    bool BackupToFolder = false;
    std::u16string BackupFolderPath;
    std::u16string NewFileSaveFolder;
    bool CheckForZWSP = false;
    bool SaveAsFollowExp = true;

    bool ClipboardSave = true;

    bool operator==(const TCustomizeOptions&) const = default;
};

// What SetCustomize applies: every key of TCustomizeOptions, missing ones at their default.
TCustomizeOptions ReadCustomizeOptions(const TCustomIniFile& settings);

// The backup choices of section "Save" on the options of a document save: "Backup" makes a
// backup, "BackupExtension" ends its name in ".bak", "BackupToFolder" puts it in
// "BackupFolderPath" (beside the file while that is empty). The other fields of `save` stay.
void ApplyBackupOptions(const TCustomizeOptions& options, TZvSaveOptions& save);

// "EditorMisc": what each editor takes when it is created and after the options dialog.
struct TMemoMiscOptions {
    bool ReopenLastDoc = false;
    bool ReopenLastRemoteFiles = false;
    int32_t DefaultEncoding = 0; // code page; a missing key gives the ANSI code page
    bool DefaultEncodingBOM = true;
    std::u16string OpenAsBinary; // extensions, each followed by a blank
    bool DetectUTF8 = true;
    bool DetectAll = false;
    bool AllowIllegalCtrlChars = true;
    bool CheckXMLTagEncoding = true;
    bool CheckHTMLTagEncoding = true;
    bool Wordwrap = false;
    bool OpenWithWordwrap = false;
    bool TypeUnix = false;
    bool TypeMac = false;
    bool OpenTypeUnix = false;
    bool OpenTypeMac = false;
    bool OverwriteReadOnly = false;
    bool WarnChange = true;            // open files changed on disk are noticed and asked about
    bool AutoReloadUnmodified = false; // ... and unmodified ones read again without a question
    int32_t AnnotationBarWidth = 20;
    bool ExpandAbbreviationWithTab = true;
    bool ExpandAbbreviationWithSpace = false;

    // The editing model's options, each named as the control's field without its "F"; the
    // defaults are the control's start values.
    bool AutoIndent = true;
    bool AutoCloseBraces = false;
    bool AutoCloseBracesText = false;
    bool TabAsSpaces = true;
    bool PreserveTab = true;
    int32_t TabSize = 4; // below 1 counts as 1
    bool SmartTab = false;
    bool SmartBackspace = false;
    bool SmartPaste = false;
    bool OverwritePasteMode = false;
    bool PasteDoNotMoveCursor = false;
    bool CopyLineToClipboard = false;
    bool AllowDragText = true;
    bool SelectionMoveCaret = false;
    bool TripleClickToSelectLine = true;
    bool HomeKeyToLineStart = false;
    bool EncloseSelectionWithParenthesis = false;
    bool EncloseSelectionWithQuotes = false;
    bool NotepadCursor = false; // off: the caret may stand past a row's end (virtual space)
    int32_t UndoRedoSize = 100; // most undo records kept; 0 or less: no limit

    bool operator==(const TMemoMiscOptions&) const = default;
};

// Reads "EditorMisc"; ansiCodePage is the default of "DefaultEncoding".
TMemoMiscOptions ReadMemoMiscOptions(const TCustomIniFile& settings, int32_t ansiCodePage);

// The text elements whose colours a theme sets, in painter order.
inline constexpr std::array<std::u16string_view, 21> kThemeElements = {u"Default",
                                                                       u"Selection",
                                                                       u"Search",
                                                                       u"LineHighlight",
                                                                       u"BraceHighlight",
                                                                       u"BraceHighlightError",
                                                                       u"ControlChar",
                                                                       u"SyncEdit",
                                                                       u"Text",
                                                                       u"URL",
                                                                       u"Gutter",
                                                                       u"HexViewGutter",
                                                                       u"HexViewHexadecimals",
                                                                       u"HexViewANSI",
                                                                       u"HexGutterCurrentLine",
                                                                       u"DocMapBackground",
                                                                       u"DocMapPageArea",
                                                                       u"GutterLine",
                                                                       u"LineChanged",
                                                                       u"Bookmark",
                                                                       u"RightMarginLine"};

// One element's keys in the theme section: <name>Color, <name>ColorBk, <name>Style (font
// style bits: 1 bold, 2 italic, 4 underline, 8 strike-out), <name>Boldness.
struct TThemeElement {
    int32_t Color = static_cast<int32_t>(kNoColor);
    int32_t ColorBk = static_cast<int32_t>(kNoColor);
    int32_t Style = 0;
    int32_t Boldness = 0;
};

// What LoadTextOptions gives the style sets and the painter.
struct TTextOptions {
    std::u16string ActiveTheme = u"Windows";                     // "VisualThemes"/"ActiveTheme"
    std::array<TThemeElement, kThemeElements.size()> Elements{}; // by kThemeElements index
};

// Reads the active theme's section "Theme_" + name.
TTextOptions LoadTextOptions(const TCustomIniFile& settings);

// The element of `options` named `name`, one of kThemeElements.
const TThemeElement& TextElement(const TTextOptions& options, std::u16string_view name);

// A theme colour value as a colour: 0x00BBGGRR as stored, kNoColor for "none" and for the
// negative values that name a colour of the system palette (the painter's defaults stand in).
TColor ThemeColor(int32_t value);

// True for the extensions (with dot, any case) shown in the text font "Terminal".
bool UsesTerminalFont(std::u16string_view extension);

} // namespace zv
