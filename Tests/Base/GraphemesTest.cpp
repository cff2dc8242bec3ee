#include "Base/Graphemes.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Base::Graphemes::count;
using Base::Graphemes::prefixLength;
using Lengths = std::vector<std::size_t>;

/// The bytes of each character. The text lies in a block of its own size, so that the Address sanitizer notices a read
/// past its end.
Lengths lengths(const std::string& text) {
    const std::vector<char> block(text.begin(), text.end());
    const std::string_view copy(block.data(), block.size());
    Lengths result;
    for (std::size_t end = 0; end < text.size() && result.size() < text.size();) {
        const std::size_t next = prefixLength(copy, result.size() + 1);
        result.push_back(next - end);
        end = next;
    }
    EXPECT_EQ(count(copy), result.size());
    return result;
}

TEST(Graphemes, FollowEveryLineOfUnicodesOwnTest) {
    std::ifstream file(GRAPHEME_BREAK_TEST);
    ASSERT_TRUE(file) << GRAPHEME_BREAK_TEST << " is missing: tools/setup installs it (unicode-data)";

    std::size_t lines = 0;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line.substr(0, line.find('#')));
        Lengths expected;
        std::string text;
        for (std::string sign, code; words >> sign >> code;) {
            if (sign == "\u00F7") {  // ÷ a break, × none
                expected.push_back(0);
            }
            const std::u32string character(1, static_cast<char32_t>(std::stoul(code, nullptr, 16)));
            const std::string bytes = std::filesystem::path(character).string();  // UTF-8
            expected.back() += bytes.size();
            text += bytes;
        }
        lines += text.empty() ? 0U : 1U;
        EXPECT_EQ(lengths(text), expected) << line;
    }
    EXPECT_GE(lines, 600U) << "Unicode 15.0 has 602 lines of test";
}

/// What Unicode's own test leaves open.
TEST(Graphemes, CountWhatAUserSees) {
    const std::pair<std::string, Lengths> table[] = {
        {"\U0001F468\u200D\U0001F469\u200D\U0001F467!", {18, 1}},
        // Skin tone and variation selector before the joiner; a joiner after no pictograph joins none.
        {"\U0001F469\U0001F3FD\u200D\U0001F680", {15}},
        {"\u2764\uFE0F\u200D\U0001F525", {13}},
        {"\U0001F525\u200D\u200D\U0001F525", {10, 4}},
        {"\U0001F525\u200Da\U0001F525", {7, 1, 4}},
        // After a sign that stands before: still a flag, and still a family.
        {"\u0600\U0001F1E9\U0001F1EA\U0001F1EA", {10, 4}},
        {"\u0600\U0001F525\u200D\U0001F525", {13}},
        // The first and the last Hangul syllable, and what follows them in the code chart.
        {"\uAC00\u11A8\uD7A3\u11A8\uD7A3\u1161\uD7A4", {6, 6, 3, 3, 3}},
        {"\U000E0001\U000E0020\U000E0100\U0010FFFF\u0300", {4, 8, 6}},
    };

    for (const auto& [text, expected] : table) {
        EXPECT_EQ(lengths(text), expected) << text;
    }
}

TEST(Graphemes, TakeEachByteOfNoWellFormedSequenceAsOne) {
    const std::string table[] = {"\x80\xBF", "\xC0\x80\xC1\xBF", "\xE0\x9F\xBF\xE0\x80\x80",
                                 "\xF0\x8F\xBF\xBF",          // overlong, as those before
                                 "\xED\xA0\x80\xED\xBF\xBF",  // surrogates
                                 "\xF4\x90\x80\x80",          // U+110000
                                 "\xF5\x80\x80\x80\xF8\xFE\xFF",
                                 // Cut off.
                                 "\xC3", "\xE2\x82", "\xF0\x9F\x91"};

    for (const auto& text : table) {
        EXPECT_EQ(lengths(text), Lengths(text.size(), 1));
        EXPECT_EQ(lengths(text + "e").size(), text.size() + 1);
        EXPECT_EQ(lengths(text + "\u0301").size(), text.size() + 1) << "no accent on a broken byte";
        EXPECT_EQ(lengths("\u0600" + text).size(), text.size() + 1) << "no sign before a broken byte";
    }
}

TEST(Graphemes, CutTextsOfAnySize) {
    EXPECT_EQ(prefixLength("abc", 0), 0U);
    EXPECT_EQ(prefixLength("abc", std::string::npos), 3U);
    std::string accents = "e";  // one character, which takes no time that grows with its square
    while (accents.size() < 1'000'000) {
        accents += "\u0301";
    }
    EXPECT_EQ(count(accents), 1U);
}

}  // namespace
