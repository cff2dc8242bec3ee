#include "Apps/Simulator/Texts.hpp"

#include <array>
#include <charconv>

namespace Simulator {

std::string textOf(double number) {
    std::array<char, 32> text{};
    const auto written = std::to_chars(text.data(), text.data() + text.size(), number);
    return {text.data(), written.ptr};
}

std::string textOf(Base::Color color) {
    return std::to_string(color.red) + ',' + std::to_string(color.green) + ',' + std::to_string(color.blue) +
           ',' + std::to_string(color.alpha);
}

}  // namespace Simulator
