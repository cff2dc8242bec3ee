#include "Apps/CodingDesk/EventFile.hpp"

#include "Apps/CodingDesk/BuiltInMatch.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace CodingDesk {
namespace {

using Events = std::vector<CodedEvent>;

TEST(EventFileTests, ReadsWhateverTheFormatAllows) {
    const std::vector<std::pair<std::string, Events>> cases{
        {"code,start,end\nShot,1,2.5\n", {{"Shot", 1, 2.5}}},
        {"code,start,end\nShot,1,2", {{"Shot", 1, 2}}},
        {"code,start,end\r\n\r\nShot,1,2\r\n\r\n", {{"Shot", 1, 2}}},
        {"\xEF\xBB\xBF"
         "code,start,end\nShot,1,2\n",
         {{"Shot", 1, 2}}},
        {"note,END,\"Start\", code \nx,2,1,Shot\n", {{"Shot", 1, 2}}},
        {"code,start,end\n\"Shot, \"\"far\"\"\nleft\",\"1\",2\nGoal,3,4\n",
         {{"Shot, \"far\"\nleft", 1, 2}, {"Goal", 3, 4}}},
        {"code,start,end\nGoal,0,0\nGoal,-0,0\n", {{"Goal", 0, 0}, {"Goal", 0, 0}}},
        {"code,start,end\nShot, 1e1 ,\t2.5E1\n", {{"Shot", 10, 25}}},
        {"code,start,end\nB,5,6\nA,1,2\nB,5,6\n", {{"B", 5, 6}, {"A", 1, 2}, {"B", 5, 6}}},
        {"code,start,end\né€𝄞,1,2\n", {{"é€𝄞", 1, 2}}},
        {"code,start,end\n Shot ,1,2\n", {{" Shot ", 1, 2}}},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(parseEvents(text), expected) << text;
    }
}

TEST(EventFileTests, SaysWhichLineIsWrongAndWhy) {
    struct Case {
        std::string text;
        std::size_t line;
        const char* message;
    };
    const std::string header = "code,start,end\n";
    std::vector<Case> cases{
        {"", 1, "empty"},
        {"\n\n", 1, "empty"},
        {header, 1, "nothing follows the header"},
        {"Shot,1,2\n", 1, "no column \"code\""},
        {"code,start\nShot,1\n", 1, "no column \"end\""},
        {"\ncode;start;end\n", 2, "no column \"code\""},
        {"code,start,end,start\nShot,1,2,3\n", 1, "\"start\" twice"},
        {header + "Shot,2,1\n", 2, "the end \"1\" is before the start \"2\""},
        {header + "Shot,1,2\nShot,one,2\n", 3, "start is not a number of seconds: \"one\""},
        {header + "Shot,1,2s\n", 2, "end is not a number"},
        {header + "Shot,1,nan\n", 2, "end is not a number"},
        {header + "Shot,1,1e999\n", 2, "end is out of range"},
        {header + "Shot,+1,2\n", 2, "start is not a number"},
        {header + "Shot,-1,2\n", 2, "start is negative"},
        {header + "Shot,1\n", 2, "expected 3 fields as in the header, found 2"},
        {header + "Shot,far,1,2\n", 2, "expected 3 fields as in the header, found 4"},
        {header + " ,1,2\n", 2, "the code is empty"},
        {header + "\"a\nb\",1,2\n\"Shot,1,2\nGoal,3,4\n", 4, "never closed"},
        {header + "\"Shot\"s,1,2\n", 2, "follows the closing quote"},
        {header + "Sh\"ot,1,2\n", 2, "a quote stands inside"},
        {header + "\"a\nb\",1,2\nShot,1,x\n", 4, "end is not a number"},
        {header + "Shot\x1B[2J,1,\x1B[2J\n", 2, "\uFFFD[2J"},
    };
    // What is not UTF-8: lone and missing bytes, overlong forms, surrogates, numbers past the end.
    for (const char* bytes : {"\x80", "\xC3", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF0\x80\x80\xAF",
                              "\xF4\x90\x80\x80", "\xFF\xFE", "\xE2\x82"}) {
        cases.push_back({header + "Shot,1,2\nTor " + bytes + ",3,4\n", 3, "not UTF-8"});
    }
    for (const Case& example : cases) {
        SCOPED_TRACE(testing::PrintToString(example.text));
        try {
            (void)parseEvents(example.text);
            ADD_FAILURE() << "was accepted";
        } catch (const FileError& error) {
            EXPECT_EQ(error.line(), example.line);
            EXPECT_THAT(error.what(), testing::HasSubstr(example.message));
        }
    }
}

TEST(EventFileTests, TheBuiltInMatchHasEverythingADemonstrationNeeds) {
    const Events events = parseEvents(builtInMatch());
    std::set<std::string> codes;
    std::string characters;
    for (const CodedEvent& event : events) {
        codes.insert(event.code);
        characters += event.code;
    }
    EXPECT_GE(events.size(), 60U);
    EXPECT_GE(codes.size(), 6U);
    EXPECT_TRUE(
        std::ranges::any_of(events, [](const CodedEvent& event) { return event.start == event.end; }));
    EXPECT_TRUE(std::ranges::any_of(characters, [](char c) { return static_cast<signed char>(c) < 0; }));
}

}  // namespace
}  // namespace CodingDesk
