#pragma once

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace CodingDesk {

/// A file that cannot be read as what it should be: where and why.
class FileError : public std::runtime_error {
public:
    /// `line` counts from 1; 0 when the complaint is about the whole file.
    FileError(std::size_t line, const std::string& message) : std::runtime_error(message), line_(line) {}

    [[nodiscard]] std::size_t line() const { return line_; }

private:
    std::size_t line_;
};

/// One record of a file of comma-separated values.
struct CsvRecord {
    std::size_t line = 0;  ///< where it starts, from 1
    std::vector<std::string> fields;
};

/// Reads records of comma-separated values as RFC 4180 defines them, one at a time. Lines end in CR LF or LF; empty
/// lines are passed over; a byte order mark at the start is no part of the text.
class CsvReader {
public:
    /// The text must outlive the reader. Throws `FileError` when it is not UTF-8.
    explicit CsvReader(std::string_view text);

    /// The next record; none at the end. Throws `FileError` for a quote that is not closed or stands where it must not.
    [[nodiscard]] std::optional<CsvRecord> next();

private:
    [[nodiscard]] bool atLineEnd() const;
    void skipLineEnd();
    [[nodiscard]] std::string quotedField();
    [[nodiscard]] std::string plainField();

    std::string_view text_;
    std::size_t offset_ = 0;
    std::size_t line_ = 1;
};

}  // namespace CodingDesk
