// What the running program remembers for the next run: the recent and recently closed
// files, the memory per file, the documents open at exit, and named sessions. Hears of
// documents opening and closing as a listener of the helper.
#pragma once

#include "shell/DocumentListener.h"
#include "shell/FileQue.h"
#include "shell/MruList.h"
#include "shell/Sessions.h"

#include <QObject>
#include <QTimer>

#include <filesystem>
#include <string>
#include <vector>

namespace zv {

class ICommandLineHost;
class TCustomIniFile;
class TMainFormHelper;

class TDocumentMemory : public QObject, public IDocumentListener {
    Q_OBJECT
public:
    // Reads the lists in `dataFolder` with the options of `settings`, and listens to
    // `helper`, whose LoadFile then recalls the memory per file. A damaged "FileInfo.xml"
    // is kept aside and said once through the helper's prompt; the memory starts empty.
    // `host` gives the batch mode for opening many documents.
    TDocumentMemory(TMainFormHelper& helper, ICommandLineHost& host,
                    std::filesystem::path dataFolder, const TCustomIniFile& settings);
    ~TDocumentMemory() override;

    void DocumentAdded(TDocument& doc) override;
    // Remembers the closed document, lists it as recently closed and, with "ReopenLastDoc",
    // notes the documents still open; the files are written once the event loop is idle
    // (one write for a whole Close All).
    void DocumentRemoved(TDocument& doc) override;
    void DocumentActivated(TDocument&) override {}
    void DocumentReloaded(TDocument&) override {}
    // A file saved (perhaps under a new name) is a recent file.
    void DocumentSaved(TDocument& doc) override;

    // The last documents of the former run (its "_reopen.txt"), deferred as in a batch;
    // files that are gone are skipped. Returns how many documents opened.
    int ReopenLastDocuments();
    // Opens the documents of `files` in a batch, each into its tab group, and activates the
    // page of the active group; missing files are skipped. Returns how many opened.
    int OpenFiles(const TOpenFiles& files);

    // Stores the open documents that have a file under `name`; false for a bad name or a
    // failed write.
    bool SaveSession(const std::string& name, const std::string& description);
    // Opens a session; with "SessionOptions"/"CloseOpenFiles" the open documents close
    // first (a cancelled question keeps them and opens nothing: false).
    bool OpenSession(const std::string& name);

    // The exit: the documents open now are written as the reopen list, and closing them
    // does not change it (unless CancelExit). Flush writes everything that waits.
    void BeginExit();
    void CancelExit() { FExiting = false; }
    void Flush();
    // An end without closing (a logout, SIGTERM): the open documents are remembered as
    // they stand and everything is written now.
    void KeepOpenDocuments();

    TZvMRUList& MRU() { return FMRU; }
    TZvMRUList& MRUClosed() { return FMRUClosed; }
    TFileQue& FileQ() { return FFileQ; }
    TSessions& Sessions() { return FSessions; }
    bool RemoveInvalid() const { return FRemoveInvalid; }
    int MenuRecent() const { return FMenuRecent; }
    int MenuRecentlyClosed() const { return FMenuRecentlyClosed; }

private:
    void Remember(const TDocument& doc);
    void WriteReopenList();
    TOpenFiles OpenNow() const;
    void ScheduleSave();

    TMainFormHelper& FHelper;
    ICommandLineHost& FHost;
    std::filesystem::path FDataFolder;
    TZvMRUList FMRU;
    TZvMRUList FMRUClosed;
    TFileQue FFileQ;
    TSessions FSessions;
    bool FRemoveInvalid = false;
    int FMenuRecent = 15;
    int FMenuRecentlyClosed = 50;
    bool FCloseOpenFiles = true;
    bool FExiting = false;
    bool FListsDirty = false;
    bool FFileQDirty = false;
    bool FReopenDirty = false;
    QTimer FSaveTimer; // coalesces the writes of many closes into one
};

// The entry LoadFile recalls for `doc` (by its path): the encoding when `detect` (the code
// page asked was "detect"), the caret, selection and top row when `cursor`, the syntax and
// a remembered read-only state. Without an entry the document stays as it is.
void RecallFileData(const TFileQue& fileQ, TDocument& doc, bool detect, bool cursor);
// The entry for a document with a file (its views have noted their state in it).
TFileInfo FileInfoOf(const TDocument& doc);
// The bookmarks and plain marks on `lines`, by real line; null when there are none.
std::optional<TMarksInfo> MarksOf(const TZvMemoStrings& lines);
// Puts remembered marks on the rows of `lines` (the first row of each line); lines past the
// end (the file shrank meanwhile) are skipped.
void ApplyMarks(TZvMemoStrings& lines, const TMarksInfo& marks);
// The real lines heading closed folds of `lines`, ascending.
std::vector<std::int32_t> ClosedFoldLines(const TZvMemoStrings& lines);
// Closes the folds headed by the real lines `folds` (lines that head no fold now are skipped).
void CloseFoldsAt(TZvMemoStrings& lines, const std::vector<std::int32_t>& folds);

// True when the last documents are to be reopened at start: the option is on, no
// "NOREOPEN" switch is given and "SILENT" does not come first.
bool WantsReopen(const std::vector<std::string>& argv, bool reopenLastDoc);

} // namespace zv
