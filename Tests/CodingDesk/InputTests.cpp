// What a user hands in: the file of events, the options, and how the program refuses them.

#include "Apps/CodingDesk/EventFile.hpp"
#include "Apps/CodingDesk/Options.hpp"
#include "Apps/CodingDesk/Program.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace CodingDesk {
namespace {

const std::string header = "code,start,end\n";

TEST(InputTests, AnEventFileMayBeWhateverTheFormatAllows) {
    const std::pair<std::string, std::vector<CodedEvent>> cases[] = {
        {"\xEF\xBB\xBF" + header + "\r\nShot,1,2.5\r\n\r\n", {{"Shot", 1, 2.5}}},
        {"note,END,\"Start\", code \r\nx,2,1,Shot", {{"Shot", 1, 2}}},
        {header + "\"Shot, \"\"far\"\"\nleft\",\"1\",2\nA,-0,0\nA,0,0\n",
         {{"Shot, \"far\"\nleft", 1, 2}, {"A", 0, 0}, {"A", 0, 0}}},
        {header + " é€𝄞 , 1e1 ,\t2.5E1\n", {{" é€𝄞 ", 10, 25}}}};
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(parseEvents(text), expected) << text;
    }
}

TEST(InputTests, OptionsHaveTwoSpellingsAndTheLastOfTwoCounts) {
    const Options options = parseOptions({"--events=a.csv", "--analysts", "2", "--analysts=6", "--speed",
                                          "12.5", "--seed=18446744073709551615", "--log", "trace.log"});
    EXPECT_EQ(options.eventFile, "a.csv");
    EXPECT_EQ(options.analysts, 6U);
    EXPECT_EQ(options.speed, 12.5);
    EXPECT_EQ(options.seed, 18446744073709551615U);
    EXPECT_EQ(options.logFile, "trace.log");
    EXPECT_EQ(options.dropLink, 1U);
    EXPECT_EQ(parseOptions({"--speed=3", "--speed=auto"}).speed, std::nullopt);
    EXPECT_EQ(parseOptions({"--drop-link=Ana", "--no-drop-link"}).dropLink, std::nullopt);
    EXPECT_EQ(parseOptions({"--no-drop-link", "--drop-link"}).dropLink, 1U);
    EXPECT_EQ(parseOptions({"--drop-link=Dinesh", "--analysts=4"}).dropLink, 3U);
    EXPECT_EQ(parseOptions({"--drop-link=3"}).dropLink, 2U);
    EXPECT_EQ(parseOptions({"--scenario", "host-ends", "--scenario=all", "--speed=3"}).scenario, "all");
}

TEST(InputTests, WhatCannotBeUsedEndsTheProgramWithStatus2AndTheReasonBeforeAnythingIsDone) {
    std::vector<std::pair<std::vector<std::string>, std::string>> cases{
        {{"--events=missing.csv"}, "missing.csv: the file cannot be opened"},
        {{"--log", "no such folder/trace.log"}, "no such folder/trace.log"},
        {{"--evnts", "a.csv"}, "unknown option \"--evnts\""},
        {{"a.csv"}, "unexpected argument \"a.csv\""},
        {{"--events"}, "--events needs a value"},
        {{"--analysts=9"}, "from 2 to 8"},
        {{"--analysts=3x"}, "not \"3x\""},
        {{"--speed=0"}, "--speed expects"},
        {{"--seed=1.5"}, "--seed expects"},
        {{"--scenario=cup-final"}, "--scenario expects match, no-capture, guest-leaves, host-ends"},
        {{"--no-drop-link", "--scenario=host-ends"}, "--no-drop-link is an option of the match"},
        {{"--plain=yes"}, "--plain takes no value"},
        {{"--drop-link=Dinesh"}, "Ana, Björn or Chloé or a number from 1 to 3"},
        {{"--drop-link=3", "--analysts=2"}, "from 1 to 2"}};
    std::vector<std::pair<std::string, std::string>> files{
        {"\n\n", "line 1: the file is empty"},
        {header, "line 1: nothing follows the header"},
        {"\ncode;start;end\n", "line 2: the header has no column \"code\""},
        {"code,start,end,start\nShot,1,2,3\n", "line 1: the header has the column \"start\" twice"}};
    const std::pair<const char*, const char*> lines[] = {
        {"Shot,2,1", "the end \"1\" is before the start \"2\""},
        {"Shot,one,2", "start is not a number of seconds: \"one\""},
        {"Shot,1,2s", "end is not a number"},
        {"Shot,1,nan", "end is not a number"},
        {"Shot,1,1e999", "end is out of range"},
        {"Shot,+1,2", "start is not a number"},
        {"Shot,-1,2", "start is negative"},
        {"Shot,far,1,2", "expected 3 fields as in the header, found 4"},
        {" ,1,2", "the code is empty"},
        {"\"Shot\"s,1,2", "text follows the closing quote"},
        {"Sh\"ot,1,2", "a quote stands inside"},
        {"\"Shot,1,2\nGoal,3,4", "a quote is opened here and never closed"},
        {"Shot,1,\x1B[2J", "end is not a number of seconds: \"\uFFFD[2J"}};
    for (const auto& [line, message] : lines) {
        files.emplace_back(header + "\"a\nb\",1,2\n" + line + "\n", std::string("line 4: ") + message);
    }
    // What is not UTF-8: lone and missing bytes, overlong forms, surrogates, numbers past the end.
    for (const char* bytes : {"\x80", "\xC3", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF0\x80\x80\xAF",
                              "\xF4\x90\x80\x80", "\xFF\xFE", "\xE2\x82"}) {
        files.emplace_back(header + "Shot,1,2\nTor " + bytes + ",3,4\n", "line 3: the text is not UTF-8");
    }
    const auto folder = std::filesystem::path(testing::TempDir()) / "CodingDesk refuses";
    std::filesystem::create_directories(folder);
    for (const auto& [text, message] : files) {
        const std::string match = folder / (std::to_string(cases.size()) + ".csv");
        std::ofstream(match, std::ios::binary) << text;
        cases.push_back({{"--events", match, "--log", folder / "log"}, match + ", " + message});
    }
    for (const auto& [arguments, message] : cases) {
        std::ostringstream out, errors;
        EXPECT_EQ(runProgram(arguments, out, errors), 2) << message;
        EXPECT_THAT(errors.str(), testing::HasSubstr(message));
        EXPECT_EQ(out.str(), "");
    }
    EXPECT_FALSE(std::filesystem::exists(folder / "log"));
    std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace CodingDesk
