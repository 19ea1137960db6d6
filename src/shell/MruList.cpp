// The recent-files lists.
#include "shell/MruList.h"

#include "common/AtomicFile.h"

#include <algorithm>

namespace zv {

bool IsRecentPath(const std::string& path) {
    return !path.empty() && (path.front() == '/' || path.find('|') != std::string::npos) &&
           path.find_first_of("\r\n") == std::string::npos;
}

TZvMRUList::TZvMRUList(std::filesystem::path file, int capacity)
    : fCapacity(std::max(1, capacity)), FFilename(std::move(file)) {}

bool TZvMRUList::AddFile(const std::string& path) {
    if (!IsRecentPath(path))
        return false;
    RemovePath(path);
    while (static_cast<int>(fMRU.size()) >= fCapacity)
        fMRU.pop_back();
    fMRU.insert(fMRU.begin(), path);
    return true;
}

void TZvMRUList::LoadList() {
    if (fLoaded)
        return;
    fLoaded = true;
    fMRU.clear();
    const auto bytes = ReadWholeFile(FFilename);
    if (!bytes)
        return;
    size_t start = 0;
    while (start < bytes->size() && static_cast<int>(fMRU.size()) < fCapacity) {
        size_t end = bytes->find('\n', start);
        if (end == std::string::npos)
            end = bytes->size();
        std::string line = bytes->substr(start, end - start);
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (IsRecentPath(line) && std::find(fMRU.begin(), fMRU.end(), line) == fMRU.end())
            fMRU.push_back(std::move(line));
        start = end + 1;
    }
}

bool TZvMRUList::SaveList() const {
    std::string text;
    for (const std::string& path : fMRU)
        text += path + '\n';
    std::error_code ec;
    std::filesystem::create_directories(FFilename.parent_path(), ec);
    return WriteFileAtomically(FFilename, text);
}

void TZvMRUList::RemoveItem(int index) {
    if (index >= 0 && index < static_cast<int>(fMRU.size()))
        fMRU.erase(fMRU.begin() + index);
}

void TZvMRUList::RemovePath(const std::string& path) {
    std::erase(fMRU, path);
}

std::vector<std::string> TZvMRUList::RefreshList(int maxDisplay, bool removeInvalid) {
    if (removeInvalid)
        std::erase_if(fMRU, [](const std::string& path) {
            std::error_code ec;
            return path.find('|') == std::string::npos && !std::filesystem::exists(path, ec);
        });
    const size_t count = std::min(fMRU.size(), static_cast<size_t>(std::max(0, maxDisplay)));
    return {fMRU.begin(), fMRU.begin() + static_cast<std::ptrdiff_t>(count)};
}

} // namespace zv
