// TCrashWriter: the thread that writes the crash session's files, so that encoding and
// writing a large text never holds up typing. The main thread hands it a job (copies of the
// rows to write, sharing their text, and the list file); a newer job waits behind the running
// one and takes over a job still waiting, with the texts only that one carried.
#pragma once

#include "ZvMemoControl/ZvMemoStrings.h"
#include "shell/ZvIniFiles.h"

#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace zv {

struct TCrashJob {
    std::filesystem::path Folder;
    // Texts to write: file name and a copy of the rows (the main thread's rows may change
    // meanwhile; the copy shares their text, copy on write).
    std::vector<std::pair<std::string, std::unique_ptr<TZvMemoStrings>>> Texts;
    // The list of kept texts; its sections name each text by "Name". Null: nothing is
    // modified, the list and the texts go.
    std::unique_ptr<TMemIniFileW> List;
};

class TCrashWriter {
public:
    TCrashWriter();
    // Ends the thread after the job under way (a waiting one is dropped).
    ~TCrashWriter();
    TCrashWriter(const TCrashWriter&) = delete;
    TCrashWriter& operator=(const TCrashWriter&) = delete;

    // Any thread. Queues `job` in place of one still waiting, taking over that one's texts
    // that `job` has no newer copy of.
    void Post(TCrashJob job);
    // Returns once no job runs or waits.
    void Wait();
    // Names of texts whose write failed since the last call (to be written again).
    std::set<std::string> TakeFailed();
    // Texts encoded and written so far.
    int TextsWritten() const;

private:
    void Run();
    void Execute(TCrashJob& job);

    mutable std::mutex FMutex;
    std::condition_variable FWake, FIdle;
    std::unique_ptr<TCrashJob> FWaiting; // guarded by FMutex
    bool FBusy = false;                  // guarded by FMutex
    bool FStop = false;                  // guarded by FMutex
    std::set<std::string> FFailed;       // guarded by FMutex
    int FTextsWritten = 0;               // guarded by FMutex
    std::thread FThread;                 // last: started once the rest is set up
};

// Removes the texts (".txt") in `folder` whose names are not in `kept`.
void RemoveTextsBut(const std::filesystem::path& folder, const std::set<std::string>& kept);

// Writes the rows as UTF-16LE with a BOM and each line end as it stands (exact, whatever
// the document's own encoding can hold), atomically, mode 0600, streaming. `lines` is a copy
// owned by the caller: its code page becomes UTF-16LE with a BOM (no second copy is made).
bool WriteExactText(const std::filesystem::path& file, TZvMemoStrings& lines);

} // namespace zv
