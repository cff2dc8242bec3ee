#pragma once

#include "Apps/Simulator/Deed.hpp"
#include "Apps/Simulator/Plan.hpp"
#include "ReferenceHost/Cloud/CloudFaults.hpp"
#include "ReferenceHost/Trace.hpp"

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <optional>

namespace Simulator {

class Seat;

/// What goes wrong around one analyst, on demand: begun by steps, ended by what it befalls, by time, or by `endAll`. Beginnings and
/// ends are in the trace. On the main thread of that analyst's host, or outside all jobs.
class Faults {
public:
    /// The seat outlives it.
    explicit Faults(Seat& seat);

    /// Absent when the step is no fault.
    [[nodiscard]] std::optional<Deed> prepare(const Step& step);

    /// Nothing goes wrong any more.
    void endAll();

    /// Something that begins now and ends after so many seconds; while it lasts already, it lasts until the later end.
    void begin(Action what, double seconds, const std::function<void()>& begin, std::function<void()> end,
               ReferenceHost::TraceFields fields = {});

    /// The next call of that operation meets this fault.
    void arm(Action what, ReferenceHost::CloudOperation operation, ReferenceHost::Fault fault);

    void dropSubscriptions(Action what);

    /// This analyst's part of the service's restart.
    void serviceRestarts(double seconds);

private:
    struct Lasting {
        Base::Seconds until{0};
        std::function<void()> end;
    };
    struct ArmedCall {
        Action what;
        ReferenceHost::Fault fault;
    };
    struct ArmedEvents {
        Action what;
        ReferenceHost::EventFault fault;
        std::size_t left;
    };

    [[nodiscard]] std::optional<Deed> prepareCall(const Step& step);
    [[nodiscard]] std::optional<Deed> prepareFetch(const Step& step);
    [[nodiscard]] std::optional<Deed> prepareEvents(const Step& step);
    [[nodiscard]] std::optional<Deed> prepareWay(const Step& step);
    [[nodiscard]] std::optional<Deed> prepareHost(const Step& step);
    [[nodiscard]] std::optional<Deed> prepareStream(const Step& step);
    [[nodiscard]] std::optional<Deed> prepareDownload(const Step& step);
    [[nodiscard]] Deed hideMoments(const Step& step);
    [[nodiscard]] Deed cancelSleeps(const Step& step);

    [[nodiscard]] bool lasts(Action what) const;
    void end(Action what);
    void record(Action what, const char* state, ReferenceHost::TraceFields fields = {});
    [[nodiscard]] ReferenceHost::Fault faultOf(const ReferenceHost::CloudCall& call);
    [[nodiscard]] ReferenceHost::EventFault faultOf(const ReferenceHost::CloudEvent& event);

    Seat& seat_;
    std::map<Action, Lasting> lasting_;
    std::map<ReferenceHost::CloudOperation, std::deque<ArmedCall>> calls_;
    std::deque<ArmedEvents> events_;
};

}  // namespace Simulator
