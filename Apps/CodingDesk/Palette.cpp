#include "Apps/CodingDesk/Palette.hpp"

#include <array>
#include <cmath>
#include <cstdint>
#include <string_view>

namespace CodingDesk {

namespace {

std::uint8_t channel(double value) { return static_cast<std::uint8_t>(std::lround(value * 255)); }

}  // namespace

Base::Color paletteColor(std::size_t index) {
    // Hues a golden ratio apart never come close to one another; see Knuth, TAOCP 3, section 6.4. The conversion from
    // hue, saturation and value is Smith's, "Color Gamut Transform Pairs", SIGGRAPH 1978.
    constexpr double goldenRatio = 0.6180339887498949;
    const double position = static_cast<double>(index) * goldenRatio;
    const double hue = (position - std::floor(position)) * 6;
    const double saturation = 0.55 + 0.10 * static_cast<double>(index % 4);
    const double value = 0.95 - 0.12 * static_cast<double>((index / 4) % 3);
    const double sector = std::floor(hue);
    const double p = value * (1 - saturation);
    const double q = value * (1 - saturation * (hue - sector));
    const double t = value * (1 - saturation * (1 - (hue - sector)));
    const std::array<std::array<double, 3>, 6> sectors{
        {{value, t, p}, {q, value, p}, {p, value, t}, {p, q, value}, {t, p, value}, {value, p, q}}};
    const auto& [red, green, blue] = sectors[static_cast<std::size_t>(sector) % sectors.size()];
    return {channel(red), channel(green), channel(blue)};
}

std::string hexOf(Base::Color color) {
    static constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result = "#";
    for (const std::uint8_t value : {color.red, color.green, color.blue}) {
        result += digits[value >> 4U];
        result += digits[value & 15U];
    }
    return result;
}

}  // namespace CodingDesk
