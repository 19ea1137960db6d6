// Settings files kept on disk: every call reads the file, every change writes it at once.
#pragma once

#include "shell/ZvIniFiles.h"

#include <atomic>
#include <filesystem>
#include <mutex>

namespace zv {

// A settings file read whole at each call and written back (atomically) at each change,
// so several threads and several processes can share it: each call holds a lock on the
// file (shared to read, exclusive to change) and the object's own mutex, and a change is a
// read-modify-write under the exclusive lock, so no concurrent writer's key is lost.
// Each call costs a read of the whole file: for small files and rare calls.
class TDiskIniFile : public TCustomIniFile {
public:
    const std::filesystem::path& FileName() const { return FFileName; }

    std::vector<std::u16string> ReadSection(TIniName section) const override;
    std::vector<std::u16string> ReadSections() const override;
    std::vector<std::u16string> ReadSectionValues(TIniName section) const override;
    void EraseSection(TIniName section) override;
    void DeleteKey(TIniName section, TIniName key) override;
    bool SectionExists(TIniName section) const override;
    // Changes are on disk already; true unless the last change failed to be written.
    bool UpdateFile() override { return FLastWriteOk.load(); }
    bool VisitValue(TIniName section, TIniName key, const TValueUse& use) const override;

protected:
    TDiskIniFile(std::filesystem::path fileName, TIniEncoding encoding);
    void StoreValue(TIniName section, TIniName key, std::u16string_view value) override;
    // Rewrites the file's text in this object's encoding, content untouched, when it is in
    // another form (or creates it with just the encoding's mark when it is missing).
    void ConvertToOwnEncoding();

private:
    template <class Use> void Read(Use use) const;
    template <class Change> void Modify(Change change);

    const std::filesystem::path FFileName;
    const TIniEncoding FEncoding;
    mutable std::mutex FMutex; // one call at a time from this object's threads
    std::atomic<bool> FLastWriteOk{true};
};

// Small plain files (StartOptions.ini, Version.ini, lists): written as UTF-8 without BOM.
class TZvIniFile : public TDiskIniFile {
public:
    explicit TZvIniFile(std::filesystem::path fileName)
        : TDiskIniFile(std::move(fileName), TIniEncoding::Utf8) {}
};

// Files shared with other processes or written often: UTF-16LE with BOM. Creating the
// object creates a missing file as the two bytes FF FE, and rewrites a file in another
// encoding as UTF-16LE with BOM, keeping its text.
class TIniFileUTF16 : public TDiskIniFile {
public:
    explicit TIniFileUTF16(std::filesystem::path fileName);
};

} // namespace zv
