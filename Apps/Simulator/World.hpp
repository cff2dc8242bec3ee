#pragma once

#include "Apps/Simulator/Record.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"
#include "ReferenceHost/Execution/VirtualTime.hpp"
#include "ReferenceHost/Trace.hpp"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Simulator {

class Seat;

/// A live session that others can join.
struct Offer {
    std::string videoId;
    std::string title;
};

/// What the analysts of one run share: the time, the cloud, the trace, and what is known of their stays. One thread.
class World {
public:
    /// Everybody has started the application; nobody is in a session.
    explicit World(const Plan& plan);
    ~World();
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    /// Lets the time pass until that moment; later when somebody's main thread is blocked by an alert meanwhile.
    void runUntil(Base::Seconds moment);
    void runFor(Base::Seconds duration) { runUntil(time.now() + duration); }

    void record(const std::string& host, const char* kind, ReferenceHost::TraceFields fields) {
        trace.record(host, kind, std::move(fields));
    }

    /// The entry `SimulatedKind::stage`. Gives the size of the trace behind it.
    std::size_t reach(const char* stage);

    /// A new video, without a tagging session, in the team of all analysts.
    [[nodiscard]] Offer addVideo();

    /// Whether the sync library makes the rows that are missing, unless the plan breaks that rule anyway.
    void setRowsAreMade(bool areMade);

    static constexpr const char* teamId = "team";

    const Plan& plan;
    ReferenceHost::VirtualTime time;
    ReferenceHost::VirtualScheduler scheduler{time};
    ReferenceHost::Trace trace{[this] { return time.now(); }};
    ReferenceHost::CloudService cloud{scheduler, plan.seed};

    std::vector<Stay> stays;
    std::vector<Offer> videos;   ///< all that there ever were
    std::optional<Offer> offer;  ///< what is live now
    std::vector<std::unique_ptr<Seat>> seats;
};

}  // namespace Simulator
