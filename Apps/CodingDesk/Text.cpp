#include "Apps/CodingDesk/Text.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <sstream>

namespace CodingDesk {

namespace {

struct Character {
    char32_t codePoint = 0;
    std::size_t bytes = 0;  ///< 0: no well-formed character starts here
};

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

Character characterAt(std::string_view text, std::size_t offset) {
    const auto lead = static_cast<unsigned char>(text[offset]);
    if (lead < 0x80) {
        return {lead, 1};
    }
    const std::size_t bytes = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || offset + bytes > text.size()) {
        return {};
    }
    char32_t codePoint = lead & (0xFFU >> (bytes + 1));
    for (std::size_t i = 1; i < bytes; ++i) {
        if (!isContinuation(text[offset + i])) {
            return {};
        }
        codePoint = (codePoint << 6U) | (static_cast<unsigned char>(text[offset + i]) & 0x3FU);
    }
    const bool overlong = (bytes == 3 && codePoint < 0x800) || (bytes == 4 && codePoint < 0x10000);
    const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    return overlong || surrogate || codePoint > 0x10FFFF ? Character{} : Character{codePoint, bytes};
}

struct Range {
    char32_t first;
    char32_t last;
};

template <std::size_t size>
bool isIn(const std::array<Range, size>& ranges, char32_t codePoint) {
    return std::ranges::any_of(
        ranges, [&](const Range& range) { return codePoint >= range.first && codePoint <= range.last; });
}

// Blocks of Unicode 15: combining marks, zero-width characters, variation selectors.
constexpr std::array<Range, 8> zeroWidth{{{0x300, 0x36F},
                                          {0x483, 0x489},
                                          {0x591, 0x5BD},
                                          {0x64B, 0x65F},
                                          {0x1AB0, 0x1AFF},
                                          {0x200B, 0x200F},
                                          {0x20D0, 0x20FF},
                                          {0xFE00, 0xFE0F}}};

// Blocks of Unicode 15 whose characters are wide: Hangul, CJK, kana, fullwidth forms, emoji.
constexpr std::array<Range, 9> wide{{{0x1100, 0x115F},
                                     {0x2E80, 0x303E},
                                     {0x3041, 0xA4CF},
                                     {0xA960, 0xA97C},
                                     {0xAC00, 0xD7A3},
                                     {0xF900, 0xFAFF},
                                     {0xFF00, 0xFF60},
                                     {0x1F300, 0x1FAFF},
                                     {0x20000, 0x3FFFD}}};

std::size_t columnsOf(char32_t codePoint) {
    return isIn(zeroWidth, codePoint) ? 0 : isIn(wide, codePoint) ? 2 : 1;
}

}  // namespace

std::optional<std::size_t> firstInvalidUtf8(std::string_view text) {
    for (std::size_t offset = 0; offset < text.size();) {
        const auto character = characterAt(text, offset);
        if (character.bytes == 0) {
            return offset;
        }
        offset += character.bytes;
    }
    return std::nullopt;
}

std::string printable(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t offset = 0; offset < text.size();) {
        const auto character = characterAt(text, offset);
        const bool control = character.codePoint < 0x20 ||
                             (character.codePoint >= 0x7F && character.codePoint < 0xA0) ||
                             character.codePoint == 0x2028 || character.codePoint == 0x2029;
        if (character.bytes == 0 || control) {
            result += "\uFFFD";
        } else {
            result += text.substr(offset, character.bytes);
        }
        offset += std::max<std::size_t>(character.bytes, 1);
    }
    return result;
}

std::size_t columnsOf(std::string_view text) {
    std::size_t columns = 0;
    for (std::size_t offset = 0; offset < text.size();) {
        const auto character = characterAt(text, offset);
        columns += columnsOf(character.codePoint);
        offset += std::max<std::size_t>(character.bytes, 1);
    }
    return columns;
}

std::string fitted(std::string_view text, std::size_t columns) {
    std::string result = printable(text);
    std::size_t taken = columnsOf(result);
    if (taken > columns) {
        taken = 0;
        std::size_t offset = 0;
        while (offset < result.size()) {
            const auto character = characterAt(result, offset);
            if (taken + columnsOf(character.codePoint) + 1 > columns) {
                break;
            }
            taken += columnsOf(character.codePoint);
            offset += character.bytes;
        }
        result.resize(offset);
        if (columns > 0) {
            result += "…";
            ++taken;
        }
    }
    return result.append(columns - taken, ' ');
}

std::vector<std::string> wrapped(std::string_view text, std::size_t columns) {
    std::vector<std::string> lines;
    std::istringstream words(printable(text));
    for (std::string word; words >> word;) {
        if (lines.empty() || columnsOf(lines.back()) + 1 + columnsOf(word) > columns) {
            lines.push_back(word);
        } else {
            lines.back() += ' ' + word;
        }
    }
    return lines;
}

std::string quoted(std::string_view text) { return "“" + printable(text) + "”"; }

std::string matchTime(double seconds) {
    const double tenths = std::round(std::max(seconds, 0.0) * 10);
    const double minutes = std::floor(tenths / 600);
    const double rest = (tenths - minutes * 600) / 10;
    return decimal(minutes, 0) + (rest < 10 ? ":0" : ":") + decimal(rest, 1);
}

std::string counted(std::size_t number, std::string_view singular, std::string_view plural) {
    std::string result = std::to_string(number) + ' ';
    if (number == 1 || plural.empty()) {
        result += singular;
        return number == 1 ? result : result + 's';
    }
    return result.append(plural);
}

std::string decimal(double number, int digits) {
    std::array<char, 400> buffer{};  // the longest double has 309 digits before the point
    const auto [end, error] =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::fixed, digits);
    return error == std::errc{} ? std::string(buffer.data(), end) : "?";
}

}  // namespace CodingDesk
