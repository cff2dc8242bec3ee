#pragma once

#include "Benchmarks/Component/Synchroniser.hpp"
#include "Benchmarks/Support/Doors.hpp"
#include "Benchmarks/Support/ManualExecution.hpp"
#include "ReferenceHost/Account.hpp"
#include "ReferenceHost/Timeline/ComponentLocator.hpp"
#include "ReferenceHost/UUIDSource.hpp"
#include "ReferenceHost/UserDefaults.hpp"
#include "ReferenceHost/Windowing/HeadlessWindowing.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace Benchmarks {

/// Where a moment's clip is.
struct Place {
    std::string instanceId;
    std::string rowId;
};

/// One of the reference host's timelines behind cheap doors, with or without a synchroniser. Everything on one thread.
class Desk {
public:
    /// An empty timeline.
    Desk();
    ~Desk();
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    [[nodiscard]] ReferenceHost::Timeline& timeline() { return *timeline_; }
    [[nodiscard]] const std::shared_ptr<ReferenceHost::Timeline>& timelinePointer() const {
        return timeline_;
    }
    [[nodiscard]] Synchroniser& synchroniser() { return *synchroniser_; }
    [[nodiscard]] ManualExecution& execution() { return execution_; }
    [[nodiscard]] RemoteCoding::NotificationCenterProtocol& notifications() { return notifications_; }
    [[nodiscard]] PlainClient& client() { return *client_; }

    /// Starts the synchroniser, which pulls this session.
    void join(RemoteCoding::TaggingSessionItem session);

    /// Pulls once more.
    void pull(RemoteCoding::TaggingSessionItem session);

    /// As a user: rows, and clips with notes, one on each row in turn.
    void addRows(std::int64_t rows = rowsOfATimeline);
    void addClips(std::int64_t count, std::int64_t rows = rowsOfATimeline);
    /// As a user: each clip of the row is moved by a second.
    void retimeRow(std::int64_t row);

    /// The throttler fires, and the upload that follows comes to its end.
    void upload() { execution_.letTimePass(); }

    /// Only the timeline stays.
    void dropSynchroniser();

    // What the floors do: the edits that the component makes for one moment, and nothing else.

    std::shared_ptr<RemoteCoding::TimelineInstanceProtocol> append(const RemoteCoding::MomentItem& moment);
    void update(const RemoteCoding::MomentItem& moment, const Place& place);
    void remove(const Place& place);

    void appendAll(const Moments& moments);

    /// In the order of the moments. Any floor that needs them is given them: it does not look for clips.
    [[nodiscard]] std::vector<Place> placesOf(const Moments& moments) const;

    /// One entry of a hash map, which has room for so many. The map's own allocations are not counted.
    void makeRoom(std::int64_t entries) { table_.reserve(static_cast<std::size_t>(entries)); }
    void remember(const std::string& momentId, const std::string& instanceId);

private:
    ManualExecution execution_;
    SilentLog log_;
    PlainNotificationCenter notifications_;
    PlainLibrary library_;
    std::shared_ptr<PlainClient> client_ = std::make_shared<PlainClient>();
    ReferenceHost::UUIDSource ids_{3};
    ReferenceHost::UserDefaults userDefaults_;
    ReferenceHost::Account account_{execution_};
    ReferenceHost::HeadlessWindowing windowing_{execution_, notifications_, "", nullptr, {}};
    ReferenceHost::ComponentLocator locator_;
    std::shared_ptr<ReferenceHost::Timeline> timeline_;
    std::unique_ptr<RemoteCoding::HostEnvironment> environment_;
    std::unique_ptr<Synchroniser> synchroniser_;
    std::unordered_map<std::string, std::string> table_;
};

/// It has pulled a session with these moments, and has nothing left to do.
[[nodiscard]] std::shared_ptr<Desk> joinedDesk(const Moments& moments);

/// For a trial whose main-thread jobs are measured.
[[nodiscard]] inline std::shared_ptr<ManualExecution> executionOf(const std::shared_ptr<Desk>& desk) {
    return {desk, &desk->execution()};
}

}  // namespace Benchmarks
