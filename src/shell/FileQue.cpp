// The per-file memory and its XML form, read and written with pugixml.
#include "shell/FileQue.h"

#include "common/AtomicFile.h"
#include "common/Trace.h"
#include "common/Utf.h"
#include "shell/ZvIniFiles.h"

#include <pugixml.hpp>

#include <algorithm>
#include <charconv>
#include <ctime>
#include <iomanip>
#include <sstream>

namespace zv {
namespace {

template <typename T> std::optional<T> ParseNumber(std::string_view text) {
    T value{};
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (ec != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

std::string IsoTime(std::int64_t seconds) {
    const std::time_t t = static_cast<std::time_t>(seconds);
    std::tm tm{};
    ::gmtime_r(&t, &tm);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &tm);
    return text;
}

std::optional<std::int64_t> ParseIsoTime(const std::string& text) {
    std::tm tm{};
    std::istringstream in(text);
    in >> std::get_time(&tm, "%Y-%m-%dT%H:%M:%SZ");
    if (in.fail())
        return std::nullopt;
    return static_cast<std::int64_t>(::timegm(&tm));
}

void AddKey(pugi::xml_node entry, const char* key, const std::string& value) {
    entry.append_child(key).text().set(value.c_str());
}

void AddKey(pugi::xml_node entry, const char* key, std::int64_t value) {
    AddKey(entry, key, std::to_string(value));
}

void WriteCursor(pugi::xml_node entry, const TCursorInfo& c) {
    AddKey(entry, "CurX", c.CurX);
    AddKey(entry, "CurY", c.CurY);
    AddKey(entry, "TopLine", c.TopLine);
    AddKey(entry, "SelStartX", c.SelStartX);
    AddKey(entry, "SelStartY", c.SelStartY);
    AddKey(entry, "SelEndX", c.SelEndX);
    AddKey(entry, "SelEndY", c.SelEndY);
}

std::string JoinNumbers(const std::int32_t* first, const std::int32_t* last) {
    std::string text;
    for (const std::int32_t* n = first; n != last; ++n)
        text += (text.empty() ? "" : ",") + std::to_string(*n);
    return text;
}

void WriteMarks(pugi::xml_node entry, const TMarksInfo& marks) {
    AddKey(entry, "BookmarkLines",
           JoinNumbers(marks.Bookmarks.data(), marks.Bookmarks.data() + marks.Bookmarks.size()));
    AddKey(entry, "LinemarkLines",
           JoinNumbers(marks.Linemarks.data(), marks.Linemarks.data() + marks.Linemarks.size()));
}

void WriteEntry(pugi::xml_node files, const TFileInfo& info) {
    pugi::xml_node entry = files.append_child("File");
    AddKey(entry, "LocalFile", info.LocalFile);
    AddKey(entry, "DateTime", IsoTime(info.DateTime));
    if (info.ReadOnly)
        AddKey(entry, "ReadOnly", *info.ReadOnly ? 1 : 0);
    if (info.Highlighter)
        AddKey(entry, "Highlighter", *info.Highlighter);
    if (info.Cursor)
        WriteCursor(entry, *info.Cursor);
    if (info.Enc)
        AddKey(entry, "Enc", *info.Enc);
    if (info.BOM)
        AddKey(entry, "BOM", *info.BOM ? 1 : 0);
    if (info.Marks)
        WriteMarks(entry, *info.Marks);
    if (info.FoldLines)
        AddKey(
            entry, "FoldLines",
            JoinNumbers(info.FoldLines->data(), info.FoldLines->data() + info.FoldLines->size()));
}

template <typename T> std::optional<T> Key(pugi::xml_node entry, const char* key) {
    const pugi::xml_node node = entry.child(key);
    if (!node)
        return std::nullopt;
    return ParseNumber<T>(node.text().as_string());
}

std::optional<bool> BoolKey(pugi::xml_node entry, const char* key) {
    const auto value = Key<int>(entry, key);
    if (!value || (*value != 0 && *value != 1))
        return std::nullopt;
    return *value == 1;
}

// All seven numbers or none: half a cursor is no place to go back to.
std::optional<TCursorInfo> ReadCursor(pugi::xml_node entry) {
    TCursorInfo c;
    const std::pair<const char*, std::int32_t*> keys[] = {
        {"CurX", &c.CurX},           {"CurY", &c.CurY},           {"TopLine", &c.TopLine},
        {"SelStartX", &c.SelStartX}, {"SelStartY", &c.SelStartY}, {"SelEndX", &c.SelEndX},
        {"SelEndY", &c.SelEndY}};
    for (const auto& [name, field] : keys) {
        const auto value = Key<std::int32_t>(entry, name);
        if (!value || *value < 0)
            return std::nullopt;
        *field = *value;
    }
    return c;
}

// Numbers separated by ","; an empty text is an empty list. Null for anything else, or for a
// number below `least`.
std::optional<std::vector<std::int32_t>> SplitNumbers(std::string_view text, std::int32_t least) {
    std::vector<std::int32_t> numbers;
    while (!text.empty()) {
        const size_t comma = text.find(',');
        const auto number = ParseNumber<std::int32_t>(text.substr(0, comma));
        if (!number || *number < least)
            return std::nullopt;
        numbers.push_back(*number);
        text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
    }
    return numbers;
}

// Both lists or none, as with the cursor; line numbers below 0 (or -1 for a bookmark) and a
// bookmark list of another length are damage.
std::optional<TMarksInfo> ReadMarks(pugi::xml_node entry) {
    const pugi::xml_node bookmarks = entry.child("BookmarkLines");
    const pugi::xml_node linemarks = entry.child("LinemarkLines");
    if (!bookmarks || !linemarks)
        return std::nullopt;
    const auto numbered = SplitNumbers(bookmarks.text().as_string(), -1);
    auto plain = SplitNumbers(linemarks.text().as_string(), 0);
    if (!numbered || !plain || numbered->size() != 10)
        return std::nullopt;
    TMarksInfo marks;
    std::copy(numbered->begin(), numbered->end(), marks.Bookmarks.begin());
    marks.Linemarks = std::move(*plain);
    return marks;
}

TFileInfo ReadEntry(pugi::xml_node entry) {
    TFileInfo info;
    info.LocalFile = entry.child("LocalFile").text().as_string();
    info.DateTime = ParseIsoTime(entry.child("DateTime").text().as_string()).value_or(0);
    info.ReadOnly = BoolKey(entry, "ReadOnly");
    if (const pugi::xml_node node = entry.child("Highlighter"))
        info.Highlighter = node.text().as_string();
    info.Cursor = ReadCursor(entry);
    info.Enc = Key<std::uint32_t>(entry, "Enc");
    info.BOM = BoolKey(entry, "BOM");
    info.Marks = ReadMarks(entry);
    if (const pugi::xml_node folds = entry.child("FoldLines"))
        info.FoldLines = SplitNumbers(folds.text().as_string(), 0);
    return info;
}

// XML 1.0 holds no control characters but tab and line ends, and parsers turn a CR into
// LF: a path with any of them, or with bytes that are no UTF-8, could not come back.
bool IsStorableText(std::string_view text) {
    return IsValidUtf8(text) &&
           std::none_of(text.begin(), text.end(),
                        [](char c) { return static_cast<unsigned char>(c) < 0x20; }) &&
           text.find("\xEF\xBF\xBE") == std::string_view::npos &&
           text.find("\xEF\xBF\xBF") == std::string_view::npos;
}

std::filesystem::path FreeDamagedName(const std::filesystem::path& file) {
    const std::string base = file.string() + ".damaged-" + IsoTime(std::time(nullptr));
    std::error_code ec;
    std::filesystem::path name = base;
    for (int n = 2; std::filesystem::exists(name, ec); ++n)
        name = base + "-" + std::to_string(n);
    return name;
}

} // namespace

TFileQueOptions ReadFileQueOptions(const TCustomIniFile& settings) {
    TFileQueOptions o;
    o.StoreCursor = settings.ReadBool("FileInfo", "StoreCursor", o.StoreCursor);
    o.StoreEncoding = settings.ReadBool("FileInfo", "StoreEncoding", o.StoreEncoding);
    o.StoreHighlighter = settings.ReadBool("FileInfo", "StoreHighlighter", o.StoreHighlighter);
    o.StoreReadOnly = settings.ReadBool("FileInfo", "StoreReadOnly", o.StoreReadOnly);
    o.StoreBookmarks = settings.ReadBool("FileInfo", "StoreBookmarks", o.StoreBookmarks);
    o.StoreFoldState = settings.ReadBool("FileInfo", "StoreFoldState", o.StoreFoldState);
    o.MaxIndex = std::max(1, settings.ReadInteger("FileInfo", "MaxIndex", o.MaxIndex));
    return o;
}

std::string FileInfoToXml(const std::vector<TFileInfo>& entries) {
    pugi::xml_document doc;
    pugi::xml_node decl = doc.append_child(pugi::node_declaration);
    decl.append_attribute("version") = "1.0";
    decl.append_attribute("encoding") = "UTF-8";
    pugi::xml_node files = doc.append_child("Files");
    for (const TFileInfo& info : entries)
        WriteEntry(files, info);
    std::ostringstream out;
    doc.save(out, "  ", pugi::format_default, pugi::encoding_utf8);
    return out.str();
}

bool ParseFileInfo(std::string_view bytes, std::vector<TFileInfo>& entries) {
    pugi::xml_document doc;
    if (!doc.load_buffer(bytes.data(), bytes.size(), pugi::parse_default, pugi::encoding_utf8))
        return false;
    // pugixml takes several top-level elements; a well-formed document has one.
    const auto children = doc.children();
    if (std::count_if(children.begin(), children.end(),
                      [](pugi::xml_node node) { return node.type() == pugi::node_element; }) != 1)
        return false;
    const pugi::xml_node files = doc.document_element();
    if (std::string_view(files.name()) != "Files")
        return false;
    entries.clear();
    for (pugi::xml_node entry : files.children("File"))
        if (TFileInfo info = ReadEntry(entry); !info.LocalFile.empty())
            entries.push_back(std::move(info));
    return true;
}

TFileQue::TFileQue(std::filesystem::path file, TFileQueOptions options)
    : FFileName(std::move(file)), FOptions(options) {
    FOptions.MaxIndex = std::max(1, FOptions.MaxIndex);
}

void TFileQue::SetOptions(const TFileQueOptions& options) {
    FOptions = options;
    FOptions.MaxIndex = std::max(1, FOptions.MaxIndex);
    Prune();
}

TFileQueLoad TFileQue::LoadList() {
    FInfoList.clear();
    std::error_code ec;
    if (!std::filesystem::exists(FFileName, ec))
        return TFileQueLoad::NoFile;
    const auto bytes = ReadWholeFile(FFileName);
    if (bytes && ParseFileInfo(*bytes, FInfoList)) {
        Prune();
        return TFileQueLoad::Loaded;
    }
    FInfoList.clear();
    FDamagedCopy = FreeDamagedName(FFileName);
    std::filesystem::rename(FFileName, FDamagedCopy, ec);
    if (ec) { // it stays where it is, and nothing is written over it
        FDamagedCopy = FFileName;
        FWriteRefused = true;
    }
    Trace("TFileQue.LoadList() - damaged, kept as " + FDamagedCopy.string());
    return TFileQueLoad::Damaged;
}

bool TFileQue::SaveFile(std::string* error) const {
    if (FWriteRefused) {
        if (error)
            *error = "the damaged " + FFileName.string() + " could not be kept aside";
        return false;
    }
    std::error_code ec;
    std::filesystem::create_directories(FFileName.parent_path(), ec);
    return WriteFileAtomically(FFileName, FileInfoToXml(FInfoList), error);
}

TFileInfo TFileQue::Filtered(TFileInfo info) const {
    if (!FOptions.StoreCursor)
        info.Cursor.reset();
    if (!FOptions.StoreEncoding) {
        info.Enc.reset();
        info.BOM.reset();
    }
    if (!FOptions.StoreHighlighter)
        info.Highlighter.reset();
    if (!FOptions.StoreReadOnly)
        info.ReadOnly.reset();
    if (!FOptions.StoreBookmarks)
        info.Marks.reset();
    if (!FOptions.StoreFoldState)
        info.FoldLines.reset();
    return info;
}

void TFileQue::Prune() {
    if (FInfoList.size() > static_cast<size_t>(FOptions.MaxIndex))
        FInfoList.resize(static_cast<size_t>(FOptions.MaxIndex));
}

bool TFileQue::AddFiledata(TFileInfo info) {
    if (info.LocalFile.empty() || info.LocalFile.front() != '/' || !IsStorableText(info.LocalFile))
        return false;
    if (info.Highlighter && !IsStorableText(*info.Highlighter))
        info.Highlighter.reset();
    std::erase_if(FInfoList, [&](const TFileInfo& e) { return e.LocalFile == info.LocalFile; });
    FInfoList.insert(FInfoList.begin(), Filtered(std::move(info)));
    Prune();
    return true;
}

const TFileInfo* TFileQue::Find(const std::string& path) const {
    const auto it = std::find_if(FInfoList.begin(), FInfoList.end(),
                                 [&](const TFileInfo& e) { return e.LocalFile == path; });
    return it == FInfoList.end() ? nullptr : &*it;
}

std::optional<TFileInfo> TFileQue::GetFileData(const std::string& path) const {
    if (const TFileInfo* info = Find(path))
        return Filtered(*info);
    return std::nullopt;
}

bool TFileQue::GetEncoding(const std::string& path, std::uint32_t& codePage, bool& bom) const {
    const auto info = GetFileData(path);
    if (!info || !info->Enc)
        return false;
    codePage = *info->Enc;
    bom = info->BOM.value_or(false);
    return true;
}

} // namespace zv
