// The crash session of unsaved text: within a couple of seconds of an edit, the text of every
// modified document (named or new) is written to a private folder, so that after a kill, a
// crash or a power loss the next start can bring each back with its name, encoding and caret.
// Each run keeps its texts in a folder of its own below "Data/Crash", locked while it runs, so
// that two windows of one root (-MULTI) never take or clear each other's texts; a folder whose
// lock nobody holds is a former run's.
#pragma once

#include "shell/CrashWriter.h"

#include <QObject>
#include <QTimer>

#include <cstdint>
#include <filesystem>
#include <string>
#include <unordered_map>
#include <vector>

namespace zv {

class TMainFormHelper;
class TDocument;

class TCrashKeeper : public QObject {
    Q_OBJECT
public:
    // Keeps the texts of `helper`'s documents below `root` (folders made with mode 0700).
    TCrashKeeper(TMainFormHelper& helper, std::filesystem::path root);
    // Waits for the writes under way; the kept texts stay (only Clear removes them).
    ~TCrashKeeper() override;

    // An edit, a save or a close: the kept texts follow within kDelayMs.
    void TextChanged();
    // Hands the writer thread each modified document's text that is not kept as it stands
    // (UTF-16, exact, with its line ends) and the list of them, written atomically, mode
    // 0600; with none modified, what was kept goes.
    void WriteNow();
    // Returns once everything handed over is on disk.
    void WaitWritten() { FWriter.Wait(); }
    // How many texts the writes so far encoded and wrote.
    int TextsWritten() const { return FWriter.TextsWritten(); }
    // Focus loss: writes at once what waits for the timer, if anything does.
    void Flush() {
        if (FTimer.isActive())
            WriteNow();
    }
    // This run's folder (it exists once something was kept).
    const std::filesystem::path& Folder() const { return FOwn; }
    // True when a former run left kept texts behind. Claims those folders (locks them), so
    // that no other start offers them too.
    bool HasSession();
    // Opens each kept text of the claimed former runs as a modified document (its name,
    // encoding, line ends and caret; no undo history); returns how many. Nothing is written
    // to the documents' files.
    int Restore();
    // Removes the claimed former runs' texts (restored and kept here again, or declined).
    void DropFormerSessions();
    // Removes this run's kept texts (a clean end).
    void Clear();

    static constexpr int kDelayMs = 2000;

private:
    // What is kept of one document: its file in the folder and the state of the rows it
    // holds (0, 0 while none is written).
    struct TKept {
        std::string Name;
        std::uint64_t StoreId = 0, Revision = 0;
    };
    // A former run's folder, locked by this run while it is handled.
    struct TFormer {
        std::filesystem::path Folder;
        int LockFd = -1;
        bool Legacy = false; // texts directly in the root, from before folders per run
    };
    void ClaimFormer();
    void Release(TFormer& former);
    bool LockOwnFolder();
    void ForgetFailedWrites();

    TMainFormHelper& FHelper;
    std::filesystem::path FRoot, FOwn;
    int FOwnLock = -1; // flock held on FOwn's lock file while something is kept
    QTimer FTimer;     // single shot: started by the first change after a write
    std::unordered_map<const TDocument*, TKept> FKept;
    int FNextName = 1;
    bool FClaimed = false;
    std::vector<TFormer> FFormer;
    TCrashWriter FWriter; // last: its thread ends first
};

// Opens each text kept in `folder` (a run's crash folder) as a modified document of
// `helper`; returns how many.
int RestoreKeptTexts(TMainFormHelper& helper, const std::filesystem::path& folder);

} // namespace zv
