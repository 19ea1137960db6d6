// The lists of documents kept by name: the last documents of a run ("Data/_reopen.txt") and
// the user's named sessions ("Data/Sessions.ini").
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zv {

// The documents of the tab groups in tab order, and which tab was active.
struct TOpenFiles {
    std::vector<std::vector<std::string>> Views; // index = tab group, at most 6
    int ActiveView = 0;
    int PageIndex = -1; // -1: none
    bool operator==(const TOpenFiles&) const = default;
};

// Writes "_reopen.txt" anew (sections "View0".."View5", "Active"), in UTF-8, atomically.
bool SaveLastOpenFiles(const std::filesystem::path& file, const TOpenFiles& files);
// Reads it; a missing or unreadable file gives no documents.
TOpenFiles LoadLastOpenFiles(const std::filesystem::path& file);

class TSessions {
public:
    // Reads the sessions file (missing: no sessions).
    explicit TSessions(std::filesystem::path file);
    std::vector<std::string> Names() const;
    // "<No description>" when the session has none.
    std::string Description(const std::string& name) const;
    // The documents of each tab group ("LeftFiles", "RightFiles", "TG2Files".."TG5Files").
    std::vector<std::vector<std::string>> Files(const std::string& name) const;
    // Stores (or replaces) a session and writes the file; false for a name that cannot be
    // a section ("", "[", "]", a line end) or a failed write. A path holding "|", which
    // separates the paths of a list, is left out rather than split.
    bool Save(const std::string& name, const std::string& description,
              const std::vector<std::vector<std::string>>& views);
    // Removes a session and writes the file; false when it did not exist or the write failed.
    bool Delete(const std::string& name);

private:
    std::filesystem::path FFile;
};

// True for a session name that can be stored.
bool IsSessionName(const std::string& name);

} // namespace zv
