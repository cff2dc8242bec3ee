#include "Apps/CodingDesk/Transcript.hpp"

#include "Apps/CodingDesk/Text.hpp"

#include <sstream>

namespace CodingDesk {

namespace {

constexpr std::size_t timeColumns = 9;
constexpr std::size_t textColumns = 71;  // 80 in all

// A drawn window takes 76 columns.
constexpr std::size_t pictureIndent = 4;

}  // namespace

void Transcript::tell(std::string_view text, std::string_view picture) {
    std::string told;
    std::string time = fitted(clock_ ? clock_() : std::string(), timeColumns);
    for (const std::string& line : wrapped(text, textColumns)) {
        told += (told.empty() ? "" : "\n") + time + line;
        time.assign(timeColumns, ' ');
    }
    std::istringstream lines{std::string(picture)};
    for (std::string line; std::getline(lines, line);) {
        told += '\n' + std::string(pictureIndent, ' ') + printable(line);
    }
    console_.say(told);
}

}  // namespace CodingDesk
