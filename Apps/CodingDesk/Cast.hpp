#pragma once

#include <cstddef>
#include <string_view>

namespace CodingDesk {

/// The name of analyst number `index`; there are as many as `Options::mostAnalysts`.
[[nodiscard]] std::string_view castName(std::size_t index);

}  // namespace CodingDesk
