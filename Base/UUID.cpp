#include "Base/UUID.hpp"

#include <array>
#include <cstddef>

namespace Base {

namespace {

constexpr std::size_t textLength = 36;

constexpr bool isHyphenPlace(std::size_t index) {
    return index == 8 || index == 13 || index == 18 || index == 23;
}

constexpr std::optional<std::uint8_t> hexadecimalValue(char digit) {
    if (digit >= '0' && digit <= '9') {
        return static_cast<std::uint8_t>(digit - '0');
    }
    if (digit >= 'a' && digit <= 'f') {
        return static_cast<std::uint8_t>(digit - 'a' + 10);
    }
    if (digit >= 'A' && digit <= 'F') {
        return static_cast<std::uint8_t>(digit - 'A' + 10);
    }
    return std::nullopt;
}

}  // namespace

UUID UUID::version4(Bytes randomBytes) {
    randomBytes[6] = static_cast<std::uint8_t>((randomBytes[6] & 0x0F) | 0x40);
    randomBytes[8] = static_cast<std::uint8_t>((randomBytes[8] & 0x3F) | 0x80);
    return UUID(randomBytes);
}

std::optional<UUID> UUID::parse(std::string_view text) {
    if (text.size() != textLength) {
        return std::nullopt;
    }
    Bytes bytes{};
    std::size_t digitCount = 0;
    for (std::size_t index = 0; index < textLength; ++index) {
        if (isHyphenPlace(index)) {
            if (text[index] != '-') {
                return std::nullopt;
            }
            continue;
        }
        const auto value = hexadecimalValue(text[index]);
        if (!value) {
            return std::nullopt;
        }
        auto& byte = bytes[digitCount / 2];
        byte = static_cast<std::uint8_t>(byte << 4 | *value);
        ++digitCount;
    }
    return UUID(bytes);
}

std::string UUID::text() const {
    constexpr std::string_view digits = "0123456789abcdef";
    constexpr std::array<std::uint8_t, 16> places{0, 2, 4, 6, 9, 11, 14, 16, 19, 21, 24, 26, 28, 30, 32, 34};
    std::string text(textLength, '-');
    for (std::size_t index = 0; index < places.size(); ++index) {
        text[places[index]] = digits[bytes_[index] >> 4];
        text[places[index] + std::size_t{1}] = digits[bytes_[index] & 0x0F];
    }
    return text;
}

}  // namespace Base
