#include "Base/CalendarDay.hpp"
#include "Base/RFC3339.hpp"
#include "ReferenceHost/Windowing/DateText.hpp"
#include "Tests/Fuzz/Fuzz.hpp"

#include <cstring>

using namespace std::chrono;
using namespace Base;

static void checkTime(RFC3339::Time time) {
    const bool hasText = time >= sys_days(year(0) / 1 / 1) && time < sys_days(year(9999) / 12 / 31) + days(1);
    try {
        require(RFC3339::parse(RFC3339::format(time)) == time && hasText, "the text of a time gives it");
    } catch (const std::out_of_range&) {
        require(!hasText, "a time of the years 0 to 9999 has a text");
    }
    const auto before = oneCalendarDayBefore(time);
    require(before || time < time.min() + hours(25), "all times but the first have a day before");
    require(!before || abs(time - *before - hours(24)) <= hours(1), "a day is about 24 hours");
    require(!mediumDateText(time, ReferenceHost::DateLanguage::french).empty(), "a time has a date");
}

static void check(std::string_view input) {
    ::setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
    if (const auto time = RFC3339::parse(input)) {
        checkTime(*time);
        const std::string text(input.substr(0, input.find_first_of("Zz+-", 19)));
        const auto local = RFC3339::parse(text + 'Z');
        const std::string zone(input.size() > text.size() + 1 ? input.substr(text.size()) : "+00:00");
        const auto ahead = hours(std::stoi(zone)) + minutes(std::stoi(zone[0] + zone.substr(4)));
        require(!local || *local - *time == ahead, "a zone is as far ahead as it says");
        require(abs(ahead) < hours(24), "a zone is less than a day ahead");
        const auto written = RFC3339::format(local.value_or(sys_days())).substr(11, 8);
        require(written == input.substr(11, 8) || input.substr(17, 2) == "60", "it is what is written");
    }
    if (microseconds::rep count = 0; input.size() == sizeof count) {
        std::memcpy(&count, input.data(), sizeof count);
        checkTime(RFC3339::Time(microseconds(count)));
    }
}
