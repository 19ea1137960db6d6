// A plain model of a document for the editing tests: a vector of lines and the textbook
// effect of each edit, computed from the control's caret and selection before the edit.
// Grapheme boundaries come straight from ICU, independently of the control's fast paths.
#pragma once

#include "ZvMemoControl/ZvMemoEditText.h"

#include <string>
#include <vector>

namespace zv::test {

class TEditModel {
public:
    explicit TEditModel(const std::u16string& text);

    std::vector<std::u16string> Lines;

    // Each edit below mirrors one control operation. Positions are the control's, taken
    // before the operation; `selStart`/`selEnd` ordered and inside the text, equal when none.
    void Type(TZvPos caret, TZvPos selStart, TZvPos selEnd, char16_t c);
    void Enter(TZvPos caret, TZvPos selStart, TZvPos selEnd, bool autoIndent);
    void Backspace(TZvPos caret, TZvPos selStart, TZvPos selEnd);
    void Delete(TZvPos caret, TZvPos selStart, TZvPos selEnd);
    void Paste(TZvPos caret, TZvPos selStart, TZvPos selEnd, const std::u16string& text);
    void DeleteRange(TZvPos from, TZvPos to);
    void Move(TZvPos from, TZvPos to, TZvPos drop);
    void DeleteLine(int row);
    void DuplicateLines(int first, int last);

    static int NextCluster(const std::u16string& row, int pos);
    static int PrevCluster(const std::u16string& row, int pos);
    std::u16string Text() const;

private:
    std::u16string Cut(TZvPos from, TZvPos to);
    void InsertAt(TZvPos at, const std::u16string& text); // LF-separated text
    void PadTo(TZvPos caret);
};

} // namespace zv::test
