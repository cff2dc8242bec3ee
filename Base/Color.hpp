#pragma once

#include <cstdint>

namespace Base {

/// A colour in the sRGB space, eight bits a channel, not premultiplied. A host with another colour type rounds to it
/// once, at its boundary, so that a colour which went over the network and came back is equal to the one sent.
struct Color {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 255;

    constexpr Color() = default;
    constexpr Color(std::uint8_t red_, std::uint8_t green_, std::uint8_t blue_, std::uint8_t alpha_ = 255)
        : red(red_), green(green_), blue(blue_), alpha(alpha_) {}

    friend constexpr bool operator==(const Color&, const Color&) = default;
};

enum class ColorComparison : std::uint8_t { same, different };

/// Whether two colours look the same to a person: all fully transparent colours do.
[[nodiscard]] constexpr ColorComparison compare(Color color, Color color2) {
    const bool bothInvisible = color.alpha == 0 && color2.alpha == 0;
    return bothInvisible || color == color2 ? ColorComparison::same : ColorComparison::different;
}

}  // namespace Base
