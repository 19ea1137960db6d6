// Settings files kept on disk: every call reads the file, every change writes it at once.
#include "shell/DiskIniFiles.h"

#include "common/AtomicFile.h"
#include "common/Trace.h"
#include "shell/FileLock.h"

#include <utility>

namespace zv {

TDiskIniFile::TDiskIniFile(std::filesystem::path fileName, TIniEncoding encoding)
    : FFileName(std::move(fileName)), FEncoding(encoding) {}

template <class Use> void TDiskIniFile::Read(Use use) const {
    std::lock_guard guard(FMutex);
    const TFileLock lock(FFileName, TFileLock::TMode::Shared, false);
    TMemIniFileW content({}, FEncoding);
    if (const auto bytes = lock.ReadAll())
        content.LoadFromBytes(*bytes);
    use(std::as_const(content));
}

template <class Change> void TDiskIniFile::Modify(Change change) {
    std::lock_guard guard(FMutex);
    const TFileLock lock(FFileName, TFileLock::TMode::Exclusive, true);
    const auto bytes = lock.ReadAll();
    if (!bytes) { // unreadable: writing now would drop what it holds
        Trace("TDiskIniFile::Modify() - cannot read " + FFileName.string() + ", change dropped");
        FLastWriteOk = false;
        return;
    }
    TMemIniFileW content({}, FEncoding);
    content.LoadFromBytes(*bytes);
    change(content);
    FLastWriteOk = WriteFileAtomically(FFileName, content.SaveToBytes());
}

bool TDiskIniFile::VisitValue(TIniName section, TIniName key, const TValueUse& use) const {
    bool found = false;
    Read([&](const TMemIniFileW& content) { found = content.VisitValue(section, key, use); });
    return found;
}

void TDiskIniFile::StoreValue(TIniName section, TIniName key, std::u16string_view value) {
    Modify([&](TMemIniFileW& content) { content.WriteWideString(section, key, value); });
}

std::vector<std::u16string> TDiskIniFile::ReadSection(TIniName section) const {
    std::vector<std::u16string> result;
    Read([&](const TMemIniFileW& content) { result = content.ReadSection(section); });
    return result;
}

std::vector<std::u16string> TDiskIniFile::ReadSections() const {
    std::vector<std::u16string> result;
    Read([&](const TMemIniFileW& content) { result = content.ReadSections(); });
    return result;
}

std::vector<std::u16string> TDiskIniFile::ReadSectionValues(TIniName section) const {
    std::vector<std::u16string> result;
    Read([&](const TMemIniFileW& content) { result = content.ReadSectionValues(section); });
    return result;
}

bool TDiskIniFile::SectionExists(TIniName section) const {
    bool result = false;
    Read([&](const TMemIniFileW& content) { result = content.SectionExists(section); });
    return result;
}

void TDiskIniFile::EraseSection(TIniName section) {
    Modify([&](TMemIniFileW& content) { content.EraseSection(section); });
}

void TDiskIniFile::DeleteKey(TIniName section, TIniName key) {
    Modify([&](TMemIniFileW& content) { content.DeleteKey(section, key); });
}

void TDiskIniFile::ConvertToOwnEncoding() {
    std::lock_guard guard(FMutex);
    const TFileLock lock(FFileName, TFileLock::TMode::Exclusive, true);
    const auto bytes = lock.ReadAll();
    if (!bytes)
        return;
    const TDecodedText decoded = DecodeIniBytes(*bytes);
    const bool ownForm = FEncoding == TIniEncoding::Utf16LE
                             ? decoded.Form == TTextForm::Utf16LE && bytes->starts_with("\xFF\xFE")
                             : decoded.Form == TTextForm::Utf8;
    if (!ownForm)
        FLastWriteOk = WriteFileAtomically(FFileName, EncodeIniText(decoded.Text, FEncoding));
}

TIniFileUTF16::TIniFileUTF16(std::filesystem::path fileName)
    : TDiskIniFile(std::move(fileName), TIniEncoding::Utf16LE) {
    ConvertToOwnEncoding();
}

} // namespace zv
