// Reformats JSON text: pretty printed with a fixed indent, or minified. A tokenizer of its
// own, so numbers and strings come out exactly as written (no re-encoding, no rounding) and
// object members keep their order.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zv {

// Why a text is not JSON.
enum class TJsonProblem {
    None,
    UnexpectedCharacter, // a character no JSON value or separator may take here
    UnexpectedEnd,       // the text ends inside a value
    BadString,           // a raw control character or a malformed escape in a string
    BadNumber            // a number without digits where they are needed
};

// Where the text stopped being JSON: 1-based line (LF counted) and column (UTF-16 units).
struct TJsonError {
    TJsonProblem Problem = TJsonProblem::None;
    std::size_t Line = 0, Column = 0;
};

// Writes `json` reformatted to `out`: with indent >= 0 each member and element on its own
// line, indented by `indent` spaces per level, ": " after keys, empty containers as "{}" and
// "[]"; with indent < 0 minified (no blanks outside strings). Blanks around the value are
// dropped, so the result has no final line end. Returns false, with `error` filled and `out`
// unspecified, when `json` is not exactly one JSON value. Runs in linear time; nesting depth
// is limited by memory only (no recursion).
bool FormatJson(std::u16string_view json, int indent, std::u16string& out, TJsonError& error);

} // namespace zv
