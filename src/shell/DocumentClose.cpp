// Saving and closing documents: every way out of a modified document passes
// CheckFileStatus, and a document without a writable file is saved under a new name.
#include "shell/MainFormHelper.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/DocumentSave.h"
#include "common/ActionTrace.h"
#include "common/Trace.h"
#include "shell/Language.h"

#include <sys/stat.h>
#include <unistd.h>

namespace zv {

TFileStamp StampOf(const std::string& path) {
    TFileStamp stamp;
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0)
        return stamp;
    stamp.Exists = true;
    stamp.Size = st.st_size;
    stamp.MTimeNs =
        static_cast<std::int64_t>(st.st_mtim.tv_sec) * 1'000'000'000 + st.st_mtim.tv_nsec;
    stamp.Inode = st.st_ino;
    return stamp;
}

void TakeFileState(TDocument& doc) {
    doc.FStamp = StampOf(doc.FFilePath);
    struct stat st {};
    doc.FThroughLink = ::lstat(doc.FFilePath.c_str(), &st) == 0 && S_ISLNK(st.st_mode);
    doc.FHardLinked = ::stat(doc.FFilePath.c_str(), &st) == 0 && st.st_nlink > 1;
}

bool TMainFormHelper::ConfirmOverwrite(TDocument& doc, bool automatic) {
    // A file deleted meanwhile holds nothing to overwrite: the save makes it again.
    const TFileStamp now = StampOf(doc.FFilePath);
    if (doc.FIsNew || !now.Exists || now == doc.FStamp)
        return true;
    if (automatic)
        return false; // a change on disk waits for the user
    const std::string text =
        LangText("Messages", "305",
                 "The file was changed on disk by another program since it was opened or "
                 "saved. Overwrite that change with this text?") +
        "\n\"" + doc.FFilePath + "\"";
    return FPrompt.Prompt("Zevrit", text, pfYesNo | pfWarning, prNo) == prYes;
}

bool IsReadOnlyFile(const std::string& path) {
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0)
        return false;
    // Root may write anything: the file's own write bits are what the user set.
    return ::access(path.c_str(), W_OK) != 0 || (st.st_mode & 0222) == 0;
}

bool TMainFormHelper::NeedsNewName(const TDocument& doc) const {
    if (doc.FFilePath.empty() || doc.FFilePath.front() != '/')
        return true; // a new document named only "New.txt"
    return !FMemoMisc.OverwriteReadOnly && (doc.FReadOnly || IsReadOnlyFile(doc.FFilePath));
}

bool TMainFormHelper::WriteDocument(TDocument& doc, bool automatic) {
    // Never the empty rows of a file not read yet (unless the user typed into them).
    if (doc.FDeferred && !doc.Modified() && !LoadDeferred(doc))
        return false;
    // An automatic save asks nothing: a text its encoding cannot hold, or a file changed on
    // disk, waits for the user.
    if (!ConfirmOverwrite(doc, automatic))
        return false;
    if (automatic ? !doc.Lines().FitsCodePage() : !ConfirmEncoding(doc))
        return false;
    TZvSaveOptions options;
    ApplyBackupOptions(FCustomize, options);
    options.FollowLinks = doc.FThroughLink;
    options.WroteInPlace = &doc.FHardLinked;
    if (automatic) {
        options.MakeBackup = FCustomize.BackupAuto;
        options.KeepAsIs = true;
    }
    std::string error;
    if (SaveDocument(*doc.Text, doc.FFilePath, options, error) != TZvSaveResult::Written) {
        FPrompt.ShowMessage(LangText("Messages", "012", "Could not save the file!") + "\n\"" +
                            doc.FFilePath + "\"\n" + error);
        return false;
    }
    doc.Text->Saved();
    doc.FIsNew = false;
    doc.FBlank = false;
    TakeFileState(doc);
    ActionTraceListAdd("SaveFile", doc.FFilePath);
    if (FListener)
        FListener->DocumentSaved(doc);
    return true;
}

bool TMainFormHelper::SaveFile(TDocument* doc) {
    TraceEnter("SaveFile");
    if (!doc)
        doc = ActiveDocument();
    if (!doc)
        return true;
    return NeedsNewName(*doc) ? SaveFileAs(doc) : WriteDocument(*doc);
}

