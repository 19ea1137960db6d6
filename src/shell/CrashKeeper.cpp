// Writing and restoring the crash session of unsaved text.
#include "shell/CrashKeeper.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/Streams.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "common/AtomicFile.h"
#include "common/Trace.h"
#include "shell/MainFormHelper.h"
#include "shell/ZvIniFiles.h"

#include <charconv>
#include <set>
#include <sys/stat.h>
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

// Writes the document's text as UTF-16LE with a BOM and each line end as it stands (exact
// whatever the document's own encoding can hold) atomically, mode 0600. The bytes stream to
// the file: no second copy of a large text is built in memory.
bool WriteExactText(const fs::path& file, const TZvMemoStrings& lines) {
    TZvMemoStrings copy;
    copy.Assign(lines); // rows are shared, not copied
    copy.SetCodePage(cpUTF16LE);
    copy.SetUseBOM(true);
    const auto write = [&copy](int fd) {
        TZvFdOutStream out(fd);
        copy.SaveTextToStream(out);
        out.Flush();
        return true;
    };
    if (!WriteFileAtomically(file, write))
        return false;
    ::chmod(file.c_str(), 0600);
    return true;
}

} // namespace

TCrashKeeper::TCrashKeeper(TMainFormHelper& helper, fs::path folder)
    : FHelper(helper), FFolder(std::move(folder)) {
    FTimer.setSingleShot(true);
    FTimer.setInterval(kDelayMs);
    connect(&FTimer, &QTimer::timeout, this, &TCrashKeeper::WriteNow);
}

void TCrashKeeper::TextChanged() {
    if (!FTimer.isActive())
        FTimer.start(); // not restarted by each key: no edit waits longer than kDelayMs
}

void TCrashKeeper::WriteNow() {
    FTimer.stop();
    if (FHeld)
        return;
    TMemIniFileW list(ListFile(), TIniEncoding::Utf8);
    for (const auto& name : list.ReadSections())
        list.EraseSection(name);
    std::unordered_map<const TDocument*, TKept> kept;
    int n = 0;
    for (const auto& doc : FHelper.Documents()) {
        if (!doc->Modified() || doc->FDeferred)
            continue;
        const auto found = FKept.find(doc.get());
        TKept entry = found != FKept.end() ? found->second : TKept{};
        if (!KeepText(*doc, entry)) {
            Trace("CrashSave() - cannot keep " + doc->FFilePath);
            continue;
        }
        const std::string section = Section(++n);
        const TZvMemoStrings& lines = doc->Lines();
        list.WriteString(section, "Name", entry.Name);
        list.WriteString(section, "Path", doc->FFilePath);
        list.WriteBool(section, "Modified", true);
        list.WriteBool(section, "New", doc->FIsNew);
        WriteStamp(list, section, doc->FStamp);
        list.WriteInteger(section, "CodePage", static_cast<int32_t>(lines.CodePage()));
        list.WriteBool(section, "BOM", lines.UseBOM());
        list.WriteInteger(section, "LineEnds", static_cast<int32_t>(lines.SysTextType()));
        list.WriteInteger(section, "CaretX", doc->FCaretX);
        list.WriteInteger(section, "CaretY", doc->FCaretY);
        kept.emplace(doc.get(), std::move(entry));
    }
    FKept = std::move(kept);
    if (n == 0) {
        Clear();
        return;
    }
    if (list.UpdateFile())
        ::chmod(ListFile().c_str(), 0600);
    RemoveStale();
}

bool TCrashKeeper::KeepText(const TDocument& doc, TKept& kept) {
    const TZvMemoStrings& lines = doc.Lines();
    if (!kept.Name.empty() && kept.StoreId == lines.StoreId() && kept.Revision == lines.Revision())
        return true; // its file holds this text already
    if (kept.Name.empty()) {
        std::error_code ec;
        fs::create_directories(FFolder, ec);
        ::chmod(FFolder.c_str(), 0700);
        // A new name: a file the list on disk names stays until the new list replaces it.
        do
            kept.Name = "Text" + std::to_string(FNextName++) + ".txt";
        while (fs::exists(FFolder / kept.Name, ec));
    }
    kept.StoreId = kept.Revision = 0; // a failed write is tried again
    if (!WriteExactText(FFolder / kept.Name, lines))
        return false;
    ++FTextsWritten;
    kept.StoreId = lines.StoreId();
    kept.Revision = lines.Revision();
    return true;
}

void TCrashKeeper::RemoveStale() {
    std::set<std::string> names;
    for (const auto& [doc, kept] : FKept)
        names.insert(kept.Name);
    std::error_code ec;
    std::vector<fs::path> stale;
    for (const auto& entry : fs::directory_iterator(FFolder, ec))
        if (entry.path().extension() == ".txt" && !names.contains(entry.path().filename()))
            stale.push_back(entry.path());
    for (const auto& path : stale)
        fs::remove(path, ec);
}

bool TCrashKeeper::HasSession() const {
    std::error_code ec;
    return fs::exists(ListFile(), ec);
}

int TCrashKeeper::Restore() {
    const TMemIniFileW list(ListFile());
    int restored = 0;
    for (const auto& name : list.ReadSections()) {
        const std::string section(name.begin(), name.end());
        const auto bytes =
            ReadWholeFile(FFolder / list.ReadString(section, "Name", std::string_view()));
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
        TDocument& doc = FHelper.RestoreDocument(
            list.ReadString(section, "Path", std::string_view("New.txt")),
            list.ReadBool(section, "New", false), std::move(lines),
            list.ReadInteger(section, "CaretX", 0), list.ReadInteger(section, "CaretY", 0));
        // The file as the killed run knew it: a save still asks if it changed since.
        doc.FStamp = ReadStamp(list, section);
        ++restored;
    }
    return restored;
}

void TCrashKeeper::Clear() {
    FKept.clear(); // nothing is kept any more: the next write writes every text
    std::error_code ec;
    fs::remove_all(FFolder, ec);
}

} // namespace zv
