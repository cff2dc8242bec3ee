#pragma once

#include "Apps/CodingDesk/Console.hpp"
#include "Apps/CodingDesk/Scenario.hpp"

#include <cstdint>
#include <ostream>

namespace CodingDesk {

/// Plays the scenario, with its checks, and says how it went. False when something was not as it should be. What happened is
/// appended to `log` where there is one.
[[nodiscard]] bool perform(const Scenario& scenario, std::uint64_t seed, Console& console, std::ostream* log);

}  // namespace CodingDesk
