#pragma once

#include <string_view>

namespace CodingDesk {

/// The text of HandballMatch.csv: eight minutes of a handball match, invented and coded for this program.
[[nodiscard]] std::string_view builtInMatch();

}  // namespace CodingDesk
