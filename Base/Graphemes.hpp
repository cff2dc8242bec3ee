#pragma once

#include <cstddef>
#include <string_view>

/// User-perceived characters of UTF-8 text: the extended grapheme clusters of UAX #29, of the Unicode version that
/// `GraphemeTable.inc` names. A flag, a letter with its accents and a family of emoji are one character each.
///
/// Any bytes may be given: each byte that belongs to no well-formed UTF-8 sequence is a character of its own. The time
/// grows with the bytes that are looked at.
namespace Base::Graphemes {

/// The number of characters.
[[nodiscard]] std::size_t count(std::string_view text);

/// The bytes of the first `characters` characters; all bytes when the text has no more than these.
[[nodiscard]] std::size_t prefixLength(std::string_view text, std::size_t characters);

}  // namespace Base::Graphemes
