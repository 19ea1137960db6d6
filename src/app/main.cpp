// zevrit entry: help and version, the headless run, or the instance check and the window.
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

#include <cstdio>
#include <cstdlib>
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
    "  -COMPARE F1 F2  compare two files\n"
    "  -headless FILE...  load and save each file without a window\n"
    "  --help, --version\n";

bool HasDisplay() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (const char* value = std::getenv(name); value && *value)
            return true;
    return false;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> args(argv, argv + argc);
    if (argc == 2 && args[1] == "--help") {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if (argc == 2 && args[1] == "--version") {
        std::puts("Zevrit 0.1.0");
        return 0;
    }
    zv::InstallCrashReport(zv::GetRootFolder() / "Temp" / "CrashReport.txt");
    if (zv::WantsHeadless(args)) {
        QCoreApplication app(argc, argv);
        return zv::RunHeadless(args);
    }
    if (!HasDisplay()) {
        std::fputs("zevrit: no display (DISPLAY and WAYLAND_DISPLAY are unset).\n"
                   "Run headless with `zevrit -headless FILE...`, off screen with "
                   "QT_QPA_PLATFORM=offscreen, or under `xvfb-run -a zevrit`.\n",
                   stderr);
        return 1;
    }
    QApplication app(argc, argv);
    zv::TraceConfigure(zv::ProgramFolder(), zv::GetRootFolder());
    zv::TRunOnce block;
    zv::TEntryParams entry;
    entry.argv = args;
    entry.options = zv::ReadStartOptions(zv::GetRootFolder());
    entry.controlHeld = QGuiApplication::queryKeyboardModifiers() & Qt::ControlModifier;
    entry.appHandle = static_cast<uint64_t>(::getpid());
    entry.cwd = QDir::currentPath().toStdString();
    const auto outcome = zv::RunInstanceCheck(block, entry);
    if (outcome == zv::TEntryOutcome::HandedOver)
        return 0;
    QApplication::setApplicationName(QStringLiteral("Zevrit"));
    QApplication::setApplicationDisplayName(QStringLiteral("Zv Zevrit"));
    if (entry.options.AppIcon > -1) {
        const auto icon = zv::GetRootFolder() / "Data" / "icons" /
                          (std::to_string(entry.options.AppIcon) + ".ico");
        QApplication::setWindowIcon(QIcon(QString::fromStdString(icon.string())));
    }

    zv::OpenProgramSettings(zv::GetRootFolder(), zv::SettingsFileFor(args, zv::GetRootFolder()));
    zv::TQtPrompt prompt;
    zv::TMainFormHelper helper(prompt);
    zv::TMainWindow window(helper);
    prompt.SetParent(&window);
    zv::TMainForm form(helper, &window);
    form.RegisterWindow(block, outcome == zv::TEntryOutcome::RunAsFirst);
    window.show();
    form.FormShow(args);
    const int code = app.exec();
    helper.FApplicationClosing = true;
    block.FreeFiles();
    zv::CloseProgramSettings(zv::GetRootFolder());
    zv::TraceShutdown();
    return code;
}
