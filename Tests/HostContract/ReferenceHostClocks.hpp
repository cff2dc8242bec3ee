#pragma once

#include "ReferenceHost/Execution/RealExecution.hpp"
#include "ReferenceHost/Execution/RealScheduler.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>

/// Both clocks of the reference host, to make a fixture of either.
namespace HostContract {

struct VirtualClock {
    explicit VirtualClock(std::uint64_t seed) : time(seed) {}

    std::unique_ptr<ReferenceHost::ReportingExecution> makeExecution() {
        return std::make_unique<ReferenceHost::VirtualExecution>(time);
    }
    bool runUntil(const std::function<bool()>& predicate) {
        return time.runUntil(predicate, Base::Seconds(60));
    }
    void settle() { time.runFor(Base::Seconds(60)); }

    ReferenceHost::VirtualTime time;
    ReferenceHost::VirtualScheduler scheduler{time};
};

struct RealClock {
    explicit RealClock(std::uint64_t /*seed*/) {}

    std::unique_ptr<ReferenceHost::ReportingExecution> makeExecution() {
        return std::make_unique<ReferenceHost::RealExecution>(loop, pool, scheduler);
    }
    bool runUntil(const std::function<bool()>& predicate) {
        return loop.runUntil(predicate, Base::Seconds(60));
    }
    /// Behind everything that is due by then on the scheduler's thread and on this one, for each way of a call.
    void settle() {
        for (int way = 0; way < 4; ++way) {
            bool arrived = false;  // on this thread
            scheduler.postAfter(Base::Seconds(0.005), [&] { loop.post([&] { arrived = true; }); });
            EXPECT_TRUE(runUntil([&] { return arrived; }));
        }
    }

    ReferenceHost::RunLoop loop;
    ReferenceHost::WorkerPool pool{3};
    ReferenceHost::RealScheduler scheduler;
};

/// The hosts to instantiate a suite with: several seeds of virtual time, and threads.
template <typename Host, template <typename Clock> typename Fixture>
auto hostsOnEachClock() {
    const auto seeded = [](std::uint64_t seed) {
        return [seed](auto... rest) { return std::make_shared<Fixture<VirtualClock>>(seed, rest...); };
    };
    return testing::Values(Host("VirtualTimeSeed1", seeded(1)), Host("VirtualTimeSeed2", seeded(2)),
                           Host("VirtualTimeSeed3", seeded(3)), Host("RealTime", [](auto... rest) {
                               return std::make_shared<Fixture<RealClock>>(0, rest...);
                           }));
}

}  // namespace HostContract
