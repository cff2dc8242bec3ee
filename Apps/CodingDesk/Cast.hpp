#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace CodingDesk {

/// The name of analyst number `index`; there are as many as `Options::mostAnalysts`.
[[nodiscard]] std::string_view castName(std::size_t index);

/// As whom that analyst signs in.
[[nodiscard]] std::string_view castUser(std::size_t index);

/// The languages of that analyst's computer, best first.
[[nodiscard]] std::vector<std::string> castLanguages(std::size_t index);

}  // namespace CodingDesk
