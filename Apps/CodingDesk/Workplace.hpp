#pragma once

#include "Apps/CodingDesk/Coder.hpp"
#include "Apps/CodingDesk/Comparison.hpp"
#include "Apps/CodingDesk/TimelineWatcher.hpp"
#include "Components/RemoteCoding/Component/RemoteCodingComponent.hpp"
#include "ReferenceHost/Execution/RealExecution.hpp"
#include "ReferenceHost/Host.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CodingDesk {

/// How others find a session.
struct SessionAddress {
    std::string name;
    std::string videoId;
    std::string teamId;
    std::string taggingSessionId;
};

/// One analyst's application: a host, the remote coding component in it, and the timeline of the match. Made, used and
/// destroyed on that analyst's main thread, outside the host's own jobs.
class Workplace {
public:
    using SessionListener = std::function<void(const RemoteCoding::RemoteCodingSessionDetails&)>;

    /// `listener`: told of each session notification, on this thread. The others outlive this object.
    Workplace(AnalystIndex analyst, ReferenceHost::RunLoop& loop, World& world, Arrivals& arrivals,
              std::uint64_t seed, SessionListener listener);
    ~Workplace();
    Workplace(const Workplace&) = delete;
    Workplace& operator=(const Workplace&) = delete;

    /// Captures the match onto a timeline with these rows, and publishes it as a session.
    void publish(const SessionAddress& address, const std::vector<PlannedRow>& rows);

    /// Joins a session that somebody else publishes. It is there when there is a coder.
    void join(const SessionAddress& address);

    /// What edits the session's timeline; null before there is a session.
    [[nodiscard]] Coder* coder() { return coder_.get(); }

    /// Absent before there is a session.
    [[nodiscard]] std::optional<RemoteCoding::SynchronisationStatus> status() const;
    [[nodiscard]] std::int64_t modifyCount() const;
    [[nodiscard]] std::string timelineId() const;
    [[nodiscard]] MatchState state() const;
    void setLinkUp(bool up) { host_.setLinkUp(up); }

    /// Ends the session, or leaves it. Harmless without one.
    void endSession();

    /// What the component still has to do before it may be released.
    [[nodiscard]] std::size_t unfinishedTasks() const { return host_.unfinishedTasks(); }

private:
    void sessionDidChange(const RemoteCoding::RemoteCodingSessionDetails& details);

    const AnalystIndex analyst_;
    World& world_;
    Arrivals& arrivals_;
    SessionListener listener_;
    ReferenceHost::RealExecution execution_;
    ReferenceHost::Host host_;
    std::shared_ptr<RemoteCoding::RemoteCodingComponent> component_;
    std::shared_ptr<ReferenceHost::Timeline> timeline_;  // of the session
    std::unique_ptr<TimelineWatcher> watcher_;
    std::unique_ptr<Coder> coder_;
    ReferenceHost::NotificationCenter::ObserverId observer_ = 0;
};

}  // namespace CodingDesk
