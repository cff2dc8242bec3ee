#include "Apps/CodingDesk/EventFile.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
    std::vector<Case> cases{
        {"", 1, "empty"},
        {"\n\n", 1, "empty"},
        {"code,start,end\n", 1, "nothing follows the header"},
        {"Shot,1,2\n", 1, "no column \"code\""},
        {"\ncode;start;end\n", 2, "no column \"code\""},
        {"code,start\nShot,1\n", 1, "no column \"end\""},
        {"code,start,end,start\nShot,1,2,3\n", 1, "\"start\" twice"},
    };
    const std::pair<const char*, const char*> secondLines[] = {
        {"Shot,2,1", "the end \"1\" is before the start \"2\""},
        {"Shot,one,2", "start is not a number of seconds: \"one\""},
        {"Shot,1,2s", "end is not a number"},
        {"Shot,1,nan", "end is not a number"},
        {"Shot,1,1e999", "end is out of range"},
        {"Shot,+1,2", "start is not a number"},
        {"Shot,-1,2", "start is negative"},
        {"Shot,1", "expected 3 fields as in the header, found 2"},
        {"Shot,far,1,2", "expected 3 fields as in the header, found 4"},
        {" ,1,2", "the code is empty"},
        {"\"Shot\"s,1,2", "follows the closing quote"},
        {"Sh\"ot,1,2", "a quote stands inside"},
        {"\"Shot,1,2\nGoal,3,4", "never closed"},
        {"Shot\x1B[2J,1,\x1B[2J", "\uFFFD[2J"}};
    for (const auto& [line, message] : secondLines) {
        cases.push_back({"code,start,end\n" + std::string(line) + "\n", 2, message});
        cases.push_back({"code,start,end\n\"a\nb\",1,2\n" + std::string(line) + "\n", 4, message});
    }
    // What is not UTF-8: lone and missing bytes, overlong forms, surrogates, numbers past the end.
    for (const char* bytes : {"\x80", "\xC3", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF0\x80\x80\xAF",
                              "\xF4\x90\x80\x80", "\xFF\xFE", "\xE2\x82"}) {
        cases.push_back({"code,start,end\nShot,1,2\nTor " + std::string(bytes) + ",3,4\n", 3, "not UTF-8"});
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

}  // namespace
}  // namespace CodingDesk
