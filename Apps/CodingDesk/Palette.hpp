#pragma once

#include "Base/Color.hpp"

#include <cstddef>
#include <string>

namespace CodingDesk {

/// Colour number `index` of an endless list. The first few thousand all differ, neighbours clearly so.
[[nodiscard]] Base::Color paletteColor(std::size_t index);

/// The colour as "#RRGGBB".
[[nodiscard]] std::string hexOf(Base::Color color);

}  // namespace CodingDesk
