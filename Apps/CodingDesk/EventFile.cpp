#include "Apps/CodingDesk/EventFile.hpp"

#include "Apps/CodingDesk/Text.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <system_error>

namespace CodingDesk {

namespace {

constexpr std::array<std::string_view, 3> columnNames{"code", "start", "end"};

struct Columns {
    std::array<std::size_t, columnNames.size()> index{};
    std::size_t count = 0;  ///< all columns of the header, the ones not used included
};

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    const auto last = text.find_last_not_of(" \t");
    return first == std::string_view::npos ? std::string_view{} : text.substr(first, last - first + 1);
}

bool equalIgnoringCase(std::string_view left, std::string_view right) {
    const auto lower = [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
    };
    return std::ranges::equal(left, right, {}, lower, lower);
}

std::string inQuotes(std::string_view text) {
    constexpr std::size_t shown = 40;
    const std::string safe = printable(text);
    return '"' + (columnsOf(safe) > shown ? fitted(safe, shown) : safe) + '"';
}

Columns columnsOfHeader(const CsvRecord& header) {
    Columns columns;
    columns.count = header.fields.size();
    for (std::size_t column = 0; column < columnNames.size(); ++column) {
        std::optional<std::size_t> found;
        for (std::size_t i = 0; i < header.fields.size(); ++i) {
            if (!equalIgnoringCase(trimmed(header.fields[i]), columnNames[column])) {
                continue;
            }
            if (found) {
                throw FileError(header.line,
                                "the header has the column " + inQuotes(columnNames[column]) + " twice");
            }
            found = i;
        }
        if (!found) {
            throw FileError(header.line, "the header has no column " + inQuotes(columnNames[column]) +
                                             "; expected the columns code, start and end");
        }
        columns.index[column] = *found;
    }
    return columns;
}

double secondsFrom(std::string_view field, std::string_view column, std::size_t line) {
    const std::string_view text = trimmed(field);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range) {
        throw FileError(line, std::string(column) + " is out of range: " + inQuotes(text));
    }
    if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(value)) {
        throw FileError(line, std::string(column) + " is not a number of seconds: " + inQuotes(text));
    }
    if (value < 0) {
        throw FileError(line, std::string(column) + " is negative: " + inQuotes(text));
    }
    return value + 0.0;  // -0 becomes 0
}

CodedEvent eventFrom(const CsvRecord& record, const Columns& columns) {
    if (record.fields.size() != columns.count) {
        throw FileError(record.line, "expected " + counted(columns.count, "field") +
                                         " as in the header, found " + std::to_string(record.fields.size()));
    }
    CodedEvent event;
    event.code = record.fields[columns.index[0]];
    if (trimmed(event.code).empty()) {
        throw FileError(record.line, "the code is empty");
    }
    event.start = secondsFrom(record.fields[columns.index[1]], columnNames[1], record.line);
    event.end = secondsFrom(record.fields[columns.index[2]], columnNames[2], record.line);
    if (event.end < event.start) {
        throw FileError(record.line, "the end " + inQuotes(trimmed(record.fields[columns.index[2]])) +
                                         " is before the start " +
                                         inQuotes(trimmed(record.fields[columns.index[1]])));
    }
    return event;
}

}  // namespace

std::vector<CodedEvent> parseEvents(std::string_view text) {
    CsvReader reader(text);
    const auto header = reader.next();
    if (!header) {
        throw FileError(1, "the file is empty; expected a header with the columns code, start and end");
    }
    const Columns columns = columnsOfHeader(*header);
    std::vector<CodedEvent> events;
    while (const auto record = reader.next()) {
        events.push_back(eventFrom(*record, columns));
    }
    if (events.empty()) {
        throw FileError(header->line, "nothing follows the header; a match needs at least one clip");
    }
    return events;
}

std::vector<CodedEvent> loadEvents(const std::string& path) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) {
        throw FileError(0, "this is a folder");
    }
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        const int reason = errno;
        throw FileError(0, std::string("the file cannot be opened: ") +
                               (reason != 0 ? std::strerror(reason) : "unknown reason"));
    }
    const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (file.bad()) {
        throw FileError(0, "the file cannot be read");
    }
    return parseEvents(text);
}

}  // namespace CodingDesk
