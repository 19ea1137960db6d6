// Value types shared by the style tables and their readers: colours, font styles, the token
// style record, and the enumerations a syntax definition names.
#pragma once

#include <cstdint>

namespace zv {

// A colour in the order 0x00BBGGRR; kNoColor means "no colour set".
using TColor = std::uint32_t;
inline constexpr TColor kNoColor = 0x1FFFFFFF;

// Font style set: a bit for each member.
enum TFontStyle : std::uint8_t {
    fsBold = 1,
    fsItalic = 2,
    fsUnderline = 4,
    fsStrikeOut = 8,
};
using TFontStyles = std::uint8_t;

// Colour and font of one token kind.
struct TCharStyle {
    std::int32_t FBoldness = 0;
    TColor FTextColor = kNoColor;
    TColor FBkColor = kNoColor;
    TFontStyles FStyle = 0;

    bool operator==(const TCharStyle&) const = default;
};

// The language of the text at a point of a document; the order is part of stored states.
enum TScriptType : std::uint8_t {
    scNone,
    scASP,
    scPHP,
    scJS,
    scVB,
    scCSS,
    scCF,
    scHtml,
    scSVG,
    scHyperscript,
};

// How a fold definition nests.
enum TNodeLevelType : std::uint8_t {
    nltNone,
    nltFirst,
    nltNestedOnly,
    nltRegion,
    nltNestedRegion,
    nltRegionIndent,
    nltNestedRegionIndent,
    nltSkip,
};

// What a fold stands for in the structure lists.
enum TCEListItemType : std::uint8_t {
    ceNone,
    ceStruct,
    ceEnum,
    ceClass,
    ceMethod,
    ceFunction,
    ceConstructor,
    ceDestructor,
    ceProperty,
    ceTagStyle,
    ceTagScript,
    ceTagHead,
    ceTagBody,
    ceTag,
    ceNS,
    ceLine,
    ceDefine,
    ceRegion,
    ceUnknown,
    ceSkip,
    ceLocalMethod,
    // Kinds the structure lists make themselves; no syntax definition names them.
    ceClassName,
    ceModule,
    ceFavorite,
    ceBookmark,
    ceNote,
    ceTodo,
};

} // namespace zv
