#pragma once

#include "Apps/Simulator/Record.hpp"

namespace Simulator {

/// Runs the plan from its beginning to the end, on the calling thread alone. The same plan gives the same record to the letter.
/// What is thrown inside is in the record. Several threads may run plans at the same time.
[[nodiscard]] Record run(const Plan& plan);

}  // namespace Simulator
