// Settings files: the common read/write interface and the in-memory files.
#include "shell/ZvIniFiles.h"

#include "common/AtomicFile.h"
#include "common/Trace.h"
#include "common/Utf.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace zv {

namespace {

bool IsBlankLine(std::u16string_view line) {
    return line.find_first_not_of(u" \t") == std::u16string_view::npos;
}

bool IsComment(std::u16string_view line) {
    const size_t first = line.find_first_not_of(u" \t");
    return first != std::u16string_view::npos && line[first] == u';';
}

// The name inside "[...]" if the line is a section header, blanks around it cut.
bool SectionHeader(std::u16string_view line, std::u16string_view& name) {
    const size_t first = line.find_first_not_of(u" \t");
    const size_t last = line.find_last_not_of(u" \t");
    if (first == std::u16string_view::npos || line[first] != u'[' || line[last] != u']' ||
        last == first)
        return false;
    name = line.substr(first + 1, last - first - 1);
    return true;
}

void DropTrailingBlankLines(THashedStringList& lines) {
    while (lines.Count() > 0 && IsBlankLine(lines.Strings(lines.Count() - 1)))
        lines.Delete(lines.Count() - 1);
}

// Appends text with each CR and LF made a blank: a line end inside a name or value would
// split its line and could even start a section, so the file would no longer say what was
// written.
void AppendOneLine(std::u16string& out, std::u16string_view text) {
    const size_t start = out.size();
    out.append(text);
    for (size_t i = start; i < out.size(); ++i)
        if (out[i] == u'\r' || out[i] == u'\n')
            out[i] = u' ';
}

// The line "name=value" with a new value, keeping the text up to the "=" as it was.
std::u16string ReplaceValue(std::u16string_view line, std::u16string_view value) {
    std::u16string out(line.substr(0, line.find(u'=') + 1));
    AppendOneLine(out, value);
    return out;
}

} // namespace

// ---- TCustomIniFile -------------------------------------------------------------------

std::u16string TCustomIniFile::ReadString(TIniName section, TIniName key,
                                          std::u16string_view def) const {
    std::u16string result;
    if (!VisitValue(section, key, [&](std::u16string_view v) { result.assign(v); }))
        result.assign(def);
    return result;
}

std::string TCustomIniFile::ReadString(TIniName section, TIniName key, std::string_view def) const {
    std::string result;
    if (!VisitValue(section, key, [&](std::u16string_view v) { result = Utf16ToUtf8(v); }))
        result.assign(def);
    return result;
}

int32_t TCustomIniFile::ReadInteger(TIniName section, TIniName key, int32_t def) const {
    int32_t result = def;
    VisitValue(section, key,
               [&](std::u16string_view v) { result = ParseIniInteger(v).value_or(def); });
    return result;
}

bool TCustomIniFile::ReadBool(TIniName section, TIniName key, bool def) const {
    bool result = def;
    VisitValue(section, key,
               [&](std::u16string_view v) { result = ParseIniBool(v).value_or(def); });
    return result;
}

TDateTime TCustomIniFile::ReadDateTime(TIniName section, TIniName key, TDateTime def) const {
    TDateTime result = def;
    VisitValue(section, key,
               [&](std::u16string_view v) { result = ParseIniDateTime(v).value_or(def); });
    return result;
}

void TCustomIniFile::WriteString(TIniName section, TIniName key, std::u16string_view value) {
    StoreValue(section, key, value);
}

void TCustomIniFile::WriteString(TIniName section, TIniName key, std::string_view value) {
    StoreValue(section, key, Utf8ToUtf16(value));
}

void TCustomIniFile::WriteInteger(TIniName section, TIniName key, int32_t value) {
    StoreValue(section, key, FormatIniInteger(value));
}

void TCustomIniFile::WriteBool(TIniName section, TIniName key, bool value) {
    StoreValue(section, key, value ? u"1" : u"0");
}

void TCustomIniFile::WriteDateTime(TIniName section, TIniName key, TDateTime value) {
    StoreValue(section, key, FormatIniDateTime(value));
}

bool TCustomIniFile::ValueExists(TIniName section, TIniName key) const {
    return VisitValue(section, key, [](std::u16string_view) {});
}

// ---- TMemIniFileW ---------------------------------------------------------------------

TMemIniFileW::TMemIniFileW(std::filesystem::path fileName, TIniEncoding encoding)
    : FFileName(std::move(fileName)), FEncoding(encoding) {
    Reload();
}

