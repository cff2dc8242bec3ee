#pragma once

#include "Benchmarks/Support/Doors.hpp"
#include "Benchmarks/Support/ManualExecution.hpp"
#include "Components/RemoteCoding/Services/TimelineUploadService.hpp"
#include "ReferenceHost/Account.hpp"
#include "ReferenceHost/Timeline/ComponentLocator.hpp"
#include "ReferenceHost/UUIDSource.hpp"
#include "ReferenceHost/UserDefaults.hpp"
#include "ReferenceHost/Windowing/HeadlessWindowing.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

namespace Benchmarks {

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
    [[nodiscard]] RemoteCoding::TimelineUploadService& service() { return *service_; }
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
    void dropService();

    // What the floors do.

    /// The moments' clips, each with one entry in a table.
    void appendDirectly(const Moments& moments);
    [[nodiscard]] std::unordered_map<std::string, std::string>& table() { return table_; }

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
    std::shared_ptr<RemoteCoding::TimelineUploadService> service_;
    std::unordered_map<std::string, std::string> table_;
};

}  // namespace Benchmarks
