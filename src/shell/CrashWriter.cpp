// The crash session's writing thread.
#include "shell/CrashWriter.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/Streams.h"
#include "common/AtomicFile.h"
#include "common/Trace.h"

#include <sys/stat.h>

#include <algorithm>
#include <utility>

namespace zv {
namespace fs = std::filesystem;

bool WriteExactText(const fs::path& file, TZvMemoStrings& lines) {
    lines.SetCodePage(cpUTF16LE);
    lines.SetUseBOM(true);
    const auto write = [&lines](int fd) {
        TZvFdOutStream out(fd);
        lines.SaveTextToStream(out);
        out.Flush();
        return true;
    };
    if (!WriteFileAtomically(file, write))
        return false;
    ::chmod(file.c_str(), 0600);
    return true;
}

void RemoveTextsBut(const fs::path& folder, const std::set<std::string>& kept) {
    std::error_code ec;
    std::vector<fs::path> stale;
    for (const auto& entry : fs::directory_iterator(folder, ec))
        if (entry.path().extension() == ".txt" && !kept.contains(entry.path().filename()))
            stale.push_back(entry.path());
    for (const fs::path& path : stale)
        fs::remove(path, ec);
}

TCrashWriter::TCrashWriter() : FThread([this] { Run(); }) {}

TCrashWriter::~TCrashWriter() {
    {
        std::lock_guard lock(FMutex);
        FStop = true;
        FWaiting.reset();
    }
    FWake.notify_all();
    FThread.join();
}

void TCrashWriter::Post(TCrashJob job) {
    {
        std::lock_guard lock(FMutex);
        // The job replaced still carries texts the new one counts as handed over already.
        if (FWaiting)
            for (auto& text : FWaiting->Texts)
                if (std::none_of(job.Texts.begin(), job.Texts.end(),
                                 [&](const auto& t) { return t.first == text.first; }))
                    job.Texts.push_back(std::move(text));
        FWaiting = std::make_unique<TCrashJob>(std::move(job));
    }
    FWake.notify_all();
}

void TCrashWriter::Wait() {
    std::unique_lock lock(FMutex);
    FIdle.wait(lock, [this] { return !FBusy && !FWaiting; });
}

std::set<std::string> TCrashWriter::TakeFailed() {
    std::lock_guard lock(FMutex);
    return std::exchange(FFailed, {});
}

int TCrashWriter::TextsWritten() const {
    std::lock_guard lock(FMutex);
    return FTextsWritten;
}

void TCrashWriter::Run() {
    std::unique_lock lock(FMutex);
    for (;;) {
        FWake.wait(lock, [this] { return FStop || FWaiting; });
        if (FStop)
            return;
        std::unique_ptr<TCrashJob> job = std::move(FWaiting);
        FBusy = true;
        lock.unlock();
        Execute(*job);
        job.reset(); // the row copies go here, off the main thread
        lock.lock();
        FBusy = false;
        if (!FWaiting)
            FIdle.notify_all();
    }
}

void TCrashWriter::Execute(TCrashJob& job) {
    std::error_code ec;
    std::set<std::string> failed, kept;
    if (!job.List) {
        fs::remove(job.Folder / "Crash.ini", ec);
        RemoveTextsBut(job.Folder, kept);
        return;
    }
    fs::create_directories(job.Folder, ec);
    ::chmod(job.Folder.c_str(), 0700);
    int written = 0;
    for (const auto& [name, rows] : job.Texts) {
        if (WriteExactText(job.Folder / name, *rows)) {
            ++written;
        } else {
            Trace("CrashSave() - cannot keep " + name);
            failed.insert(name);
        }
    }
    // The list names only texts on disk; a text whose write failed keeps its former file
    // when it had one (an older text beats none).
    for (const auto& name : job.List->ReadSections()) {
        const std::string section(name.begin(), name.end());
        const std::string file = job.List->ReadString(section, "Name", std::string_view());
        if (failed.contains(file) && !fs::exists(job.Folder / file, ec))
            job.List->EraseSection(section);
        else
            kept.insert(file);
    }
    if (job.List->UpdateFile())
        ::chmod(job.List->FileName().c_str(), 0600);
    RemoveTextsBut(job.Folder, kept);
    std::lock_guard lock(FMutex);
    FTextsWritten += written;
    FFailed.insert(failed.begin(), failed.end());
}

} // namespace zv
