#include "Base/RFC3339.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

using namespace std::chrono_literals;
using Base::RFC3339::format;
using Base::RFC3339::parse;

TEST(RFC3339, ReadsWhatTheGrammarAllows) {
    const std::pair<std::string, std::string> table[] = {
        // The examples of RFC 3339, section 5.8.
        {"1985-04-12T23:20:50.52Z", "1985-04-12T23:20:50.520000Z"},
        {"1996-12-19T16:39:57-08:00", "1996-12-20T00:39:57Z"},
        {"1937-01-01T12:00:27.87+00:20", "1937-01-01T11:40:27.870000Z"},
        // Letters in either case, the unknown local offset, the largest offsets.
        {"2024-05-17t18:03:22z", "2024-05-17T18:03:22Z"},
        {"2024-05-17T18:03:22-00:00", "2024-05-17T18:03:22Z"},
        {"2024-05-17T18:03:22+23:59", "2024-05-16T18:04:22Z"},
        {"2024-05-17T18:03:22-23:59", "2024-05-18T18:02:22Z"},
        // Fractions of any length; past the sixth digit they are cut off, not rounded.
        {"2024-05-17T18:03:22.000001Z", "2024-05-17T18:03:22.000001Z"},
        {"2024-05-17T18:03:22.9999999999Z", "2024-05-17T18:03:22.999999Z"},
        {"2024-05-17T18:03:22." + std::string(100'000, '0') + "+01:00", "2024-05-17T17:03:22Z"},
        // Leap days, the ends of the calendar, times before 1970.
        {"2000-02-29T00:00:00Z", "2000-02-29T00:00:00Z"},
        {"0000-01-01T00:00:00Z", "0000-01-01T00:00:00Z"},
        {"9999-12-31T23:59:59.999999Z", "9999-12-31T23:59:59.999999Z"},
        {"1969-12-31T23:59:59.999999Z", "1969-12-31T23:59:59.999999Z"},
        // Leap seconds: the last microsecond before.
        {"1990-12-31T23:59:60Z", "1990-12-31T23:59:59.999999Z"},
        {"1990-12-31T15:59:60.7-08:00", "1990-12-31T23:59:59.999999Z"},
        {"2017-01-01T05:29:60+05:30", "2016-12-31T23:59:59.999999Z"},
    };

    for (const auto& [text, inUTC] : table) {
        const auto time = parse(text);
        EXPECT_EQ(time ? format(*time) : "refused", inUTC) << text.substr(0, 60);
    }
    EXPECT_EQ(parse("2001-09-09T01:46:40.000001Z")->time_since_epoch(), 1'000'000'000'000'001us);
}

TEST(RFC3339, RefusesEverythingElse) {
    const std::string table[] = {
        // Something missing or too much.
        "2024-05-17T18:03Z", "2024-05-17T18:03:22.Z", "2024-05-17T18:03:22.+01:00", "2024-05-17T18:03:22,5Z",
        "2024-05-17T18:03:22+0100", "2024-05-17T18:03:22+01:000", "2024-05-17T18:03:22ZZ",
        "12024-05-17T18:03:22Z", "+2024-05-17T18:03:22Z", "2024-5-17T18:03:22Z", "20240517T180322Z",
        // Something before, after or in between.
        " 2024-05-17T18:03:22Z", "2024-05-17T18:03:22Z\n", "2024-05-17 18:03:22Z", "2024-05-17T18:03:22 Z",
        "2024/05/17T18:03:22Z", "2024-05-17T18.03.22Z",
        // Numbers out of their range.
        "2024-00-17T18:03:22Z", "2024-13-17T18:03:22Z", "2024-05-00T18:03:22Z", "2024-05-32T18:03:22Z",
        "2024-06-31T18:03:22Z", "2023-02-29T18:03:22Z", "1900-02-29T18:03:22Z", "2024-05-17T24:00:00Z",
        "2024-05-17T18:60:22Z", "2024-05-17T18:03:61Z", "2024-05-17T18:03:22+24:00",
        "2024-05-17T18:03:22+01:60",
        // Seconds of 60 where no leap second can be.
        "2024-05-17T23:59:60Z", "2024-05-31T22:59:60Z", "2024-05-31T23:58:60Z", "2024-05-31T23:59:60+00:01",
        // No digits and no signs, though they look or parse like some: here a minus sign, U+2212.
        "2024-05-17T18:03:+2Z", "2024-05-17T18:03: 2Z", "2024-05-17T18:03:2xZ", "0x24-05-17T18:03:22Z",
        "2024-05-17T18:03:22\u221208:00", std::string("2024-05-17T18:03:22Z\0", 21),
        std::string(1'000'000, '2')};

    for (const auto& text : table) {
        EXPECT_FALSE(parse(text)) << '"' << text.substr(0, 60) << '"';
    }
    const std::string complete = "2016-12-31T23:59:60.123456+00:00";
    for (std::size_t length = 0; length < complete.size(); ++length) {
        EXPECT_FALSE(parse(complete.substr(0, length))) << length;
    }
}

TEST(RFC3339, EveryTimeThatItWritesReadsBackTheSame) {
    const auto first = *parse("0000-01-01T00:00:00Z");
    const auto last = *parse("9999-12-31T23:59:59.999999Z");
    for (auto time = first; time < last; time += 313'373h + 7min + 11s + 13us) {
        ASSERT_EQ(parse(format(time)), time);
    }
    EXPECT_THROW((void)format(*parse("0000-01-01T00:00:00+00:01")), std::out_of_range);
    EXPECT_THROW((void)format(last + 1us), std::out_of_range);
}

}  // namespace
