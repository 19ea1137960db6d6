// The argument pass and the hand-over pass against a host that records what it is asked.
#include "shell/CommandLine.h"
#include "shell/Switches.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

struct TOpened {
    std::string path;
    zv::TParamFlags flags;
};

class RecordingHost : public zv::ICommandLineHost {
public:
    void ProcessParam(const std::string& path, const zv::TParamFlags& flags) override {
        opened.push_back({path, flags});
    }
    bool CloseDocument(const std::string& path) override {
        closed.push_back(path);
        return true;
    }
    bool CrashFilesExist() override { return crashFiles; }
    void CrashOpen(bool ask) override { crashOpens.push_back(ask); }
    void BeginBatch() override { ++batches; }
    void EndBatch() override { --batches; }

    std::vector<TOpened> opened;
    std::vector<std::string> closed;
    std::vector<bool> crashOpens;
    bool crashFiles = false;
    int batches = 0;
};

std::vector<std::string> Paths(const RecordingHost& host) {
    std::vector<std::string> paths;
    for (const auto& o : host.opened)
        paths.push_back(o.path);
    return paths;
}

struct Pass {
    RecordingHost host;
    zv::TCommandLineState state;
    void Run(std::vector<std::string> args) {
        args.insert(args.begin(), "/opt/zevrit/bin/zevrit");
        zv::RunArgumentPass(args, host, state);
    }
};

TEST(ArgumentPass, FlagsActOnAllCollectedFilesWhichOpenSorted) {
    Pass p;
    p.Run({"/R", "/CP=1252", "b.txt", "a.txt"});
    ASSERT_EQ(Paths(p.host), (std::vector<std::string>{"a.txt", "b.txt"}));
    for (const auto& o : p.host.opened) {
        EXPECT_TRUE(o.flags.readOnly);
        EXPECT_EQ(o.flags.codePage, 1252);
    }
    EXPECT_EQ(p.host.batches, 0) << "batch mode left";
    EXPECT_FALSE(p.state.FLoadParams);

    Pass late;
    late.Run({"b.txt", "/HEX", "/RL", "/MONITOR", "/L:12"});
    ASSERT_EQ(late.host.opened.size(), 1u);
    EXPECT_TRUE(late.host.opened[0].flags.hex && late.host.opened[0].flags.reload &&
                late.host.opened[0].flags.monitor);
    EXPECT_EQ(late.state.FLine, 12);
}

TEST(ArgumentPass, SwitchesMatchWholeTokensWithEitherPrefixAnyCase) {
    Pass p;
    p.Run({"-r", "/root/x.txt", "/bin", "/RLX", "-cp=65001", "/Rl"});
    ASSERT_EQ(Paths(p.host), (std::vector<std::string>{"/RLX", "/bin", "/root/x.txt"}));
    EXPECT_TRUE(p.host.opened[0].flags.readOnly);
    EXPECT_TRUE(p.host.opened[0].flags.reload);
    EXPECT_EQ(p.host.opened[0].flags.codePage, 65001);
    EXPECT_TRUE(zv::IsSwitch("-bin", "BIN"));
    EXPECT_TRUE(zv::IsSwitch("/BIN", "BIN")) << "no such path: the switch";
    EXPECT_FALSE(zv::IsSwitch("/bin", "BIN")) << "an existing path is a file name";
}

TEST(ArgumentPass, BinAndHexOrder) {
    Pass bin;
    bin.Run({"/HEX", "/BIN", "f"});
    EXPECT_TRUE(bin.host.opened[0].flags.binary && bin.host.opened[0].flags.hex);
    Pass hex;
    hex.Run({"/BIN", "/HEX", "f"});
    EXPECT_TRUE(hex.host.opened[0].flags.hex);
    EXPECT_FALSE(hex.host.opened[0].flags.binary) << "/HEX clears binary";
}

TEST(ArgumentPass, NonNumericValueEndsThePassBeforeAnyFileOpens) {
    Pass p;
    EXPECT_THROW(p.Run({"a.txt", "/CP=abc", "b.txt"}), zv::EConvertError);
    EXPECT_TRUE(p.host.opened.empty());
    Pass l;
    EXPECT_THROW(l.Run({"/L:x1"}), zv::EConvertError);
    Pass bare;
    bare.Run({"/L", "/CP", "a"});
    EXPECT_EQ(bare.state.FLine, 0) << "without its separator the switch changes nothing";
    EXPECT_EQ(bare.host.opened.at(0).flags.codePage, 50001);
    EXPECT_FALSE(bare.host.opened.at(0).flags.close) << "/CP is not taken for /C";
    for (const char* empty : {"/CP=", "-L:"}) {
        Pass withEmpty;
        EXPECT_THROW(withEmpty.Run({"a", empty}), zv::EConvertError)
            << "an empty value is no number";
    }
}

TEST(ArgumentPass, DirConsumesItsValueAndSettingsIsSkipped) {
    const auto dir = fs::temp_directory_path();
    Pass p;
    p.Run({"/DIR", "/no/such/folder", "/SETTINGS", "my.ini", "a"});
    EXPECT_EQ(Paths(p.host), std::vector<std::string>{"a"});
    EXPECT_EQ(p.state.FDefaultSavePath, "");
    Pass ok;
    ok.Run({"/DIR", dir.string()});
    EXPECT_EQ(ok.state.FDefaultSavePath, dir.string());
    EXPECT_TRUE(ok.host.opened.empty());
}

TEST(ArgumentPass, CloseTurnsLaterNamesIntoClosing) {
    Pass p;
    p.Run({"a", "/C", "b", "c"});
    EXPECT_EQ(p.host.closed, (std::vector<std::string>{"b", "c"}));
    ASSERT_EQ(Paths(p.host), std::vector<std::string>{"a"});
    EXPECT_TRUE(p.host.opened[0].flags.close) << "flags are the pass's final ones";
}

