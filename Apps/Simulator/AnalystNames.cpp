#include "Apps/Simulator/AnalystNames.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <system_error>

namespace Simulator {

namespace {

constexpr std::array<std::string_view, 8> names{"Ann", "Ben", "Cleo", "Dan", "Eve", "Finn", "Gus", "Hana"};
constexpr std::string_view others = "Analyst";

}  // namespace

std::string analystName(std::size_t index) {
    return index < names.size() ? std::string(names[index]) : std::string(others) + std::to_string(index + 1);
}

std::optional<std::size_t> analystNamed(std::string_view name) {
    const auto* const found = std::ranges::find(names, name);
    if (found != names.end()) {
        return static_cast<std::size_t>(found - names.begin());
    }
    if (!name.starts_with(others)) {
        return std::nullopt;
    }
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(name.data() + others.size(), name.data() + name.size(), number);
    const bool isWhole = error == std::errc{} && end == name.data() + name.size();
    return isWhole && number > names.size() ? std::optional(number - 1) : std::nullopt;
}

}  // namespace Simulator
