#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "ReferenceHost/Execution/DelayQueue.hpp"
#include "ReferenceHost/SeededRandom.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace ReferenceHost {

class VirtualLane;

/// Time that passes only when there is nothing else to do: hours of waiting run in milliseconds, and a run follows from
/// its seed alone.
///
/// Work waits in lanes (`VirtualLane`), first in, first out. A step takes the head of one lane that has work; the seed
/// chooses which. Time jumps to the next due moment when no lane has work, and whatever is due then joins its lane.
///
/// Threads: everything on the one thread that uses it. The functions that run work must not be called inside a job, except
/// for `runHolding`.
/// Failure: what a job throws leaves the function that ran it; the other jobs stay where they are.
/// Shutdown: jobs that have not run are destroyed with their lane or with the time, whichever goes first; a lane that
/// outlives its time drops what is posted to it.
class VirtualTime {
public:
    explicit VirtualTime(std::uint64_t seed);
    ~VirtualTime();
    VirtualTime(const VirtualTime&) = delete;
    VirtualTime& operator=(const VirtualTime&) = delete;

    [[nodiscard]] Base::Seconds now() const { return now_; }

    /// Runs one job, letting time pass to the next due moment when no lane has work. False when nothing is left.
    bool runOne();

    /// Runs until no work is left, waiting work included. False when `limit` has passed before that; time then stands
    /// exactly at the limit and work that is due later still waits.
    [[nodiscard]] bool runUntilIdle(Base::Seconds limit);

    /// Lets exactly this much time pass, and runs all that is due in it.
    void runFor(Base::Seconds duration);

    /// Runs until `predicate`, which is asked before the first and after each job, holds. False when no work is left or
    /// `limit` has passed before that.
    [[nodiscard]] bool runUntil(const std::function<bool()>& predicate, Base::Seconds limit);

    /// Runs until `predicate` holds, as `runUntil`, but no job of this lane: they wait, in their order, and are ready again
    /// when this returns. May be called inside a job, of that lane or of another: the run then stands on the stack of the
    /// one around it. So of several such runs the innermost ends first, whichever predicate holds first; and a run
    /// whose limit passes meanwhile ends only when those inside it have, late.
    [[nodiscard]] bool runHolding(VirtualLane& lane, const std::function<bool()>& predicate,
                                  Base::Seconds limit);

    /// So many jobs at one and the same moment are taken for an endless loop: `std::runtime_error`.
    void setMaximumJobsPerInstant(std::size_t maximum) { maximumJobsPerInstant_ = maximum; }

    /// The jobs that have run so far.
    [[nodiscard]] std::uint64_t jobCount() const { return jobCount_; }

private:
    friend class VirtualLane;

    struct Waiting {
        Waiting(VirtualLane* lane_, Base::Job job_) : lane(lane_), job(std::move(job_)) {}
        VirtualLane* lane;
        Base::Job job;
    };

    enum class Outcome : std::uint8_t { predicateHolds, nothingLeft, limitPassed };
    Outcome run(const std::function<bool()>& predicate, Instant deadline);
    void runHeadOfSomeLane();
    void advance(Instant moment);

    Instant now_{0};
    SeededRandom random_;
    DelayQueue<Waiting> waiting_;
    std::vector<VirtualLane*> lanes_;
    std::vector<VirtualLane*> readyLanes_;  // in an order that follows from the run alone
    const VirtualLane* runningLane_ = nullptr;
    bool isRunningJob_ = false;
    std::uint64_t jobCount_ = 0;
    std::size_t jobsAtThisInstant_ = 0;
    std::size_t maximumJobsPerInstant_ = 10'000'000;
};

}  // namespace ReferenceHost
