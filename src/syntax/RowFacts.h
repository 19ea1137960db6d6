// What a full scan of a row learns about it beside its end state: the row's code braces in
// reduced form, its visual indent and whether it is a to-do item. 12 bytes a row, no heap.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

struct TRowFacts {
    // A count that reached this value is saturated: the row must be read to know its braces.
    static constexpr std::uint8_t kBraceSaturated = 255;
    // Indent of a row whose facts were never computed (a state stored without its facts).
    static constexpr std::int16_t kUnknown = -2;

    // The brace strings of the row ("()", "{}", "[]"; only braces outside strings and
    // comments), reduced: a row's sequence of one kind, with its matched pairs taken out, is
    // Close[k] closers followed by Open[k] openers. That is all a walk across the row needs.
    std::array<std::uint8_t, 3> Close{}, Open{};
    // Visual indent in columns (tabs to the next stop); -1 for an empty or all-blank row,
    // kUnknown when not computed. Saturates at 32,767.
    std::int16_t Indent = kUnknown;
    // Non-zero: the row is a to-do item (TodoItem), and this is its TodoId. A scan marks an
    // item with kTodoNew; the store gives it its number.
    std::int32_t TodoId = 0;
    static constexpr std::int32_t kTodoNew = -1;

    bool Known() const { return Indent != kUnknown; }
    bool TodoItem() const { return TodoId != 0; }
    // Kind 0 "()", 1 "{}", 2 "[]" of a brace character, -1 for any other.
    static int BraceKind(char16_t c);
    static bool Opens(char16_t c) { return c == u'(' || c == u'{' || c == u'['; }
    // Counts one code brace, in row order.
    void AddBrace(char16_t c);
    // True when Close/Open of kind k no longer tell the row's braces.
    bool Saturated(int k) const {
        return Close[k] == kBraceSaturated || Open[k] == kBraceSaturated;
    }
    bool operator==(const TRowFacts&) const = default;
};
static_assert(sizeof(TRowFacts) == 12, "kept beside every row");

// Visual indent of `text` in columns, tabs stopping every `tabSize` (at least 1) columns;
// blanks, tabs and U+00A0 count. -1 when the row is empty or all blank.
std::int16_t RowIndent(std::u16string_view text, int tabSize);

// True when one of `words` stands at `from` behind blanks, ended by a character that is no
// letter, digit or "_" (so "TODO:" counts and "TODOS" does not). Case as written.
bool TodoWordAt(std::u16string_view text, int from, const std::vector<std::u16string>& words);

} // namespace zv
