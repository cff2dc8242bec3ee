#pragma once

#include "Base/Color.hpp"

#include <string>

/// How values stand in traces and plans.
namespace Simulator {

/// With as many digits as are needed to read the same number back.
[[nodiscard]] std::string textOf(double number);

/// Red, green, blue and alpha, separated by commas.
[[nodiscard]] std::string textOf(Base::Color color);

}  // namespace Simulator