bool TMainFormHelper::SaveFileAs(TDocument* doc) {
    TraceEnter("SaveFileAs");
    if (!doc)
        doc = ActiveDocument();
    if (!doc || !FOnAskSaveAs)
        return false;
    const TSaveAsChoice choice = FOnAskSaveAs(*doc);
    if (choice.FileName.empty())
        return false;
    const std::string path = AbsolutePath(choice.FileName);
    if (const int other = FindDocMemo(path); other >= 0 && FDocuments[other].get() != doc) {
        FPrompt.ShowMessage(LangText("Messages", "012", "Could not save the file!") + "\n\"" +
                            path + "\"\n" +
                            LangText("Messages", "304", "That file is open in another tab."));
        return false;
    }
    TZvMemoStrings& lines = doc->Lines();
    const std::uint32_t oldCodePage = lines.CodePage();
    const bool oldBom = lines.UseBOM();
    if (choice.CodePage != 0 && !ConfirmLegacyCodePage(*doc, choice.CodePage))
        return false;
    if (choice.CodePage != 0)
        lines.SetCodePage(choice.CodePage);
    if (choice.BOM >= 0)
        lines.SetUseBOM(choice.BOM == 1);
    // Line ends are the text's own: changed only when another kind is chosen (a mixed
    // text keeps its ends row by row otherwise).
    if (choice.LineEnds >= 0 && choice.LineEnds != static_cast<int>(lines.SysTextType()))
        doc->Text->WithReaderPaused( // the rows' line-end bits are rewritten
            [&] { lines.SetSysTextType(static_cast<TSysTextType>(choice.LineEnds)); });
    const std::string oldPath = doc->FFilePath;
    const bool oldReadOnly = doc->FReadOnly;
    const TFileStamp oldStamp = doc->FStamp;
    doc->FFilePath = path;
    doc->FReadOnly = false;
    const bool oldThroughLink = doc->FThroughLink, oldHardLinked = doc->FHardLinked;
    TakeFileState(*doc); // the user chose to replace whatever is there, link or file
    if (WriteDocument(*doc))
        return true;
    doc->FFilePath = oldPath; // the document stays what it was
    doc->FReadOnly = oldReadOnly;
    doc->FStamp = oldStamp;
    doc->FThroughLink = oldThroughLink;
    doc->FHardLinked = oldHardLinked;
    lines.SetCodePage(oldCodePage);
    lines.SetUseBOM(oldBom);
    return false;
}

bool TMainFormHelper::ConfirmLegacyCodePage(const TDocument& doc, std::uint32_t codePage) {
    if (!IsUnicodeCodePage(doc.Lines().CodePage()) || IsUnicodeCodePage(codePage))
        return true;
    const std::string text =
        LangText("Messages", "038",
                 "The document contains Unicode characters! Some characters might be lost if "
                 "saved as ANSI! Do want to save anyway?");
    return FPrompt.Prompt("Zevrit", text, pfYesNo | pfWarning, prNo) == prYes;
}

bool TMainFormHelper::SaveFileCopy(TDocument& doc, const std::string& fileName) {
    TZvSaveOptions options; // a copy: no backup of the target, no trims of the document
    options.KeepAsIs = true;
    std::string error;
    if (SaveDocument(*doc.Text, AbsolutePath(fileName), options, error) == TZvSaveResult::Written)
        return true;
    FPrompt.ShowMessage(LangText("Messages", "012", "Could not save the file!") + "\n\"" +
                        fileName + "\"\n" + error);
    return false;
}

bool TMainFormHelper::ReopenWithEncoding(TDocument& doc, std::uint32_t codePage) {
    if (doc.FIsNew || !CheckFileStatus(doc))
        return false;
    TLoadFileArgs args;
    args.FileName = doc.FFilePath;
    args.CodePage = static_cast<int32_t>(codePage);
    args.Reload = true;
    return LoadFile(args);
}

void TMainFormHelper::AutoSave() {
    if (FApplicationClosing)
        return;
    for (const auto& doc : FDocuments) {
        const bool wanted = FCustomize.AutoSaveOnlyActive ? doc.get() == ActiveDocument() : true;
        if (wanted && doc->Modified() && !NeedsNewName(*doc))
            WriteDocument(*doc, true);
    }
}

bool TMainFormHelper::SaveAllFiles() {
    bool all = true;
    for (const auto& doc : FDocuments)
        if (doc->Modified())
            all = SaveFile(doc.get()) && all;
    return all;
}

bool TMainFormHelper::CheckFileStatus(TDocument& doc) {
    if (!doc.Modified())
        return true;
    const std::string text =
        LangText("Messages", "002", "The current file has changed. Save changes?") + "\n\"" +
        doc.FFilePath + "\"";
    // A run that cannot ask keeps the text: cancel is the default answer.
    switch (FPrompt.Prompt(LangText("Messages", "021", "Message"), text, pfYesNoCancel | pfWarning,
                           prCancel)) {
    case prYes:
        return SaveFile(&doc);
    case prNo:
        return true;
    default:
        return false;
    }
}

bool TMainFormHelper::ClosePage(int index) {
    if (index < 0 || index >= static_cast<int>(FDocuments.size()))
        return false;
    if (!CheckFileStatus(*FDocuments[index]))
        return false;
    return CloseDocument(index);
}

bool TMainFormHelper::CloseAllDocumentTabs(int keep, int group) {
    TDocument* kept =
        keep >= 0 && keep < static_cast<int>(FDocuments.size()) ? FDocuments[keep].get() : nullptr;
    const auto closing = [kept, group](const TDocument& doc) {
        return &doc != kept && (group < 0 || doc.FTabGroup == group);
    };
    for (const auto& doc : FDocuments)
        if (closing(*doc) && !CheckFileStatus(*doc))
            return false;
    for (int i = static_cast<int>(FDocuments.size()) - 1; i >= 0; --i)
        if (closing(*FDocuments[i]))
            CloseDocument(i);
    return true;
}

} // namespace zv
