#pragma once

#include "Apps/Simulator/Plan.hpp"

#include <cstddef>
#include <functional>

namespace Simulator {

/// Shortens a plan for as long as it still fails: fewer steps first, then fewer analysts, rounder numbers and shorter pauses.
/// `stillFails` decides, and is asked at most `tries` times. The result failed when it was asked about; it is the plan
/// itself when nothing shorter does. The same plan and answers give the same result.
[[nodiscard]] Plan shrink(Plan plan, const std::function<bool(const Plan&)>& stillFails, std::size_t tries);

}  // namespace Simulator
