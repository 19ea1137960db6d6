// The data folder: the first start lays out the tree and the defaults, damaged settings
// come back from the backup, and the install copy keeps what the user has.
#include "IniTestSupport.h"

#include "ZvMemoControl/FileType.h"
#include "common/Utf.h"
#include "shell/DataFolders.h"
#include "shell/DiskIniFiles.h"
#include "shell/Settings.h"
#include "shell/SettingsOptions.h"

namespace zv {
namespace {

using test::Quote;
using test::Shell;

const std::filesystem::path kProgramFolder = std::filesystem::path(ZV_TEST_TREE) / "bin";

// A root below a temporary folder, also given to the program as ZEVRIT_ROOT.
class DataFolder : public ::testing::Test {
protected:
    void SetUp() override { ::setenv("ZEVRIT_ROOT", FRoot.c_str(), 1); }
    void TearDown() override { ::unsetenv("ZEVRIT_ROOT"); }
    bool SameBytes(const std::filesystem::path& a, const std::filesystem::path& b) {
        return Shell("cmp -s " + Quote(a) + " " + Quote(b)) == 0;
    }
    test::TTempDir FDir;
    const std::filesystem::path FRoot = FDir / "root";
};

TEST_F(DataFolder, FirstStartLaysOutTheTreeAndTheDefaults) {
    ASSERT_TRUE(std::filesystem::exists(DefaultSettingsPath(kProgramFolder)));
    // The tree and the copied defaults are checked on the real program's first start.
    EXPECT_EQ(PrepareDataFolder(FRoot, kProgramFolder), TSettingsOrigin::FromDefault);
    const TStartOptionValues start = ReadStartOptionValues(FRoot);
    EXPECT_TRUE(start.OnlyOneInstance);
    EXPECT_EQ(start.AppIcon, -1);
    EXPECT_EQ(Shell("grep -q '^AppIcon=-1' " + Quote(StartOptionsPath(FRoot))), 0);

    // The shipped defaults, read as the program reads them (their values: SettingsOptions).
    const TMemIniFileW& settings = OpenSettings(SettingsFilePath(FRoot));
    EXPECT_EQ(settings.SourceForm(), TTextForm::Utf16LE);
    EXPECT_EQ(ReadMemoMiscOptions(settings, 1252).OpenAsBinary,
              Utf8ToUtf16(DefaultOpenAsBinary())); // trailing blank kept
    CloseSettings();

    // A second start finds everything in place and changes nothing.
    const std::string before = test::ReadAll(SettingsFilePath(FRoot));
    EXPECT_EQ(PrepareDataFolder(FRoot, kProgramFolder), TSettingsOrigin::Present);
    EXPECT_EQ(test::ReadAll(SettingsFilePath(FRoot)), before);
}

TEST_F(DataFolder, DamagedSettingsNeverReplaceTheBackup) {
    LayOutDataTree(FRoot);
    const auto settings = SettingsFilePath(FRoot);
    const auto backup = SettingsBackupPath(FRoot);
    TMemIniFileW good(settings);
    good.WriteString("Customize", "Language", "Deutsch");
    ASSERT_TRUE(good.UpdateFile());
    ASSERT_TRUE(BackupSettingsFile(settings, backup));
    EXPECT_TRUE(SameBytes(settings, backup));

    const std::string garbage("\x00\x00\x13 half-written \xFF\x01", 18);
    test::WriteAll(settings, garbage);
    EXPECT_FALSE(BackupSettingsFile(settings, backup)); // never over the good copy
    EXPECT_EQ(TMemIniFileW(backup).ReadString("Customize", "Language", ""), "Deutsch");
    // The restore from this backup is checked on the real program's start.
}

TEST_F(DataFolder, RestoreFallsBackToTheDefaultThenToNothing) {
    std::filesystem::create_directories(FRoot);
    const auto settings = SettingsFilePath(FRoot);
    const auto backup = SettingsBackupPath(FRoot);
    test::WriteAll(backup, "no section here\n");
    test::WriteAll(settings, "");
    EXPECT_EQ(RestoreSettingsFile(settings, backup, DefaultSettingsPath(kProgramFolder)),
              TSettingsOrigin::FromDefault);
    EXPECT_TRUE(SameBytes(settings, DefaultSettingsPath(kProgramFolder)));
    std::filesystem::remove(settings);
    EXPECT_EQ(RestoreSettingsFile(settings, backup, FDir / "absent.ini"), TSettingsOrigin::None);
    EXPECT_FALSE(std::filesystem::exists(settings));
}

TEST_F(DataFolder, InstallCopyOverwritesProgramFilesAndKeepsTheUsers) {
    const auto source = FDir / "InstallData";
    auto put = [](const std::filesystem::path& file, const std::string& text) {
        std::filesystem::create_directories(file.parent_path());
        test::WriteAll(file, text);
    };
    for (const char* file : {"Syntax/c.syx", "Data/Clips/html.txt", "Data/Symbols.txt",
                             "Data/Sites.ini", "Layouts/a.xml", "Syntax color themes/Dark.ini",
                             "Syntax color themes/Light.ini", "Zevrit.ini", "Version.ini"})
        put(source / file, std::string("shipped ") + file);
    for (const char* file : {"Syntax/c.syx", "Data/Clips/html.txt", "Data/Symbols.txt",
                             "Layouts/mine.xml", "Syntax color themes/Dark.ini", "Zevrit.ini"})
        put(FRoot / file, std::string("user ") + file);

    EXPECT_TRUE(InstallUserFiles(source, FRoot));
    auto text = [&](const char* file) { return test::ReadAll(FRoot / file); };
    EXPECT_EQ(text("Syntax/c.syx"), "shipped Syntax/c.syx");
    EXPECT_EQ(text("Data/Clips/html.txt"), "shipped Data/Clips/html.txt");
    EXPECT_EQ(text("Data/Symbols.txt"), "user Data/Symbols.txt");
    EXPECT_FALSE(std::filesystem::exists(FRoot / "Data/Sites.ini")); // Data was there
    EXPECT_FALSE(std::filesystem::exists(FRoot / "Layouts/a.xml"));  // Layouts was there
    EXPECT_EQ(text("Syntax color themes/Dark.ini"), "user Syntax color themes/Dark.ini");
    EXPECT_EQ(text("Syntax color themes/Light.ini"), "shipped Syntax color themes/Light.ini");
    EXPECT_EQ(text("Zevrit.ini"), "user Zevrit.ini");
    EXPECT_EQ(text("Version.ini"), "shipped Version.ini");
}

TEST_F(DataFolder, StartOptionsFollowTheSettingsAndVersionIsKept) {
    LayOutDataTree(FRoot);
    TMemIniFileW settings;
    settings.WriteBool("Customize", "LoadInTab", false);
    TZvIniFile(StartOptionsPath(FRoot)).WriteBool("Misc", "ChromeEnabled", false);
    ASSERT_TRUE(WriteStartOptions(FRoot, settings));
    const TStartOptionValues start = ReadStartOptionValues(FRoot);
    EXPECT_FALSE(start.OnlyOneInstance);
    EXPECT_FALSE(start.ChromeEnabled);

    EXPECT_EQ(ReadInstalledVersion(FRoot), 0);
    ASSERT_TRUE(WriteInstalledVersion(FRoot, 16203));
    EXPECT_EQ(ReadInstalledVersion(FRoot), 16203);
}

TEST(SettingsGlobals, ReadersGetDefaultsUntilAFileIsOpen) {
    test::TTempDir dir;
    EXPECT_EQ(SettingsIni().ReadInteger("Customize", "MenuRecent", 15), 15);
    test::WriteAll(dir / "lang.ini", "[Messages]\n013=Datei speichern?\n");
    OpenLanguage(dir / "lang.ini");
    EXPECT_EQ(LanguageIni().ReadString("Messages", "013", ""), "Datei speichern?");
    EXPECT_EQ(LanguageIni().Encoding(), TIniEncoding::Utf8);
    OpenSettings(dir / "missing.ini").WriteInteger("Customize", "MenuRecent", 3);
    EXPECT_EQ(SettingsIni().ReadInteger("Customize", "MenuRecent", 15), 3);
    const auto dropped = CloseSettings();
    EXPECT_EQ(dropped->FileName(), dir / "missing.ini");
    EXPECT_FALSE(SettingsIni().SectionExists("Customize"));
}

} // namespace
} // namespace zv