std::unique_ptr<TMemIniFileW> TMemIniFileW::Replacing(std::filesystem::path fileName,
                                                      TIniEncoding encoding) {
    auto file = std::make_unique<TMemIniFileW>(std::filesystem::path(), encoding);
    file->FFileName = std::move(fileName);
    return file;
}

TIniLoadStatus TMemIniFileW::Reload() {
    FSections.Clear();
    FSourceForm = TTextForm::Empty;
    FLoadStatus = TIniLoadStatus::NoFile;
    std::error_code ec;
    if (FFileName.empty() || !std::filesystem::exists(FFileName, ec))
        return FLoadStatus;
    const auto bytes = ReadWholeFile(FFileName);
    if (!bytes) {
        Trace("TMemIniFileW::Reload() - cannot read " + FFileName.string() + ": " +
              std::strerror(errno));
        return FLoadStatus = TIniLoadStatus::ReadError;
    }
    LoadFromBytes(*bytes);
    if (FLoadStatus == TIniLoadStatus::Unparsed)
        Trace("TMemIniFileW::Reload() - no section in " + FFileName.string());
    return FLoadStatus;
}

void TMemIniFileW::LoadFromBytes(std::string_view bytes) {
    TDecodedText decoded = DecodeIniBytes(bytes);
    FSourceForm = decoded.Form;
    ParseText(decoded.Text);
    if (FSections.Count() > 0)
        FLoadStatus = TIniLoadStatus::Loaded;
    else
        FLoadStatus = IsBlankLine(decoded.Text) ? TIniLoadStatus::Empty : TIniLoadStatus::Unparsed;
}

void TMemIniFileW::ParseText(std::u16string_view text) {
    FSections.Clear();
    THashedStringList* current = nullptr;
    ForEachLine(text, [&](std::u16string_view line) {
        std::u16string_view name;
        if (SectionHeader(line, name)) {
            if (current)
                DropTrailingBlankLines(*current);
            auto lines = std::make_unique<THashedStringList>();
            current = lines.get();
            FSections.Add(std::u16string(name), std::move(lines));
        } else if (current) {
            current->Add(std::u16string(line));
        }
    });
    if (current)
        DropTrailingBlankLines(*current);
}

std::string TMemIniFileW::SaveToBytes() const {
    std::u16string text;
    for (int s = 0; s < FSections.Count(); ++s) {
        text.append(u"[").append(FSections.Strings(s)).append(u"]\r\n");
        const THashedStringList& lines = *FSections.Objects(s);
        for (int i = 0; i < lines.Count(); ++i)
            text.append(lines.Strings(i)).append(u"\r\n");
        text.append(u"\r\n");
    }
    return EncodeIniText(text, FEncoding);
}

bool TMemIniFileW::UpdateFile() {
    std::string error;
    return UpdateFile(error);
}

bool TMemIniFileW::UpdateFile(std::string& error) {
    if (FFileName.empty()) {
        error = "no file name";
        return false;
    }
    return WriteFileAtomically(FFileName, SaveToBytes(), &error);
}

THashedStringList* TMemIniFileW::FindSection(TIniName section) const {
    const int index = FSections.IndexOf(section);
    return index < 0 ? nullptr : FSections.Objects(index);
}

THashedStringList& TMemIniFileW::EnsureSection(TIniName section) {
    if (THashedStringList* lines = FindSection(section))
        return *lines;
    auto lines = std::make_unique<THashedStringList>();
    THashedStringList& result = *lines;
    std::u16string name;
    AppendOneLine(name, section.ToU16());
    FSections.Add(std::move(name), std::move(lines));
    return result;
}

bool TMemIniFileW::VisitValue(TIniName section, TIniName key, const TValueUse& use) const {
    const THashedStringList* lines = FindSection(section);
    const int index = lines ? lines->IndexOfName(key) : -1;
    if (index < 0)
        return false;
    use(lines->ValueFromIndex(index));
    return true;
}

void TMemIniFileW::StoreValue(TIniName section, TIniName key, std::u16string_view value) {
    THashedStringList& lines = EnsureSection(section);
    const int index = lines.IndexOfName(key);
    if (index >= 0) {
        lines.SetString(index, ReplaceValue(lines.Strings(index), value));
        return;
    }
    std::u16string line;
    AppendOneLine(line, key.ToU16());
    line.append(u"=");
    AppendOneLine(line, value);
    lines.Add(std::move(line));
}

