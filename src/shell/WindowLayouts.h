// Named window layouts under the data root's "Layouts" folder: for each, the panel state
// "<name>.txt" (sections "Main", "Sidebar", "DocumentTabs", "Window") and the dock layout
// "<name>.xml". Switching keeps the state from before in "_backup.txt"/"_backup.xml".
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace zv {

// What a layout holds of the window as it is today.
struct TWindowLayout {
    bool Maximized = false;
    bool Minimized = false;
    int Width = 1000;
    int Height = 700;
    bool ShowDocumentTabs = true;
    std::string DockState; // the window's own serialized dock and tool bar layout, base64
    bool operator==(const TWindowLayout&) const = default;
};

class TWindowLayouts {
public:
    explicit TWindowLayouts(std::filesystem::path folder) : FFolder(std::move(folder)) {}

    // Writes both files of `name` (atomically); false with `error` set on failure.
    bool Save(const std::string& name, const TWindowLayout& layout, std::string& error) const;
    // Reads the layout `name`; nullopt with `error` set when its files are missing or damaged.
    std::optional<TWindowLayout> Load(const std::string& name, std::string& error) const;
    // Keeps `current` as the backup, then reads `name`: the switch the user asks for.
    std::optional<TWindowLayout> Switch(const std::string& name, const TWindowLayout& current,
                                        std::string& error) const;
    // The saved layouts' names, sorted, the backup left out.
    std::vector<std::string> Names() const;

    static constexpr const char* kBackup = "_backup";

private:
    std::filesystem::path FFolder;
};

} // namespace zv
