// Loading, saving and command-line opening of documents.
#include "shell/MainFormHelper.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/DocumentSave.h"
#include "ZvMemoControl/OpenTextFile.h"
#include "common/ActionTrace.h"
#include "common/RegularFile.h"
#include "common/Trace.h"
#include "common/Utf.h"
#include "shell/DocumentMemory.h"
#include "shell/Language.h"
#include "shell/MemoOptions.h"
#include "shell/ZvIniFiles.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>
#include <utility>

namespace zv {
namespace fs = std::filesystem;

namespace {

// Until the hex view exists, binary files are read one byte to one character so that
// saving gives the same bytes back.
constexpr int32_t kByteCodePage = 28591;

int32_t CodePageFor(TOpenAs openAs, int32_t requested) {
    switch (openAs) {
    case oaUTF8:
        return 65001;
    case oaUnicode:
        return 1200;
    case oaUnicodeBE:
        return 1201;
    case oaBinary:
    case oaHex:
        return kByteCodePage;
    default:
        return requested;
    }
}

} // namespace

std::string AbsolutePath(const std::string& path) {
    std::error_code ec;
    auto absolute = fs::absolute(path, ec);
    return (ec ? fs::path(path) : absolute).lexically_normal().string();
}

TMainFormHelper::TMainFormHelper(IPrompt& prompt) : FPrompt(prompt) {
    SetCustomize(TMemIniFileW());
}

void TMainFormHelper::SetCustomize(const TCustomIniFile& settings) {
    TraceEnter("SetCustomize");
    FCustomize = ReadCustomizeOptions(settings);
    FMemoMisc = ReadMemoMiscOptions(settings, static_cast<int32_t>(SystemCodePage()));
    FDelayTabLoad = FCustomize.DelayTabLoad;
}

void TMainFormHelper::LoadTextOptions(const TCustomIniFile& settings) {
    TraceEnter("LoadTextOptions");
    FTextOptions = zv::LoadTextOptions(settings);
}

TDocument* TMainFormHelper::ActiveDocument() const {
    return FActive >= 0 && FActive < static_cast<int>(FDocuments.size()) ? FDocuments[FActive].get()
                                                                         : nullptr;
}

void TMainFormHelper::Activate(int index) {
    if (index < 0 || index >= static_cast<int>(FDocuments.size()))
        return;
    FActive = index;
    if (FListener)
        FListener->DocumentActivated(*FDocuments[index]);
    if (FDocuments[index]->FDeferred && !FInBatch)
        LoadDeferred(*FDocuments[index]);
}

bool TMainFormHelper::LoadDeferred(TDocument& doc) {
    if (!doc.FDeferred)
        return true;
    if (!ReadInto(doc, doc.FDeferredCodePage))
        return false; // still unread: nothing may save its empty rows over the file
    doc.FDeferred = false;
    if (FListener)
        FListener->DocumentReloaded(doc);
    return true;
}

bool TMainFormHelper::ReloadDocument(TDocument& doc, int32_t codePage) {
    if (!ReadInto(doc, codePage))
        return false;
    if (FListener)
        FListener->DocumentReloaded(doc);
    return true;
}

namespace {

// The last bytes (at most 64) of `path` before `end`: what a read up to `end` saw last.
std::string TailProbe(const std::string& path, std::int64_t end) {
    constexpr std::int64_t kProbeBytes = 64;
    std::string probe;
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return probe;
    const std::int64_t from = std::max<std::int64_t>(0, end - kProbeBytes);
    probe.resize(static_cast<std::size_t>(end - from));
    const ssize_t got = ::pread(fd, probe.data(), probe.size(), from);
    probe.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    ::close(fd);
    return probe;
}

} // namespace

bool TMainFormHelper::AppendDocumentTail(TDocument& doc) {
    TZvMemoStrings& lines = doc.Lines();
    const TFileStamp now = StampOf(doc.FFilePath);
    if (!now.Exists || !doc.FStamp.Exists || now.Inode != doc.FStamp.Inode ||
        now.Size < lines.CurrentStreamPos())
        return false;
    // Truncated in place and grown past the old end between two looks: the bytes before
    // the end read last are not those any more, and only a whole read is right.
    if (TailProbe(doc.FFilePath, lines.CurrentStreamPos()) != doc.FTailProbe)
        return false;
    FListener->DocumentGrows(doc, [&lines] { return lines.AppendTail(); });
    doc.FStamp = now; // taken before the read: a later write still differs from it
    doc.FStamp.Size = lines.CurrentStreamPos();
    doc.FTailProbe = TailProbe(doc.FFilePath, lines.CurrentStreamPos());
    return true;
}

void TMainFormHelper::MarkDiffersFromFile(TDocument& doc) {
    doc.SetModified(true);
    if (FListener)
        FListener->DocumentDiffersFromFile(doc);
}

void TMainFormHelper::SetBatch(bool inBatch) {
    FInBatch = inBatch;
    if (!inBatch)
        if (TDocument* active = ActiveDocument())
            LoadDeferred(*active);
}

int TMainFormHelper::FindDocMemo(const std::string& path) const {
    const auto wanted = AbsolutePath(path);
    for (size_t i = 0; i < FDocuments.size(); ++i)
        if (FDocuments[i]->FFilePath == wanted)
            return static_cast<int>(i);
    return -1;
}

int TMainFormHelper::DocumentIndex(const TDocument& doc) const {
    for (size_t i = 0; i < FDocuments.size(); ++i)
        if (FDocuments[i].get() == &doc)
            return static_cast<int>(i);
    return -1;
}

TDocument& TMainFormHelper::AddDocument(std::unique_ptr<TDocument> doc) {
    doc->FTabGroup = std::clamp(FActiveDocumentView, 0, kTabGroups - 1);
    FDocuments.push_back(std::move(doc));
    TDocument& added = *FDocuments.back();
    if (FListener)
        FListener->DocumentAdded(added);
    Activate(static_cast<int>(FDocuments.size()) - 1);
    return added;
}

bool TMainFormHelper::DecodeFile(const std::string& path, int32_t codePage, TZvMemoStrings& lines,
                                 std::string& error) const {
    // The settings decide what detection falls back to: a pure ASCII file opens in the
    // default encoding, so that what is typed into it later can be saved.
    lines.Memo().FDefaultEncoding = FMemoMisc.DefaultEncoding;
    TFileTypeOptions options;
    options.OpenAsBinary = Utf16ToUtf8(FMemoMisc.OpenAsBinary);
    options.DetectUTF8 = FMemoMisc.DetectUTF8;
    options.DetectAll = FMemoMisc.DetectAll;
    options.AllowIllegalCtrlChars = FMemoMisc.AllowIllegalCtrlChars;
    TFileType type;
    return OpenTextFile(lines, path, static_cast<std::uint32_t>(codePage), type, error, options);
}

bool TMainFormHelper::ReadInto(TDocument& doc, int32_t codePage) {
    auto lines = std::make_unique<TZvMemoStrings>();
    std::string error;
    if (!DecodeFile(doc.FFilePath, codePage, *lines, error)) {
        FPrompt.ShowMessage(LangText("Messages", "011", "Could not open the file!") + "\n\"" +
                            doc.FFilePath + "\"\n" + error);
        return false;
    }
    if (doc.FRememberedMarks) // the first read of a file opened again
        ApplyMarks(*lines, *std::exchange(doc.FRememberedMarks, std::nullopt));
    // Every view of the document takes the new rows before the old ones go.
    doc.Text->ReplaceLines(std::move(lines));
    TakeFileState(doc);
    doc.FTailProbe = TailProbe(doc.FFilePath, doc.Lines().CurrentStreamPos());
    return true;
}

bool TMainFormHelper::AskCreateMissing(const std::string& path) {
    const std::string text = LangText("Messages", "011", "Could not open the file!") + " \"" +
                             path + "\"\n\n" +
                             LangText("Messages", "094", "Do you want to create it?");
    return FPrompt.Prompt("Zevrit", text, pfYesNo, prNo) == prYes;
}

bool TMainFormHelper::LoadFile(const TLoadFileArgs& args) {
    TraceEnter("LoadFile");
    if (FApplicationClosing)
        return false;
    const std::string path = AbsolutePath(args.FileName);
    const TOpenAs openAs = FOpenAs;
    FOpenAs = oaNone;
    if (const int open = FindDocMemo(path); open >= 0) {
        Activate(open);
        if (args.Reload)
            ReloadDocument(*FDocuments[open], CodePageFor(openAs, args.CodePage));
        return true;
    }
    std::error_code ec;
    if (!fs::exists(path, ec)) {
        if (!args.CreateIfMissing && !AskCreateMissing(path))
            return false;
        auto doc = std::make_unique<TDocument>();
        doc->FFilePath = path;
        doc->FIsNew = true;
        ApplyNewDocumentOptions(doc->Lines(), FMemoMisc);
        AddDocument(std::move(doc));
        ActionTraceListAdd("LoadFile", "new " + path);
        return true;
    }
    // Refused before a tab exists: a deferred read of a pipe would wait for a writer.
    if (const std::string kind = NotRegularFileKind(path); !kind.empty()) {
        FPrompt.ShowMessage(LangText("Messages", "011", "Could not open the file!") + "\n\"" +
                            path + "\"\n" + NotRegularFileMessage(kind));
        return false;
    }
    auto doc = std::make_unique<TDocument>();
    doc->FFilePath = path;
    doc->FOpenAs = openAs;
    doc->FDeferredCodePage = CodePageFor(openAs, args.CodePage);
    doc->FAddToMRU = !args.NoMRU;
    if (FFileQ)
        RecallFileData(*FFileQ, *doc, args.CodePage == 50001 && openAs == oaNone,
                       args.CursorX < 0 && args.CursorY < 0);
    // Many files at once: only the tab now, the file when the tab first shows.
    doc->FDeferred = FInBatch || FDelayTabLoad;
    if (!doc->FDeferred && !ReadInto(*doc, doc->FDeferredCodePage))
        return false;
    doc->FReadOnly = doc->FReadOnly || args.ReadOnly || IsReadOnlyFile(path);
    AddDocument(std::move(doc));
    DropUntouchedBlank();
    ActionTraceListAdd("LoadFile", path);
    return true;
}

TDocument& TMainFormHelper::NewDocument(bool blank) {
    auto doc = std::make_unique<TDocument>();
    doc->FFilePath = LangText("Misc", "248", "New") + ".txt";
    doc->FIsNew = true;
    doc->FBlank = blank;
    ApplyNewDocumentOptions(doc->Lines(), FMemoMisc);
    return AddDocument(std::move(doc));
}

TDocument& TMainFormHelper::RestoreDocument(const std::string& path, bool isNew,
                                            std::unique_ptr<TZvMemoStrings> lines, int caretX,
                                            int caretY) {
    auto doc = std::make_unique<TDocument>();
    doc->FFilePath = path;
    doc->FIsNew = isNew;
    doc->Text->ReplaceLines(std::move(lines));
    doc->SetModified(true); // the text differs from the file until the user saves it
    TakeFileState(*doc);
    doc->FCaretX = caretX;
    doc->FCaretY = caretY;
    return AddDocument(std::move(doc));
}

void TMainFormHelper::DropUntouchedBlank() {
    if (FDocuments.size() < 2)
        return;
    for (size_t i = 0; i < FDocuments.size(); ++i) {
        const TDocument& doc = *FDocuments[i];
        if (doc.FBlank && !doc.Modified() && doc.Lines().Count() <= 1 &&
            doc.Lines().GetLineLength(0) == 0) {
            CloseDocument(static_cast<int>(i));
            Activate(static_cast<int>(FDocuments.size()) - 1);
            return;
        }
    }
}

bool TMainFormHelper::ConfirmEncoding(TDocument& doc) {
    TZvMemoStrings& lines = doc.Lines();
    if (lines.FitsCodePage())
        return true;
    const std::string text =
        LangText("Messages", "302",
                 "The document holds characters that its encoding cannot store:") +
        " " + CodePageName(lines.CodePage()) + "\n\"" + doc.FFilePath + "\"\n\n" +
        LangText("Messages", "303",
                 "Yes: save it as UTF-8 instead. No: save anyway, those characters become "
                 "\"?\". Cancel: do not save.");
    switch (FPrompt.Prompt("Zevrit", text, pfYesNoCancel | pfWarning, prCancel)) {
    case prYes:
        lines.SetCodePage(cpUTF8);
        lines.SetUseBOM(false);
        return true;
    case prNo:
        return true;
    default:
        return false;
    }
}

bool TMainFormHelper::CloseDocument(int index) {
    if (index < 0 || index >= static_cast<int>(FDocuments.size()))
        return false;
    auto doc = std::move(FDocuments[index]);
    FDocuments.erase(FDocuments.begin() + index);
    if (FListener)
        FListener->DocumentRemoved(*doc);
    if (FActive > index) {
        --FActive; // the same document
    } else if (FActive == index) {
        FActive = Neighbour(index, doc->FTabGroup);
    }
    if (FActive >= 0)
        Activate(FActive);
    return true;
}

int TMainFormHelper::Neighbour(int index, int group) const {
    const int count = static_cast<int>(FDocuments.size());
    for (int i = index; i < count; ++i)
        if (FDocuments[i]->FTabGroup == group)
            return i;
    for (int i = std::min(index, count) - 1; i >= 0; --i)
        if (FDocuments[i]->FTabGroup == group)
            return i;
    return std::min(index, count - 1);
}

void TMainFormHelper::MoveToGroup(TDocument& doc, int group) {
    const int index = DocumentIndex(doc);
    if (index < 0 || group < 0 || group >= kTabGroups)
        return;
    TDocument* active = ActiveDocument();
    auto owned = std::move(FDocuments[index]);
    FDocuments.erase(FDocuments.begin() + index);
    owned->FTabGroup = group;
    FDocuments.push_back(std::move(owned));
    FActive = active ? DocumentIndex(*active) : -1;
}

void TMainFormHelper::ProcessParam(const std::string& path, const TParamFlags& flags) {
    Trace("ProcessParam()");
    const bool remote = path.find('|') != std::string::npos;
    TLoadFileArgs args;
    args.FileName = remote ? path : AbsolutePath(path);
    args.CodePage = flags.codePage;
    args.ReadOnly = flags.readOnly;
    args.Reload = flags.reload;
    if (flags.hex || flags.binary) {
        FOpenAs = flags.binary ? oaBinary : oaHex;
        LoadFile(args);
        FOpenAs = oaNone;
    } else if (remote) {
        FPrompt.ShowMessage(LangText("Messages", "300",
                                     "Remote files cannot be opened from the command line "
                                     "until a site is set up:") +
                            " " + path);
    } else if (flags.monitor) {
        const bool delay = FDelayTabLoad, batch = FInBatch;
        FDelayTabLoad = FInBatch = false; // a followed log is read at once
        if (LoadFile(args) && ActiveDocument())
            ActiveDocument()->FMonitored = true;
        FDelayTabLoad = delay;
        FInBatch = batch;
    } else {
        args.CreateIfMissing = true;
        LoadFile(args);
    }
}

} // namespace zv
