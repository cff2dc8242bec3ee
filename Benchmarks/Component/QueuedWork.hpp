#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "Base/Export.hpp"

#include <cstdint>
#include <functional>
#include <memory>

namespace Benchmarks {

/// Queues so many blocks behind a slow one, and runs them.
REMOTE_CODING_EXPORT void queueAndRunBlocks(std::int64_t blocks);

/// Starts a background task that visits the main thread so many times; what is given back keeps the task.
[[nodiscard]] REMOTE_CODING_EXPORT std::shared_ptr<void> startHopping(Base::ExecutionProtocol& execution,
                                                                      std::int64_t times);

}  // namespace Benchmarks
