// Settings files used from several threads at once: the file read and written at every
// call loses no key, and an in-memory file may be read by many threads. CI runs this
// program again under ThreadSanitizer.
#include "IniTestSupport.h"

#include "shell/DiskIniFiles.h"

#include <atomic>
#include <thread>

namespace zv {
namespace {

// Threads sharing one object and threads with objects of their own, on the same file,
// while another thread reads.
TEST(IniFileUTF16, ThreadsWritingAtOnceLoseNoKey) {
    test::TTempDir dir;
    const auto file = dir / "Shared.ini";
    TIniFileUTF16 shared(file);
    std::vector<std::thread> threads;
    for (const char* writer : {"a", "b"})
        threads.emplace_back([&shared, writer] { test::WriteKeys(shared, writer); });
    for (const char* writer : {"c", "d"})
        threads.emplace_back([&file, writer] {
            TIniFileUTF16 own(file);
            test::WriteKeys(own, writer);
        });
    std::atomic<int> shrunk{0};
    threads.emplace_back([&shared, &shrunk] { // keys are only added: never fewer seen
        size_t seen = 0;
        for (int i = 0; i < 20; ++i) {
            const size_t now = shared.ReadSection("Shared").size();
            shrunk += now < seen;
            seen = std::max(seen, now);
        }
    });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(shrunk.load(), 0);
    test::ExpectAllKeys(shared, {"a", "b", "c", "d"});
    EXPECT_TRUE(shared.UpdateFile());
    EXPECT_EQ(test::ReadAll(file).substr(0, 2), "\xFF\xFE");
}

// The plain file class shares the same locking: erasing and writing from two threads
// leaves exactly the keys written after the last erase of each section.
TEST(ZvIniFile, ThreadsChangingSeparateSectionsKeepEachOthersKeys) {
    test::TTempDir dir;
    const auto file = dir / "Plain.ini";
    std::vector<std::thread> threads;
    for (const char* section : {"One", "Two", "Three"})
        threads.emplace_back([&file, section] {
            TZvIniFile ini(file);
            for (int round = 0; round < 5; ++round) {
                ini.EraseSection(section);
                for (int i = 0; i <= round; ++i)
                    ini.WriteInteger(section, "K" + std::to_string(i), round);
            }
        });
    for (auto& thread : threads)
        thread.join();
    const TZvIniFile ini(file);
    for (const char* section : {"One", "Two", "Three"}) {
        EXPECT_EQ(ini.ReadSection(section).size(), 5u) << section;
        EXPECT_EQ(ini.ReadInteger(section, "K0", -1), 4) << section;
    }
}

// Const reads change nothing, so threads may share one in-memory file (syntax companions
// are read by the scanner thread and the main thread at once).
TEST(MemIniFile, ThreadsReadOneFileAtOnce) {
    TMemIniFileW ini;
    for (int i = 0; i < 200; ++i)
        ini.WriteInteger("Keywords", "Key" + std::to_string(i), i);
    std::vector<std::thread> readers;
    std::atomic<int> wrong{0};
    for (int t = 0; t < 4; ++t)
        readers.emplace_back([&] {
            for (int i = 0; i < 200; ++i)
                if (ini.ReadInteger("keywords", "KEY" + std::to_string(i), -1) != i)
                    ++wrong;
        });
    for (auto& reader : readers)
        reader.join();
    EXPECT_EQ(wrong.load(), 0);
}

} // namespace
} // namespace zv