TEST(ArgumentPass, MaskOpensMatchesAtOnceWithFlagsSoFar) {
    const auto dir = fs::temp_directory_path() / "zv-mask-test";
    fs::remove_all(dir);
    fs::create_directories(dir / "sub*dir");
    for (auto name : {"one.log", "two.log", "three.txt"})
        std::ofstream(dir / name) << "x";
    Pass p;
    p.Run({"z.txt", "/BIN", (dir / "*.log").string(), "/R", (dir / "sub*dir" / "f").string()});
    ASSERT_EQ(p.host.opened.size(), 4u);
    EXPECT_EQ(p.host.opened[0].path, (dir / "one.log").string());
    EXPECT_EQ(p.host.opened[1].path, (dir / "two.log").string());
    EXPECT_TRUE(p.host.opened[0].flags.hex);
    EXPECT_FALSE(p.host.opened[0].flags.binary) << "a mask passes binary as false";
    EXPECT_FALSE(p.host.opened[0].flags.readOnly) << "flags seen so far only";
    EXPECT_EQ(p.host.opened[2].path, (dir / "sub*dir" / "f").string())
        << "a star in the folder part is a plain name, collected";
    EXPECT_TRUE(p.host.opened[3].flags.readOnly);
    fs::remove_all(dir);
}

TEST(ArgumentPass, FirstPlaceSwitches) {
    Pass multi;
    multi.Run({"/MULTI", "/SILENT", "a"});
    EXPECT_TRUE(multi.state.FSilent);
    EXPECT_EQ(Paths(multi.host), std::vector<std::string>{"a"});

    Pass compare;
    compare.Run({"/COMPARE", "x", "y"});
    EXPECT_TRUE(compare.state.FCompareRequested);
    EXPECT_EQ(compare.state.FCompareFile1, "x");
    EXPECT_EQ(compare.state.FCompareFile2, "y");
    EXPECT_TRUE(compare.host.opened.empty()) << "the pass ends: compare opens the two itself";

    Pass short_;
    short_.Run({"/COMPARE", "x"});
    EXPECT_FALSE(short_.state.FCompareRequested) << "two arguments are not a compare";
    EXPECT_EQ(Paths(short_.host), (std::vector<std::string>{"/COMPARE", "x"}));

    Pass later;
    later.Run({"a", "/MULTI"});
    EXPECT_EQ(Paths(later.host), (std::vector<std::string>{"/MULTI", "a"}))
        << "first-place switches elsewhere are file names";
}

TEST(ArgumentPass, CrashFilesAndRestart) {
    Pass ask;
    ask.host.crashFiles = true;
    ask.Run({"a"});
    EXPECT_EQ(ask.host.crashOpens, std::vector<bool>{true});
    Pass restart;
    restart.host.crashFiles = true;
    restart.Run({"/RESTART"});
    EXPECT_EQ(restart.host.crashOpens, std::vector<bool>{false});
}

TEST(NoReopenScan, LastArgumentIsNotLookedAt) {
    EXPECT_FALSE(zv::ScanNoReopen({"prog", "a", "/NOREOPEN"}));
    EXPECT_TRUE(zv::ScanNoReopen({"prog", "/noreopen", "a"}));
    EXPECT_TRUE(zv::ScanNoReopen({"prog", "x/NoReOpenY", "a"})) << "found inside an argument";
    EXPECT_TRUE(zv::ScanNoReopen({"/x/NOREOPEN/zevrit", "a"})) << "the program path is scanned";
}

TEST(HandOverPass, KnowsItsSwitchesOnlyAndKeepsTheLine) {
    RecordingHost host;
    zv::TCommandLineState state;
    state.FLine = 7;
    zv::RunHandOverPass("/BIN|/R|/home/u/b.txt|/home/u/a.txt|", host, state);
    ASSERT_EQ(Paths(host), (std::vector<std::string>{"/BIN", "/home/u/a.txt", "/home/u/b.txt"}));
    EXPECT_TRUE(host.opened[0].flags.readOnly);
    EXPECT_FALSE(host.opened[0].flags.binary) << "/BIN is a file name in a hand-over";
    EXPECT_EQ(state.FLine, 7) << "FLine is not reset by a hand-over";

    RecordingHost stop;
    zv::RunHandOverPass("a||b|", stop, state);
    EXPECT_EQ(Paths(stop), std::vector<std::string>{"a"}) << "an empty token ends the loop";
}

TEST(ParamString, ExpandsNamesAndKeepsSwitches) {
    EXPECT_EQ(zv::BuildParamString({"a.txt", "/R", "-L:3", "../b.c", "/abs/c"}, "/home/u/w"),
              "/home/u/w/a.txt|/R|-L:3|/home/u/b.c|/abs/c|");
    EXPECT_EQ(zv::BuildParamString({"x--y", "a"}, "/w"), "/w/x--y|/w/a|");
    EXPECT_EQ(zv::BuildParamString({"x--y", "a", "b"}, "/w"), "");
    EXPECT_TRUE(zv::HasMultiSwitch({"prog", "a", "-Multi"}));
    EXPECT_FALSE(zv::HasMultiSwitch({"/multi", "a"}));
}

TEST(ParamString, RoundTripsThroughTheHandOverPass) {
    RecordingHost host;
    zv::TCommandLineState state;
    zv::RunHandOverPass(zv::BuildParamString({"/CP=1251", "n.txt", "/L:4"}, "/w"), host, state);
    ASSERT_EQ(Paths(host), std::vector<std::string>{"/w/n.txt"});
    EXPECT_EQ(host.opened[0].flags.codePage, 1251);
    EXPECT_EQ(state.FLine, 4);
}

} // namespace
