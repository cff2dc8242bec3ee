#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "ReferenceHost/Execution/VirtualTime.hpp"

#include <deque>

namespace ReferenceHost {

/// One queue of work on virtual time, first in, first out. On the time's thread only.
class VirtualLane {
public:
    using Ticket = DelayQueue<VirtualTime::Waiting>::Ticket;

    explicit VirtualLane(VirtualTime& time);
    ~VirtualLane();  ///< as `close`
    VirtualLane(const VirtualLane&) = delete;
    VirtualLane& operator=(const VirtualLane&) = delete;

    void post(Base::Job job);

    /// The job joins the lane when its moment has come; at once when `delay` is not above zero.
    Ticket postAfter(Base::Seconds delay, Base::Job job);

    /// Destroys a job that still waits for its moment; harmless when it does not.
    void cancel(const Ticket& ticket);

    /// Whether a job of this lane is running.
    [[nodiscard]] bool isRunning() const;

    /// Whether a job of any lane is running.
    [[nodiscard]] bool isAnyRunning() const;

    /// Zero when the time is gone.
    [[nodiscard]] Base::Seconds now() const;

    /// Destroys the jobs that have not run; what is posted from now on is destroyed at once.
    void close();

private:
    friend class VirtualTime;

    void leaveTime();

    // While held, its jobs are not ready. May be held several times.
    void hold();
    void release();

    VirtualTime* time_;  // null when it is gone
    bool isClosed_ = false;
    int holds_ = 0;
    std::deque<Base::Job> jobs_;
};

}  // namespace ReferenceHost
