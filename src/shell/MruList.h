// A recent-files list ("Data/MRU.txt", "Data/MRUClosed.txt"): one path per line, newest
// first, at most a capacity of entries.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zv {

class TZvMRUList {
public:
    TZvMRUList(std::filesystem::path file, int capacity);

    // Takes an absolute path (or a remote "local|server" one) to the head; an entry of the
    // same path moves there, and the oldest entries beyond the capacity go. Other paths
    // (a new document's bare name) are ignored: false.
    bool AddFile(const std::string& path);
    // Reads the file the first time it is called (a missing file: an empty list).
    void LoadList();
    // Writes the list atomically; false (the old file kept) on failure.
    bool SaveList() const;
    void ClearList() { fMRU.clear(); }
    void RemoveItem(int index);
    void RemovePath(const std::string& path);
    // The entries for a menu: at most `maxDisplay`; with `removeInvalid`, entries whose
    // files are gone are dropped from the list first (remote entries always count as there).
    std::vector<std::string> RefreshList(int maxDisplay, bool removeInvalid);

    const std::vector<std::string>& Items() const { return fMRU; }
    int Capacity() const { return fCapacity; }

private:
    std::vector<std::string> fMRU; // newest first
    int fCapacity;
    std::filesystem::path FFilename;
    bool fLoaded = false;
};

// True for a path a recent list takes: absolute, or remote (holds "|"), and no line end
// in it (the lists are one path per line).
bool IsRecentPath(const std::string& path);

} // namespace zv
