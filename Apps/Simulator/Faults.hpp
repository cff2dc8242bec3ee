#pragma once

#include "Apps/Simulator/Deed.hpp"
#include "Apps/Simulator/Plan.hpp"
#include "ReferenceHost/Cloud/CloudFaults.hpp"
#include "ReferenceHost/Trace.hpp"

#include <deque>
#include <functional>
#include <map>
#include <optional>

namespace Simulator {

class Seat;

/// What goes wrong around one analyst, on demand: begun by steps, ended by time or by `endAll`. Both are in the trace.
class Faults {
public:
    /// The seat outlives it.
    explicit Faults(Seat& seat);

    /// Absent when the step is no fault.
    [[nodiscard]] std::optional<Deed> prepare(const Step& step);

    /// Nothing goes wrong any more.
    void endAll();

private:
    struct Lasting {
        Base::Seconds until{0};
        std::function<void()> end;
    };
    /// A fault that waits for its call.
    struct Armed {
        Action what;
        ReferenceHost::Fault fault;
    };

    [[nodiscard]] std::optional<Deed> prepareCall(const Step& step);
    [[nodiscard]] std::optional<Deed> prepareWay(const Step& step);

    void begin(Action what, double seconds, ReferenceHost::TraceFields fields,
               const std::function<void()>& begin, std::function<void()> end);
    void end(Action what);
    void record(Action what, const char* state, ReferenceHost::TraceFields fields = {});

    [[nodiscard]] ReferenceHost::Fault faultOf(const ReferenceHost::CloudCall& call);
    [[nodiscard]] ReferenceHost::EventFault faultOf(const ReferenceHost::CloudEvent& event);

    Seat& seat_;
    std::map<Action, Lasting> lasting_;
    std::map<ReferenceHost::CloudOperation, std::deque<Armed>> armed_;
};

}  // namespace Simulator
