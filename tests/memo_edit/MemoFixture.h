// A control over a store loaded from UTF-8 bytes with LF line ends, and typing, for the
// editing tests.
#pragma once

#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <memory>
#include <string>
#include <string_view>

namespace zv::test {

struct TMemoFixture {
    explicit TMemoFixture(const std::string& utf8 = "") {
        memo.SetLines(&lines);
        lines.SetDefaultSysTextType(sttUnix);
        memo.DocState().FDefaultEncoding = 65001;
        if (!utf8.empty())
            lines.LoadFromBytes(utf8);
        memo.SetLines(&lines);
        memo.Saved();
    }
    std::string Bytes() { return lines.SaveToBytes(); }
    std::u16string Text() const { return lines.GetTextWithLinefeeds(); }

    TZvMemoStrings lines;
    TZvMemo memo;
};

// Types `keys` one by one, as the keyboard does.
inline void Type(TZvCustomMemo& m, std::u16string_view keys) {
    for (char16_t c : keys)
        m.KeyPress(c);
}

} // namespace zv::test
