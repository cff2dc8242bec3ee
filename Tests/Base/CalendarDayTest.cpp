#include "Base/CalendarDay.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <tuple>

namespace {

using Base::oneCalendarDayBefore;
using Base::RFC3339::Time;

// Rules in POSIX's own notation need no time zone files. The signs are POSIX's: positive is west.
constexpr auto middleEurope = "CET-1CEST,M3.5.0,M10.5.0/3";
constexpr auto newYork = "EST5EDT,M3.2.0,M11.1.0";
constexpr auto lordHowe = "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0";  // summer is half an hour
constexpr auto dublin = "IST-1GMT0,M10.5.0,M3.5.0/1";              // "summer time" in winter, negative
constexpr auto beirut = "EET-2EEST,M3.5.0/0,M10.5.0/0";            // changes at midnight

void setTimeZone(const char* zone) {
    ::setenv("TZ", zone, 1);
    ::tzset();
}

std::string dayBefore(const std::string& text) {
    const auto result = oneCalendarDayBefore(Base::RFC3339::parse(text).value());
    return result ? Base::RFC3339::format(*result) : "absent";
}

TEST(CalendarDay, KeepsTheTimeOfDayInTheUsersTimeZone) {
    const std::tuple<const char*, std::string, std::string> table[] = {
        {"UTC0", "2024-05-17T18:03:22.123456Z", "2024-05-16T18:03:22.123456Z"},
        {"UTC0", "2024-03-01T00:00:00Z", "2024-02-29T00:00:00Z"},
        // The year's first day here; a time before 1970, where mktime's result is -1.
        {middleEurope, "2024-01-01T00:30:00+01:00", "2023-12-30T23:30:00Z"},
        {"UTC0", "1970-01-01T23:59:59.999999Z", "1969-12-31T23:59:59.999999Z"},
        {"UTC0", "0001-01-01T00:00:00Z", "0000-12-31T00:00:00Z"},
        // Days of 23 and of 25 hours, from within and from after the change.
        {middleEurope, "2024-03-31T12:00:00+02:00", "2024-03-30T11:00:00Z"},
        {middleEurope, "2024-04-01T12:00:00+02:00", "2024-03-31T10:00:00Z"},
        {middleEurope, "2024-10-27T12:00:00+01:00", "2024-10-26T10:00:00Z"},
        {middleEurope, "2024-10-28T12:00:00+01:00", "2024-10-27T11:00:00Z"},
        {lordHowe, "2024-10-06T12:00:00+11:00", "2024-10-05T01:30:00Z"},
        // From both of the times that look the same.
        {middleEurope, "2024-10-27T02:30:00+02:00", "2024-10-26T00:30:00Z"},
        {middleEurope, "2024-10-27T02:30:00+01:00", "2024-10-26T00:30:00Z"},
        // To a time that was skipped or came twice: read with the offset from before the change.
        {middleEurope, "2024-04-01T02:30:00.5+02:00", "2024-03-31T01:30:00.500000Z"},
        {newYork, "2024-03-11T02:00:00-04:00", "2024-03-10T07:00:00Z"},
        {lordHowe, "2024-10-07T02:15:00+11:00", "2024-10-05T15:45:00Z"},
        {dublin, "2024-04-01T01:30:00+01:00", "2024-03-31T01:30:00Z"},
        {beirut, "2024-04-01T00:30:00+03:00", "2024-03-30T22:30:00Z"},
        {middleEurope, "2024-10-28T02:00:00+01:00", "2024-10-27T00:00:00Z"},
        {middleEurope, "2024-10-28T03:00:00+01:00", "2024-10-27T02:00:00Z"},
        {newYork, "2024-11-04T01:30:00-05:00", "2024-11-03T05:30:00Z"},
        {lordHowe, "2024-04-08T01:45:00+10:30", "2024-04-06T14:45:00Z"},
        {dublin, "2024-10-28T01:30:00+00:00", "2024-10-27T00:30:00Z"},
        {beirut, "2024-10-27T23:30:00+02:00", "2024-10-26T20:30:00Z"},
    };

    for (const auto& [zone, time, expected] : table) {
        // mktime takes its guess from the call before: one in winter, one in summer.
        for (const char* earlier : {"2024-01-10T12:00:00Z", "2024-07-10T12:00:00Z"}) {
            setTimeZone(zone);
            dayBefore(earlier);
            EXPECT_EQ(dayBefore(time), expected) << zone << ' ' << time << " after " << earlier;
        }
    }
}

TEST(CalendarDay, IsAbsentWhereTheCalendarEnds) {
    using namespace std::chrono_literals;
    for (const char* zone : {"UTC0", "<+14>-14", "<-12>12"}) {
        setTimeZone(zone);
        EXPECT_FALSE(oneCalendarDayBefore(Time::min() + 23h));
        EXPECT_EQ(oneCalendarDayBefore(Time::min() + 25h), Time::min() + 1h);
        EXPECT_EQ(oneCalendarDayBefore(Time::max()), Time::max() - 24h);
    }
}

}  // namespace
