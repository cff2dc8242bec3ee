#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace Simulator {

/// The whole program. The result is its exit status: 0 when nothing failed, 1 when something did, 2 when the options or a file
/// cannot be used. Throws nothing.
[[nodiscard]] int runProgram(const std::vector<std::string>& arguments, std::ostream& out,
                             std::ostream& errors);

}  // namespace Simulator
