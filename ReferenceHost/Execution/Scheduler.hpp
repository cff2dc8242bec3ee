#pragma once

#include "Base/ExecutionProtocol.hpp"

namespace ReferenceHost {

/// Time and work of a service: what the cloud runs on, beside every host's own threads.
///
/// Any thread may call. The jobs of one scheduler run one at a time, in the order of their due times and, where these
/// are equal, in the order of posting; never inside `postAfter`. Destroying a scheduler destroys the jobs that have not
/// run, after the one that runs has ended.
class Scheduler {
public:
    virtual ~Scheduler() = default;

    /// The time since some fixed moment. Never goes back.
    [[nodiscard]] virtual Base::Seconds now() const = 0;

    /// Runs the job once `delay` has passed, never earlier.
    virtual void postAfter(Base::Seconds delay, Base::Job job) = 0;
};

}  // namespace ReferenceHost
