#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace CodingDesk {

/// The whole program. The result is its exit status: 0 when all timelines are equal at the end and all scenarios went as
/// they should, 1 when not or when the run failed, 2 when the options or the file cannot be used. Throws nothing.
[[nodiscard]] int runProgram(const std::vector<std::string>& arguments, std::ostream& out,
                             std::ostream& errors);

}  // namespace CodingDesk
