// Runs a program of the build tree with its own data root and instance folder.
#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

#include <filesystem>
#include <string>

namespace zvtest {

struct TRunResult {
    int exitCode = -1;
    bool finished = false;
    std::string out;
    std::string err;
};

// The environment of a program run with its own data root and runtime folder (made private,
// as the runtime folder must be).
inline QProcessEnvironment IsolatedEnvironment(const std::filesystem::path& root,
                                               const std::filesystem::path& runtime) {
    std::filesystem::create_directories(runtime);
    std::filesystem::permissions(runtime, std::filesystem::perms::owner_all,
                                 std::filesystem::perm_options::replace);
    auto env = QProcessEnvironment::systemEnvironment();
    env.insert("ZEVRIT_ROOT", QString::fromStdString(root.string()));
    env.insert("XDG_RUNTIME_DIR", QString::fromStdString(runtime.string()));
    env.insert("QT_QPA_PLATFORM", "offscreen");
    return env;
}

// Starts program with args and waits at most timeoutMs for it to end.
inline TRunResult RunProgram(const QString& program, const QStringList& args,
                             const QProcessEnvironment& env, int timeoutMs = 30000,
                             const QString& workDir = {}) {
    QProcess process;
    process.setProcessEnvironment(env);
    if (!workDir.isEmpty())
        process.setWorkingDirectory(workDir);
    process.start(program, args);
    TRunResult result;
    result.finished = process.waitForFinished(timeoutMs);
    if (!result.finished) {
        process.kill();
        process.waitForFinished(2000);
    }
    result.exitCode = process.exitCode();
    result.out = process.readAllStandardOutput().toStdString();
    result.err = process.readAllStandardError().toStdString();
    return result;
}

} // namespace zvtest