bool TMemIniFileW::ReadWideString(TIniName section, TIniName key, std::u16string_view def,
                                  std::u16string& value) const {
    value = ReadString(section, key, std::u16string_view());
    if (!value.empty())
        return true;
    value.assign(def);
    return false;
}

bool TMemIniFileW::ReadWideStringHint(TIniName section, TIniName key, std::u16string_view def,
                                      std::u16string& value) const {
    const bool found = ReadWideString(section, key, def, value);
    std::erase(value, u'&');
    return found;
}

std::vector<std::u16string> TMemIniFileW::ReadSection(TIniName section) const {
    std::vector<std::u16string> names;
    if (const THashedStringList* lines = FindSection(section))
        for (int i = 0; i < lines->Count(); ++i)
            if (!lines->Names(i).empty())
                names.emplace_back(lines->Names(i));
    return names;
}

std::vector<std::u16string> TMemIniFileW::ReadSections() const {
    std::vector<std::u16string> names;
    names.reserve(FSections.Count());
    for (int s = 0; s < FSections.Count(); ++s)
        names.push_back(FSections.Strings(s));
    return names;
}

std::vector<std::u16string> TMemIniFileW::ReadSectionValues(TIniName section) const {
    std::vector<std::u16string> values;
    const THashedStringList* lines = FindSection(section);
    for (int i = 0; lines && i < lines->Count(); ++i) {
        const std::u16string_view line = lines->Strings(i);
        if (IsBlankLine(line) || IsComment(line))
            continue;
        if (lines->Names(i).empty())
            values.emplace_back(line);
        else
            values.push_back(std::u16string(lines->Names(i)) + u"=" +
                             std::u16string(lines->ValueFromIndex(i)));
    }
    return values;
}

void TMemIniFileW::EraseSection(TIniName section) {
    const int index = FSections.IndexOf(section);
    if (index >= 0)
        FSections.Delete(index);
}

void TMemIniFileW::DeleteKey(TIniName section, TIniName key) {
    THashedStringList* lines = FindSection(section);
    const int index = lines ? lines->IndexOfName(key) : -1;
    if (index >= 0)
        lines->Delete(index);
}

bool TMemIniFileW::SectionExists(TIniName section) const {
    return FSections.IndexOf(section) >= 0;
}

// ---- TZvMemIniFile --------------------------------------------------------------------

TZvMemIniFile::TZvMemIniFile(std::filesystem::path fileName)
    : TMemIniFileW(std::move(fileName), TIniEncoding::Utf16LE) {}

bool TZvMemIniFile::MoveSectionUp(TIniName section) {
    const int index = FSections.IndexOf(section);
    if (index <= 0)
        return false;
    FSections.Move(index, index - 1);
    return true;
}

bool TZvMemIniFile::MoveSectionDown(TIniName section) {
    const int index = FSections.IndexOf(section);
    if (index < 0 || index + 1 >= FSections.Count())
        return false;
    FSections.Move(index, index + 1);
    return true;
}

bool TZvMemIniFile::RenameSection(TIniName oldName, TIniName newName) {
    const int index = FSections.IndexOf(oldName);
    const int clash = FSections.IndexOf(newName);
    if (index < 0 || (clash >= 0 && clash != index))
        return false;
    FSections.SetString(index, newName.ToU16());
    return true;
}

bool TZvMemIniFile::SortSection(TIniName section) {
    THashedStringList* lines = FindSection(section);
    if (!lines)
        return false;
    lines->Sort();
    return true;
}

void TZvMemIniFile::Rename(std::filesystem::path fileName, bool reload) {
    FFileName = std::move(fileName);
    if (reload)
        Reload();
}

std::vector<std::u16string> TZvMemIniFile::GetStrings() const {
    std::vector<std::u16string> out;
    for (int s = 0; s < FSections.Count(); ++s) {
        out.push_back(u"[" + FSections.Strings(s) + u"]");
        const THashedStringList& lines = *FSections.Objects(s);
        for (int i = 0; i < lines.Count(); ++i)
            out.push_back(lines.Strings(i));
        out.emplace_back();
    }
    return out;
}

void TZvMemIniFile::SetStrings(const std::vector<std::u16string>& lines) {
    std::u16string text;
    for (const auto& line : lines)
        text.append(line).append(u"\n");
    ParseText(text);
}

void TZvMemIniFile::SetSection(TIniName section, const std::vector<std::u16string>& lines) {
    THashedStringList& target = EnsureSection(section);
    target.Clear();
    for (const auto& line : lines)
        target.Add(line);
    DropTrailingBlankLines(target);
}

} // namespace zv
