#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Simulator {

/// What analyst number `index` is called in traces, plans and findings: the first eight have names, later ones "Analyst9", …
[[nodiscard]] std::string analystName(std::size_t index);

/// The number behind a name; none when nobody is called that.
[[nodiscard]] std::optional<std::size_t> analystNamed(std::string_view name);

}  // namespace Simulator
