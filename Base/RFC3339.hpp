#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

/// Dates and times as network services write them (RFC 3339): "2024-05-17T18:03:22.5+02:00".
namespace Base::RFC3339 {

/// A moment in UTC without leap seconds.
using Time = std::chrono::sys_time<std::chrono::microseconds>;

/// Reads a `date-time` of the RFC's grammar (section 5.6); absent for anything else, including one with something before
/// or after it.
///
/// Digits past the sixth of a fraction are cut off. The "unknown local offset" -00:00 is read as UTC. A leap second is
/// read where the RFC allows one, at the end of a month in UTC; it gives the last microsecond before it, as the
/// conversion from `std::chrono::utc_clock` does, so that later texts never give earlier times.
[[nodiscard]] std::optional<Time> parse(std::string_view text);

/// The text in UTC, with six digits of fraction when there is one: "2024-05-17T16:03:22Z". Throws `std::out_of_range`
/// for a time that is not in the years 0 to 9999.
[[nodiscard]] std::string format(Time time);

}  // namespace Base::RFC3339
