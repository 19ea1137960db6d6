// Notices open files that another program changed, replaced or deleted, and asks what to do:
// a watcher on the files and their folders starts a check within moments, and a sweep every
// five seconds catches what the watcher missed (a watch is lost when a file is renamed over).
// A file counts as changed when its stamp (size, modification time in ns, inode) differs
// from the one taken when the document last read or wrote it. Followed logs are read again
// as they grow.
#pragma once

#include "shell/DocumentListener.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

#include <string>

namespace zv {

class TMainFormHelper;

class TFileMonitor : public QObject, public IDocumentListener {
    Q_OBJECT
public:
    // Watches the documents of `helper` from now on, until destroyed; the timers run on the
    // calling (main) thread.
    explicit TFileMonitor(TMainFormHelper& helper, QObject* parent = nullptr);
    ~TFileMonitor() override;

    // The sweep: checks every open document against its file, the last tab first. A change
    // asks reload or keep (an unmodified document reloads silently when "AutoReloadUnmodified"
    // is set or "Always" was answered); a deleted file asks whether to close the tab. A kept
    // text is marked modified and its new stamp stored, so one change asks once. Nothing
    // happens while "WarnChange" is off; inside its own or another modal question it waits
    // for the next round.
    void CheckMemoTimeStamp();
    // Reads each followed (FMonitored), unmodified document again when its file changed.
    void FollowTail();

    // "Always" was answered: unmodified documents reload without a question until the end.
    bool AutoReloadAlways() const { return FAutoReloadLoadDocuments; }

    // IDocumentListener: the watch list follows the open documents.
    void DocumentAdded(TDocument& doc) override { Watch(doc); }
    void DocumentRemoved(TDocument&) override { SyncWatches(); }
    void DocumentActivated(TDocument&) override {}
    void DocumentReloaded(TDocument& doc) override { Watch(doc); }
    void DocumentSaved(TDocument& doc) override { Watch(doc); }

    static constexpr int kSweepMs = 5000;  // the fallback sweep
    static constexpr int kSettleMs = 200;  // from a watcher's signal to the check: let the
                                           // writer finish
    static constexpr int kFollowMs = 2000; // followed logs

private:
    // One sweep's standing answers: yes to all or no to all, else 0.
    struct TSweepAnswers {
        int Changed = 0;
        int Deleted = 0;
    };
    void CheckDocument(TDocument& doc, TSweepAnswers& answers);
    void FileChanged(TDocument& doc, int& standing);
    void FileDeleted(TDocument& doc, int& standing);
    // Follows a log: reads what it grew by, else all of it again, or waits while it is gone.
    void Follow(TDocument& doc);
    // The question, with FCheckTimeStampDialogOpen set while it is open. An answer "to all"
    // (or "Always", which counts as yes to all) becomes the standing answer.
    int Ask(const std::string& text, unsigned flags, int& standing);
    // Adds the file of `doc` and its folder to the watcher, if not watched yet.
    void Watch(const TDocument& doc);
    // The watcher holds exactly the files of the open documents and their folders.
    void SyncWatches();
    void Settle();

    TMainFormHelper& FHelper;
    QFileSystemWatcher FWatcher;
    QTimer FileStatusTimer; // the sweep; single shot, restarted after each sweep
    QTimer FSettleTimer;    // single shot: the check after a watcher's signal
    QTimer FollowTailTimer;
    bool FCheckTimeStampDialogOpen = false;
    bool FAutoReloadLoadDocuments = false;
    bool FPending = false; // a check was put off: run one when the current ends
};

} // namespace zv
