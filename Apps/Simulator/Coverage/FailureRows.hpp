#pragma once

#include "Apps/Simulator/Coverage/Rows.hpp"
#include "Apps/Simulator/Record.hpp"

namespace Simulator {

/// How often each foreseen failure was met in a run: by the line that the log has for it, or by what was done, or was not done,
/// in its place. Left out is what a trace cannot show: a row that is kept because of its clips, a row whose callback never
/// comes, a fragment that arrives during the question for the video's status, a call that is never answered.
[[nodiscard]] Rows failuresIn(const Record& record);

/// The same table with nothing met.
[[nodiscard]] Rows noFailures();

}  // namespace Simulator
