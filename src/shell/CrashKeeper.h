// The crash session of unsaved text: within a couple of seconds of an edit, the text of every
// modified document (named or new) is written to a private folder, so that after a kill, a
// crash or a power loss the next start can bring each back with its name, encoding and caret.
#pragma once

#include <QObject>
#include <QTimer>

#include <cstdint>
#include <filesystem>
#include <string>
#include <unordered_map>

namespace zv {

class TMainFormHelper;
class TDocument;

class TCrashKeeper : public QObject {
    Q_OBJECT
public:
    // Keeps the texts of `helper`'s documents in `folder` (made with mode 0700 when needed).
    TCrashKeeper(TMainFormHelper& helper, std::filesystem::path folder);

    // An edit, a save or a close: the kept texts follow within kDelayMs.
    void TextChanged();
    // Writes now: each modified document's text (UTF-16, exact, with its line ends) and the
    // list of them, atomically, mode 0600; with none modified, removes what was kept. A text
    // already kept as it stands is not written again.
    void WriteNow();
    // How many texts the writes so far encoded and wrote.
    int TextsWritten() const { return FTextsWritten; }
    // Focus loss: writes at once what waits for the timer, if anything does.
    void Flush() {
        if (FTimer.isActive())
            WriteNow();
    }
    // While held, nothing is written or removed: a former run's texts wait for the user.
    void Hold(bool held) { FHeld = held; }
    // True when a former run left kept texts behind.
    bool HasSession() const;
    // Opens each kept text as a modified document (its name, encoding, line ends and caret;
    // no undo history); returns how many. Nothing is written to the documents' files.
    int Restore();
    // Removes the kept texts (a clean end, or the user declined them).
    void Clear();

    static constexpr int kDelayMs = 2000;

private:
    // What is kept of one document: its file in the folder and the state of the rows it
    // holds (0, 0 while none is written).
    struct TKept {
        std::string Name;
        std::uint64_t StoreId = 0, Revision = 0;
    };
    std::filesystem::path ListFile() const { return FFolder / "Crash.ini"; }
    // Writes the document's text unless its file holds it already; false when it failed.
    bool KeepText(const TDocument& doc, TKept& kept);
    // Removes the texts of documents no longer kept (saved, closed, or of a former run).
    void RemoveStale();

    TMainFormHelper& FHelper;
    std::filesystem::path FFolder;
    QTimer FTimer; // single shot: started by the first change after a write
    bool FHeld = false;
    std::unordered_map<const TDocument*, TKept> FKept;
    int FNextName = 1;
    int FTextsWritten = 0;
};

} // namespace zv
