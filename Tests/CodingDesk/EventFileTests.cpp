#include "Apps/CodingDesk/EventFile.hpp"

#include "Apps/CodingDesk/BuiltInMatch.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace CodingDesk {
namespace {

using Events = std::vector<CodedEvent>;

TEST(EventFileTests, ReadsWhateverTheFormatAllows) {
    struct Case {
        const char* what;
        std::string text;
        Events expected;
    };
    const std::vector<Case> cases{
        {"plain", "code,start,end\nShot,1,2.5\n", {{"Shot", 1, 2.5}}},
        {"no line end at the end", "code,start,end\nShot,1,2", {{"Shot", 1, 2}}},
        {"CR LF and empty lines", "code,start,end\r\n\r\nShot,1,2\r\n\r\n", {{"Shot", 1, 2}}},
        {"byte order mark",
         "\xEF\xBB\xBF"
         "code,start,end\nShot,1,2\n",
         {{"Shot", 1, 2}}},
        {"columns by name, others ignored", "note,END,\"Start\", code \nx,2,1,Shot\n", {{"Shot", 1, 2}}},
        {"quotes",
         "code,start,end\n\"Shot, \"\"far\"\"\nleft\",\"1\",2\nGoal,3,4\n",
         {{"Shot, \"far\"\nleft", 1, 2}, {"Goal", 3, 4}}},
        {"zero length and zero time",
         "code,start,end\nGoal,0,0\nGoal,-0,0\n",
         {{"Goal", 0, 0}, {"Goal", 0, 0}}},
        {"numbers with blanks and exponents", "code,start,end\nShot, 1e1 ,\t2.5E1\n", {{"Shot", 10, 25}}},
        {"repeated and unsorted",
         "code,start,end\nB,5,6\nA,1,2\nB,5,6\n",
         {{"B", 5, 6}, {"A", 1, 2}, {"B", 5, 6}}},
        {"UTF-8 of every length", "code,start,end\né€𝄞,1,2\n", {{"é€𝄞", 1, 2}}},
        {"blanks of a code count", "code,start,end\n Shot ,1,2\n", {{" Shot ", 1, 2}}},
    };
    for (const Case& example : cases) {
        SCOPED_TRACE(example.what);
        EXPECT_EQ(parseEvents(example.text), example.expected);
    }
}

TEST(EventFileTests, SaysWhichLineIsWrongAndWhy) {
    struct Case {
        std::string text;
        std::size_t line;
        const char* message;
    };
    const std::string header = "code,start,end\n";
    const std::vector<Case> cases{
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
        {header + "Shot,,2\n", 2, "start is not a number"},
        {header + "Shot,1,nan\n", 2, "end is not a number"},
        {header + "Shot,1,inf\n", 2, "end is not a number"},
        {header + "Shot,1,1e999\n", 2, "end is out of range"},
        {header + "Shot,0x1,2\n", 2, "start is not a number"},
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
    for (const Case& example : cases) {
        SCOPED_TRACE(example.text);
        try {
            (void)parseEvents(example.text);
            ADD_FAILURE() << "was accepted";
        } catch (const FileError& error) {
            EXPECT_EQ(error.line(), example.line);
            EXPECT_THAT(error.what(), testing::HasSubstr(example.message));
        }
    }
}

TEST(EventFileTests, RefusesWhatIsNotUtf8) {
    const std::vector<std::string> broken{"\x80",
                                          "\xC3",
                                          "\xC0\xAF",
                                          "\xE0\x80\xAF",
                                          "\xED\xA0\x80",
                                          "\xF0\x80\x80\xAF",
                                          "\xF4\x90\x80\x80",
                                          "\xFF\xFE",
                                          "\xE2\x82"};
    for (const std::string& bytes : broken) {
        SCOPED_TRACE(testing::PrintToString(bytes));
        try {
            (void)parseEvents("code,start,end\nShot,1,2\nTor " + bytes + ",3,4\n");
            ADD_FAILURE() << "was accepted";
        } catch (const FileError& error) {
            EXPECT_EQ(error.line(), 3U);
            EXPECT_THAT(error.what(), testing::HasSubstr("not UTF-8"));
        }
    }
}

TEST(EventFileTests, RefusesFilesThatCannotBeRead) {
    const auto folder = std::filesystem::temp_directory_path();
    for (const std::string& path : {folder.string(), (folder / "no such folder" / "match.csv").string()}) {
        try {
            (void)loadEvents(path);
            ADD_FAILURE() << path << " was accepted";
        } catch (const FileError& error) {
            EXPECT_EQ(error.line(), 0U);
        }
    }
}

TEST(EventFileTests, TheBuiltInMatchHasEverythingADemonstrationNeeds) {
    const Events events = parseEvents(builtInMatch());
    std::set<std::string> codes;
    bool hasClipWithoutLength = false;
    bool hasNameBeyondAscii = false;
    for (const CodedEvent& event : events) {
        codes.insert(event.code);
        hasClipWithoutLength |= event.start == event.end;
        hasNameBeyondAscii |=
            std::ranges::any_of(event.code, [](char c) { return static_cast<signed char>(c) < 0; });
    }
    EXPECT_GE(events.size(), 60U);
    EXPECT_GE(codes.size(), 6U);
    EXPECT_TRUE(hasClipWithoutLength);
    EXPECT_TRUE(hasNameBeyondAscii);
}

}  // namespace
}  // namespace CodingDesk
