// The JSON reformatter: one pass over the text with an explicit stack of open containers.
#include "ZvMemoControl/JsonFormat.h"

#include <algorithm>
#include <vector>

namespace zv {

namespace {

bool IsJsonBlank(char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}

bool IsDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

bool IsHex(char16_t c) {
    return IsDigit(c) || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

class TJsonWriter {
public:
    TJsonWriter(std::u16string_view in, int indent, std::u16string& out)
        : FIn(in), FIndent(indent), FOut(out) {}

    TJsonProblem Run() {
        FOut.clear();
        FOut.reserve(FIn.size() + FIn.size() / 4);
        bool needValue = true;
        for (;;) {
            SkipBlanks();
            const TJsonProblem p = needValue ? Value() : AfterValue();
            if (p != TJsonProblem::None)
                return p;
            if (FDone)
                return TJsonProblem::None;
            needValue = FNeedValue;
        }
    }

    std::size_t Pos() const { return FPos; }

private:
    struct TOpen {
        char16_t Close;
        bool Object;
    };

    void SkipBlanks() {
        while (FPos < FIn.size() && IsJsonBlank(FIn[FPos]))
            ++FPos;
    }

    void NewLine() {
        if (FIndent < 0)
            return;
        FOut.push_back(u'\n');
        FOut.append(FOpen.size() * static_cast<std::size_t>(FIndent), u' ');
    }

    // A value starts at FPos: a scalar is copied, a container opened.
    TJsonProblem Value() {
        if (FPos >= FIn.size())
            return TJsonProblem::UnexpectedEnd;
        const char16_t c = FIn[FPos];
        if (c == u'{' || c == u'[') {
            const char16_t close = c == u'{' ? u'}' : u']';
            FOut.push_back(c);
            ++FPos;
            SkipBlanks();
            if (FPos < FIn.size() && FIn[FPos] == close) {
                FOut.push_back(close);
                ++FPos;
                FNeedValue = false;
                return TJsonProblem::None;
            }
            FOpen.push_back({close, c == u'{'});
            NewLine();
            return Member();
        }
        FNeedValue = false;
        if (c == u'"')
            return String();
        if (c == u'-' || IsDigit(c))
            return Number();
        for (std::u16string_view word : {u"true", u"false", u"null"})
            if (FIn.substr(FPos, word.size()) == word) {
                FOut.append(word);
                FPos += word.size();
                return TJsonProblem::None;
            }
        return TJsonProblem::UnexpectedCharacter;
    }

    // Inside a container, after its opener or a comma: an object wants `"key":` first.
    TJsonProblem Member() {
        FNeedValue = true;
        if (!FOpen.back().Object)
            return TJsonProblem::None;
        SkipBlanks();
        if (FPos >= FIn.size())
            return TJsonProblem::UnexpectedEnd;
        if (FIn[FPos] != u'"')
            return TJsonProblem::UnexpectedCharacter;
        if (const TJsonProblem p = String(); p != TJsonProblem::None)
            return p;
        SkipBlanks();
        if (FPos >= FIn.size())
            return TJsonProblem::UnexpectedEnd;
        if (FIn[FPos] != u':')
            return TJsonProblem::UnexpectedCharacter;
        ++FPos;
        FOut.append(FIndent < 0 ? u":" : u": ");
        return TJsonProblem::None;
    }

    // After a value: a comma, the container's closer, or the end of the text at the top.
    TJsonProblem AfterValue() {
        if (FOpen.empty()) {
            FDone = true;
            return FPos == FIn.size() ? TJsonProblem::None : TJsonProblem::UnexpectedCharacter;
        }
        if (FPos >= FIn.size())
            return TJsonProblem::UnexpectedEnd;
        const char16_t c = FIn[FPos];
        if (c == u',') {
            ++FPos;
            FOut.push_back(u',');
            NewLine();
            return Member();
        }
        if (c != FOpen.back().Close)
            return TJsonProblem::UnexpectedCharacter;
        ++FPos;
        FOpen.pop_back();
        NewLine();
        FOut.push_back(c);
        FNeedValue = false;
        return TJsonProblem::None;
    }

    TJsonProblem String() {
        const std::size_t start = FPos++;
        while (FPos < FIn.size()) {
            const char16_t c = FIn[FPos++];
            if (c == u'"') {
                FOut.append(FIn.substr(start, FPos - start));
                return TJsonProblem::None;
            }
            if (c < 0x20)
                return --FPos, TJsonProblem::BadString;
            if (c != u'\\')
                continue;
            if (FPos >= FIn.size())
                return TJsonProblem::UnexpectedEnd;
            const char16_t e = FIn[FPos++];
            if (e == u'u') {
                for (int i = 0; i < 4; ++i, ++FPos)
                    if (FPos >= FIn.size() || !IsHex(FIn[FPos]))
                        return TJsonProblem::BadString;
            } else if (std::u16string_view(u"\"\\/bfnrt").find(e) == std::u16string_view::npos) {
                return --FPos, TJsonProblem::BadString;
            }
        }
        return TJsonProblem::UnexpectedEnd;
    }

    // Skips the digits at FPos; false when there are none.
    bool Digits() {
        const std::size_t start = FPos;
        while (FPos < FIn.size() && IsDigit(FIn[FPos]))
            ++FPos;
        return FPos > start;
    }

    TJsonProblem Number() {
        const std::size_t start = FPos;
        if (FIn[FPos] == u'-')
            ++FPos;
        if (FPos < FIn.size() && FIn[FPos] == u'0')
            ++FPos; // no digits may follow a leading zero: the next check refuses them
        else if (!Digits())
            return TJsonProblem::BadNumber;
        if (FPos < FIn.size() && FIn[FPos] == u'.') {
            ++FPos;
            if (!Digits())
                return TJsonProblem::BadNumber;
        }
        if (FPos < FIn.size() && (FIn[FPos] == u'e' || FIn[FPos] == u'E')) {
            ++FPos;
            if (FPos < FIn.size() && (FIn[FPos] == u'+' || FIn[FPos] == u'-'))
                ++FPos;
            if (!Digits())
                return TJsonProblem::BadNumber;
        }
        FOut.append(FIn.substr(start, FPos - start));
        return TJsonProblem::None;
    }

    std::u16string_view FIn;
    int FIndent;
    std::u16string& FOut;
    std::size_t FPos = 0;
    std::vector<TOpen> FOpen; // containers open at FPos, outermost first
    bool FNeedValue = true;   // the next token must start a value
    bool FDone = false;       // the top-level value and the text ended
};

} // namespace

bool FormatJson(std::u16string_view json, int indent, std::u16string& out, TJsonError& error) {
    TJsonWriter writer(json, indent, out);
    error.Problem = writer.Run();
    if (error.Problem == TJsonProblem::None)
        return true;
    const std::size_t at = std::min(writer.Pos(), json.size());
    error.Line = 1;
    std::size_t lineStart = 0;
    for (std::size_t i = 0; i < at; ++i)
        if (json[i] == u'\n') {
            ++error.Line;
            lineStart = i + 1;
        }
    error.Column = at - lineStart + 1;
    return false;
}

} // namespace zv
