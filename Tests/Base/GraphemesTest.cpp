#include "Base/Graphemes.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <memory>
#include <numeric>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Base::Graphemes::count;
using Base::Graphemes::prefixLength;

std::string utf8(std::uint32_t code) {
    const auto trail = [code](unsigned shift) { return static_cast<char>(0x80 | (code >> shift & 0x3F)); };
    if (code < 0x80) {
        return {static_cast<char>(code)};
    }
    if (code < 0x800) {
        return {static_cast<char>(0xC0 | code >> 6), trail(0)};
    }
    if (code < 0x10000) {
        return {static_cast<char>(0xE0 | code >> 12), trail(6), trail(0)};
    }
    return {static_cast<char>(0xF0 | code >> 18), trail(12), trail(6), trail(0)};
}

/// The bytes of each character. The text lies in a block of its own size, so that the Address sanitizer notices a read
/// past its end.
std::vector<std::size_t> lengths(const std::string& text) {
    const auto block = std::make_unique<char[]>(text.size());
    text.copy(block.get(), text.size());
    const std::string_view copy(block.get(), text.size());
    std::vector<std::size_t> result;
    for (std::size_t end = 0; end < text.size();) {
        const std::size_t next = prefixLength(copy, result.size() + 1);
        if (next <= end) {
            ADD_FAILURE() << "no progress past byte " << end;
            break;
        }
        result.push_back(next - end);
        end = next;
    }
    EXPECT_EQ(count(copy), result.size());
    return result;
}

std::string repeated(std::string_view piece, std::size_t times) {
    std::string text;
    for (; times > 0; --times) {
        text += piece;
    }
    return text;
}

TEST(Graphemes, FollowEveryLineOfUnicodesOwnTest) {
    std::ifstream file(GRAPHEME_BREAK_TEST);
    ASSERT_TRUE(file) << GRAPHEME_BREAK_TEST << " is missing: tools/setup installs it (unicode-data)";

    std::size_t lines = 0;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line.substr(0, line.find('#')));
        std::vector<std::size_t> expected;
        std::string text;
        bool startsCharacter = false;
        for (std::string word; words >> word;) {
            if (word == "\u00F7" || word == "\u00D7") {  // ÷ a break, × none
                startsCharacter = word == "\u00F7";
                continue;
            }
            if (startsCharacter) {
                expected.push_back(0);
            }
            const std::string bytes = utf8(static_cast<std::uint32_t>(std::stoul(word, nullptr, 16)));
            expected.back() += bytes.size();
            text += bytes;
        }
        if (!text.empty()) {
            ++lines;
            EXPECT_EQ(lengths(text), expected) << line;
        }
    }
    EXPECT_GE(lines, 600U) << "Unicode 15.0 has 602 lines of test";
}

TEST(Graphemes, CountWhatAUserSees) {
    struct {
        std::string text;
        std::vector<std::size_t> lengths;
    } const table[] = {
        {"", {}},
        {"a\tb", {1, 1, 1}},
        {"\r\n\n\r", {2, 1, 1}},
        {"e\u0301\u0323e", {5, 1}},
        {"\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7\U0001F1E8", {8, 8, 4}},
        {"\U0001F468\u200D\U0001F469\u200D\U0001F467!", {18, 1}},
        // Skin tone and variation selector before the joiner; a joiner after no pictograph joins none.
        {"\U0001F469\U0001F3FD\u200D\U0001F680", {15}},
        {"\u2764\uFE0F\u200D\U0001F525", {13}},
        {"a\u200D\U0001F525", {4, 4}},
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
    const std::string table[] = {
        "\x80\xBF",
        "\xC0\x80\xC1\xBF",          // overlong: two bytes
        "\xE0\x9F\xBF\xE0\x80\x80",  // overlong: three bytes
        "\xF0\x8F\xBF\xBF",          // overlong: four bytes
        "\xED\xA0\x80\xED\xBF\xBF",  // surrogates
        "\xF4\x90\x80\x80",          // U+110000
        "\xF5\x80\x80\x80\xF8\xFE\xFF",
        "\xC3",  // cut off
        "\xE2\x82",
        "\xF0\x9F\x91",
    };

    for (const auto& text : table) {
        EXPECT_EQ(lengths(text), std::vector<std::size_t>(text.size(), 1));
        EXPECT_EQ(lengths(text + "e").size(), text.size() + 1);
        EXPECT_EQ(lengths(text + "\u0301").size(), text.size() + 1) << "no accent on a broken byte";
        EXPECT_EQ(lengths("\u0600" + text).size(), text.size() + 1) << "no sign before a broken byte";
    }
    EXPECT_EQ(lengths(std::string("\0e\xCC", 3)), (std::vector<std::size_t>{1, 1, 1}));
}

TEST(Graphemes, CoverAnyBytesWithoutGaps) {
    std::mt19937 random(20240517);  // the same bytes in every run
    const std::string_view likely = "a\xCC\x81\xE2\x80\x8D\xF0\x9F\x87\xA9\xF0\x9F\x94\xA5\xEA\xB0\r\n";
    for (int round = 0; round < 300; ++round) {
        std::string text;
        while (text.size() < 60) {
            text += random() % 4 == 0 ? static_cast<char>(random()) : likely[random() % likely.size()];
        }
        const auto parts = lengths(text);
        ASSERT_EQ(std::accumulate(parts.begin(), parts.end(), std::size_t{0}), text.size()) << round;
        const std::string first = text.substr(0, prefixLength(text, 7));
        ASSERT_EQ(count(first), std::min<std::size_t>(parts.size(), 7)) << round;
    }
}

TEST(Graphemes, CutLongTextsWhereACharacterEnds) {
    const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";
    EXPECT_EQ(prefixLength(repeated(family, 300), 255), 255 * family.size());
    EXPECT_EQ(prefixLength(repeated(family, 255), 255), 255 * family.size());
    EXPECT_EQ(prefixLength(family, 0), 0U);
    EXPECT_EQ(prefixLength("abc", std::string::npos), 3U);
    // One character without end, and a long run of pairs.
    EXPECT_EQ(count("e" + repeated("\u0301", 500'000)), 1U);
    EXPECT_EQ(count(repeated("\U0001F1E9", 250'001)), 125'001U);
}

}  // namespace
