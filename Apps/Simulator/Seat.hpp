#pragma once

#include "Apps/Simulator/Deed.hpp"
#include "Apps/Simulator/Edits.hpp"
#include "Apps/Simulator/Faults.hpp"
#include "Apps/Simulator/World.hpp"
#include "Components/RemoteCoding/Component/RemoteCodingComponent.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Host.hpp"
#include "ReferenceHost/Player.hpp"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Simulator {

/// One simulated analyst: a host, the remote coding component in it, the timeline that the analyst codes, and the player of a
/// joined session. Keeps the books of the analyst's stays. On the main thread of that host, or outside all jobs.
class Seat {
public:
    /// The world outlives the seat.
    Seat(World& world, std::size_t index);
    ~Seat();
    Seat(const Seat&) = delete;
    Seat& operator=(const Seat&) = delete;

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] World& world() { return world_; }
    [[nodiscard]] ReferenceHost::Host& host() { return host_; }
    [[nodiscard]] ReferenceHost::VirtualExecution& execution() { return execution_; }
    [[nodiscard]] RemoteCoding::RemoteCodingComponent& component() { return *component_; }

    /// What this step of the plan means for this analyst now.
    [[nodiscard]] Deed prepare(const Step& step, std::size_t number);

    [[nodiscard]] Faults& faults() { return faults_; }

    /// The timeline that the analyst codes; null before there is one, and when it is closed.
    [[nodiscard]] std::shared_ptr<ReferenceHost::Timeline> timeline();
    void code(std::shared_ptr<ReferenceHost::Timeline> timeline) { timeline_ = std::move(timeline); }

    /// The present stay; null when there is none.
    [[nodiscard]] const Stay* stay() const { return stay_ ? &world_.stays[*stay_] : nullptr; }
    [[nodiscard]] bool isHosting() const { return stay() != nullptr && stay()->isHost; }

    /// A join has been asked for and may still come to something.
    [[nodiscard]] bool isJoining() const { return joiningUntil_ > world_.time.now(); }
    void joins(std::optional<std::string> taggingSessionId);

    /// A stay that begins next begins here.
    void expectStay() { lastLook_ = world_.trace.size(); }

    /// The video of the last joined session; empty before one was joined.
    [[nodiscard]] const std::string& shownVideo() const { return shownVideo_; }

    /// Null before a session was joined.
    [[nodiscard]] const std::shared_ptr<ReferenceHost::Player>& player() const { return player_; }

    /// Whether something may have happened to the stay, and the look that finds out.
    [[nodiscard]] bool wantsToLook() const { return isEnding_ || isJoining(); }
    void look();

    /// What is under way and must come to an end, a line each.
    [[nodiscard]] std::vector<std::string> underWay();

    /// The status and the picture of the stay as it is now.
    void lookAtStay();

    /// Leaves or ends whatever session there is, without asking. A host's capture can go on.
    void leave(bool captureGoesOn = false);

    /// Stops the host and lets go of the component. False when somebody else still holds the component.
    bool shutDown();

private:
    void answerAlerts();
    void didLog(ReferenceHost::LogLevel level, std::string_view line);
    void beginStay(const RemoteCoding::RemoteCodingSessionDetails& session);
    void endStay();
    void lookAtTimeline();
    void lookAtStatus();
    void recordStay(const char* state);

    World& world_;
    const std::string name_;
    ReferenceHost::VirtualExecution execution_;
    ReferenceHost::Host host_;
    std::shared_ptr<RemoteCoding::RemoteCodingComponent> component_;
    ReferenceHost::NotificationCenter::ObserverId observer_ = 0;

    std::shared_ptr<ReferenceHost::Timeline> timeline_;
    std::shared_ptr<ReferenceHost::Timeline> stayTimeline_;  // also when it is closed
    std::shared_ptr<ReferenceHost::Player> player_;
    std::optional<std::size_t> stay_;
    bool isEnding_ = false;  // the component has said that the session is over
    Base::Seconds joiningUntil_{0};
    std::string joinedSessionId_;
    std::string shownVideo_;
    std::size_t lastLook_ = 0;  // the size of the trace then

    Edits edits_{*this};
    Faults faults_{*this};
};

}  // namespace Simulator
