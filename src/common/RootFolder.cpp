// Root folder rule: ZEVRIT_ROOT, else installed (XDG config) or portable (parent of bin/).
#include "common/RootFolder.h"

#include <cstdlib>
#include <system_error>

namespace zv {
namespace fs = std::filesystem;

namespace {
std::string Env(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}
} // namespace

fs::path ProgramFolder() {
    std::error_code ec;
    const auto exe = fs::read_symlink("/proc/self/exe", ec);
    return ec ? fs::current_path() : exe.parent_path();
}

bool IsInstalledMode(const fs::path& programFolder) {
    std::error_code ec;
    if (fs::exists(programFolder / "InstallData", ec))
        return true;
    return fs::exists(programFolder.parent_path() / "share" / "zevrit" / "InstallData", ec);
}

fs::path ComputeRootFolder(const fs::path& programFolder) {
    if (const auto root = Env("ZEVRIT_ROOT"); !root.empty()) {
        auto normal = fs::absolute(root).lexically_normal();
        return normal.has_filename() ? normal : normal.parent_path();
    }
    if (IsInstalledMode(programFolder)) {
        auto config = Env("XDG_CONFIG_HOME");
        if (config.empty())
            config = Env("HOME") + "/.config";
        return fs::path(config) / "zevrit";
    }
    return programFolder.parent_path();
}

const fs::path& GetRootFolder() {
    static const fs::path root = ComputeRootFolder(ProgramFolder());
    return root;
}

} // namespace zv
