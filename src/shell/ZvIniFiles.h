// Settings files: the common read/write interface and the in-memory files (main settings,
// language strings, lists). Files on disk read at every call are in DiskIniFiles.h.
#pragma once

#include "shell/HashedStringList.h"
#include "shell/IniName.h"
#include "shell/IniText.h"
#include "shell/IniValues.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

// File form: "[" section "]" lines, then "name=value" lines. Empty lines and lines whose
// first non-blank is ";" are no keys; lines before the first section are dropped; a line
// without "=" stays as a bare line. Names ignore case and lose surrounding blanks; a value
// is everything behind the first "=", untouched; of two equal keys the first wins. Every
// reader gives its default for a missing key, so any file, even an empty one, is valid.
class TCustomIniFile {
public:
    virtual ~TCustomIniFile() = default;

    // The value, or def when the key is missing (an empty value is returned as such).
    // The overload follows the default: UTF-16 in, UTF-16 out; UTF-8 in, UTF-8 out.
    std::u16string ReadString(TIniName section, TIniName key, std::u16string_view def) const;
    std::string ReadString(TIniName section, TIniName key, std::string_view def) const;
    // def unless the value is a 32-bit integer (see ParseIniInteger).
    int32_t ReadInteger(TIniName section, TIniName key, int32_t def) const;
    // def when missing or empty; "0" is false, anything else true.
    bool ReadBool(TIniName section, TIniName key, bool def) const;
    // def unless the value is ISO 8601 text (see ParseIniDateTime).
    TDateTime ReadDateTime(TIniName section, TIniName key, TDateTime def) const;

    // Sets the value; a missing key is added at the end of its section, a missing section at
    // the end of the file. A CR or LF in a name or value is stored as a blank, since it would
    // split the line; a key name must not hold "=" or begin with ";" (it would not be found).
    void WriteString(TIniName section, TIniName key, std::u16string_view value);
    void WriteString(TIniName section, TIniName key, std::string_view value);
    void WriteInteger(TIniName section, TIniName key, int32_t value);
    void WriteBool(TIniName section, TIniName key, bool value); // "1" or "0"
    void WriteDateTime(TIniName section, TIniName key, TDateTime value);

    // Key names of a section in file order (duplicates included), empty if it is missing.
    virtual std::vector<std::u16string> ReadSection(TIniName section) const = 0;
    virtual std::vector<std::u16string> ReadSections() const = 0;
    // "name=value" for each key and each bare line of the section; no comments or blanks.
    virtual std::vector<std::u16string> ReadSectionValues(TIniName section) const = 0;
    virtual void EraseSection(TIniName section) = 0;
    // Removes the first line of that name (the one readers see).
    virtual void DeleteKey(TIniName section, TIniName key) = 0;
    virtual bool SectionExists(TIniName section) const = 0;
    bool ValueExists(TIniName section, TIniName key) const;
    // Writes the file to disk if this kind keeps it elsewhere; false (and a trace line) when
    // the write failed, in which case the file on disk is the one before.
    virtual bool UpdateFile() = 0;

    using TValueUse = std::function<void(std::u16string_view)>;
    // Calls use with the value (a view valid during the call, no copy made) and returns true
    // if the key exists; else returns false.
    virtual bool VisitValue(TIniName section, TIniName key, const TValueUse& use) const = 0;

protected:
    virtual void StoreValue(TIniName section, TIniName key, std::u16string_view value) = 0;
};

// What reading the file at creation (or Reload) found.
enum class TIniLoadStatus {
    NoFile,    // no file name, or the file does not exist
    Loaded,    // at least one section
    Empty,     // the file holds nothing but blanks and line ends
    Unparsed,  // the file holds text but no section: damaged, or not a settings file
    ReadError, // the file exists but could not be read
};

// A settings file held in memory: read whole at creation, changed in memory, written whole
// by UpdateFile. Used on one thread at a time; concurrent const reads are safe.
class TMemIniFileW : public TCustomIniFile {
public:
    // Reads fileName if it exists. An empty name makes a file that lives only in memory.
    // encoding is the form UpdateFile writes; any form is read.
    explicit TMemIniFileW(std::filesystem::path fileName = {},
                          TIniEncoding encoding = TIniEncoding::Utf16LE);
    // An empty file that UpdateFile writes to fileName, whatever that file holds now: for
    // lists rewritten whole, which need not read the former one.
    static std::unique_ptr<TMemIniFileW> Replacing(std::filesystem::path fileName,
                                                   TIniEncoding encoding);

