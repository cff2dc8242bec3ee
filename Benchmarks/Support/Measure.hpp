#pragma once

#include "Benchmarks/Support/Case.hpp"

namespace Benchmarks {

/// Makes every case known to Google Benchmark: times, allocations, bytes, and how long the main thread's jobs take.
void registerMeasurements();

}  // namespace Benchmarks
