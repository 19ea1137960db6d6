// zvtool run as a real process: its help names every command it knows, unknown commands and
// missing files fail with a message, `info` agrees with stat(1) on the size, and its data
// root is the editor's.
#include "shell/TestProcess.h"
#include "support/ZvTestSupport.h"

#include <QProcessEnvironment>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

namespace fs = std::filesystem;

namespace {

zvtest::TRunResult Tool(const QStringList& args) {
    return zvtest::RunProgram(ZV_TOOL_PATH, args, QProcessEnvironment::systemEnvironment());
}

// The command names of the help text: the first word of each line under "Commands:".
std::vector<std::string> HelpCommands(const std::string& help) {
    std::istringstream in(help.substr(help.find("Commands:")));
    std::vector<std::string> names;
    std::string line;
    std::getline(in, line);
    while (std::getline(in, line) && !line.empty()) {
        std::istringstream words(line);
        std::string name;
        words >> name;
        names.push_back(name);
    }
    return names;
}

TEST(ZvTool, HelpNamesEveryCommandAndEachIsKnown) {
    const auto help = Tool({"--help"});
    ASSERT_TRUE(help.finished);
    EXPECT_EQ(help.exitCode, 0);
    const auto names = HelpCommands(help.out);
    EXPECT_NE(std::find(names.begin(), names.end(), "info"), names.end()) << help.out;
    for (const auto& name : names) {
        // Without its arguments a command answers with its usage, never "unknown".
        const auto run = Tool({QString::fromStdString(name)});
        EXPECT_NE(run.exitCode, 0) << name;
        EXPECT_EQ(run.err.find("unknown command"), std::string::npos) << name << ": " << run.err;
    }
    const auto version = Tool({"--version"});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_EQ(version.out.rfind("zvtool ", 0), 0u) << version.out;
}

TEST(ZvTool, UnknownCommandOrNoneFailsWithAHint) {
    const auto unknown = Tool({"no-such-command"});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_NE(unknown.err.find("no-such-command"), std::string::npos) << unknown.err;
    EXPECT_NE(unknown.err.find("--help"), std::string::npos) << unknown.err;
    const auto none = Tool({});
    EXPECT_EQ(none.exitCode, 2);
    EXPECT_NE(none.err.find("Commands:"), std::string::npos) << "the help goes to stderr";
    EXPECT_TRUE(none.out.empty());
}

TEST(ZvTool, InfoSizeAgreesWithStatAndAMissingFileFails) {
    zvtest::TTempDir dir("zv-tool");
    std::mt19937 rng(5);
    for (int round = 0; round < 5; ++round) {
        const auto file = dir / ("f" + std::to_string(round) + ".txt");
        std::string text;
        for (int i = 0, n = static_cast<int>(rng() % 5000); i < n; ++i)
            text += "ab \t\r\n\xC3\xA9"[rng() % 7];
        std::ofstream(file, std::ios::binary) << text;
        const auto stat =
            zvtest::RunProgram("stat", {"-c", "%s", QString::fromStdString(file.string())},
                               QProcessEnvironment::systemEnvironment());
        const auto info = Tool({"info", QString::fromStdString(file.string())});
        ASSERT_EQ(info.exitCode, 0) << info.err;
        EXPECT_NE(info.out.find("size: " + stat.out), std::string::npos)
            << info.out << " stat: " << stat.out;
    }
    const auto missing = Tool({"info", QString::fromStdString((dir / "missing.txt").string())});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_NE(missing.err.find("zvtool info:"), std::string::npos) << missing.err;
}

// In an installed tree (the InstallData marker beside the programs) zvtool takes its data from
// the root the editor made for itself: a syntax file put there is the one `highlight` uses.
TEST(ZvTool, UsesTheEditorsRootOfAnInstalledTree) {
    if (!fs::exists(ZV_APP_PATH))
        GTEST_SKIP() << "the desktop program is not built";
    zvtest::TTempDir dir("zv-tool-root");
    const fs::path bin = dir / "tree" / "bin";
    fs::create_directories(bin / "InstallData");
    for (const fs::path program : {ZV_APP_PATH, ZV_TOOL_PATH})
        fs::copy_file(program, bin / program.filename());
    fs::create_directories(dir / "run");
    fs::permissions(dir / "run", fs::perms::owner_all, fs::perm_options::replace);
    auto env = QProcessEnvironment::systemEnvironment();
    env.remove("ZEVRIT_ROOT");
    env.insert("XDG_CONFIG_HOME", QString::fromStdString((dir / "config").string()));
    env.insert("XDG_RUNTIME_DIR", QString::fromStdString((dir / "run").string()));
    const auto editor =
        zvtest::RunProgram(QString::fromStdString((bin / "zevrit").string()), {"-headless"}, env);
    ASSERT_EQ(editor.exitCode, 0) << editor.err;

    std::vector<fs::path> roots; // where the editor wrote its settings file
    for (const auto& entry : fs::recursive_directory_iterator(dir.Path()))
        if (entry.path().filename() == "Zevrit.ini")
            roots.push_back(entry.path().parent_path());
    ASSERT_EQ(roots, std::vector<fs::path>{dir / "config" / "zevrit"}) << "the marker's root";
    fs::create_directories(roots[0] / "Syntax");
    fs::copy_file(fs::path(ZV_TEST_TREE) / "Syntax" / "c.syx", roots[0] / "Syntax" / "Probe.syx");
    std::ofstream(dir / "a.txt") << "int main() { return 0; }\n";
    const auto tool = zvtest::RunProgram(QString::fromStdString((bin / "zvtool").string()),
                                         {"highlight", "--syntax", "Probe", "--tokens",
                                          QString::fromStdString((dir / "a.txt").string())},
                                         env);
    EXPECT_EQ(tool.exitCode, 0) << tool.err;
    EXPECT_NE(tool.out.find("\tkeyword\n"), std::string::npos) << tool.out;
}

} // namespace
