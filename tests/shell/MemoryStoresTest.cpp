// The stores of what the program remembers between runs, by their files on disk: the memory
// per file survives a write and a read unchanged (read back by xmllint as well), keeps the
// newest entries, never writes keys for what it does not store, and a damaged file is kept
// aside; the recent lists follow their rules; sessions and the reopen list round-trip.
#include "shell/DocumentMemory.h"
#include "shell/FileQue.h"
#include "shell/MruList.h"
#include "shell/Sessions.h"
#include "support/ZvTestSupport.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>

namespace fs = std::filesystem;

namespace {

// A path of random segments, with the characters XML must escape, blanks and non-ASCII.
std::string RandomPath(std::mt19937& random) {
    static const std::vector<std::string> pieces = {"a", "Zz", " ",    "&", "<", ">", "\"",
                                                    "'", "é",  "日本", "-", ".", "|", "x9"};
    std::string path;
    const int segments = 1 + static_cast<int>(random() % 4);
    for (int s = 0; s < segments; ++s) {
        path += '/';
        const int length = 1 + static_cast<int>(random() % 6);
        for (int i = 0; i < length; ++i)
            path += pieces[random() % pieces.size()];
    }
    return path;
}

zv::TFileInfo RandomEntry(std::mt19937& random) {
    zv::TFileInfo info;
    info.LocalFile = RandomPath(random);
    info.DateTime = static_cast<std::int64_t>(random() % 4'000'000'000u);
    auto coin = [&] { return random() % 2 == 0; };
    auto number = [&] { return static_cast<std::int32_t>(random() % 100000); };
    if (coin())
        info.Cursor =
            zv::TCursorInfo{number(), number(), number(), number(), number(), number(), number()};
    if (coin())
        info.Enc = static_cast<std::uint32_t>(random() % 70000);
    if (coin())
        info.BOM = coin();
    if (coin())
        info.Highlighter = coin() ? "C++" : "HTML & <XML>";
    if (coin())
        info.ReadOnly = coin();
    if (coin()) {
        zv::TMarksInfo marks;
        for (auto& line : marks.Bookmarks)
            line = coin() ? -1 : number();
        for (int i = static_cast<int>(random() % 4); i > 0; --i)
            marks.Linemarks.push_back(number());
        info.Marks = marks;
    }
    if (coin())
        info.FoldLines = std::vector<std::int32_t>{number(), number()};
    return info;
}

// xmllint's answer to an XPath expression on the file: an oracle that is not pugixml.
std::string XPath(const fs::path& file, const std::string& expression) {
    QProcess lint;
    lint.start("xmllint", {"--xpath", QString::fromStdString(expression),
                           QString::fromStdString(file.string())});
    if (!lint.waitForFinished(10000))
        return "<xmllint did not finish>";
    std::string out = lint.readAllStandardOutput().toStdString();
    if (!out.empty() && out.back() == '\n')
        out.pop_back(); // xmllint ends its answer with a line end
    return out;
}

class FileQueStore : public ::testing::Test {
protected:
    zvtest::TTempDir temp{"zv-fileq"};
    const fs::path file = temp / "Data" / "FileInfo.xml";
    std::mt19937 random{20261125};
};

TEST_F(FileQueStore, RandomEntriesComeBackUnchangedFromTheFile) {
    for (int round = 0; round < 40; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        fs::remove(file);
        zv::TFileQue written(file, {});
        const int count = static_cast<int>(random() % 30);
        for (int i = 0; i < count; ++i)
            written.AddFiledata(RandomEntry(random));
        ASSERT_TRUE(written.SaveFile());
        zv::TFileQue read(file, {});
        ASSERT_EQ(read.LoadList(), zv::TFileQueLoad::Loaded);
        EXPECT_EQ(read.Entries(), written.Entries());
        if (round % 8 != 0)
            continue; // xmllint is slow to start: a few rounds are enough
        EXPECT_EQ(XPath(file, "count(/Files/File)"), std::to_string(written.Entries().size()));
        for (size_t i = 0; i < written.Entries().size(); ++i)
            EXPECT_EQ(XPath(file, "string(/Files/File[" + std::to_string(i + 1) + "]/LocalFile)"),
                      written.Entries()[i].LocalFile);
    }
}

TEST_F(FileQueStore, KeepsTheNewestEntriesUpToItsCapacity) {
    for (int round = 0; round < 30; ++round) {
        zv::TFileQueOptions options;
        options.MaxIndex = 1 + static_cast<int>(random() % 8);
        zv::TFileQue store(file, options);
        std::vector<std::string> model; // newest first, as the user opened and closed them
        for (int i = 0; i < 60; ++i) {
            zv::TFileInfo info;
            info.LocalFile = "/f" + std::to_string(random() % 12);
            store.AddFiledata(info);
            std::erase(model, info.LocalFile);
            model.insert(model.begin(), info.LocalFile);
        }
        model.resize(std::min(model.size(), static_cast<size_t>(options.MaxIndex)));
        ASSERT_TRUE(store.SaveFile());
        zv::TFileQue read(file, options);
        read.LoadList();
        std::vector<std::string> paths;
        for (const auto& entry : read.Entries())
            paths.push_back(entry.LocalFile);
        EXPECT_EQ(paths, model) << "capacity " << options.MaxIndex;
    }
}

TEST_F(FileQueStore, WritesOnlyWhatItStores) {
    zv::TFileQueOptions options;
    options.StoreCursor = options.StoreEncoding = options.StoreBookmarks = false;
    options.StoreFoldState = false;
    zv::TFileQue store(file, options);
    zv::TFileInfo info = RandomEntry(random);
    info.Cursor = zv::TCursorInfo{1, 2, 3, 4, 5, 6, 7};
    info.Enc = 1252;
    info.BOM = true;
    info.Highlighter = "C";
    info.ReadOnly = false;
    info.Marks = zv::TMarksInfo{};
    info.FoldLines = std::vector<std::int32_t>{3};
    ASSERT_TRUE(store.AddFiledata(info));
    ASSERT_TRUE(store.SaveFile());
    const std::string bytes = zvtest::ReadAll(file);
    for (const char* key : {"CurX", "TopLine", "SelEndY", "Enc", "BOM", "FoldLines", "SelFoldLines",
                            "RegionLines", "BookmarkLines", "LinemarkLines", "HexView", "Wordwrap",
                            "RightMargin", "HighlightedExpressions", "EncXML", "RemoteFile"})
        EXPECT_EQ(bytes.find(std::string("<") + key), std::string::npos) << key << "\n" << bytes;
    EXPECT_EQ(XPath(file, "string(/Files/File/Highlighter)"), "C");
    EXPECT_EQ(XPath(file, "string(/Files/File/ReadOnly)"), "0");
}

TEST_F(FileQueStore, RefusesWhatXmlCannotCarryBack) {
    zv::TFileQue store(file, {});
    for (const std::string path :
         {"relative/a.txt", "New.txt", "", "/a\nb", "/a\rb", "/a\x01", "/bad\xff utf8"}) {
        zv::TFileInfo info;
        info.LocalFile = path;
        EXPECT_FALSE(store.AddFiledata(info)) << path;
    }
    EXPECT_TRUE(store.Entries().empty());
}

TEST_F(FileQueStore, ADamagedFileIsKeptAsideAndTheMemoryStartsEmpty) {
    zv::TFileQue good(file, {});
    for (int i = 0; i < 5; ++i)
        good.AddFiledata(RandomEntry(random));
    ASSERT_TRUE(good.SaveFile());
    const std::string valid = zvtest::ReadAll(file);
    const std::vector<std::string> damaged = {
        valid.substr(0, valid.size() / 2), "\x00\x01garbage", "<Other><File/></Other>",
        "<Files><File><LocalFile>/a</LocalFile></Files>", valid + "<Files/>"};
    std::vector<fs::path> copies;
    for (const std::string& bytes : damaged) {
        SCOPED_TRACE(bytes.substr(0, 40));
        zvtest::WriteAll(file, bytes);
        zv::TFileQue store(file, {});
        ASSERT_EQ(store.LoadList(), zv::TFileQueLoad::Damaged);
        EXPECT_TRUE(store.Entries().empty());
        EXPECT_FALSE(fs::exists(file));
        EXPECT_EQ(zvtest::ReadAll(store.DamagedCopy()), bytes) << "kept byte for byte";
        EXPECT_EQ(std::count(copies.begin(), copies.end(), store.DamagedCopy()), 0)
            << "an earlier copy is never overwritten";
        copies.push_back(store.DamagedCopy());
    }
}

TEST_F(FileQueStore, ADamagedFileThatCannotBeKeptAsideIsNeverWrittenOver) {
    // A name so long that the suffixed copy's name exceeds what the file system allows.
    const fs::path longName = temp / std::string(250, 'm');
    zvtest::WriteAll(longName, "<Files>");
    zv::TFileQue store(longName, {});
    ASSERT_EQ(store.LoadList(), zv::TFileQueLoad::Damaged);
    EXPECT_EQ(store.DamagedCopy(), longName);
    store.AddFiledata(RandomEntry(random));
    EXPECT_FALSE(store.SaveFile());
    EXPECT_EQ(zvtest::ReadAll(longName), "<Files>");
}

// The recent list against a model of its rules, over random additions and removals.
TEST(RecentList, FollowsItsRulesAndSurvivesItsFile) {
    zvtest::TTempDir temp{"zv-mru"};
    std::mt19937 random(7);
    const std::vector<std::string> names = {"/a.txt",    "/b/c d.txt", "/é.txt",
                                            "rel/x.txt", "bare.txt",   "/srv/l.txt|/remote/l.txt",
                                            "",          "/e\nf",      "/g\rh"};
    for (int round = 0; round < 20; ++round) {
        const int capacity = 1 + static_cast<int>(random() % 5);
        zv::TZvMRUList list(temp / "MRU.txt", capacity);
        list.LoadList();
        list.ClearList();
        std::vector<std::string> model;
        for (int step = 0; step < 40; ++step) {
            const std::string& path = names[random() % names.size()];
            if (random() % 5 == 0) {
                list.RemovePath(path);
                std::erase(model, path);
                continue;
            }
            const bool taken = !path.empty() && path.find_first_of("\r\n") == std::string::npos &&
                               (path[0] == '/' || path.find('|') != std::string::npos);
            EXPECT_EQ(list.AddFile(path), taken) << path;
            if (!taken)
                continue;
            std::erase(model, path);
            model.insert(model.begin(), path);
            if (static_cast<int>(model.size()) > capacity)
                model.resize(static_cast<size_t>(capacity));
        }
        EXPECT_EQ(list.Items(), model);
        ASSERT_TRUE(list.SaveList());
        zv::TZvMRUList read(temp / "MRU.txt", capacity);
        read.LoadList();
        EXPECT_EQ(read.Items(), model);
    }
}

TEST(RecentList, DropsMissingFilesOnlyWhenAskedAndShowsAtMostItsDisplayCount) {
    zvtest::TTempDir temp{"zv-mru"};
    const std::string there = (temp / "there.txt").string(), gone = (temp / "gone.txt").string();
    zvtest::WriteAll(there, "x");
    const std::string remote = gone + "|/srv/gone.txt";
    zv::TZvMRUList list(temp / "MRU.txt", 10);
    for (const auto& path : {there, gone, remote})
        list.AddFile(path);
    EXPECT_EQ(list.RefreshList(2, false), (std::vector<std::string>{remote, gone}));
    EXPECT_EQ(list.Items().size(), 3u) << "a missing file stays listed";
    EXPECT_EQ(list.RefreshList(10, true), (std::vector<std::string>{remote, there}));
}

TEST(SavedDocumentLists, SessionsAndTheReopenListRoundTrip) {
    zvtest::TTempDir temp{"zv-sessions"};
    zv::TSessions sessions(temp / "Sessions.ini");
    const std::vector<std::vector<std::string>> views = {{"/a b.txt", "/é/c.txt"}};
    EXPECT_TRUE(sessions.Save("work", "my work", views));
    EXPECT_TRUE(sessions.Save("empty", "", {}));
    for (const std::string bad : {"", " ", "a]b", "[x", "a\nb"})
        EXPECT_FALSE(sessions.Save(bad, "", views)) << bad;
    zv::TSessions read(temp / "Sessions.ini");
    EXPECT_EQ(read.Names(), (std::vector<std::string>{"work", "empty"}));
    EXPECT_EQ(read.Files("work"), views);
    EXPECT_EQ(read.Description("work"), "my work");
    EXPECT_EQ(read.Description("empty"), "<No description>");
    EXPECT_TRUE(read.Delete("work"));
    EXPECT_FALSE(read.Delete("work"));
    EXPECT_EQ(zv::TSessions(temp / "Sessions.ini").Names(), std::vector<std::string>{"empty"});

    const zv::TOpenFiles open{{{"/x.txt", "/y z.txt", "/日本.txt"}}, 0, 2};
    ASSERT_TRUE(zv::SaveLastOpenFiles(temp / "_reopen.txt", open));
    EXPECT_EQ(zv::LoadLastOpenFiles(temp / "_reopen.txt"), open);
    EXPECT_TRUE(zv::LoadLastOpenFiles(temp / "missing.txt").Views.empty());
}

// Paths with what the settings-file form treats specially: "=", ";", brackets, blanks at
// either end, "|".
TEST(SavedDocumentLists, RandomPathsRoundTripOrAreLeftOutWhole) {
    zvtest::TTempDir temp{"zv-sessions"};
    std::mt19937 random(99);
    const std::vector<std::string> pieces = {"a", "=", ";", "[", "]", " ", "|", "é", "#", "x"};
    for (int round = 0; round < 30; ++round) {
        std::vector<std::string> paths;
        const int count = static_cast<int>(random() % 8);
        for (int i = 0; i < count; ++i) {
            std::string path = "/";
            for (int n = 1 + static_cast<int>(random() % 8); n > 0; --n)
                path += pieces[random() % pieces.size()];
            paths.push_back(path);
        }
        const zv::TOpenFiles open{{paths}, 0, count - 1};
        ASSERT_TRUE(zv::SaveLastOpenFiles(temp / "_reopen.txt", open));
        const zv::TOpenFiles back = zv::LoadLastOpenFiles(temp / "_reopen.txt");
        EXPECT_EQ(back.Views.empty() ? std::vector<std::string>{} : back.Views[0], paths);
        EXPECT_EQ(back.PageIndex, open.PageIndex);

        zv::TSessions sessions(temp / "Sessions.ini");
        ASSERT_TRUE(sessions.Save("s", "", {paths}));
        std::vector<std::string> storable;
        std::copy_if(paths.begin(), paths.end(), std::back_inserter(storable),
                     [](const std::string& p) { return p.find('|') == std::string::npos; });
        const auto views = sessions.Files("s");
        EXPECT_EQ(views.empty() ? std::vector<std::string>{} : views[0], storable);
    }
}

TEST(ReopenAtStart, HonoursTheOptionNoReopenAndSilent) {
    using V = std::vector<std::string>;
    EXPECT_TRUE(zv::WantsReopen(V{"zevrit"}, true));
    EXPECT_FALSE(zv::WantsReopen(V{"zevrit"}, false));
    EXPECT_TRUE(zv::WantsReopen(V{"zevrit", "a.txt"}, true));
    for (const V& argv : {V{"zevrit", "-NOREOPEN"}, V{"zevrit", "/noreopen", "a.txt"},
                          V{"zevrit", "a.txt", "-NoReopen"}, V{"zevrit", "-SILENT"},
                          V{"zevrit", "-MULTI", "/silent", "a.txt"}})
        EXPECT_FALSE(zv::WantsReopen(argv, true)) << argv[1];
}

} // namespace
