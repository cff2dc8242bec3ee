#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace CodingDesk {

/// The offset of the first byte that does not belong to well-formed UTF-8 (Unicode 15, table 3-7); none when all is well.
[[nodiscard]] std::optional<std::size_t> firstInvalidUtf8(std::string_view text);

/// The text as it may be shown on a terminal: control characters, which could move the cursor, become U+FFFD, and so
/// does what is not UTF-8.
[[nodiscard]] std::string printable(std::string_view text);

/// How many columns the printable text takes. Combining marks take none, East Asian wide characters two; a close
/// approximation of Unicode's UAX #11, enough to align a table.
[[nodiscard]] std::size_t columnsOf(std::string_view text);

/// The printable text in exactly `columns` columns: filled with spaces, or cut with an ellipsis.
[[nodiscard]] std::string fitted(std::string_view text, std::size_t columns);

/// The printable text in lines of at most `columns` columns, broken between words; a longer word has a line of its own. No
/// line for a text without words.
[[nodiscard]] std::vector<std::string> wrapped(std::string_view text, std::size_t columns);

/// The printable text in typographic quotes.
[[nodiscard]] std::string quoted(std::string_view text);

/// Match time for people: minutes and seconds, as in "12:07.4".
[[nodiscard]] std::string matchTime(double seconds);

/// A number of things: "1 clip", "3 clips".
[[nodiscard]] std::string counted(std::size_t number, std::string_view singular,
                                  std::string_view plural = {});

/// A decimal number with `digits` digits behind the point, whatever the locale is.
[[nodiscard]] std::string decimal(double number, int digits);

}  // namespace CodingDesk
