#include "Apps/Simulator/AnalystNames.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <system_error>

namespace Simulator {

namespace {

constexpr std::array<std::string_view, 8> names{"Ann", "Ben", "Cleo", "Dan", "Eve", "Finn", "Gus", "Hana"};

}  // namespace

std::string analystName(std::size_t index) {
    return index < names.size() ? std::string(names[index]) : '#' + std::to_string(index);
}

std::optional<std::size_t> analystNamed(std::string_view name) {
    const auto* const found = std::ranges::find(names, name);
    if (found != names.end()) {
        return static_cast<std::size_t>(found - names.begin());
    }
    std::size_t index = 0;
    if (!name.starts_with('#')) {
        return std::nullopt;
    }
    const auto [end, error] = std::from_chars(name.data() + 1, name.data() + name.size(), index);
    const bool isWhole = error == std::errc{} && end == name.data() + name.size();
    return isWhole && index >= names.size() ? std::optional(index) : std::nullopt;
}

}  // namespace Simulator
