#include "Apps/CodingDesk/Options.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace CodingDesk {
namespace {

TEST(OptionsTests, BothSpellingsOfAValueAndTheLastOfTwoCount) {
    const Options options =
        parseOptions({"--events=a.csv", "--analysts", "2", "--analysts=6", "--speed", "12.5",
                      "--seed=18446744073709551615", "--log", "trace.log", "--plain"});
    EXPECT_EQ(options.eventFile, "a.csv");
    EXPECT_EQ(options.analysts, 6U);
    EXPECT_EQ(options.speed, 12.5);
    EXPECT_EQ(options.seed, 18446744073709551615U);
    EXPECT_EQ(options.logFile, "trace.log");
    EXPECT_TRUE(options.plain);
    EXPECT_FALSE(parseOptions({"--speed=3", "--speed=auto"}).speed.has_value());
}

TEST(OptionsTests, TheDroppedLinkIsSomebodysByNameOrNumber) {
    const std::pair<std::vector<std::string>, std::optional<std::size_t>> table[] = {
        {{}, 1},
        {{"--drop-link=Ana", "--no-drop-link"}, std::nullopt},
        {{"--no-drop-link", "--drop-link"}, 1},
        {{"--drop-link=Dinesh", "--analysts=4"}, 3},
        {{"--drop-link=3"}, 2}};
    for (const auto& [arguments, dropLink] : table) {
        EXPECT_EQ(parseOptions(arguments).dropLink, dropLink);
    }
}

TEST(OptionsTests, SaysWhatIsWrongWithACommandLine) {
    const std::vector<std::pair<std::vector<std::string>, const char*>> cases{
        {{"--evnts", "a.csv"}, "unknown option \"--evnts\""},
        {{"a.csv"}, "unexpected argument \"a.csv\""},
        {{"--events"}, "--events needs a value"},
        {{"--analysts=9"}, "from 2 to 8"},
        {{"--analysts=3x"}, "not \"3x\""},
        {{"--speed=0"}, "--speed expects"},
        {{"--seed=1.5"}, "--seed expects"},
        {{"--plain=yes"}, "--plain takes no value"},
        {{"--drop-link=Dinesh"}, "Ana, Björn or Chloé or a number from 1 to 3"},
        {{"--drop-link=3", "--analysts=2"}, "from 1 to 2"},
    };
    for (const auto& [arguments, message] : cases) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        try {
            (void)parseOptions(arguments);
            ADD_FAILURE() << "was accepted";
        } catch (const UsageError& error) {
            EXPECT_THAT(error.what(), testing::HasSubstr(message));
        }
    }
}

}  // namespace
}  // namespace CodingDesk
