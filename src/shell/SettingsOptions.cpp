// Options read from the main settings at start-up and after the options dialog.
#include "shell/SettingsOptions.h"

#include "ZvMemoControl/DocumentSave.h"
#include "ZvMemoControl/FileType.h"
#include "common/Utf.h"
#include "shell/IniName.h"
#include "shell/ZvIniFiles.h"

#include <algorithm>
#include <cassert>

namespace zv {

namespace {

// Reads each key into its member, the member's initial value being the default.
class TOptionReader {
public:
    TOptionReader(const TCustomIniFile& ini, const char* section) : FIni(ini), FSection(section) {}
    void operator()(const char* key, bool& value) const {
        value = FIni.ReadBool(FSection, key, value);
    }
    void operator()(const char* key, int32_t& value) const {
        value = FIni.ReadInteger(FSection, key, value);
    }
    void operator()(const char* key, std::u16string& value) const {
        value = FIni.ReadString(FSection, key, std::u16string_view(value));
    }

private:
    const TCustomIniFile& FIni;
    const char* FSection;
};

void ReadCustomizeSection(const TCustomIniFile& ini, TCustomizeOptions& o) {
    const TOptionReader read(ini, "Customize");
    read("LoadInTab", o.LoadInTab);
    read("Language", o.Language);
    read("DisplaySplash", o.DisplaySplash);
    read("BlankAtStartup", o.BlankAtStartup);
    read("DelayTabLoad", o.DelayTabLoad);
    read("SaveMain", o.SaveMain);
    read("CloseAndSaveSession", o.CloseAndSaveSession);
    read("CloseToTray", o.CloseToTray);
    read("MinimizeToTray", o.MinimizeToTray);
    read("MinimizeNoFiles", o.MinimizeNoFiles);
    read("CloseOnNoFiles", o.CloseOnNoFiles);
    read("RemoveInvalidMRU", o.RemoveInvalidMRU);
    read("MenuRecent", o.MenuRecent);
    read("MenuRecentlyClosed", o.MenuRecentlyClosed);
    read("MenuStyle", o.MenuStyle);
    read("ToolbarSize", o.ToolbarSize);
    read("Mappings", o.Mappings);
    read("AutoUpdateCheck", o.AutoUpdateCheck);
    read("SaveDictionary", o.SaveDictionary);
    read("ClipSyncEnabled", o.ClipSyncEnabled);
    read("MarkdownExt", o.MarkdownExt);
    if (o.MarkdownExt.empty() || o.MarkdownExt.back() != u';')
        o.MarkdownExt.push_back(u';');
}

void ReadWindowSection(const TCustomIniFile& ini, TCustomizeOptions& o) {
    const TOptionReader read(ini, "Window");
    read("Maximized", o.WindowMaximized);
    read("Minimized", o.WindowMinimized);
    read("SaveTabLayout", o.SaveTabLayout);
    const char* groups[] = {"TabGroup1", "TabGroup2", "TabGroup3", "TabGroup4", "TabGroup5"};
    for (size_t i = 0; i < o.TabGroup.size(); ++i)
        read(groups[i], o.TabGroup[i]);
    read("ShowCrashOpenDialog", o.ShowCrashOpenDialog);
    const TOptionReader themes(ini, "VisualThemes");
    themes("ActiveVCLStyle", o.ActiveVCLStyle);
    themes("ActiveDockPanelStyle", o.ActiveDockPanelStyle);
    themes("ActiveTheme", o.ActiveTheme);
}

void ReadSaveSections(const TCustomIniFile& ini, TCustomizeOptions& o) {
    const TOptionReader autoSave(ini, "AutoSave");
    autoSave("Enable", o.AutoSaveEnable);
    autoSave("Reset", o.AutoSaveReset);
    autoSave("Interval", o.AutoSaveIntervalMinutes);
    autoSave("OnlyActive", o.AutoSaveOnlyActive);
    if (o.AutoSaveIntervalMinutes <= 0)
        o.AutoSaveIntervalMinutes = 10;
    const TOptionReader save(ini, "Save");
    save("Backup", o.Backup);
    save("BackupAuto", o.BackupAuto);
    save("MaxBackupFiles", o.MaxBackupFiles);
    o.MaxBackupFiles = std::max(o.MaxBackupFiles, int32_t{1});
    save("BackupExtension", o.BackupExtension);
    save("BackupToFolder", o.BackupToFolder);
    save("BackupFolderPath", o.BackupFolderPath);
    save("NewFileSaveFolder", o.NewFileSaveFolder);
    save("CheckForZWSP", o.CheckForZWSP);
    save("SaveAsFollowExp", o.SaveAsFollowExp);
    TOptionReader(ini, "OptionsEditMisc")("ClipboardSave", o.ClipboardSave);
}

void ReadEditingKeys(const TOptionReader& read, TMemoMiscOptions& o) {
    read("AutoIndent", o.AutoIndent);
    read("AutoCloseBraces", o.AutoCloseBraces);
    read("AutoCloseBracesText", o.AutoCloseBracesText);
    read("TabAsSpaces", o.TabAsSpaces);
    read("PreserveTab", o.PreserveTab);
    read("TabSize", o.TabSize);
    o.TabSize = std::max(o.TabSize, int32_t{1});
    read("SmartTab", o.SmartTab);
    read("SmartBackspace", o.SmartBackspace);
    read("SmartPaste", o.SmartPaste);
    read("OverwritePasteMode", o.OverwritePasteMode);
    read("PasteDoNotMoveCursor", o.PasteDoNotMoveCursor);
    read("CopyLineToClipboard", o.CopyLineToClipboard);
    read("AllowDragText", o.AllowDragText);
    read("SelectionMoveCaret", o.SelectionMoveCaret);
    read("TripleClickToSelectLine", o.TripleClickToSelectLine);
    read("HomeKeyToLineStart", o.HomeKeyToLineStart);
    read("EncloseSelectionWithParenthesis", o.EncloseSelectionWithParenthesis);
    read("EncloseSelectionWithQuotes", o.EncloseSelectionWithQuotes);
    read("NotepadCursor", o.NotepadCursor);
    read("UndoRedoSize", o.UndoRedoSize);
}

} // namespace

TCustomizeOptions ReadCustomizeOptions(const TCustomIniFile& settings) {
    TCustomizeOptions options;
    ReadCustomizeSection(settings, options);
    ReadWindowSection(settings, options);
    ReadSaveSections(settings, options);
    return options;
}

void ApplyBackupOptions(const TCustomizeOptions& o, TZvSaveOptions& save) {
    save.MakeBackup = o.Backup;
    save.AddBakExtension = o.BackupExtension;
    save.MaxBackupFiles = o.MaxBackupFiles;
    save.BackupFolder = o.BackupToFolder ? Utf16ToUtf8(o.BackupFolderPath) : std::string();
}

TMemoMiscOptions ReadMemoMiscOptions(const TCustomIniFile& settings, int32_t ansiCodePage) {
    TMemoMiscOptions o;
    o.DefaultEncoding = ansiCodePage;
    o.OpenAsBinary = Utf8ToUtf16(DefaultOpenAsBinary());
    const TOptionReader read(settings, "EditorMisc");
    read("ReopenLastDoc", o.ReopenLastDoc);
    read("ReopenLastRemoteFiles", o.ReopenLastRemoteFiles);
    read("DefaultEncoding", o.DefaultEncoding);
    read("DefaultEncodingBOM", o.DefaultEncodingBOM);
    read("OpenAsBinary", o.OpenAsBinary);
    read("DetectUTF8", o.DetectUTF8);
    read("DetectAll", o.DetectAll);
    read("AllowIllegalCtrlChars", o.AllowIllegalCtrlChars);
    read("CheckXMLTagEncoding", o.CheckXMLTagEncoding);
    read("CheckHTMLTagEncoding", o.CheckHTMLTagEncoding);
    read("Wordwrap", o.Wordwrap);
    read("OpenWithWordwrap", o.OpenWithWordwrap);
    read("TypeUnix", o.TypeUnix);
    read("TypeMac", o.TypeMac);
    read("OpenTypeUnix", o.OpenTypeUnix);
    read("OpenTypeMac", o.OpenTypeMac);
    read("OverwriteReadOnly", o.OverwriteReadOnly);
    read("WarnChange", o.WarnChange);
    read("AutoReloadUnmodified", o.AutoReloadUnmodified);
    read("AnnotationBarWidth", o.AnnotationBarWidth);
    read("ExpandAbbreviationWithTab", o.ExpandAbbreviationWithTab);
    read("ExpandAbbreviationWithSpace", o.ExpandAbbreviationWithSpace);
    ReadEditingKeys(read, o);
    return o;
}

TTextOptions LoadTextOptions(const TCustomIniFile& settings) {
    TTextOptions options;
    options.ActiveTheme = settings.ReadString("VisualThemes", "ActiveTheme",
                                              std::u16string_view(options.ActiveTheme));
    const std::u16string section = u"Theme_" + options.ActiveTheme;
    std::u16string key;
    auto readInt = [&](std::u16string_view element, std::u16string_view suffix, int32_t& value) {
        key.assign(element).append(suffix);
        value = settings.ReadInteger(section, key, value);
    };
    for (size_t i = 0; i < kThemeElements.size(); ++i) {
        TThemeElement& element = options.Elements[i];
        readInt(kThemeElements[i], u"Color", element.Color);
        readInt(kThemeElements[i], u"ColorBk", element.ColorBk);
        readInt(kThemeElements[i], u"Style", element.Style);
        readInt(kThemeElements[i], u"Boldness", element.Boldness);
    }
    return options;
}

const TThemeElement& TextElement(const TTextOptions& options, std::u16string_view name) {
    const auto at = std::find(kThemeElements.begin(), kThemeElements.end(), name);
    assert(at != kThemeElements.end());
    return options.Elements[static_cast<size_t>(at - kThemeElements.begin())];
}

TColor ThemeColor(int32_t value) {
    return value < 0 || value > 0xFFFFFF ? kNoColor : static_cast<TColor>(value);
}

bool UsesTerminalFont(std::u16string_view extension) {
    return FoldedEqual(extension, std::string_view(".nfo")) ||
           FoldedEqual(extension, std::string_view(".diz"));
}

} // namespace zv
