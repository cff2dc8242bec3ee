#pragma once

#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Execution/RealScheduler.hpp"
#include "ReferenceHost/Execution/WorkerPool.hpp"
#include "ReferenceHost/Trace.hpp"

#include <cstddef>

namespace CodingDesk {

/// What all analysts of a run share: the cloud, and the record of what happens. Any thread. It outlives the analysts.
class World {
public:
    /// `scheduler`: the cloud's; its time, real or virtual, is the world's. It outlives the world.
    explicit World(ReferenceHost::Scheduler& scheduler)
        : scheduler_(scheduler), cloud(scheduler), trace([this] { return Base::Seconds(now()); }) {}

    /// Seconds since this object was made.
    [[nodiscard]] double now() const { return (scheduler_.now() - start_).count(); }

private:
    ReferenceHost::Scheduler& scheduler_;
    const Base::Seconds start_ = scheduler_.now();

public:
    ReferenceHost::CloudService cloud;
    ReferenceHost::Trace trace;
};

/// A world in real time, with the background threads that its analysts share.
struct RealWorld {
    static constexpr std::size_t backgroundThreads = 2;

    ReferenceHost::RealScheduler scheduler;
    ReferenceHost::WorkerPool pool{backgroundThreads};
    World world{scheduler};
};

}  // namespace CodingDesk
