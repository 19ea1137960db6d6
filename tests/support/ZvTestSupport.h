// Shared test fixtures: the one Qt application object of a test program and a temporary
// folder that removes itself.
#pragma once

#include <filesystem>
#include <string>
#include <unistd.h>

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

// A fresh folder under the system temp folder, named by stem and process id; removed with
// everything in it when the object dies.
class TTempDir {
public:
    explicit TTempDir(const std::string& stem)
        : FPath(std::filesystem::temp_directory_path() /
                (stem + "-" + std::to_string(::getpid()))) {
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
    std::filesystem::path FPath;
};

} // namespace zvtest
