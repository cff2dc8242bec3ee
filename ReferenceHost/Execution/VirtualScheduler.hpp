#pragma once

#include "ReferenceHost/Execution/Scheduler.hpp"
#include "ReferenceHost/Execution/VirtualLane.hpp"

#include <utility>

namespace ReferenceHost {

/// A lane of virtual time for a service. No host takes its jobs for its own main thread's.
class VirtualScheduler final : public Scheduler {
public:
    explicit VirtualScheduler(VirtualTime& time) : lane_(time) {}

    [[nodiscard]] Base::Seconds now() const override { return lane_.now(); }
    void postAfter(Base::Seconds delay, Base::Job job) override { lane_.postAfter(delay, std::move(job)); }

private:
    VirtualLane lane_;
};

}  // namespace ReferenceHost
