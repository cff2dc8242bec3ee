#pragma once

#include "Apps/CodingDesk/Coder.hpp"
#include "Apps/CodingDesk/Comparison.hpp"
#include "Apps/CodingDesk/Person.hpp"
#include "Apps/CodingDesk/TimelineWatcher.hpp"
#include "Components/RemoteCoding/Component/RemoteCodingComponent.hpp"
#include "ReferenceHost/Execution/ReportingExecution.hpp"
#include "ReferenceHost/Host.hpp"
#include "ReferenceHost/Player.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CodingDesk {

/// What the workplaces of a run have in common. All of it outlives them.
struct Surroundings {
    World& world;
    Arrivals& arrivals;
    Transcript& transcript;
    std::uint64_t seed = 1;
};

/// One analyst's application: a host, the remote coding component in it, the person in front of its windows, the timeline of
/// the match, and the player that shows a joined session's stream. Made, used and destroyed on that analyst's main thread, outside the host's own jobs.
class Workplace {
public:
    /// `isSignedIn`: from the start. The execution outlives the workplace.
    Workplace(AnalystIndex analyst, ReferenceHost::ReportingExecution& execution,
              const Surroundings& surroundings, bool isSignedIn);
    ~Workplace();
    Workplace(const Workplace&) = delete;
    Workplace& operator=(const Workplace&) = delete;

    /// Captures the match onto a timeline of that title with these rows.
    void startCapture(const std::string& title, const std::vector<PlannedRow>& rows);

    [[nodiscard]] Person& person() { return person_; }
    [[nodiscard]] ReferenceHost::Host& host() { return host_; }
    [[nodiscard]] RemoteCoding::RemoteCodingComponentProtocol& component() { return *component_; }

    /// The user as whom this analyst signs in.
    [[nodiscard]] const std::string& userId() const { return userId_; }

    /// The timeline of the session, also when that is over; null before there was one.
    [[nodiscard]] const std::shared_ptr<ReferenceHost::Timeline>& timeline() const { return timeline_; }

    /// The title of the window that shows that timeline; empty when it is closed.
    [[nodiscard]] std::string timelineWindow();

    /// What edits the session's timeline; null before there is a session.
    [[nodiscard]] Coder* coder() { return coder_.get(); }

    /// What shows the joined session's stream; null before one was joined.
    [[nodiscard]] ReferenceHost::Player* player() { return player_.get(); }

    /// Absent without a session.
    [[nodiscard]] std::optional<RemoteCoding::RemoteCodingSessionDetails> session() const;

    /// Absent without a session that is synchronised.
    [[nodiscard]] std::optional<RemoteCoding::SynchronisationStatus> status() const;
    [[nodiscard]] std::int64_t modifyCount() const;
    [[nodiscard]] std::string timelineId() const;
    [[nodiscard]] MatchState state() const;
    void setLinkUp(bool up) { host_.setLinkUp(up); }

    /// Ends the session, or leaves it, without asking. Harmless without one.
    void endSession();

    /// What the component still has to do before it may be released.
    [[nodiscard]] std::size_t unfinishedTasks() const { return host_.unfinishedTasks(); }

private:
    void openTimeline(const RemoteCoding::RemoteCodingSessionDetails& details);
    void sessionDidChange(const RemoteCoding::RemoteCodingSessionDetails& details);

    const AnalystIndex analyst_;
    const std::string userId_;
    const Surroundings surroundings_;
    ReferenceHost::Host host_;
    Person person_;
    std::shared_ptr<RemoteCoding::RemoteCodingComponent> component_;
    std::shared_ptr<ReferenceHost::Timeline> timeline_;  // of the session
    std::unique_ptr<TimelineWatcher> watcher_;
    std::unique_ptr<Coder> coder_;
    std::shared_ptr<ReferenceHost::Player> player_;
    std::string lastTold_;  // of the session
    ReferenceHost::NotificationCenter::ObserverId observer_ = 0;
};

}  // namespace CodingDesk
