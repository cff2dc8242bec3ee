#pragma once

#include "ReferenceHost/Trace.hpp"

#include <iosfwd>
#include <vector>

namespace Simulator {

/// Reads what `ReferenceHost::Trace::write` has written; times as they stand there, to the microsecond. Throws
/// `std::runtime_error` with the line's number for anything else.
[[nodiscard]] std::vector<ReferenceHost::TraceEntry> readTrace(std::istream& stream);

}  // namespace Simulator
