// The checks of open documents against their files, the questions they ask, and the
// watcher that starts them.
#include "shell/FileMonitor.h"

#include "common/Trace.h"
#include "shell/Language.h"
#include "shell/MainFormHelper.h"

#include <QFileInfo>
#include <QSet>
#include <QThread>

namespace zv {
namespace {

// Only a document with a real file is watched: not "New.txt", not a remote "*..." name.
bool Watchable(const TDocument& doc) {
    return !doc.FFilePath.empty() && doc.FFilePath.front() == '/';
}

bool IsToAll(int answer) {
    return answer == prYesToAll || answer == prNoToAll;
}

bool IsYes(int answer) {
    return answer == prYes || answer == prYesToAll;
}

// A question asked elsewhere (a close, a file dialog) runs its own event loop above the
// main one: checking then could close or reload a document under it.
bool InOtherQuestion() {
    return QThread::currentThread()->loopLevel() > 1;
}

// Makes the watcher hold exactly `wanted` of the paths of its kind in `current`.
void Reconcile(QFileSystemWatcher& watcher, const QStringList& current,
               const QSet<QString>& wanted) {
    for (const QString& path : current)
        if (!wanted.contains(path))
            watcher.removePath(path);
    const QSet<QString> present(current.begin(), current.end());
    for (const QString& path : wanted)
        if (!present.contains(path) && QFileInfo::exists(path))
            watcher.addPath(path);
}

} // namespace

TFileMonitor::TFileMonitor(TMainFormHelper& helper, QObject* parent)
    : QObject(parent), FHelper(helper) {
    FileStatusTimer.setSingleShot(true);
    connect(&FileStatusTimer, &QTimer::timeout, this, [this] {
        CheckMemoTimeStamp();
        FileStatusTimer.start(kSweepMs);
    });
    FSettleTimer.setSingleShot(true);
    connect(&FSettleTimer, &QTimer::timeout, this, &TFileMonitor::CheckMemoTimeStamp);
    connect(&FollowTailTimer, &QTimer::timeout, this, &TFileMonitor::FollowTail);
    connect(&FWatcher, &QFileSystemWatcher::fileChanged, this, &TFileMonitor::Settle);
    connect(&FWatcher, &QFileSystemWatcher::directoryChanged, this, &TFileMonitor::Settle);
    FHelper.AddListener(this);
    SyncWatches();
    FileStatusTimer.start(kSweepMs);
    FollowTailTimer.start(kFollowMs);
}

TFileMonitor::~TFileMonitor() {
    FHelper.RemoveListener(this);
}

void TFileMonitor::Settle() {
    // Not restarted by later signals: a folder that changes all the time still gets checked.
    if (!FSettleTimer.isActive())
        FSettleTimer.start(kSettleMs);
}

void TFileMonitor::CheckMemoTimeStamp() {
    if (!FHelper.MemoMiscOptions().WarnChange || FHelper.FApplicationClosing)
        return;
    if (FCheckTimeStampDialogOpen || InOtherQuestion()) {
        FPending = true;
        return;
    }
    FPending = false;
    TSweepAnswers answers;
    std::vector<TDocument*> docs; // the list may shrink while a question is open
    for (auto it = FHelper.Documents().rbegin(); it != FHelper.Documents().rend(); ++it)
        docs.push_back(it->get());
    for (TDocument* doc : docs)
        if (FHelper.DocumentIndex(*doc) >= 0)
            CheckDocument(*doc, answers);
    SyncWatches(); // a file renamed over, or made again, lost its watch
    if (FPending)
        Settle();
}

void TFileMonitor::CheckDocument(TDocument& doc, TSweepAnswers& answers) {
    if (doc.FDeferred || !Watchable(doc))
        return; // a deferred document reads its file when it first shows
    const TFileStamp now = StampOf(doc.FFilePath);
    if (now == doc.FStamp)
        return;
    Trace("CheckMemoTimeStamp() - changed: " + doc.FFilePath);
    if (doc.FMonitored && !doc.Modified())
        Follow(doc);
    else if (doc.FStamp.Exists && !now.Exists)
        FileDeleted(doc, answers.Deleted);
    else
        FileChanged(doc, answers.Changed);
}

int TFileMonitor::Ask(const std::string& text, unsigned flags, int& standing) {
    FCheckTimeStampDialogOpen = true;
    int answer = FHelper.Prompt("Zevrit", text, flags | pfWarning, prNo);
    FCheckTimeStampDialogOpen = false;
    if (answer == prAlways) {
        FAutoReloadLoadDocuments = true;
        answer = prYesToAll;
    }
    if (IsToAll(answer))
        standing = answer;
    return answer;
}

void TFileMonitor::FileChanged(TDocument& doc, int& standing) {
    const bool silent = !doc.Modified() && (FHelper.MemoMiscOptions().AutoReloadUnmodified ||
                                            FAutoReloadLoadDocuments);
    int answer = silent ? prYes : standing;
    if (!silent && !IsToAll(answer)) {
        std::string text = LangText("Messages", "065",
                                    "The file was changed on disk by another program. Read it "
                                    "again from the disk?");
        if (doc.Modified())
            text +=
                "\n" + LangText("Messages", "067", "The changes made to it here would be lost.");
        answer =
            Ask(text + "\n\n\"" + doc.FFilePath + "\"", pfYesNoToAll | pfAlwaysButton, standing);
    }
    if (FHelper.DocumentIndex(doc) < 0)
        return; // closed while the question was open
    if (IsYes(answer) && FHelper.ReloadDocument(doc, doc.FDeferredCodePage))
        return;
    // The text stays: the file as it is now will not ask again, and a save may overwrite it.
    doc.FStamp = StampOf(doc.FFilePath);
    FHelper.MarkDiffersFromFile(doc);
}

void TFileMonitor::FileDeleted(TDocument& doc, int& standing) {
    doc.FStamp = StampOf(doc.FFilePath); // gone: asked once, again only if it comes back
    int answer = standing;
    if (!IsToAll(answer)) {
        const std::string text =
            LangText("Messages", "112",
                     "The file was deleted or moved away by another program. Do you want to "
                     "close its tab?") +
            "\n\n\"" + doc.FFilePath + "\"";
        answer = Ask(text, pfYesNoToAll, standing);
    }
    const int index = FHelper.DocumentIndex(doc);
    if (index < 0)
        return;
    // A modified text is still offered for saving before its tab goes.
    if (IsYes(answer) && FHelper.ClosePage(index))
        return;
    FHelper.MarkDiffersFromFile(doc); // the text can be saved again
}

void TFileMonitor::Follow(TDocument& doc) {
    if (FHelper.AppendDocumentTail(doc))
        return; // only what the log grew by was read
    const TFileStamp now = StampOf(doc.FFilePath);
    // A rotated log is waited for; an unreadable one is not tried again until it changes.
    if (!now.Exists || !FHelper.ReloadDocument(doc, doc.FDeferredCodePage))
        doc.FStamp = now;
}

void TFileMonitor::FollowTail() {
    if (FCheckTimeStampDialogOpen || InOtherQuestion())
        return;
    std::vector<TDocument*> followed;
    for (const auto& doc : FHelper.Documents())
        if (doc->FMonitored && !doc->Modified() && !doc->FDeferred && Watchable(*doc))
            followed.push_back(doc.get());
    for (TDocument* doc : followed)
        if (FHelper.DocumentIndex(*doc) >= 0 && StampOf(doc->FFilePath) != doc->FStamp)
            Follow(*doc);
}

void TFileMonitor::Watch(const TDocument& doc) {
    if (!Watchable(doc))
        return;
    const QString file = QString::fromStdString(doc.FFilePath);
    const QString folder = QFileInfo(file).absolutePath();
    if (!FWatcher.files().contains(file) && QFileInfo::exists(file))
        FWatcher.addPath(file);
    if (!FWatcher.directories().contains(folder) && QFileInfo::exists(folder))
        FWatcher.addPath(folder);
}

void TFileMonitor::SyncWatches() {
    QSet<QString> files, folders;
    for (const auto& doc : FHelper.Documents()) {
        if (!Watchable(*doc))
            continue;
        const QString file = QString::fromStdString(doc->FFilePath);
        files.insert(file);
        folders.insert(QFileInfo(file).absolutePath());
    }
    Reconcile(FWatcher, FWatcher.files(), files);
    Reconcile(FWatcher, FWatcher.directories(), folders);
}

} // namespace zv
