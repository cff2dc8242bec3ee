#pragma once

#include <string_view>

namespace Benchmarks {

/// One dump of callgrind for each case and size whose name has `filter` in it, triggered as "name/size/operations".
/// False when there is nothing to count with.
[[nodiscard]] bool countInstructions(std::string_view filter);

/// The same for single jobs of the main thread, as "name/size/operations/number of the job": all jobs of a case, or, where they are
/// many, the first and those in which a large block of memory was taken.
[[nodiscard]] bool countInstructionsOfJobs(std::string_view filter);

}  // namespace Benchmarks
