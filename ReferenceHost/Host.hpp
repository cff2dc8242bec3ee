#pragma once

#include "Components/RemoteCoding/HostInterfaces/HostEnvironment.hpp"
#include "ReferenceHost/Account.hpp"
#include "ReferenceHost/Cloud/CloudClient.hpp"
#include "ReferenceHost/Execution/ReportingExecution.hpp"
#include "ReferenceHost/LogManager.hpp"
#include "ReferenceHost/NotificationCenter.hpp"
#include "ReferenceHost/Timeline/CaptureComponent.hpp"
#include "ReferenceHost/Timeline/ComponentLocator.hpp"
#include "ReferenceHost/Timeline/TimelineComponent.hpp"
#include "ReferenceHost/Trace.hpp"
#include "ReferenceHost/TracingObserver.hpp"
#include "ReferenceHost/UUIDSource.hpp"
#include "ReferenceHost/UserDefaults.hpp"
#include "ReferenceHost/Windowing/HeadlessWindowing.hpp"
#include "ReferenceHost/Windowing/Person.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ReferenceHost {

class CloudService;

struct HostOptions {
    std::optional<std::string> userId;  ///< who is signed in; nobody when absent
    bool enableSharedTimelines = true;
    std::vector<std::string> languages{};  ///< as `HostEnvironment::languages`

    /// What this host draws follows from it and from the host's name: identifiers, latencies.
    std::uint64_t seed = 1;
    CloudClientSettings network;  ///< its own seed is not used
    LogManager::Sink logSink;     ///< may be empty
};

/// One analyst's host: everything behind a `HostEnvironment`, and what its user does with it. Several may share a cloud
/// service, a trace, and the time or loop behind their executions; they have different names then.
///
/// Threads: main thread only, made and destroyed on it.
///
/// Ownership: execution, service and trace outlive the host. The remote coding component is made by whoever uses the host:
///
///     ReferenceHost::Host host("Ann", execution, service, trace, options);
///     auto component = RemoteCoding::RemoteCodingComponent::make(host.environment());
///     host.setRemoteCodingComponent(component);
///
/// Shutdown: end the sessions; run the main loop until `unfinishedTasks()` is 0 or patience ends; `stop()`; release the
/// component; destroy the host. The destructor stops what has not been stopped.
class Host {
public:
    Host(std::string name, ReportingExecution& execution, CloudService& service, Trace& trace,
         HostOptions options = {});
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    [[nodiscard]] RemoteCoding::HostEnvironment& environment() { return *environment_; }
    [[nodiscard]] const std::string& name() const { return name_; }

    /// Not owned: it goes when its maker drops it.
    void
    setRemoteCodingComponent(const std::shared_ptr<RemoteCoding::RemoteCodingComponentProtocol>& component) {
        locator_.setRemoteCodingComponent(component);
    }

    // What the user does.

    void signIn(const std::string& userId) { account_->signIn(userId); }
    void signOut() { account_->signOut(); }

    /// Captures onto a new timeline of that title.
    std::shared_ptr<Timeline> startCapture(const std::string& title);

    /// The timeline stays open; what is published of the capture ends.
    void stopCapture();

    std::shared_ptr<Timeline> openTimeline(const std::string& title);

    /// False when there is no such timeline.
    bool closeTimeline(const std::string& timelineId) { return timelines_->closeTimeline(timelineId); }

    /// The link of this host's network.
    void setLinkUp(bool up) { cloudClient_->setLinkUp(up); }

    /// Whoever sits in front of this host's windows.
    [[nodiscard]] Person& person() { return person_; }

    // The parts, for what is not above.

    [[nodiscard]] ReportingExecution& execution() { return execution_; }
    [[nodiscard]] Account& account() { return *account_; }
    [[nodiscard]] HeadlessWindowing& windowing() { return *windowing_; }
    [[nodiscard]] TimelineComponent& timelines() { return *timelines_; }
    [[nodiscard]] CaptureComponent& capture() { return *capture_; }
    [[nodiscard]] ComponentLocator& locator() { return locator_; }
    [[nodiscard]] NotificationCenter& notificationCenter() { return notificationCenter_; }
    [[nodiscard]] UserDefaults& userDefaults() { return userDefaults_; }
    [[nodiscard]] CloudClient& cloudClient() { return *cloudClient_; }
    [[nodiscard]] UUIDSource& uuids() { return uuids_; }

    // Shutdown.

    [[nodiscard]] std::size_t unfinishedTasks() const { return environment_->tasks.count(); }

    /// No job of this host runs any more. Outside its jobs; harmless when repeated.
    void stop() { execution_.stop(); }

private:
    [[nodiscard]] CallRecorder callRecorder();

    const std::string name_;
    ReportingExecution& execution_;
    Trace& trace_;

    // In the order in which they refer to each other; destroyed from the last.
    UUIDSource uuids_;
    LogManager logManager_;
    NotificationCenter notificationCenter_;
    UserDefaults userDefaults_;
    std::shared_ptr<Account> account_;
    std::shared_ptr<HeadlessWindowing> windowing_;
    Person person_{*windowing_};
    std::shared_ptr<TimelineComponent> timelines_;
    std::shared_ptr<CaptureComponent> capture_;
    ComponentLocator locator_;
    std::unique_ptr<CloudClient> cloudClient_;
    TracingObserver observer_;
    std::unique_ptr<RemoteCoding::HostEnvironment> environment_;
};

}  // namespace ReferenceHost
