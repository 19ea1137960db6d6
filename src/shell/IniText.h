// The bytes of a settings file: recognising their encoding and writing them back.
#pragma once

#include <string>
#include <string_view>

namespace zv {

// How a settings file is written. Utf16LE: BOM FF FE, the main settings; Utf8: no BOM, the
// language file and small plain files.
enum class TIniEncoding { Utf16LE, Utf8 };

// How a file was found to be encoded when read.
enum class TTextForm { Empty, Utf16LE, Utf16BE, Utf8Bom, Utf8, Latin };

struct TDecodedText {
    std::u16string Text;
    TTextForm Form = TTextForm::Empty;
};

// Decodes a whole file: a BOM decides (UTF-16LE, UTF-16BE, UTF-8); without one, text whose
// first 16 units are all non-zero characters below U+0100 in UTF-16 is taken for UTF-16
// missing its BOM; otherwise
// well-formed UTF-8 is UTF-8, and anything else is read byte for byte as Windows-1252 so that
// no byte is lost. An odd trailing byte of UTF-16 is dropped.
TDecodedText DecodeIniBytes(std::string_view bytes);

// Encodes text (line ends already in it) as the file form asks: UTF-16LE with its BOM, or
// UTF-8 without BOM.
std::string EncodeIniText(std::u16string_view text, TIniEncoding encoding);

// Calls onLine for each line of text; CR LF, LF and CR all end a line. A final line end
// does not open another (empty) line.
template <class OnLine> void ForEachLine(std::u16string_view text, OnLine onLine) {
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find_first_of(u"\r\n", start);
        if (end == std::u16string_view::npos) {
            onLine(text.substr(start));
            return;
        }
        onLine(text.substr(start, end - start));
        start =
            end + ((text[end] == u'\r' && end + 1 < text.size() && text[end + 1] == u'\n') ? 2 : 1);
    }
}

} // namespace zv
