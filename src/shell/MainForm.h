// The main object: owns the documents' helper, receives hand-overs from later instances
// and runs the argument passes. The window is a view it talks to through IMainView, so
// everything here also runs headless.
#pragma once

#include "shell/CommandLine.h"
#include "shell/CrashKeeper.h"
#include "shell/MainFormHelper.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>
#include <string>
#include <vector>

namespace zv {

class TDocumentMemory;
class TFileMonitor;
class TRunOnce;
class THandOverServer;
class TTerminationWatch;

// What the main object needs of its window.
class IMainView {
public:
    virtual ~IMainView() = default;
    virtual bool IsVisible() const = 0;
    virtual bool IsMinimized() const = 0;
    // Shows the window if hidden, restores it if minimised, and brings it to the front.
    virtual void BringUp() = 0;
    // Puts the caret of the active document on a 1-based line and focuses it.
    virtual void ShowLine(int line) = 0;
};

class TMainForm : public QObject, public ICommandLineHost {
    Q_OBJECT
public:
    // Applies the settings object's options to the helper (SetCustomize, LoadTextOptions),
    // so the settings must be open by now; view is null when headless.
    TMainForm(TMainFormHelper& helper, IMainView* view, QObject* parent = nullptr);
    ~TMainForm() override;

    // Listens for hand-overs to a new window at once and names it in the instance block as
    // soon as events run.
    void RegisterWindow(TRunOnce& block, bool firstInstance);
    uint64_t WindowHandle() const { return FWindowHandle; }

    // The argument pass of the window's first show; a bad switch value is reported.
    void FormShow(const std::vector<std::string>& argv);
    // Consumes FParamStrings (hand-overs); fromTimer when the 300 ms timer fired.
    void LoadStoredParamStrings(bool fromTimer) override;
    // A copy-data message of another instance (also called directly by tests).
    void HandOverReceived(quint64 kind, const QString& text);

    // ICommandLineHost
    void ProcessParam(const std::string& path, const TParamFlags& flags) override;
    bool CloseDocument(const std::string& path) override;
    void BeginBatch() override;
    void EndBatch() override;

    // /COMPARE: both files must exist and be different paths, else nothing happens. Each
    // is opened; comparing them waits for the compare mode, which a message says.
    void CompareFiles(const std::string& file1, const std::string& file2);

    // One round of the automatic save ("AutoSave"): returns the milliseconds until the next,
    // 0 when it is off. In a batch it only waits 10 s for the batch to end.
    int AutoSaveTimerTick();
    static constexpr int kAutoSaveRetryMs = 10000;

    // The crash session of unsaved text (under the data root's "Data/Crash").
    TCrashKeeper& Crash() { return *FCrash; }
    // Recent files, memory per file, reopen list and sessions (under "Data"); null when
    // headless.
    TDocumentMemory* Memory() { return FMemory.get(); }
    // The window closes: every document is offered for saving and closed, its state
    // remembered. False when the user cancelled (everything stays open).
    bool FormCloseQuery();

    TCommandLineState& State() { return FState; }
    // True when SIGTERM or SIGHUP ended the run: no question or message can be shown then.
    bool Terminated() const { return FTerminated; }

    const std::string& ParamStrings() const { return FParamStrings; }
    uint64_t FZenHWnd = 0; // window of a companion process (kind 1010)
    static constexpr int kParamsDelayMs = 300;

signals:
    // Kind 1009: text to paste into the active editor by smart paste.
    void pasteRequested(const QString& text);
    // A message for the user that the view shows.
    void batchChanged(bool inBatch);

private:
    // Offers the texts a killed run kept, then watches for SIGTERM and SIGHUP.
    void OfferCrashSession();

    TMainFormHelper& FHelper;
    IMainView* FView; // null when headless
    TCommandLineState FState;
    std::string FParamStrings; // hand-over texts not yet opened
    QTimer ParamsTimer;
    QTimer AutoSaveTimer;
    std::unique_ptr<TCrashKeeper> FCrash;
    std::unique_ptr<TFileMonitor> FMonitor;   // with a window only: headless runs ask nothing
    std::unique_ptr<TDocumentMemory> FMemory; // with a window only
    std::unique_ptr<TTerminationWatch> FTermination; // set once the window shows
    std::unique_ptr<THandOverServer> FHandOver;
    TRunOnce* FRunOnce = nullptr;
    uint64_t FWindowHandle = 0;
    bool FFormShown = false;
    bool FTerminated = false; // a signal ended the run: nobody is there to answer
    int FBatchDepth = 0;
};

} // namespace zv
