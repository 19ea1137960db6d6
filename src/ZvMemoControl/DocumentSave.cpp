// Document saves: trims, numbered backups, atomic write.
#include "ZvMemoControl/DocumentSave.h"

#include "common/AtomicFile.h"

#include "ZvMemoControl/ZvMemoStrings.h"
#include "ZvMemoControl/ZvMemoUndo.h"
#include "ZvMemoControl/ZvTextDocument.h"
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

// The row as the trims leave it.
std::u16string TrimmedRow(const TZvMemoStrings& store, int row, const TZvSaveOptions& options) {
    std::u16string text(store.Get(row));
    if (options.SaveTabsAsSpaces && text.find(u'\t') != std::u16string::npos)
        text = store.GetTabExpanded(row);
    // Trailing blanks of the logical line: only its last row ends it.
    const bool endsLine = row + 1 >= store.Count() || !store.IsLineWrapped(row + 1);
    if (options.SaveWithoutTrailingSpaces && endsLine)
        while (!text.empty() && (text.back() == u' ' || text.back() == u'\t'))
            text.pop_back();
    if (options.SaveAndRemoveCharacters && !options.RemoveCharsString.empty())
        std::erase_if(text, [&](char16_t c) {
            return options.RemoveCharsString.find(c) != std::u16string::npos;
        });
    return text;
}

// The rows [first, last] of blank lines that end the text (a last empty row stands for the
// file's final line end and stays); first is -1 when there are none.
std::pair<int, int> TrailingBlankLines(const TZvMemoStrings& store) {
    const int end = store.Count() - 1;
    const int last = end > 0 && store.GetLineLength(end) == 0 ? end - 1 : end;
    int first = -1;
    for (int row = last; row > 0 && store.IsLineBlank(row) && !store.IsLineWrapped(row); --row)
        first = row;
    return {first, last};
}

// One change through the edit path with its undo record; the caret goes where it ends.
void Replace(TZvTextDocument& document, TZvPos from, TZvPos to, const TEditText& text) {
    auto record = std::make_unique<TUndo>(TUndoKind::Plain, "028");
    TEditText removed;
    const TZvPos end = document.Change(from, to, text, &removed, nullptr);
    TZvMemoStrings& store = document.Lines();
    TZvPos at = from, after = end;
    store.GetUnwrappedPos(at.X, at.Y);
    store.GetUnwrappedPos(after.X, after.Y);
    record->SetChange(at, from, std::move(removed), text);
    record->FUndoCurX0 = record->FUndoCurX = after.X;
    record->FUndoCurY0 = record->FUndoCurY = after.Y;
    document.UndoList().Add(std::move(record));
}

// Replaces only what differs between the row and `wanted`, so that carets and marks
// behind the difference keep their place.
void ReplaceRow(TZvTextDocument& document, int row, std::u16string_view wanted) {
    const std::u16string_view now = document.Lines().Get(row);
    std::size_t head = 0;
    while (head < now.size() && head < wanted.size() && now[head] == wanted[head])
        ++head;
    std::size_t tail = 0;
    while (tail < now.size() - head && tail < wanted.size() - head &&
           now[now.size() - 1 - tail] == wanted[wanted.size() - 1 - tail])
        ++tail;
    TEditText text;
    text.Rows.front().Assign(std::u16string(wanted.substr(head, wanted.size() - head - tail)));
    Replace(document, {static_cast<int>(head), row}, {static_cast<int>(now.size() - tail), row},
            text);
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

void ApplySaveTrims(TZvTextDocument& document, const TZvSaveOptions& options) {
    TZvMemoStrings& store = document.Lines();
    bool grouped = false;
    auto group = [&] {
        if (!grouped)
            document.UndoList().Add(std::make_unique<TMacroStartUndo>());
        grouped = true;
    };
    for (int row = 0; row < store.Count(); ++row) {
        const std::u16string wanted = TrimmedRow(store, row, options);
        if (wanted == store.Get(row))
            continue;
        group();
        ReplaceRow(document, row, wanted);
    }
    if (options.SaveWithoutTrailingBlankLines) {
        if (const auto [first, last] = TrailingBlankLines(store); first > 0) {
            group();
            // From the end of the last kept line to the end of the last blank one.
            Replace(document, {store.GetLineLength(first - 1), first - 1},
                    {store.GetLineLength(last), last}, TEditText());
        }
    }
    if (grouped)
        document.UndoList().Add(std::make_unique<TMacroEndUndo>());
}

TZvSaveResult SaveDocument(TZvTextDocument& document, const std::string& fileName,
                           const TZvSaveOptions& options, std::string& error) {
    TZvMemoStrings& store = document.Lines();
    if (options.ForceTrim ||
        !(options.KeepAsIs || store.Memo().FBinaryMode || options.TemporarySave))
        ApplySaveTrims(document, options);
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
