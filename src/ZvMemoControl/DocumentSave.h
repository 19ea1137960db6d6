// Saving a document as the editor does: the trims the settings ask for, the numbered
// backups beside the file or in a backup folder, then the atomic write of the codec.
#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace zv {

class TZvTextDocument;

struct TZvSaveOptions {
    bool MakeBackup = false;
    bool AddBakExtension = false; // backups end in ".bak"
    bool KeepAsIs = false;        // no trims (an automatic or a "keep" save)
    bool TemporarySave = false;
    bool SkipIfUnchanged = false; // with KeepAsIs: an unchanged document is not written
    bool Unchanged = false;       // the control's undo list says nothing changed since saving
    bool ForceTrim = false;       // trims even with KeepAsIs
    // False: a symbolic link now at the path is replaced, not followed (the document was not
    // opened through one); no backup is made of what it points to.
    bool FollowLinks = true;
    // Set when given: the file has other hard links and was rewritten in place.
    bool* WroteInPlace = nullptr;
    // A folder path, or a name of a subfolder beside the file; empty: beside the file.
    std::string BackupFolder;
    int MaxBackupFiles = 1; // backups of one file kept after this save, at least 1
    // Called when BackupFolder is an absolute path that does not exist; without it the
    // folder's last name is used below the file's folder.
    std::function<void(const std::string& folder)> OnBackupError;
    // Trims, from the control's settings.
    bool SaveTabsAsSpaces = false;
    bool SaveWithoutTrailingSpaces = false;
    bool SaveWithoutTrailingBlankLines = false;
    bool SaveAndRemoveCharacters = false;
    std::u16string RemoveCharsString;
    // The clock of the backup names; tests set it.
    std::function<std::chrono::system_clock::time_point()> Now = [] {
        return std::chrono::system_clock::now();
    };
};

enum class TZvSaveResult { Written, Skipped, Failed };

// Trims, backs up and writes the rows of `document` to `fileName`. On failure the file on
// disk is as it was (a backup may have been made) and `error` says why.
TZvSaveResult SaveDocument(TZvTextDocument& document, const std::string& fileName,
                           const TZvSaveOptions& options, std::string& error);

// The trims alone. Each changed row goes through the document's edit path (every view
// follows, the scanner rescans), and all of them are one undo step.
void ApplySaveTrims(TZvTextDocument& document, const TZvSaveOptions& options);

// "<folder>/<base>_(zv-zevrit_yyyy-mm-dd hh.mm.ss.z)<ext>[.bak]": the name of a backup.
std::string BackupFileName(const std::string& folder, const std::string& fileName,
                           std::chrono::system_clock::time_point when, bool addBakExtension);

// Makes the backup of `fileName` (if it exists) and prunes older ones; false with `error`
// when the copy failed.
bool MakeBackup(const std::string& fileName, const TZvSaveOptions& options, std::string& error);

} // namespace zv
