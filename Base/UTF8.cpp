#include "Base/UTF8.hpp"

namespace Base::UTF8 {

CodePoint first(std::string_view text) {
    constexpr CodePoint illFormed{0, 0};
    const auto byte = [text](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    if (text.empty()) {
        return illFormed;
    }
    const char32_t lead = byte(0);
    if (lead < 0x80) {
        return {1, lead};
    }
    const std::size_t bytes = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
    if (bytes == 0 || text.size() < bytes) {
        return illFormed;
    }
    char32_t code = lead & (0x7FU >> bytes);
    for (std::size_t index = 1; index < bytes; ++index) {
        if ((byte(index) & 0xC0) != 0x80) {
            return illFormed;
        }
        code = code << 6 | (byte(index) & 0x3F);
    }
    const bool overlong = (bytes == 3 && code < 0x800) || (bytes == 4 && code < 0x10000);
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    return overlong || surrogate || code > 0x10FFFF ? illFormed : CodePoint{bytes, code};
}

bool isWellFormed(std::string_view text) {
    while (!text.empty()) {
        const auto bytes = first(text).bytes;
        if (bytes == 0) {
            return false;
        }
        text.remove_prefix(bytes);
    }
    return true;
}

void append(std::string& text, char32_t code) {
    const auto continuation = [&](unsigned shift) {
        text += static_cast<char>(0x80 | ((code >> shift) & 0x3F));
    };
    if (code < 0x80) {
        text += static_cast<char>(code);
    } else if (code < 0x800) {
        text += static_cast<char>(0xC0 | code >> 6);
        continuation(0);
    } else if (code < 0x10000) {
        text += static_cast<char>(0xE0 | code >> 12);
        continuation(6);
        continuation(0);
    } else {
        text += static_cast<char>(0xF0 | code >> 18);
        continuation(12);
        continuation(6);
        continuation(0);
    }
}

}  // namespace Base::UTF8
