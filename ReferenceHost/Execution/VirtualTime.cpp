#include "ReferenceHost/Execution/VirtualTime.hpp"

#include "ReferenceHost/Execution/VirtualLane.hpp"

#include <optional>
#include <stdexcept>

namespace ReferenceHost {

VirtualTime::VirtualTime(std::uint64_t seed) : random_(SeededRandom::stream(seed, "lanes")) {}

VirtualTime::~VirtualTime() {
    // Destroying a job may destroy or fill other lanes, so the list is read again each time.
    while (!lanes_.empty()) {
        VirtualLane* lane = lanes_.back();
        lane->leaveTime();
    }
}

bool VirtualTime::runOne() {
    if (readyLanes_.empty()) {
        const std::optional<Instant> due = waiting_.nextDue();
        if (!due) {
            return false;
        }
        advance(*due);
    }
    runHeadOfSomeLane();
    return true;
}

bool VirtualTime::runUntilIdle(Base::Seconds limit) {
    return run(nullptr, later(now_, limit)) == Outcome::nothingLeft;
}

void VirtualTime::runFor(Base::Seconds duration) {
    const Instant end = later(now_, duration);
    run(nullptr, end);
    advance(end);
}

bool VirtualTime::runUntil(const std::function<bool()>& predicate, Base::Seconds limit) {
    return run(predicate, later(now_, limit)) == Outcome::predicateHolds;
}

bool VirtualTime::runHolding(VirtualLane& lane, const std::function<bool()>& predicate, Base::Seconds limit) {
    struct Inner {
        Inner(VirtualTime& time_, VirtualLane& lane_)
            : time(time_),
              lane(lane_),
              wasRunningJob(std::exchange(time_.isRunningJob_, false)),
              wasRunningLane(std::exchange(time_.runningLane_, nullptr)) {
            lane.hold();
        }
        ~Inner() {
            lane.release();
            time.isRunningJob_ = wasRunningJob;
            time.runningLane_ = wasRunningLane;
        }
        Inner(const Inner&) = delete;
        Inner& operator=(const Inner&) = delete;
        VirtualTime& time;
        VirtualLane& lane;
        bool wasRunningJob;
        const VirtualLane* wasRunningLane;
    };
    const Inner inner(*this, lane);
    return run(predicate, later(now_, limit)) == Outcome::predicateHolds;
}

VirtualTime::Outcome VirtualTime::run(const std::function<bool()>& predicate, Instant deadline) {
    while (true) {
        if (predicate && predicate()) {
            return Outcome::predicateHolds;
        }
        if (readyLanes_.empty()) {
            const std::optional<Instant> due = waiting_.nextDue();
            if (!due) {
                return Outcome::nothingLeft;
            }
            if (*due > deadline) {
                advance(deadline);
                return Outcome::limitPassed;
            }
            advance(*due);
            continue;  // what was due may be held
        }
        runHeadOfSomeLane();
    }
}

void VirtualTime::runHeadOfSomeLane() {
    if (isRunningJob_) {
        throw std::logic_error("Virtual time was asked to run inside one of its own jobs");
    }
    if (++jobsAtThisInstant_ > maximumJobsPerInstant_) {
        throw std::runtime_error("Virtual time stands still: an endless loop of jobs");
    }
    ++jobCount_;

    const std::size_t chosen = random_.below(readyLanes_.size());
    VirtualLane* lane = readyLanes_[chosen];
    Base::Job job = std::move(lane->jobs_.front());
    lane->jobs_.pop_front();
    if (lane->jobs_.empty()) {
        readyLanes_[chosen] = readyLanes_.back();
        readyLanes_.pop_back();
    }

    struct Running {
        Running(VirtualTime& time_, const VirtualLane* lane_) : time(time_) {
            time.isRunningJob_ = true;
            time.runningLane_ = lane_;
        }
        ~Running() {
            time.isRunningJob_ = false;
            time.runningLane_ = nullptr;
        }
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;
        VirtualTime& time;
    };
    const Running running(*this, lane);
    // What the job owns is destroyed on its own lane, as on its own thread.
    const Base::Job owned = std::move(job);
    owned();
}

void VirtualTime::advance(Instant moment) {
    // Earlier where a run within this one has gone past its limit.
    if (moment <= now_) {
        return;
    }
    now_ = moment;
    jobsAtThisInstant_ = 0;
    while (std::optional<Waiting> waiting = waiting_.takeDue(now_)) {
        waiting->lane->post(std::move(waiting->job));
    }
}

}  // namespace ReferenceHost
