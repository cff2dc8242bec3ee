#pragma once

#include <string>

namespace ReferenceHost {
struct CloudRules;
struct TimelineRules;
}  // namespace ReferenceHost

namespace Simulator {

/// Switches off the rule of that name, in whichever of the two it belongs. Throws `std::invalid_argument` for a name that
/// `allRules` does not have.
void breakRule(const std::string& name, ReferenceHost::CloudRules& cloud,
               ReferenceHost::TimelineRules& timelines);

}  // namespace Simulator
