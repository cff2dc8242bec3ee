#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "ReferenceHost/Execution/Signal.hpp"
#include "ReferenceHost/Trace.hpp"

#include <atomic>
#include <cstddef>
#include <string>
#include <utility>

namespace ReferenceHost {

/// What both kinds of execution share: wrong threads go to the trace, and are counted for tests to find none.
class ReportingExecution : public Base::ExecutionProtocol {
public:
    /// `trace` may be null; else it outlives this object.
    ReportingExecution(std::string host, Trace* trace) : host_(std::move(host)), trace_(trace) {}

    void didCallOnWrongThread(const Base::WrongThread& report) noexcept final;

    /// Any thread.
    [[nodiscard]] std::size_t wrongThreadCount() const { return wrongThreadCount_.load(); }

    /// Blocks the main thread, as a window does that must be answered before anything else: until the signal is given, no
    /// posted job and no timer of this host's main thread runs; they run afterwards, in their order. Time, the
    /// background, and whatever else runs on other threads or shares the virtual time go on. Main thread only, inside a
    /// job or outside; may be called again by another host meanwhile. False when `limit` has passed before, or as soon as
    /// nothing is left that could ever give the signal, where that is known.
    [[nodiscard]] virtual bool waitModally(const Signal& signal, Base::Seconds limit) = 0;

    /// No job of this host runs any more when this returns; those that have not run are destroyed, and so is what is
    /// posted later. On the main thread, outside this host's jobs. The destructor does it too.
    virtual void stop() = 0;

private:
    std::string host_;
    Trace* trace_;
    std::atomic<std::size_t> wrongThreadCount_{0};
};

}  // namespace ReferenceHost
