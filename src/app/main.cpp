// zevrit entry: help and version, the headless run, or the instance check and the window
// (without a display only a hand-over to a running window is possible).
#include "common/CrashReport.h"
#include "common/Trace.h"
#include "shell/MainForm.h"
#include "shell/RootFolder.h"
#include "shell/RunOnce.h"
#include "shell/Startup.h"
#include "ui/MainWindow.h"
#include "ui/QtPrompt.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QIcon>
#include <QMessageBox>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr const char* kUsage =
    "Usage: zevrit [SWITCHES] [FILE...]\n"
    "Opens each FILE in a tab of the Zevrit window (a second call hands its files to the\n"
    "running window). Switches start with - or / and ignore case:\n"
    "  -R  read-only        -RL  read again if open   -CP=N  code page (e.g. 1252, 65001)\n"
    "  -L:N  go to line N   -HEX  hexadecimal view    -BIN   as binary\n"
    "  -MONITOR  follow as a log   -C  close the files named after it\n"
    "  -DIR FOLDER  default save folder   -NOREOPEN  do not reopen the last documents\n"
    "  -MULTI  allow a further instance   -SILENT    no splash, no reopening\n"
    "  -COMPARE F1 F2  open two files to compare them\n"
    "  -headless FILE...  load and save each file without a window\n"
    "  --help, --version\n";

// True if a whole argument after the program is `option` ("--help" anywhere asks for help).
bool HasOption(const std::vector<std::string>& args, const char* option) {
    return args.size() > 1 && std::find(args.begin() + 1, args.end(), option) != args.end();
}

// Runs every event's handler; a command that runs out of memory is stopped there with a
// message, and the window with every other document lives on.
class TZevritApplication : public QApplication {
public:
    using QApplication::QApplication;
    bool notify(QObject* receiver, QEvent* event) override {
        try {
            return QApplication::notify(receiver, event);
        } catch (const std::bad_alloc&) {
            zv::Trace("notify() - out of memory");
            // Told after this event: a message box now would run inside the failed handler.
            QTimer::singleShot(0, this, [] {
                QMessageBox::warning(QApplication::activeWindow(), QStringLiteral("Zevrit"),
                                     QStringLiteral("There was not enough memory to finish the "
                                                    "last command. Your documents are kept."));
            });
            return false;
        }
    }
};

bool HasDisplay() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (const char* value = std::getenv(name); value && *value)
            return true;
    return false;
}

zv::TEntryParams EntryParams(const std::vector<std::string>& args, bool controlHeld) {
    zv::TEntryParams entry;
    entry.argv = args;
    entry.options = zv::ReadStartOptions(zv::GetRootFolder());
    entry.controlHeld = controlHeld;
    entry.appHandle = static_cast<uint64_t>(::getpid());
    entry.cwd = QDir::currentPath().toStdString();
    return entry;
}

// Without a display a window cannot open here, but a running one can still take the files.
int RunWithoutDisplay(int argc, char** argv, const std::vector<std::string>& args) {
    QCoreApplication app(argc, argv);
    zv::TraceConfigure(zv::ProgramFolder(), zv::GetRootFolder());
    zv::TRunOnce block;
    if (zv::RunInstanceCheck(block, EntryParams(args, false)) == zv::TEntryOutcome::HandedOver)
        return 0;
    std::fputs("zevrit: no display (DISPLAY and WAYLAND_DISPLAY are unset), so no window can "
               "open.\nRun headless with `zevrit -headless FILE...`, off screen with "
               "QT_QPA_PLATFORM=offscreen, or under `xvfb-run -a zevrit`.\n",
               stderr);
    return 1;
}

void SetApplicationLook(int32_t appIcon) {
    QApplication::setApplicationName(QStringLiteral("Zevrit"));
    QApplication::setApplicationDisplayName(QStringLiteral("Zv Zevrit"));
    if (appIcon > -1) {
        const auto icon =
            zv::GetRootFolder() / "Data" / "icons" / (std::to_string(appIcon) + ".ico");
        QApplication::setWindowIcon(QIcon(QString::fromStdString(icon.string())));
    }
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> args(argv, argv + argc);
    if (HasOption(args, "--help")) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if (HasOption(args, "--version")) {
        std::puts("Zevrit 0.1.0");
        return 0;
    }
    zv::InstallCrashReport(zv::GetRootFolder() / "Temp" / "CrashReport.txt");
    if (zv::WantsHeadless(args)) {
        QCoreApplication app(argc, argv);
        return zv::RunHeadless(args);
    }
    if (!HasDisplay())
        return RunWithoutDisplay(argc, argv, args);
    TZevritApplication app(argc, argv);
    // Qt took its own options (-platform, -style, ...) out of argv: they name no files.
    const std::vector<std::string> windowArgs(argv, argv + argc);
    zv::TraceConfigure(zv::ProgramFolder(), zv::GetRootFolder());
    zv::TRunOnce block;
    // Control held at start asks for a further instance.
    const auto entry =
        EntryParams(windowArgs, QGuiApplication::queryKeyboardModifiers() & Qt::ControlModifier);
    const auto outcome = zv::RunInstanceCheck(block, entry);
    if (outcome == zv::TEntryOutcome::HandedOver)
        return 0;
    SetApplicationLook(entry.options.AppIcon);

    const std::string settingsFault = zv::OpenProgramSettings(
        zv::GetRootFolder(), zv::SettingsFileFor(windowArgs, zv::GetRootFolder()));
    zv::TQtPrompt prompt;
    zv::TMainFormHelper helper(prompt);
    zv::TMainWindow window(helper);
    prompt.SetParent(&window);
    zv::TMainForm form(helper, &window);
    window.AttachForm(form);
    form.RegisterWindow(block, outcome == zv::TEntryOutcome::RunAsFirst);
    window.show();
    if (!settingsFault.empty())
        prompt.ShowMessage(settingsFault);
    form.FormShow(windowArgs);
    zv::SettingsStarted(zv::GetRootFolder());
    const int code = app.exec();
    helper.FApplicationClosing = true;
    block.FreeFiles();
    // Told once per run: a fault seen at the start is not told again at the end.
    if (const std::string fault = zv::CloseProgramSettings(zv::GetRootFolder());
        !fault.empty() && settingsFault.empty() && !form.Terminated())
        prompt.ShowMessage(fault);
    zv::TraceShutdown();
    return code;
}
