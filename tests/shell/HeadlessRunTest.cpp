// The headless run of the real program: files named on its command line are loaded and
// saved back; unchanged documents must come back byte for byte (checked with cmp).
#include "TestProcess.h"
#include "shell/DataFolders.h"
#include "shell/ZvIniFiles.h"
#include "support/ZvTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>

#include <QElapsedTimer>

#include <cstring>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

class HeadlessRun : public ::testing::Test {
protected:
    void SetUp() override {
        fs::create_directories(dir / "root");
        fs::create_directories(dir / "run");
        fs::create_directories(dir / "files");
    }

    fs::path Write(const std::string& name, const std::string& bytes) {
        const auto path = dir / "files" / name;
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }
    zvtest::TRunResult Run(const QStringList& args) {
        return zvtest::RunProgram(ZV_APP_PATH, args,
                                  zvtest::IsolatedEnvironment(dir / "root", dir / "run"));
    }
    static bool SameBytes(const fs::path& a, const fs::path& b) {
        const std::string cmd = "cmp -s '" + a.string() + "' '" + b.string() + "'";
        return std::system(cmd.c_str()) == 0;
    }
    zvtest::TTempDir temp{"zv-headless"};
    const fs::path dir = temp.Path();
};

TEST_F(HeadlessRun, LoadThenSaveGivesTheSameBytes) {
    std::mt19937 rng(42);
    std::vector<std::pair<fs::path, fs::path>> pairs;
    const std::vector<std::string> ends = {"\n", "\r\n", "\r"};
    for (int f = 0; f < 6; ++f) {
        std::string text = f == 5 ? "\xEF\xBB\xBF" : "";
        const int rows = 1 + static_cast<int>(rng() % 200);
        for (int r = 0; r < rows; ++r) {
            text += std::string(rng() % 60, static_cast<char>('a' + rng() % 26));
            text += f == 4 ? "\xC3\xA4\xE2\x82\xAC" : "";
            if (r + 1 < rows || f % 2 == 0)
                text += ends[(f < 3 ? f : rng()) % 3];
        }
        const auto path = Write("f" + std::to_string(f) + ".txt", text);
        const auto copy = Write("f" + std::to_string(f) + ".orig", text);
        pairs.emplace_back(path, copy);
    }
    QStringList args{"-headless"};
    for (const auto& [path, copy] : pairs)
        args << QString::fromStdString(path.string());
    const auto result = Run(args);
    ASSERT_TRUE(result.finished);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    for (const auto& [path, copy] : pairs)
        EXPECT_TRUE(SameBytes(path, copy)) << path;
}

TEST_F(HeadlessRun, MissingFileBecomesANewDocumentAndABadSwitchFails) {
    const auto missing = dir / "files" / "new.txt";
    auto result = Run({"-headless", QString::fromStdString(missing.string())});
    ASSERT_TRUE(result.finished);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(fs::exists(missing)) << "the new document is saved under its name";

    const auto kept = Write("kept.txt", "abc\n");
    result = Run({"-headless", "/CP=abc", QString::fromStdString(kept.string())});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("not a valid integer value"), std::string::npos) << result.err;
}

