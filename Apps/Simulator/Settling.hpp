#pragma once

#include "Apps/Simulator/World.hpp"

#include <string>
#include <vector>

namespace Simulator {

/// Lets the time pass until nobody's work is under way any more. What still is when patience has ended, a line each.
[[nodiscard]] std::vector<std::string> settle(World& world, Base::Seconds patience);

/// What is there and should not be when everybody has left, a line each.
[[nodiscard]] std::vector<std::string> leftovers(World& world);

}  // namespace Simulator
