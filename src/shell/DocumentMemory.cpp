// The program's memory between runs, fed by the helper's document events.
#include "shell/DocumentMemory.h"

#include "common/Trace.h"
#include "shell/CommandLine.h"
#include "shell/Language.h"
#include "shell/MainFormHelper.h"
#include "shell/Switches.h"
#include "shell/ZvIniFiles.h"

#include <algorithm>

namespace zv {
namespace {

constexpr int kMruCapacity = 50;

bool FileExists(const std::string& path) {
    std::error_code ec;
    return std::filesystem::is_regular_file(path, ec);
}

} // namespace

TDocumentMemory::TDocumentMemory(TMainFormHelper& helper, ICommandLineHost& host,
                                 std::filesystem::path dataFolder, const TCustomIniFile& settings)
    : FHelper(helper), FHost(host), FDataFolder(std::move(dataFolder)),
      FMRU(FDataFolder / "MRU.txt", kMruCapacity),
      FMRUClosed(FDataFolder / "MRUClosed.txt", kMruCapacity),
      FFileQ(FDataFolder / "FileInfo.xml", ReadFileQueOptions(settings)),
      FSessions(FDataFolder / "Sessions.ini") {
    FRemoveInvalid = helper.Customize().RemoveInvalidMRU;
    FMenuRecent = helper.Customize().MenuRecent;
    FMenuRecentlyClosed = helper.Customize().MenuRecentlyClosed;
    FCloseOpenFiles = settings.ReadBool("SessionOptions", "CloseOpenFiles", true);
    FMRU.LoadList();
    FMRUClosed.LoadList();
    if (FFileQ.LoadList() == TFileQueLoad::Damaged)
        helper.Prompter().ShowMessage(
            LangText("Messages", "340",
                     "The memory of files (caret, encoding, syntax) could not be read and "
                     "starts empty. The damaged file was kept as:") +
            "\n" + FFileQ.DamagedCopy().string());
    FSaveTimer.setSingleShot(true);
    FSaveTimer.setInterval(0);
    connect(&FSaveTimer, &QTimer::timeout, this, &TDocumentMemory::Flush);
    helper.AddListener(this);
    helper.FFileQ = &FFileQ;
}

TDocumentMemory::~TDocumentMemory() {
    FHelper.RemoveListener(this);
    FHelper.FFileQ = nullptr;
}

void TDocumentMemory::ScheduleSave() {
    if (!FSaveTimer.isActive())
        FSaveTimer.start();
}

void TDocumentMemory::Flush() {
    FSaveTimer.stop();
    if (FListsDirty && !(FMRU.SaveList() && FMRUClosed.SaveList()))
        Trace("TDocumentMemory.Flush() - recent lists not written");
    if (FFileQDirty && !FFileQ.SaveFile())
        Trace("TDocumentMemory.Flush() - FileInfo.xml not written");
    if (FReopenDirty && !FExiting)
        WriteReopenList();
    FListsDirty = FFileQDirty = FReopenDirty = false;
}

void TDocumentMemory::DocumentAdded(TDocument& doc) {
    if (doc.FAddToMRU && !doc.FIsNew && FMRU.AddFile(doc.FFilePath)) {
        FListsDirty = true;
        ScheduleSave();
    }
}

void TDocumentMemory::DocumentSaved(TDocument& doc) {
    if (FMRU.AddFile(doc.FFilePath)) {
        FListsDirty = true;
        ScheduleSave();
    }
}

void TDocumentMemory::Remember(const TDocument& doc) {
    // A file never read (a deferred tab) keeps the entry it has: its view never showed it.
    if (doc.FDeferred || doc.FIsNew || !FileExists(doc.FFilePath))
        return;
    FFileQDirty = FFileQ.AddFiledata(FileInfoOf(doc)) || FFileQDirty;
}

void TDocumentMemory::DocumentRemoved(TDocument& doc) {
    Remember(doc);
    if (!doc.FIsNew) {
        FMRUClosed.AddFile(doc.FFilePath);
        FMRU.AddFile(doc.FFilePath);
        FListsDirty = true;
    }
    FReopenDirty = true;
    ScheduleSave();
}

TOpenFiles TDocumentMemory::OpenNow() const {
    TOpenFiles files;
    const TDocument* active = FHelper.ActiveDocument();
    // The helper keeps each group's documents in tab order.
    for (const auto& doc : FHelper.Documents()) {
        if (doc->FIsNew || !IsRecentPath(doc->FFilePath))
            continue;
        const auto group = static_cast<size_t>(doc->FTabGroup);
        if (files.Views.size() <= group)
            files.Views.resize(group + 1);
        if (doc.get() == active) {
            files.ActiveView = doc->FTabGroup;
            files.PageIndex = static_cast<int>(files.Views[group].size());
        }
        files.Views[group].push_back(doc->FFilePath);
    }
    return files;
}

void TDocumentMemory::WriteReopenList() {
    if (FHelper.MemoMiscOptions().ReopenLastDoc &&
        !SaveLastOpenFiles(FDataFolder / "_reopen.txt", OpenNow()))
        Trace("TDocumentMemory.WriteReopenList() - _reopen.txt not written");
}

void TDocumentMemory::BeginExit() {
    WriteReopenList();
    FExiting = true;
}

void TDocumentMemory::KeepOpenDocuments() {
    BeginExit();
    for (const auto& doc : FHelper.Documents())
        Remember(*doc);
    FListsDirty = true;
    Flush();
}

int TDocumentMemory::ReopenLastDocuments() {
    TraceEnter("LoadLastOpenFiles");
    return OpenFiles(LoadLastOpenFiles(FDataFolder / "_reopen.txt"));
}

int TDocumentMemory::OpenFiles(const TOpenFiles& files) {
    FHost.BeginBatch();
    const int activeView = FHelper.FActiveDocumentView;
    int opened = 0, toActivate = -1;
    for (size_t view = 0; view < files.Views.size(); ++view) {
        FHelper.FActiveDocumentView = static_cast<int>(view); // each document to its group
        for (size_t page = 0; page < files.Views[view].size(); ++page) {
            const std::string& path = files.Views[view][page];
            TLoadFileArgs args;
            args.FileName = path;
            args.NoMRU = true;
            // Remote entries wait for sites; a local file that is gone is skipped.
            if (FileExists(path) && FHelper.LoadFile(args)) {
                ++opened;
                if (static_cast<int>(view) == files.ActiveView &&
                    static_cast<int>(page) == files.PageIndex)
                    toActivate = FHelper.FindDocMemo(path);
            }
        }
    }
    FHelper.FActiveDocumentView = activeView;
    if (toActivate >= 0) {
        FHelper.FActiveDocumentView = FHelper.Documents()[toActivate]->FTabGroup;
        FHelper.Activate(toActivate);
    }
    FHost.EndBatch(); // reads the active document
    return opened;
}

bool TDocumentMemory::SaveSession(const std::string& name, const std::string& description) {
    return FSessions.Save(name, description, OpenNow().Views);
}

bool TDocumentMemory::OpenSession(const std::string& name) {
    TOpenFiles files;
    files.Views = FSessions.Files(name);
    files.PageIndex = 0;
    if (FCloseOpenFiles && !FHelper.CloseAllDocumentTabs())
        return false;
    OpenFiles(files);
    return true;
}

bool WantsReopen(const std::vector<std::string>& argv, bool reopenLastDoc) {
    if (!reopenLastDoc || ScanNoReopen(argv))
        return false;
    size_t first = 1;
    if (first < argv.size() && IsSwitch(argv[first], "MULTI"))
        ++first;
    if (first < argv.size() && IsSwitch(argv[first], "SILENT"))
        return false;
    return std::none_of(argv.begin() + std::min<size_t>(1, argv.size()), argv.end(),
                        [](const std::string& arg) { return IsSwitch(arg, "NOREOPEN"); });
}

} // namespace zv