// The first start's files are checked below; here a settings file named by the switch
// serves the run and is written at its end.
TEST_F(HeadlessRun, SettingsAreWrittenAtTheEndToTheFileASettingsSwitchNames) {
    const auto kept = Write("k.txt", "k\n");
    const auto custom = dir / "files" / "custom.ini";
    const auto result = Run({"-SETTINGS", QString::fromStdString(custom.string()),
                             QString::fromStdString(kept.string()), "-headless"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const std::string bytes = zvtest::ReadAll(custom);
    ASSERT_GE(bytes.size(), 2u) << "the named settings file serves the run and is written";
    EXPECT_EQ(bytes.substr(0, 2), "\xFF\xFE") << "UTF-16LE with BOM";
}

TEST_F(HeadlessRun, HelpAndVersionPrintAndSucceed) {
    auto result = Run({"--help"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_NE(result.out.find("-headless"), std::string::npos);
    result = Run({"--version"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_NE(result.out.find("Zevrit"), std::string::npos);
}

// A first start with a root of its own gets the shipped user files (folders that the root
// lacks are copied whole, so they must not be made empty first) and then the whole tree.
TEST_F(HeadlessRun, FirstStartInstallsTheShippedFilesAndLaysOutTheWholeTree) {
    const auto file = Write("a.txt", "a\n");
    const auto result = Run({"-headless", QString::fromStdString(file.string())});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const fs::path root = dir / "root";
    for (const auto& folder : zv::DataTreeFolders())
        EXPECT_TRUE(fs::is_directory(root / folder)) << folder;
    const fs::path shipped = fs::path(ZV_TEST_TREE);
    for (const char* name : {"Templates/Syntax/empty.syx", "Templates/Language/empty.ini",
                             "Syntax/c.syx", "Language/eng.ini"})
        EXPECT_TRUE(SameBytes(root / name, shipped / name)) << name;
    EXPECT_TRUE(SameBytes(root / "Zevrit.ini", shipped / "bin" / "_Zevrit.ini"))
        << "the settings start as the default beside the program";
    EXPECT_TRUE(fs::exists(root / "Data" / "StartOptions.ini"));
}

// The backup is refreshed when a start succeeds; a damaged settings file is set aside and
// the next start takes the backup.
TEST_F(HeadlessRun, DamagedSettingsComeBackFromTheBackupOfTheLastGoodStart) {
    const QStringList args{"-headless", QString::fromStdString(Write("a.txt", "a\n").string())};
    ASSERT_EQ(Run(args).exitCode, 0);
    const fs::path settings = dir / "root" / "Zevrit.ini";
    const fs::path backup = dir / "root" / "Zevrit.ini.bak";
    {
        zv::TMemIniFileW ini(settings);
        ini.WriteString("Customize", "Marker", "edited by hand");
        ASSERT_TRUE(ini.UpdateFile());
    }
    ASSERT_EQ(Run(args).exitCode, 0);
    EXPECT_EQ(zv::TMemIniFileW(backup).ReadString("Customize", "Marker", ""), "edited by hand");

    const std::string garbage = "half written, no section\n\x01\x02";
    std::ofstream(settings, std::ios::binary | std::ios::trunc) << garbage;
    const auto result = Run(args);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(zv::TMemIniFileW(settings).ReadString("Customize", "Marker", ""), "edited by hand");
    EXPECT_TRUE(SameBytes(settings, backup));
    EXPECT_EQ(zvtest::ReadAll(dir / "root" / "Zevrit.ini.damaged"), garbage);
}

// Only plain files open: a named pipe, a socket, a device and a folder named on the command
// line are each refused with a message at once (a pipe used to wait for a writer for ever),
// the device stays a device, and the plain file beside them still loads and saves.
TEST_F(HeadlessRun, SpecialFilesAreRefusedAtOnceAndFilesWithoutASizeReadWhole) {
    const fs::path pipe = dir / "files" / "pipe", socketPath = dir / "files" / "sock";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const int sock = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, socketPath.c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(sock, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    const std::string plain = "plain text\n";
    const fs::path ok = Write("ok.txt", plain);
    QElapsedTimer clock;
    clock.start();
    const auto result = Run({"-headless", QString::fromStdString(pipe.string()),
                             QString::fromStdString(socketPath.string()), "/dev/null",
                             QString::fromStdString((dir / "files").string()),
                             QString::fromStdString(ok.string())});
    ::close(sock);
    ASSERT_TRUE(result.finished) << "no wait on the pipe";
    EXPECT_LT(clock.elapsed(), 10000);
    EXPECT_EQ(result.exitCode, 1);
    for (const char* kind : {"named pipe (FIFO)", "a socket", "character device", "a folder"})
        EXPECT_NE(result.err.find(kind), std::string::npos) << kind << " in " << result.err;
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_TRUE(fs::is_fifo(pipe));
    EXPECT_EQ(zvtest::ReadAll(ok), plain);

    // zvtool too; a file of /proc says its size is 0 yet has rows, and is read to its end.
    const auto info = [&](const std::string& file) {
        return zvtest::RunProgram(ZV_TOOL_PATH, {"info", QString::fromStdString(file)},
                                  QProcessEnvironment::systemEnvironment(), 10000);
    };
    const auto piped = info(pipe.string());
    ASSERT_TRUE(piped.finished);
    EXPECT_EQ(piped.exitCode, 1);
    EXPECT_NE(piped.err.find("named pipe"), std::string::npos) << piped.err;
    const auto proc = info("/proc/self/mounts");
    ASSERT_TRUE(proc.finished);
    EXPECT_EQ(proc.exitCode, 0) << proc.err;
    const std::string mounts = zvtest::ReadAll("/proc/self/mounts"); // the same for both
    ASSERT_FALSE(mounts.empty());
    EXPECT_NE(proc.out.find("size: " + std::to_string(mounts.size()) + "\n"), std::string::npos)
        << proc.out;
    const auto rows = std::count(mounts.begin(), mounts.end(), '\n') + 1;
    EXPECT_NE(proc.out.find("rows: " + std::to_string(rows) + "\n"), std::string::npos) << proc.out;
}

// Settings that cannot be read (a folder, or a device, named as the settings file) are told
// once, at the start, and the run goes on with the defaults: the files are still saved.
TEST_F(HeadlessRun, ASettingsFaultIsToldOnceAndTheRunGoesOn) {
    const auto text = Write("a.txt", "abc\n");
    for (const std::string& settings : {(dir / "folder").string(), std::string("/dev/full")}) {
        fs::create_directories(dir / "folder");
        const auto result = Run({"-SETTINGS", QString::fromStdString(settings), "-headless",
                                 QString::fromStdString(text.string())});
        ASSERT_TRUE(result.finished);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        const auto told = result.err.find("settings file \"" + settings + "\" cannot be read");
        EXPECT_NE(told, std::string::npos) << result.err;
        EXPECT_EQ(result.err.find("settings", told + 1), result.err.rfind("settings"))
            << "told once: " << result.err;
        EXPECT_EQ(zvtest::ReadAll(text), "abc\n");
        EXPECT_TRUE(fs::is_directory(dir / "folder"));
    }
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

} // namespace
