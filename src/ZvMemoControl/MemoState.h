// A document's settings that the line store, the codec and every view of the document read:
// each store holds one.
#pragma once

#include <cstdint>
#include <string>

namespace zv {

struct TZvMemoState {
    // Editing and wrap.
    bool FPreserveTab = true;  // tabs in loaded or inserted text are kept
    std::int32_t FTabSize = 4; // tab width in columns, at least 1
    bool FBinaryMode = false;  // one file byte per unit, rows of 80
    bool FHexView = false;     // the hex viewer shows the document
    bool FWordWrap = false;
    bool FForceWrap = false; // set by a load that met a row above FForcewrapLength
    bool FHardWrapAtRightMargin = false;
    bool FTextDiffMode = false;
    std::int32_t FForcewrapLength = 4096; // longest row the store keeps
    // Word wrap's cut (WrapRows.h), set by the view: text columns a row holds while
    // FWordWrap (below 16: rows are not cut for wrap), cut exactly there, narrower
    // continuation rows under an indented first row.
    std::int32_t FWrapColumns = 0;
    bool FWrapAtAbsoluteMargin = false;
    bool FIndentWrappedLines = true;
    // The syntax's block comment marks (empty: none); a cut at a break never splits one.
    std::u16string FWrapCommentStart, FWrapCommentEnd;
    bool FHandleCSV = false; // split .csv/.psv/.tsv quote-aware
    // U+2028 and U+2029 end rows when loading (they are then lost on save). Off by default,
    // so that every file saves back to the same bytes.
    bool FUnicodeLineBreaks = false;

    // Codec.
    std::int32_t FDefaultEncoding = 0; // 0: the system ANSI code page
    bool FDetectUTF8 = true;
    bool FDetectAll = false;
    std::int32_t FCodePageXML = -1; // encoding declared by the file's own tag, -1 none
    bool FIsASCII = false;          // raw 8-bit (OEM) view
    bool FUseBOM = false;
    bool FOpeningFile = false;
    std::int32_t FMaxLength = 80; // longest line plus 100
    bool FHasTabs = false;
    std::string FFilePath;
};

} // namespace zv
