// Fuzz target of the syntax definition readers: arbitrary bytes as a ".syx" file (read with
// an editor, so every section runs), as an alias line, and as an older-format file. Besides
// not crashing, every word the reader stored must be found again by the lookups the scanner
// uses, in its own group or an earlier one (the first hit wins), in both case modes; and the
// expressions the file compiles run over its lines, and stay inside them.
#include "syntax/SyxReader.h"
#include "syntax/SyxText.h"
#include "syntax/ZvSyntax.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

class TNullWriter : public zv::IKeyValueWriter {
public:
    void WriteString(std::u16string_view, std::u16string_view, std::u16string_view) override {}
    void WriteBool(std::u16string_view, std::u16string_view, bool) override {}
};

void Check(bool condition) {
    if (!condition)
        std::abort();
}

// Each stored word is found by `find` at its own group's index or before it.
template <class Find>
void CheckGroupsFindTheirWords(const std::vector<zv::TKeyWord>& groups, Find find) {
    for (std::size_t i = 0; i < groups.size(); ++i)
        for (const std::u16string& word : groups[i].KeyWords.Words())
            for (bool caseSensitive : {true, false}) {
                const int hit = find(word, caseSensitive);
                Check(hit >= 0 && hit <= static_cast<int>(i));
            }
}

// A match never reaches beyond the subject, and a search never starts before its offset.
void CheckRegex(const zv::TStyleRegex* re, std::u16string_view subject, zv::TRegexMatch& scratch) {
    if (!re)
        return;
    for (std::size_t offset = 0; offset <= subject.size(); offset += 1 + subject.size() / 4) {
        const int length = re->MatchAt(subject, offset, scratch);
        Check(length < 0 || offset + static_cast<std::size_t>(length) <= subject.size());
        int found = 0;
        const long long start = re->Find(subject, offset, scratch, found);
        Check(start < 0 || (static_cast<std::size_t>(start) >= offset &&
                            static_cast<std::size_t>(start) + found <= subject.size()));
    }
}

// The compiled expressions run over the file's own lines, which may hold invalid UTF-16.
void CheckRegexes(const zv::TZvCustomMemoStyles& styles, const std::vector<std::u16string>& lines) {
    zv::TRegexMatch scratch;
    const std::size_t count = std::min<std::size_t>(lines.size(), 16);
    for (std::size_t i = 0; i < count; ++i) {
        const std::u16string_view subject = std::u16string_view(lines[i]).substr(0, 200);
        for (const zv::TKeyWord& group : styles.FKeyWords)
            CheckRegex(group.CompiledRegEx.get(), subject, scratch);
        for (const zv::TBlock& block : styles.FBlocks) {
            CheckRegex(block.StartRegEx.get(), subject, scratch);
            CheckRegex(block.StopRegEx.get(), subject, scratch);
        }
    }
}

void CheckLookups(const zv::TZvCustomMemoStyles& styles) {
    CheckGroupsFindTheirWords(
        styles.FKeyWords, [&](std::u16string_view w, bool c) { return styles.FindKeyword(w, c); });
    CheckGroupsFindTheirWords(styles.FTags,
                              [&](std::u16string_view w, bool c) { return styles.FindTag(w, c); });
    for (const std::u16string& word : styles.NodeIdWords)
        Check(word.empty() || styles.NodeIdList.Contains(word, true)); // empty words are dropped
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    zv::TSyxLines text = zv::DecodeTextLines(bytes);
    zv::TZvCustomMemoStyles styles;
    zv::TMemoStyleHost memo;
    zv::TSyxNames names;
    std::vector<std::string> warnings;
    zv::TSyxTarget target{styles, &memo, names, warnings};
    zv::ResetForLoad(target);
    zv::ReadSyxLines(text.Lines, target);
    zv::FinishSyxLoad(target);
    CheckLookups(styles);
    CheckRegexes(styles, text.Lines);
    for (const std::u16string& line : text.Lines) {
        styles.FindKeyword(line, line.size() % 2 == 0);
        styles.FindTag(line, true);
        styles.NodeIdList.Contains(line, false);
    }
    if (!text.Lines.empty())
        zv::ParseSyxDirective(text.Lines.front());
    TNullWriter a, b;
    zv::ConvertOldFormat(std::move(text.Lines), a, b);
    return 0;
}
