// Document saves: trims, numbered backups, atomic write.
#include "ZvMemoControl/DocumentSave.h"

#include "common/AtomicFile.h"

#include "ZvMemoControl/ZvMemoStrings.h"
#include "ZvMemoControl/ZvUniUtils.h"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <vector>

namespace zv {
namespace fs = std::filesystem;
namespace {

std::string Two(int v) {
    return (v < 10 ? "0" : "") + std::to_string(v);
}

// The folder the backups go to, created when it is a subfolder beside the file.
fs::path BackupFolderFor(const fs::path& file, const TZvSaveOptions& options) {
    const fs::path beside = file.parent_path().empty() ? fs::path(".") : file.parent_path();
    if (options.BackupFolder.empty())
        return beside;
    const fs::path wanted(options.BackupFolder);
    std::error_code ec;
    if (fs::is_directory(wanted, ec))
        return wanted;
    fs::path sub = beside / wanted.filename();
    if (wanted.is_absolute()) {
        if (options.OnBackupError) {
            options.OnBackupError(options.BackupFolder);
            return beside;
        }
    } else {
        sub = beside / wanted;
    }
    fs::create_directories(sub, ec);
    return sub;
}

bool IsBackupOf(const std::string& name, const std::string& stem, const std::string& tail) {
    const std::string head = stem + "_(zv-zevrit_";
    return name.size() > head.size() + tail.size() + 1 && name.starts_with(head) &&
           name.ends_with(")" + tail);
}

// Deletes the oldest backups so that, with the one about to be made, `keep` remain.
void PruneBackups(const fs::path& folder, const fs::path& file, bool addBak, int keep) {
    const std::string stem = file.stem().string();
    const std::string tail = file.extension().string() + (addBak ? ".bak" : "");
    std::vector<fs::path> found;
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(folder, ec))
        if (entry.is_regular_file(ec) && IsBackupOf(entry.path().filename().string(), stem, tail))
            found.push_back(entry.path());
    std::sort(found.begin(), found.end()); // the names sort by their time stamps
    const auto excess = static_cast<std::ptrdiff_t>(found.size()) - (std::max(keep, 1) - 1);
    for (std::ptrdiff_t i = 0; i < excess; ++i)
        fs::remove(found[static_cast<std::size_t>(i)], ec);
}

void RemoveTrailingBlankLines(TZvMemoStrings& store) {
    // A last empty row stands for the file's final line end and stays.
    int last = store.Count() - 1;
    const bool finalEnd = last > 0 && store.GetLineLength(last) == 0;
    int row = finalEnd ? last - 1 : last;
    while (row > 0 && store.IsLineBlank(row) && !store.IsLineWrapped(row)) {
        store.DeleteSilent(row, true);
        --row;
    }
}

} // namespace

std::string BackupFileName(const std::string& folder, const std::string& fileName,
                           std::chrono::system_clock::time_point when, bool addBakExtension) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(when);
    std::tm t{};
    localtime_r(&seconds, &t);
    const auto ms =
        std::chrono::duration_cast<std::chrono::milliseconds>(when.time_since_epoch()).count() %
        1000;
    const fs::path file(fileName);
    const std::string stamp = std::to_string(t.tm_year + 1900) + "-" + Two(t.tm_mon + 1) + "-" +
                              Two(t.tm_mday) + " " + Two(t.tm_hour) + "." + Two(t.tm_min) + "." +
                              Two(t.tm_sec) + "." + std::to_string(ms);
    return (fs::path(folder) / (file.stem().string() + "_(zv-zevrit_" + stamp + ")" +
                                file.extension().string() + (addBakExtension ? ".bak" : "")))
        .string();
}

bool MakeBackup(const std::string& fileName, const TZvSaveOptions& options, std::string& error) {
    std::error_code ec;
    if (!fs::exists(fileName, ec))
        return true;
    const fs::path folder = BackupFolderFor(fileName, options);
    PruneBackups(folder, fileName, options.AddBakExtension, options.MaxBackupFiles);
    const std::string target =
        BackupFileName(folder.string(), fileName, options.Now(), options.AddBakExtension);
    // A copy, so that the atomic write keeps the original's mode, owner and links.
    fs::copy_file(fileName, target, fs::copy_options::overwrite_existing, ec);
    if (ec) {
        error = "Cannot make the backup \"" + target + "\": " + ec.message();
        return false;
    }
    return true;
}

void ApplySaveTrims(TZvMemoStrings& store, const TZvSaveOptions& options) {
    for (int row = 0; row < store.Count(); ++row) {
        if (options.SaveTabsAsSpaces && store.Get(row).find(u'\t') != std::u16string_view::npos)
            store.SetLineString(row, store.GetTabExpanded(row));
        // Trailing blanks of the logical line: only its last row ends it.
        const bool endsLine = row + 1 >= store.Count() || !store.IsLineWrapped(row + 1);
        if (options.SaveWithoutTrailingSpaces && endsLine)
            store.RemoveTrailingBlanks(row, false);
        if (options.SaveAndRemoveCharacters && !options.RemoveCharsString.empty()) {
            std::u16string text(store.Get(row));
            std::erase_if(text, [&](char16_t c) {
                return options.RemoveCharsString.find(c) != std::u16string::npos;
            });
            if (text.size() != store.Get(row).size())
                store.SetLineString(row, text);
        }
    }
    if (options.SaveWithoutTrailingBlankLines)
        RemoveTrailingBlankLines(store);
}

TZvSaveResult SaveDocument(TZvMemoStrings& store, const std::string& fileName,
                           const TZvSaveOptions& options, std::string& error) {
    if (options.ForceTrim ||
        !(options.KeepAsIs || store.Memo().FBinaryMode || options.TemporarySave))
        ApplySaveTrims(store, options);
    if (options.KeepAsIs && options.SkipIfUnchanged && options.Unchanged)
        return TZvSaveResult::Skipped;
    std::error_code ec;
    const bool strangeLink = !options.FollowLinks && fs::is_symlink(fileName, ec);
    if (options.MakeBackup && !strangeLink && !MakeBackup(fileName, options, error))
        return TZvSaveResult::Failed;
    TAtomicWriteOptions write;
    write.FollowLinks = options.FollowLinks;
    if (!store.SaveToFile(fileName, &write)) {
        error = store.LastError();
        return TZvSaveResult::Failed;
    }
    if (options.WroteInPlace)
        *options.WroteInPlace = write.WroteInPlace;
    return TZvSaveResult::Written;
}

} // namespace zv