    const std::filesystem::path& FileName() const { return FFileName; }
    TIniEncoding Encoding() const { return FEncoding; }
    TIniLoadStatus LoadStatus() const { return FLoadStatus; }
    // The encoding the file had when read (TTextForm::Empty if there was none).
    TTextForm SourceForm() const { return FSourceForm; }

    // Like ReadString, but an empty value also gives def; returns false when def was given.
    bool ReadWideString(TIniName section, TIniName key, std::u16string_view def,
                        std::u16string& value) const;
    // ReadWideString for captions used as hints: every "&" is removed.
    bool ReadWideStringHint(TIniName section, TIniName key, std::u16string_view def,
                            std::u16string& value) const;
    void WriteWideString(TIniName section, TIniName key, std::u16string_view value) {
        StoreValue(section, key, value);
    }

    std::vector<std::u16string> ReadSection(TIniName section) const override;
    std::vector<std::u16string> ReadSections() const override;
    std::vector<std::u16string> ReadSectionValues(TIniName section) const override;
    void EraseSection(TIniName section) override;
    void DeleteKey(TIniName section, TIniName key) override;
    bool SectionExists(TIniName section) const override;
    // Writes atomically to FileName(); false with no file name or on failure (traced).
    bool UpdateFile() override;
    // The same, with the reason of a failure in `error`.
    bool UpdateFile(std::string& error);

    // Drops everything held and reads FileName() again; returns LoadStatus().
    TIniLoadStatus Reload();
    // Replaces the content with what these file bytes hold (any readable encoding).
    void LoadFromBytes(std::string_view bytes);
    // The bytes UpdateFile writes: one "[section]" line, its lines, and a blank line per
    // section, each line ended by CR LF, in Encoding().
    std::string SaveToBytes() const;
    // Removes all sections (in memory).
    void Clear() { FSections.Clear(); }
    bool VisitValue(TIniName section, TIniName key, const TValueUse& use) const override;

protected:
    // The lines of a section, or null.
    THashedStringList* FindSection(TIniName section) const;
    THashedStringList& EnsureSection(TIniName section);
    void ParseText(std::u16string_view text);
    void StoreValue(TIniName section, TIniName key, std::u16string_view value) override;

    // Section names; each item owns its section's lines as Object (never null). A section
    // keeps no trailing blank lines: the writer puts exactly one after each section.
    THashedStringList FSections;
    std::filesystem::path FFileName;
    TIniEncoding FEncoding;
    TIniLoadStatus FLoadStatus = TIniLoadStatus::NoFile;
    TTextForm FSourceForm = TTextForm::Empty;
};

// The in-memory file for data that is reordered: sections can be moved, renamed, sorted
// and replaced wholesale. Always written as UTF-16LE with BOM.
class TZvMemIniFile : public TMemIniFileW {
public:
    explicit TZvMemIniFile(std::filesystem::path fileName = {});

    // Swap the section with its neighbour; false if missing or already at that end.
    bool MoveSectionUp(TIniName section);
    bool MoveSectionDown(TIniName section);
    // false if oldName is missing or newName names another section already.
    bool RenameSection(TIniName oldName, TIniName newName);
    // Sorts the section's lines ignoring case (stable); false if the section is missing.
    bool SortSection(TIniName section);
    std::vector<std::u16string> ReadSectionNames() const { return ReadSections(); }
    // Points the object at another file; with reload it reads that file, else keeps the
    // content for the next UpdateFile.
    void Rename(std::filesystem::path fileName, bool reload);
    // The whole content as the lines of the file form (no trailing line ends).
    std::vector<std::u16string> GetStrings() const;
    // Replaces the whole content by these lines, read as the file form.
    void SetStrings(const std::vector<std::u16string>& lines);
    // Replaces a section's lines (created at the end if missing).
    void SetSection(TIniName section, const std::vector<std::u16string>& lines);
};

} // namespace zv
