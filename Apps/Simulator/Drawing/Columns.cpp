#include "Apps/Simulator/Drawing/Columns.hpp"

#include <algorithm>

namespace Simulator {

namespace {

constexpr std::string_view indentation = "  ";

/// Inside a character of UTF-8.
bool continues(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

/// The number of bytes of the first characters.
std::size_t bytesOf(std::string_view text, std::size_t characters) {
    std::size_t bytes = 0;
    while (bytes < text.size() && (characters > 0 || continues(text[bytes]))) {
        characters -= continues(text[bytes]) ? 0U : 1U;
        ++bytes;
    }
    return bytes;
}

}  // namespace

std::size_t columnsOf(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(text, [](char byte) { return !continues(byte); }));
}

std::string filled(std::string text, std::size_t columns) {
    text.append(columns - std::min(columns, columnsOf(text)), ' ');
    return text;
}

std::vector<std::string> brokenInLines(std::string_view text, std::size_t columns) {
    std::vector<std::string> lines;
    std::string indented;
    do {
        const std::size_t room = columns - std::min(columns - 1, columnsOf(indented));
        std::size_t length = bytesOf(text, room);
        std::size_t next = length;
        if (length < text.size() && text[length] != ' ') {
            const std::size_t blank = text.rfind(' ', length);
            if (blank != std::string_view::npos && blank > length / 3) {
                length = blank;
                next = blank + 1;
            }
        } else if (length < text.size()) {
            next = length + 1;
        }
        lines.push_back(indented + std::string(text.substr(0, length)));
        text.remove_prefix(next);
        indented = indentation;
    } while (!text.empty());
    return lines;
}

}  // namespace Simulator
