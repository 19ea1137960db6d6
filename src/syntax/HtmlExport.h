// HTML export of a document, a range or one row: every run becomes a span with its colour
// (neighbours of the same colours share one), a URL an anchor around its span; "<" is
// written as "<samp><</samp>" and "&" as "&amp;". The black-and-white form expands tabs, writes
// blanks as U+00A0 and keeps only the "<" and "&" rules. Output UTF-8.
#pragma once

#include "syntax/ColourWalk.h"

#include <functional>
#include <string>
#include <string_view>

namespace zv {

struct THtmlExportOptions {
    bool Colours = true;
    std::int32_t TabSize = 4; // black and white only; at least 1
    TColourOptions Colour;
    std::u16string Title; // the page title of a whole-document export
};

// "#rrggbb" of a colour value 0x00BBGGRR.
std::string HtmlColour(TColor c);

// Appends the HTML of one row's runs to `out` (GetHTMLLine).
void AppendHtmlRow(std::u16string_view text, const std::vector<TColourRun>& runs,
                   const THtmlExportOptions& options, std::string& out);
// The black-and-white form of one row.
void AppendHtmlRowBW(std::u16string_view text, const THtmlExportOptions& options, std::string& out);

std::string GetHTMLLine(TLineScanner& scanner, int row, const THtmlExportOptions& options);

// The whole document as a page, handed to `write` in pieces of about 64 KiB. Scans the rows
// in order from a clear state without touching the stored states, so it may run on any
// thread that owns the store for the time.
void GetAsHtml(const TScanContext& ctx, const TZvMemoStrings& store,
               const THtmlExportOptions& options,
               const std::function<void(std::string_view)>& write);

// The text from column fromX of row fromY up to column toX of row toY (exclusive; columns
// are clamped to their rows) as a page, cut as the painter cuts it: from the state stored
// above fromY (computed when missing). Main thread.
std::string GetRangeAsHtml(TLineScanner& scanner, int fromX, int fromY, int toX, int toY,
                           const THtmlExportOptions& options);

} // namespace zv
