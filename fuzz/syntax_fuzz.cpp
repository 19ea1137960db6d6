// Fuzz target of the syntax definition readers: arbitrary bytes as a ".syx" file (read with
// an editor, so every section runs), as an alias line, and as an older-format file.
#include "syntax/SyxReader.h"
#include "syntax/SyxText.h"
#include "syntax/ZvSyntax.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace {

class TNullWriter : public zv::IKeyValueWriter {
public:
    void WriteString(std::u16string_view, std::u16string_view, std::u16string_view) override {}
    void WriteBool(std::u16string_view, std::u16string_view, bool) override {}
};

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
