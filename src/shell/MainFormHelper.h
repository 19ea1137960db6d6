// The non-visual operations of the main object: the open documents, loading, saving and
// the opening of files named on a command line. No toolkit: the UI listens for changes.
#pragma once

#include "platform/Prompt.h"
#include "shell/CommandLine.h"
#include "shell/Document.h"
#include "shell/DocumentListener.h"
#include "shell/SettingsOptions.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zv {

// Arguments of LoadFile (the usual call: code page 50001, focused, cursors -1, syntax on).
// What the save dialog gives: the name, and the form the file takes.
struct TSaveAsChoice {
    std::string FileName;       // empty: cancelled
    std::uint32_t CodePage = 0; // 0: the document's own
    int BOM = -1;               // -1: as it is; 0 without, 1 with
    int LineEnds = -1;          // -1: as they are; else a TSysTextType
};

struct TLoadFileArgs {
    std::string FileName;
    int32_t CodePage = 50001;
    bool NewDoc = false;
    bool Focused = true;
    int32_t CursorX = -1;
    int32_t CursorY = -1;
    bool ReadOnly = false;
    bool Reload = false;
    bool NoMRU = false;
    bool ApplySyntax = true;
    bool CreateIfMissing = false;
};

class TCustomIniFile;
class TFileQue;

class TMainFormHelper {
public:
    // Starts with the options of an empty settings file (every key at its default).
    explicit TMainFormHelper(IPrompt& prompt);

    // Reads the program-wide keys ("Customize", "Window", "Save", ...) and the editor keys
    // ("EditorMisc") and applies them: tab loading, save backups, the form of new
    // documents. At start and after the options dialog; missing keys give their defaults.
    void SetCustomize(const TCustomIniFile& settings);
    // Reads the active colour theme's text elements, which style sets and painters take.
    void LoadTextOptions(const TCustomIniFile& settings);
    const TCustomizeOptions& Customize() const { return FCustomize; }
    const TMemoMiscOptions& MemoMiscOptions() const { return FMemoMisc; }
    const TTextOptions& TextOptions() const { return FTextOptions; }

    // Opens a file into a document and makes it active; true if a document now shows it.
    // A file already open is activated (and read again with Reload). A missing file is a
    // new document with CreateIfMissing, else the not-found question decides.
    bool LoadFile(const TLoadFileArgs& args);
    // Writes the document (the active one when null) through the codec, after the backup
    // the "Save" keys ask for; true when the text reached the disk. A failed write leaves
    // the file and the modified mark as they were. A document without a file, or whose file
    // is read-only (unless "OverwriteReadOnly"), is saved under the name FOnAskSaveAs
    // gives; no name (or no such hook) is a cancel.
    bool SaveFile(TDocument* doc = nullptr);
    // Saves under a name, in an encoding, BOM and line-end kind asked from FOnAskSaveAs
    // (message "038" first when a Unicode text goes to a legacy code page); false when
    // cancelled or failed, and then name and encoding stay as they were.
    bool SaveFileAs(TDocument* doc = nullptr);
    // True when the document's text is Unicode and `codePage` is a legacy one: message
    // "038" asks first, and a no is false.
    bool ConfirmLegacyCodePage(const TDocument& doc, std::uint32_t codePage);
    // Writes `doc` to `fileName` without touching its name or modified mark.
    bool SaveFileCopy(TDocument& doc, const std::string& fileName);
    // Reads the document's file again in `codePage` (after CheckFileStatus: a modified
    // document is offered for saving first); false when cancelled or unreadable.
    bool ReopenWithEncoding(TDocument& doc, std::uint32_t codePage);
    // The automatic save: the active document, or every modified one ("OnlyActive" off),
    // that has a writable file; no question is asked, backups follow "BackupAuto".
    void AutoSave();
    // Saves every modified document; false when one was cancelled or failed (the rest are
    // still tried).
    bool SaveAllFiles();
    // Asks about a modified document: yes saves it, no lets it go, cancel (or a failed save)
    // keeps it. True when the document may close.
    bool CheckFileStatus(TDocument& doc);
    // Closes a document after CheckFileStatus; false when it stays open.
    bool ClosePage(int index);
    // Closes every document (of tab group `group`; -1: of all groups), or every one but
    // `keep` (-1: none kept), asking about each modified one first; nothing closes when any
    // answer is cancel.
    bool CloseAllDocumentTabs(int keep = -1, int group = -1);
    // Asks for a file name to save `doc` under, and the form the file takes (the window's
    // save dialog); an empty name is a cancel.
    std::function<TSaveAsChoice(const TDocument& doc)> FOnAskSaveAs;
    // Opens an empty document named with the language's "New" and ".txt", in the form the
    // settings give new documents; with `blank`, it is the start document that the next
    // opened file replaces while it is untouched.
    TDocument& NewDocument(bool blank = false);
    // Opens text kept by the crash session as a modified document named `path` (new when
    // `isNew`); the file on disk is not touched.
    TDocument& RestoreDocument(const std::string& path, bool isNew,
                               std::unique_ptr<TZvMemoStrings> lines, int caretX, int caretY);
    // Index of the open document with that path (in any tab group, compared byte for byte
    // after making it absolute), or -1.
    int FindDocMemo(const std::string& path) const;
    bool IsFileOpen(const std::string& path) const { return FindDocMemo(path) >= 0; }
    // Moves `doc` to tab group `group` (0..kTabGroups-1) as the last of that group's
    // documents; the active document stays active.
    void MoveToGroup(TDocument& doc, int group);
    // Index of `doc` among the open documents, or -1 once it is closed.
    int DocumentIndex(const TDocument& doc) const;
    // Closes a document without asking. The active document stays active; when it was the
    // one closed, the next of its tab group (else the one before, else any) takes over.
    bool CloseDocument(int index);
    // Opens one file named on the command line.
    void ProcessParam(const std::string& path, const TParamFlags& flags);
    int Prompt(const std::string& caption, const std::string& text, unsigned flags,
               int defaultAnswer) {
        return FPrompt.Prompt(caption, text, flags, defaultAnswer);
    }
    IPrompt& Prompter() { return FPrompt; }

