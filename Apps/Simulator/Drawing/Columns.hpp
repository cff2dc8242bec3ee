#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Texts in columns of a terminal; every code point takes one.
namespace Simulator {

[[nodiscard]] std::size_t columnsOf(std::string_view text);

/// The text and as many blanks as fill the columns.
[[nodiscard]] std::string filled(std::string text, std::size_t columns);

/// In lines of at most so many columns, broken at blanks, or anywhere where a word is too long. One line at least. The second
/// and later ones are indented.
[[nodiscard]] std::vector<std::string> brokenInLines(std::string_view text, std::size_t columns);

}  // namespace Simulator
