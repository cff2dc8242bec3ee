#pragma once

#include "Apps/CodingDesk/CsvReader.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace CodingDesk {

/// One clip of a coded match, in seconds of match time. `start` is not negative, `end` not before it; a clip may have no
/// length.
struct CodedEvent {
    std::string code;
    double start = 0;
    double end = 0;

    friend bool operator==(const CodedEvent&, const CodedEvent&) = default;
};

/// Reads a coded match: a header with the columns code, start and end, in any order and among others, then one record a
/// clip. Either everything is well and there is at least one clip, or this throws `FileError`.
[[nodiscard]] std::vector<CodedEvent> parseEvents(std::string_view text);

/// `parseEvents` of the file's contents. Throws `FileError` with line 0 when the file cannot be read.
[[nodiscard]] std::vector<CodedEvent> loadEvents(const std::string& path);

}  // namespace CodingDesk