    const std::vector<std::unique_ptr<TDocument>>& Documents() const { return FDocuments; }
    TDocument* ActiveDocument() const;
    // Makes the document active; a deferred one is read now (outside a batch).
    void Activate(int index);
    // Reads a deferred document's file and tells the views; false when it cannot be read
    // (with a message; the document stays unread and is never saved so).
    bool LoadDeferred(TDocument& doc);
    // A batch of opens (a command line of many files): documents opened meanwhile are
    // deferred; at its end the active one is read.
    void SetBatch(bool inBatch);
    // The window's listener (null: none); it hears of each change first.
    void SetListener(IDocumentListener* listener) { FListeners.SetPrimary(listener); }
    // A further listener (the file monitor), told after the window until removed.
    void AddListener(IDocumentListener* listener) { FListeners.Add(listener); }
    void RemoveListener(IDocumentListener* listener) { FListeners.Remove(listener); }
    // Reads the document's file again in `codePage` (50001: detect) and tells the views;
    // false, with a message, when it cannot be read (the text stays as it was).
    bool ReloadDocument(TDocument& doc, int32_t codePage);
    // A followed document's file grew in place (same file, larger than what was read): adds
    // what it grew by and tells the views; the stamp then names the bytes read, so a growth
    // during the read is seen at the next check. False, nothing done, when the file is
    // another, shrank or is gone: then only reading it whole is right.
    bool AppendDocumentTail(TDocument& doc);
    // The text stays as it is although its file changed or went away: it is modified now.
    void MarkDiffersFromFile(TDocument& doc);

    static constexpr int kTabGroups = 6;
    // The active tab group, where documents opened from now on go (0..kTabGroups-1).
    int FActiveDocumentView = 0;
    TOpenAs FOpenAs = oaNone;   // one-shot request for the next LoadFile
    TFileQue* FFileQ = nullptr; // the memory per file LoadFile recalls; null: none
    bool FDelayTabLoad = false; // batch mode: tabs made, files read on first show
    bool FApplicationClosing = false;
    bool FInBatch = false;

    // Decodes the file at `path` into `lines` as opening a document does (the settings'
    // detection and default encoding; `codePage` 50001: detect). False with `error` set for
    // a missing or unreadable file or a code page this system lacks.
    bool DecodeFile(const std::string& path, int32_t codePage, TZvMemoStrings& lines,
                    std::string& error) const;

private:
    // Reads the document's file into new rows, which every view of it then shows; the
    // text is unmodified.
    bool ReadInto(TDocument& doc, int32_t codePage);
    // Before a save: when the document's code page cannot hold all its characters, asks
    // whether to save as UTF-8 instead, save anyway ("?" for those characters) or cancel.
    // False: cancelled.
    bool ConfirmEncoding(TDocument& doc);
    // The document to activate when the one at `index` of tab group `group` has gone: the
    // next of that group, else the one before, else the one now at `index` (or the last).
    int Neighbour(int index, int group) const;
    // Closes the untouched blank start document once another document is open.
    void DropUntouchedBlank();
    // True when saving must go to a new name: no file yet, or a read-only one.
    bool NeedsNewName(const TDocument& doc) const;
    bool WriteDocument(TDocument& doc, bool automatic = false);
    // True when the file is as the document last saw it, or the user lets this text
    // overwrite the change (never for an automatic save).
    bool ConfirmOverwrite(TDocument& doc, bool automatic);
    TDocument& AddDocument(std::unique_ptr<TDocument> doc);
    bool AskCreateMissing(const std::string& path);

    IPrompt& FPrompt;
    TCustomizeOptions FCustomize; // as SetCustomize last read them (defaults before)
    TMemoMiscOptions FMemoMisc;   // likewise; DefaultEncoding 0 until read: the ANSI page
    TTextOptions FTextOptions;    // as LoadTextOptions last read them
    TDocumentListeners FListeners;
    IDocumentListener* FListener = &FListeners; // every change goes to all listeners
    // Invariant: the documents of one tab group stand in the order of their tabs.
    std::vector<std::unique_ptr<TDocument>> FDocuments;
    int FActive = -1;
};

// The absolute, normalised form of a command-line or dialog path.
std::string AbsolutePath(const std::string& path);
// True for an existing file that must not be written: no write permission, or no write bit
// at all (which root, whom permissions do not stop, is still told by).
bool IsReadOnlyFile(const std::string& path);

} // namespace zv
