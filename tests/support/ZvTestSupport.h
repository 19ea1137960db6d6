// Shared test fixtures: the one Qt application object of a test program, a temporary
// folder that removes itself, whole-file reads and writes.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace zvtest {

// The application object (QCoreApplication or QApplication) of this test program, made on
// first use. Never destroyed: destroying it among the static destructors at exit crashes
// in Qt's own statics.
template <typename TApp> TApp& TheApp() {
    static int argc = 1;
    static char name[] = "zv_tests";
    static char* argv[] = {name, nullptr};
    static TApp* app = new TApp(argc, argv);
    return *app;
}

// A fresh folder under the system temp folder, named by stem, process id and a count (so
// two alive at once never share one); removed with everything in it when the object dies.
class TTempDir {
public:
    explicit TTempDir(const std::string& stem = "zv-test")
        : FPath(std::filesystem::temp_directory_path() /
                (stem + "-" + std::to_string(::getpid()) + "-" + std::to_string(NextNumber()))) {
        std::filesystem::remove_all(FPath);
        std::filesystem::create_directories(FPath);
    }
    ~TTempDir() {
        std::error_code ec;
        std::filesystem::remove_all(FPath, ec);
    }
    TTempDir(const TTempDir&) = delete;
    TTempDir& operator=(const TTempDir&) = delete;
    const std::filesystem::path& Path() const { return FPath; }
    std::filesystem::path operator/(const std::string& name) const { return FPath / name; }

private:
    static int NextNumber() {
        static std::atomic<int> count{0};
        return count++;
    }
    std::filesystem::path FPath;
};

inline std::string ReadAll(const std::filesystem::path& p) {
    std::ifstream in(p, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// Replaces the file's bytes with `bytes`.
inline void WriteAll(const std::filesystem::path& p, const std::string& bytes) {
    std::ofstream(p, std::ios::binary | std::ios::trunc) << bytes;
}

// Runs a command line through the shell and returns its standard output; `status` gets the
// exit code (-1 when it could not run or was killed).
inline std::string RunOutput(const std::string& commandLine, int& status) {
    std::string out;
    FILE* pipe = ::popen(commandLine.c_str(), "r");
    if (!pipe) {
        status = -1;
        return out;
    }
    char buffer[4096];
    std::size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0)
        out.append(buffer, n);
    const int rc = ::pclose(pipe);
    status = WIFEXITED(rc) ? WEXITSTATUS(rc) : -1;
    return out;
}
inline std::string RunOutput(const std::string& commandLine) {
    int status = 0;
    return RunOutput(commandLine, status);
}

// Names in the folder, sorted, the folder itself excluded (to find stray temporary files).
inline std::vector<std::string> FolderNames(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace zvtest
