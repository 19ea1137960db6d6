// Writing and restoring the crash session of unsaved text.
#include "shell/CrashKeeper.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "common/AtomicFile.h"
#include "common/Trace.h"
#include "shell/MainFormHelper.h"
#include "shell/ZvIniFiles.h"

#include <atomic>
#include <charconv>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace zv {
namespace fs = std::filesystem;

namespace {

std::string Section(int n) {
    return "Doc" + std::to_string(n);
}

// A file stamp as keys "DateTime" (modification time in ns), "Size", "Inode", "Exists".
void WriteStamp(TMemIniFileW& list, const std::string& section, const TFileStamp& stamp) {
    list.WriteBool(section, "Exists", stamp.Exists);
    list.WriteString(section, "DateTime", std::to_string(stamp.MTimeNs));
    list.WriteString(section, "Size", std::to_string(stamp.Size));
    list.WriteString(section, "Inode", std::to_string(stamp.Inode));
}

std::int64_t ReadNumber(const TMemIniFileW& list, const std::string& section, const char* key) {
    const std::string text = list.ReadString(section, key, std::string_view("0"));
    std::int64_t value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

TFileStamp ReadStamp(const TMemIniFileW& list, const std::string& section) {
    TFileStamp stamp;
    stamp.Exists = list.ReadBool(section, "Exists", false);
    stamp.MTimeNs = ReadNumber(list, section, "DateTime");
    stamp.Size = ReadNumber(list, section, "Size");
    stamp.Inode = static_cast<std::uint64_t>(ReadNumber(list, section, "Inode"));
    return stamp;
}

// An exclusive lock on `folder`/lock, made when missing; -1 when another run holds it.
int TryLockFolder(const fs::path& folder) {
    const int fd = ::open((folder / "lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0)
        return -1;
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        ::close(fd);
        return -1;
    }
    return fd;
}

std::atomic<int> gKeepers{0}; // several keepers of one process get folders of their own

} // namespace

TCrashKeeper::TCrashKeeper(TMainFormHelper& helper, fs::path root)
    : FHelper(helper), FRoot(std::move(root)),
      FOwn(FRoot / ("run-" + std::to_string(::getpid()) + "-" + std::to_string(++gKeepers))) {
    FTimer.setSingleShot(true);
    FTimer.setInterval(kDelayMs);
    connect(&FTimer, &QTimer::timeout, this, &TCrashKeeper::WriteNow);
}

TCrashKeeper::~TCrashKeeper() {
    FWriter.Wait();
    for (TFormer& former : FFormer)
        Release(former);
    if (FOwnLock >= 0)
        ::close(FOwnLock); // the folder stays: the next start finds it unlocked
}

void TCrashKeeper::TextChanged() {
    if (!FTimer.isActive())
        FTimer.start(); // not restarted by each key: no edit waits longer than kDelayMs
}

bool TCrashKeeper::LockOwnFolder() {
    if (FOwnLock >= 0)
        return true;
    std::error_code ec;
    fs::create_directories(FOwn, ec);
    ::chmod(FRoot.c_str(), 0700);
    ::chmod(FOwn.c_str(), 0700);
    FOwnLock = TryLockFolder(FOwn);
    return FOwnLock >= 0;
}

void TCrashKeeper::ForgetFailedWrites() {
    const std::set<std::string> failed = FWriter.TakeFailed();
    for (auto& [doc, kept] : FKept)
        if (failed.contains(kept.Name))
            kept.StoreId = kept.Revision = 0; // written again next time
}

void TCrashKeeper::WriteNow() {
    FTimer.stop();
    ForgetFailedWrites();
    TCrashJob job;
    job.Folder = FOwn;
    auto list = TMemIniFileW::Replacing(FOwn / "Crash.ini", TIniEncoding::Utf8);
    std::unordered_map<const TDocument*, TKept> kept;
    int n = 0;
    for (const auto& doc : FHelper.Documents()) {
        if (!doc->Modified() || doc->FDeferred)
            continue;
        const auto found = FKept.find(doc.get());
        TKept entry = found != FKept.end() ? found->second : TKept{};
        if (entry.Name.empty())
            entry.Name = "Text" + std::to_string(FNextName++) + ".txt";
        const TZvMemoStrings& lines = doc->Lines();
        if (entry.StoreId != lines.StoreId() || entry.Revision != lines.Revision()) {
            auto copy = std::make_unique<TZvMemoStrings>();
            copy->Assign(lines); // shares the rows' text: the writer encodes the copy
            job.Texts.emplace_back(entry.Name, std::move(copy));
            entry.StoreId = lines.StoreId();
            entry.Revision = lines.Revision();
        }
        const std::string section = Section(++n);
        list->WriteString(section, "Name", entry.Name);
        list->WriteString(section, "Path", doc->FFilePath);
        list->WriteBool(section, "Modified", true);
        list->WriteBool(section, "New", doc->FIsNew);
        WriteStamp(*list, section, doc->FStamp);
        list->WriteInteger(section, "CodePage", static_cast<int32_t>(lines.CodePage()));
        list->WriteBool(section, "BOM", lines.UseBOM());
        list->WriteInteger(section, "LineEnds", static_cast<int32_t>(lines.SysTextType()));
        list->WriteInteger(section, "CaretX", doc->FCaretX);
        list->WriteInteger(section, "CaretY", doc->FCaretY);
        kept.emplace(doc.get(), std::move(entry));
    }
    FKept = std::move(kept);
    if (n > 0) {
        if (!LockOwnFolder()) {
            Trace("CrashSave() - cannot lock " + FOwn.string());
            FKept.clear();
            return;
        }
        job.List = std::move(list);
    } else if (FOwnLock < 0) {
        return; // nothing was ever kept
    }
    FWriter.Post(std::move(job));
}

void TCrashKeeper::ClaimFormer() {
    if (FClaimed)
        return;
    FClaimed = true;
    std::error_code ec;
    std::vector<fs::path> folders;
    for (const auto& entry : fs::directory_iterator(FRoot, ec))
        if (entry.is_directory(ec) && entry.path().filename().string().starts_with("run-") &&
            entry.path() != FOwn)
            folders.push_back(entry.path());
    for (const fs::path& folder : folders) {
        const int fd = TryLockFolder(folder);
        if (fd < 0)
            continue; // its run is alive
        TFormer former{folder, fd, false};
        if (fs::exists(folder / "Crash.ini", ec)) {
            FFormer.push_back(former);
        } else { // a run that ended with nothing kept
            fs::remove_all(folder, ec);
            Release(former);
        }
    }
    if (fs::exists(FRoot / "Crash.ini", ec))
        if (const int fd = TryLockFolder(FRoot); fd >= 0)
            FFormer.push_back({FRoot, fd, true});
}

void TCrashKeeper::Release(TFormer& former) {
    if (former.LockFd >= 0)
        ::close(former.LockFd);
    former.LockFd = -1;
}

bool TCrashKeeper::HasSession() {
    ClaimFormer();
    return !FFormer.empty();
}

int TCrashKeeper::Restore() {
    ClaimFormer();
    int restored = 0;
    for (const TFormer& former : FFormer)
        restored += RestoreKeptTexts(FHelper, former.Folder);
    return restored;
}

int RestoreKeptTexts(TMainFormHelper& helper, const fs::path& folder) {
    const TMemIniFileW list(folder / "Crash.ini");
    int restored = 0;
    for (const auto& name : list.ReadSections()) {
        const std::string section(name.begin(), name.end());
        const auto bytes =
            ReadWholeFile(folder / list.ReadString(section, "Name", std::string_view()));
        if (!bytes)
            continue; // a damaged entry is skipped
        auto lines = std::make_unique<TZvMemoStrings>();
        lines->SetCodePage(cpUTF16LE);
        if (!lines->LoadFromBytes(*bytes))
            continue;
        const auto kind = static_cast<TSysTextType>(list.ReadInteger(section, "LineEnds", 1));
        if (kind < sttMixedWindows) // mixed line ends came back row by row
            lines->SetSysTextType(kind);
        lines->SetCodePage(
            static_cast<std::uint32_t>(list.ReadInteger(section, "CodePage", 65001)));
        lines->SetUseBOM(list.ReadBool(section, "BOM", false));
        TDocument& doc = helper.RestoreDocument(
            list.ReadString(section, "Path", std::string_view("New.txt")),
            list.ReadBool(section, "New", false), std::move(lines),
            list.ReadInteger(section, "CaretX", 0), list.ReadInteger(section, "CaretY", 0));
        // The file as the killed run knew it: a save still asks if it changed since.
        doc.FStamp = ReadStamp(list, section);
        ++restored;
    }
    return restored;
}

void TCrashKeeper::DropFormerSessions() {
    std::error_code ec;
    for (TFormer& former : FFormer) {
        if (former.Legacy) {
            fs::remove(former.Folder / "Crash.ini", ec);
            RemoveTextsBut(former.Folder, {});
            fs::remove(former.Folder / "lock", ec);
        } else {
            fs::remove_all(former.Folder, ec);
        }
        Release(former);
    }
    FFormer.clear();
}

void TCrashKeeper::Clear() {
    FTimer.stop();
    FKept.clear(); // nothing is kept any more: the next write writes every text
    FWriter.Wait();
    std::error_code ec;
    fs::remove_all(FOwn, ec);
    if (FOwnLock >= 0)
        ::close(FOwnLock);
    FOwnLock = -1;
}

} // namespace zv
