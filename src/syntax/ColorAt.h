// Colour values in text, for the colour hint and the colour box: "#rgb", "#rrggbb",
// "#rrggbbaa", "$..." in the CSS family, and the functional forms color(), rgb(), rgba(),
// hsv(), hsva(), hsl(), hsla(), plus named colours supplied by the application.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace zv {

// The application's table of named colours: "#rrggbb" for a name, or nothing.
using TNamedColour = std::function<std::optional<std::u16string>(std::u16string_view name)>;

// The colour written around 0-based column `x` of `row`, as "#rrggbb" (the alpha of an
// eight-digit or rgba/hsla form is dropped). `syntax` is the syntax name: outside "Html" and
// the CSS family ("css", "sass", "scss", "less") only "#" forms and rgb() are recognised. Returns
// "#ffffff" when nothing is recognised.
std::u16string GetColorAtXY(std::u16string_view row, int x, std::u16string_view syntax,
                            const TNamedColour& named = {});

} // namespace zv
