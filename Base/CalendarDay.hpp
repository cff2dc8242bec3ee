#pragma once

#include "Base/RFC3339.hpp"

#include <optional>

namespace Base {

/// The same time of day on the calendar day before, in the user's time zone (`TZ`, else the system's): 24 hours
/// earlier on most days, 23 or 25 over a change of the clocks. Absent when that day is out of the calendar's range.
///
/// Where that time of day does not exist, or exists twice, it is read with the offset from before the change of the
/// clocks, as calendars do (RFC 5545, section 3.3.5): a skipped 02:30 becomes 03:30, a repeated one the first of both.
[[nodiscard]] std::optional<RFC3339::Time> oneCalendarDayBefore(RFC3339::Time time);

}  // namespace Base
