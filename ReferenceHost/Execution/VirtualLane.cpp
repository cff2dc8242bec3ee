#include "ReferenceHost/Execution/VirtualLane.hpp"

#include <utility>
#include <vector>

namespace ReferenceHost {

VirtualLane::VirtualLane(VirtualTime& time) : time_(&time) { time.lanes_.push_back(this); }

VirtualLane::~VirtualLane() { leaveTime(); }

void VirtualLane::post(Base::Job job) {
    if (isClosed_ || time_ == nullptr) {
        return;
    }
    jobs_.push_back(std::move(job));
    if (jobs_.size() == 1 && holds_ == 0) {
        time_->readyLanes_.push_back(this);
    }
}

VirtualLane::Ticket VirtualLane::postAfter(Base::Seconds delay, Base::Job job) {
    if (isClosed_ || time_ == nullptr) {
        return {};
    }
    const Instant due = later(time_->now_, delay);
    if (due == time_->now_) {
        post(std::move(job));
        return {};
    }
    return time_->waiting_.add(due, VirtualTime::Waiting(this, std::move(job)));
}

void VirtualLane::cancel(const Ticket& ticket) {
    if (time_ != nullptr) {
        const auto destroyedHere = time_->waiting_.take(ticket);
    }
}

bool VirtualLane::isRunning() const { return time_ != nullptr && time_->runningLane_ == this; }

bool VirtualLane::isAnyRunning() const { return time_ != nullptr && time_->isRunningJob_; }

Base::Seconds VirtualLane::now() const { return time_ != nullptr ? time_->now() : Base::Seconds(0); }

void VirtualLane::close() {
    isClosed_ = true;
    if (time_ == nullptr) {
        return;
    }
    std::erase(time_->readyLanes_, this);
    // Destroyed last: what the jobs own may come back here, or destroy this lane.
    const auto waiting =
        time_->waiting_.takeAll([this](const VirtualTime::Waiting& item) { return item.lane == this; });
    const auto ready = std::exchange(jobs_, {});
}

void VirtualLane::hold() {
    if (++holds_ == 1 && time_ != nullptr) {
        std::erase(time_->readyLanes_, this);
    }
}

void VirtualLane::release() {
    if (--holds_ == 0 && time_ != nullptr && !jobs_.empty()) {
        time_->readyLanes_.push_back(this);
    }
}

void VirtualLane::leaveTime() {
    if (time_ == nullptr) {
        return;
    }
    std::erase(time_->readyLanes_, this);
    std::erase(time_->lanes_, this);
    if (time_->runningLane_ == this) {
        time_->runningLane_ = nullptr;
    }
    const auto waiting =
        time_->waiting_.takeAll([this](const VirtualTime::Waiting& item) { return item.lane == this; });
    const auto ready = std::exchange(jobs_, {});
    time_ = nullptr;
}

}  // namespace ReferenceHost
