// Hand-over reception and the argument passes of the main object.
#include "shell/MainForm.h"

#include "common/Trace.h"
#include "shell/DocumentMemory.h"
#include "shell/FileMonitor.h"
#include "shell/HandOver.h"
#include "shell/Language.h"
#include "shell/RootFolder.h"
#include "shell/RunOnce.h"
#include "shell/Settings.h"
#include "shell/Switches.h"
#include "shell/TerminationWatch.h"

#include <QCoreApplication>

#include <filesystem>

namespace zv {

TMainForm::TMainForm(TMainFormHelper& helper, IMainView* view, QObject* parent)
    : QObject(parent), FHelper(helper), FView(view) {
    // What FormCreate reads once the settings are open.
    FHelper.SetCustomize(SettingsIni());
    FHelper.LoadTextOptions(SettingsIni());
    ParamsTimer.setSingleShot(true);
    ParamsTimer.setInterval(kParamsDelayMs);
    connect(&ParamsTimer, &QTimer::timeout, this, [this] { LoadStoredParamStrings(true); });
    FCrash = std::make_unique<TCrashKeeper>(FHelper, GetRootFolder() / "Data" / "Crash");
    AutoSaveTimer.setSingleShot(true);
    connect(&AutoSaveTimer, &QTimer::timeout, this, [this] {
        if (const int next = AutoSaveTimerTick(); next > 0)
            AutoSaveTimer.start(next);
    });
    if (FHelper.Customize().AutoSaveEnable)
        AutoSaveTimer.start(FHelper.Customize().AutoSaveIntervalMinutes * 60000);
    if (FView) {
        FMonitor = std::make_unique<TFileMonitor>(FHelper);
        FMemory = std::make_unique<TDocumentMemory>(FHelper, *this, GetRootFolder() / "Data",
                                                    SettingsIni());
    }
}

int TMainForm::AutoSaveTimerTick() {
    const TCustomizeOptions& options = FHelper.Customize();
    if (!options.AutoSaveEnable || FHelper.FApplicationClosing)
        return 0;
    if (FBatchDepth > 0)
        return kAutoSaveRetryMs;
    FHelper.AutoSave();
    return options.AutoSaveIntervalMinutes * 60000;
}

bool TMainForm::FormCloseQuery() {
    if (FMemory)
        FMemory->BeginExit();
    if (!FHelper.CloseAllDocumentTabs()) {
        if (FMemory)
            FMemory->CancelExit();
        return false;
    }
    FCrash->Clear(); // a clean end: nothing unsaved is left
    if (FMemory)
        FMemory->Flush();
    return true;
}

TMainForm::~TMainForm() {
    FMemory.reset(); // stops listening before the helper's documents go
    if (FRunOnce && FWindowHandle)
        FRunOnce->RemoveHandle(FWindowHandle);
}

void TMainForm::RegisterWindow(TRunOnce& block, bool firstInstance) {
    FRunOnce = &block;
    FWindowHandle = NewWindowHandle();
    Trace("RegisterWindow() - window " + std::to_string(FWindowHandle));
    FHandOver = std::make_unique<THandOverServer>(FWindowHandle);
    connect(FHandOver.get(), &THandOverServer::received, this, &TMainForm::HandOverReceived);
    // Named in the block once events run, so that a sender that finds the window is answered
    // at once instead of waiting out the rest of this start.
    QTimer::singleShot(0, this, [this, &block, firstInstance] {
        if (!firstInstance || !block.UpdateHandle(FWindowHandle, 0))
            block.AddHandle(FWindowHandle);
    });
}

void TMainForm::FormShow(const std::vector<std::string>& argv) {
    FFormShown = true;
    // The last documents come back unless a crashed run's texts do.
    const bool reopen = FMemory && !FCrash->HasSession() &&
                        WantsReopen(argv, FHelper.MemoMiscOptions().ReopenLastDoc);
    // Unsaved text a killed or crashed run left behind: offered before anything opens.
    if (FView)
        OfferCrashSession();
    if (reopen)
        FMemory->ReopenLastDocuments();
    try {
        RunArgumentPass(argv, *this, FState);
    } catch (const EConvertError& e) {
        FState.FLoadParams = false;
        while (FBatchDepth > 0)
            EndBatch();
        FHelper.Prompter().ShowMessage(e.what());
    }
    // Nothing named and nothing open: a blank document to type into, when the settings ask.
    if (argv.size() <= 1 && FHelper.Documents().empty() && FHelper.Customize().BlankAtStartup)
        FHelper.NewDocument(true);
    if (FState.FCompareRequested)
        CompareFiles(FState.FCompareFile1, FState.FCompareFile2);
    if (FView && FState.FLine > 0)
        FView->ShowLine(FState.FLine);
}

void TMainForm::OfferCrashSession() {
    if (FCrash->HasSession()) {
        const std::string text =
            LangText("Messages", "134",
                     "Zevrit did not end properly. Restore the unsaved text of its documents?");
        if (FHelper.Prompt("Zevrit", text, pfYesNo, prYes) == prYes && FCrash->Restore() > 0) {
            // Kept again by this run before the former run's copies go.
            FCrash->WriteNow();
            FCrash->WaitWritten();
        }
        FCrash->DropFormerSessions();
    }
    // A logout or `kill` asks nothing: the unsaved text is kept for the next start.
    FTermination = std::make_unique<TTerminationWatch>([this](int signal) {
        Trace("TerminationSignal() - " + std::to_string(signal));
        FTerminated = true;
        FCrash->WriteNow();
        FCrash->WaitWritten();
        if (FMemory)
            FMemory->KeepOpenDocuments();
        QCoreApplication::exit(0);
    });
}

void TMainForm::CompareFiles(const std::string& file1, const std::string& file2) {
    TraceEnter("CompareFiles");
    const std::string path1 = AbsolutePath(file1);
    const std::string path2 = AbsolutePath(file2);
    std::error_code ec;
    if (path1 == path2 || !std::filesystem::is_regular_file(path1, ec) ||
        !std::filesystem::is_regular_file(path2, ec))
        return;
    for (const auto& path : {path1, path2}) {
        TLoadFileArgs args;
        args.FileName = path;
        FHelper.LoadFile(args);
    }
    FHelper.Prompter().ShowMessage(
        LangText("Messages", "301", "Comparing documents is not available in this version."));
}

void TMainForm::HandOverReceived(quint64 kind, const QString& text) {
    Trace("HandOverReceived() - kind " + std::to_string(kind));
    switch (kind) {
    case kHandOverParams:
        FParamStrings += text.toStdString();
        if (!FView || FView->IsVisible() || FView->IsMinimized())
            ParamsTimer.start();
        break;
    case kHandOverPaste:
        emit pasteRequested(text);
        break;
    case kHandOverZenWindow:
        FZenHWnd = text.trimmed().toULongLong();
        break;
    default:
        break;
    }
}

void TMainForm::LoadStoredParamStrings(bool fromTimer) {
    if (FParamStrings.empty())
        return;
    Trace(fromTimer ? "LoadStoredParamStrings() - timer" : "LoadStoredParamStrings()");
    if (FView && (!FView->IsVisible() || FView->IsMinimized()))
        FView->BringUp();
    const std::string params = std::move(FParamStrings);
    FParamStrings.clear();
    try {
        RunHandOverPass(params, *this, FState);
    } catch (const EConvertError& e) {
        while (FBatchDepth > 0)
            EndBatch();
        FHelper.Prompter().ShowMessage(e.what());
    }
    if (FView) {
        FView->BringUp();
        if (FState.FLine > 0)
            FView->ShowLine(FState.FLine);
    }
}

void TMainForm::ProcessParam(const std::string& path, const TParamFlags& flags) {
    FHelper.ProcessParam(path, flags);
}

bool TMainForm::CloseDocument(const std::string& path) {
    return FHelper.CloseDocument(FHelper.FindDocMemo(path));
}

void TMainForm::BeginBatch() {
    if (FBatchDepth++ == 0) {
        FHelper.SetBatch(true);
        emit batchChanged(true);
    }
}

void TMainForm::EndBatch() {
    if (FBatchDepth > 0 && --FBatchDepth == 0) {
        FHelper.SetBatch(false);
        emit batchChanged(false);
    }
}

} // namespace zv
