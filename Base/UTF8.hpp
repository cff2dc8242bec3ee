#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// UTF-8 as RFC 3629 has it: no overlong forms, no surrogates, nothing beyond U+10FFFF.
namespace Base::UTF8 {

struct CodePoint {
    std::size_t bytes;  ///< 0: the text is empty, or its first byte belongs to no well-formed sequence
    char32_t code;
};

/// The code point that the text starts with.
[[nodiscard]] CodePoint first(std::string_view text);

[[nodiscard]] bool isWellFormed(std::string_view text);

/// Appends a code point that is no surrogate and not beyond U+10FFFF.
void append(std::string& text, char32_t code);

}  // namespace Base::UTF8
