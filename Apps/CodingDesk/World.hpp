#pragma once

#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Execution/RealScheduler.hpp"
#include "ReferenceHost/Execution/WorkerPool.hpp"
#include "ReferenceHost/Trace.hpp"

#include <cstddef>

namespace CodingDesk {

/// What all analysts of this process share: the cloud with its thread, the background threads, and the record of what
/// happens. Any thread. It outlives the analysts.
class World {
public:
    World() : pool(backgroundThreads), cloud(scheduler), trace([this] { return Base::Seconds(now()); }) {}

    /// Seconds since this object was made.
    [[nodiscard]] double now() const { return (scheduler.now() - start_).count(); }

    ReferenceHost::RealScheduler scheduler;

private:
    static constexpr std::size_t backgroundThreads = 2;

    const Base::Seconds start_ = scheduler.now();

public:
    ReferenceHost::WorkerPool pool;
    ReferenceHost::CloudService cloud;
    ReferenceHost::Trace trace;
};

}  // namespace CodingDesk
