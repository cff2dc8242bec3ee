#include "Base/CalendarDay.hpp"

#include <chrono>
#include <ctime>

namespace Base {

namespace {

using std::chrono::seconds;

std::optional<std::tm> localTime(std::time_t time) {
    std::tm fields{};
    if (::localtime_r(&time, &fields) == nullptr) {
        return std::nullopt;
    }
    return fields;
}

/// What the local time is ahead of UTC.
std::optional<std::time_t> offsetAt(std::time_t time) {
    const auto fields = localTime(time);
    return fields ? std::optional<std::time_t>(fields->tm_gmtoff) : std::nullopt;
}

/// The fields need not be in their ranges.
std::optional<std::time_t> timeOf(std::tm fields) {
    const std::time_t wanted = ::timegm(&fields);
    // -1 as a result may be an error or the second before 1970; only a success sets the day of the week.
    fields.tm_wday = -1;
    fields.tm_isdst = -1;
    const std::time_t time = std::mktime(&fields);
    if (fields.tm_wday < 0) {
        return std::nullopt;
    }
    // Of a repeated time mktime gives either, depending on earlier calls, and a skipped one it moves either way.
    const auto offsetBefore = offsetAt(time - 24 * 60 * 60);
    if (!offsetBefore) {
        return time;
    }
    const std::time_t byOffsetBefore = wanted - *offsetBefore;
    const auto reads = [wanted](std::time_t candidate) {
        const auto offset = offsetAt(candidate);
        return offset && candidate + *offset == wanted;
    };
    return reads(byOffsetBefore) || !reads(time) ? byOffsetBefore : time;
}

}  // namespace

std::optional<RFC3339::Time> oneCalendarDayBefore(RFC3339::Time time) {
    ::tzset();  // localtime_r need not follow a change of the user's time zone; mktime does
    const auto wholeSeconds = std::chrono::floor<seconds>(time);
    auto fields = localTime(wholeSeconds.time_since_epoch().count());
    if (!fields) {
        return std::nullopt;
    }
    --fields->tm_mday;
    const auto before = timeOf(*fields);
    if (!before) {
        return std::nullopt;
    }
    const std::chrono::sys_seconds earlier{seconds(*before)};
    if (earlier < std::chrono::ceil<seconds>(RFC3339::Time::min())) {
        return std::nullopt;
    }
    return earlier + (time - wholeSeconds);
}

}  // namespace Base
