#pragma once

#include "Apps/Simulator/Conformance/Report.hpp"
#include "Apps/Simulator/Record.hpp"

namespace Simulator::Conformance {

/// Follows the writes that each session has accepted, and compares what they come to with what the cloud holds and has told.
void checkCloud(const Record& record, Report& report);

}  // namespace Simulator::Conformance
