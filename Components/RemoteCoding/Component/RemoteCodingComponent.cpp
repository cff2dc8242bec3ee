#include "Components/RemoteCoding/Component/RemoteCodingComponent.hpp"

#include "Components/RemoteCoding/Component/EnvironmentGate.hpp"
#include "Components/RemoteCoding/Models/HostCalls.hpp"
#include "Components/RemoteCoding/Models/RemoteCodingSession.hpp"
#include "Components/RemoteCoding/Services/InstalledHost.hpp"
#include "Components/RemoteCoding/Services/TevuRemoteCodingService.hpp"
#include "Components/RemoteCoding/Services/TimelineUploadService.hpp"

#include <algorithm>
#include <mutex>
#include <utility>

namespace RemoteCoding {

namespace {

struct Process {
    std::mutex mutex;
    std::shared_ptr<RemoteCodingComponent> component;
};

// Never destroyed: when static objects go, the host's environment is long gone.
Process& process() {
    static auto& process = *new Process;
    return process;
}

}  // namespace

// A component that is being built counts as built: the lock is held until it is there.
void RemoteCodingComponent::installHost(HostEnvironment& environment) {
    const std::lock_guard guard(process().mutex);
    InstalledHost::install(environment);
}

void RemoteCodingComponent::uninstallHost() {
    auto& shared = process();
    std::shared_ptr<RemoteCodingComponent> released;  // after the lock: its end calls the host
    const std::lock_guard guard(shared.mutex);
    InstalledHost::uninstall();
    released.swap(shared.component);
}

std::shared_ptr<RemoteCodingComponent> RemoteCodingComponent::shared() {
    auto& shared = process();
    const std::lock_guard guard(shared.mutex);
    if (!shared.component) {
        shared.component = make(InstalledHost::environment(), TevuRemoteCodingService::shared());
    }
    return shared.component;
}

std::shared_ptr<RemoteCodingComponent> RemoteCodingComponent::make(HostEnvironment& environment) {
    return make(environment, std::make_shared<TevuRemoteCodingService>(environment.graphQLClient));
}

std::shared_ptr<RemoteCodingComponent>
RemoteCodingComponent::make(HostEnvironment& environment, std::shared_ptr<TevuRemoteCodingService> service) {
    checkIsMainThread(environment, "init()");
    const std::shared_ptr<RemoteCodingComponent> component(
        new RemoteCodingComponent(environment, std::move(service)));
    component->observe(TimelineNotifications::timelineDidRemove, &RemoteCodingComponent::timelineDidClose);
    component->observe(TimelineNotifications::liveShareDidComplete,
                       &RemoteCodingComponent::liveShareDidComplete);
    component->observe(Notifications::streamStatusChanged, &RemoteCodingComponent::streamStatusChanged);
    return component;
}

RemoteCodingComponent::RemoteCodingComponent(HostEnvironment& environment,
                                             std::shared_ptr<TevuRemoteCodingService> service)
    : environment_(environment),
      gate_(std::make_shared<EnvironmentGate>(environment)),
      remoteCodingService_(std::move(service)) {}

RemoteCodingComponent::~RemoteCodingComponent() {
    gate_->close();
    closeWindows();
    for (const auto observer : observers_) {
        guarded(environment_, "deinit", [&] { environment_.notificationCenter.removeObserver(observer); });
    }
    for (const auto& [timelineId, session] : remoteCodingSessionsByTimelineId_) {
        cancelSyncing(*session);  // else an open subscription would keep the synchroniser
    }
}

std::shared_ptr<RemoteCodingSession> RemoteCodingComponent::session(const std::string& timelineId) const {
    const auto found = remoteCodingSessionsByTimelineId_.find(timelineId);
    return found != remoteCodingSessionsByTimelineId_.end() ? found->second : nullptr;
}

std::optional<std::string> RemoteCodingComponent::hostSessionTimelineId() const {
    const auto found = std::ranges::find_if(remoteCodingSessionsByTimelineId_,
                                            [](const auto& entry) { return entry.second->isHost; });
    return found != remoteCodingSessionsByTimelineId_.end() ? std::optional(found->first) : std::nullopt;
}

bool RemoteCodingComponent::hasHostSession() const { return hostSessionTimelineId().has_value(); }

bool RemoteCodingComponent::hasActiveSession(const std::string& timelineId) const {
    checkIsMainThread(environment_, "hasActiveSession(timelineId:)");
    const auto session = this->session(timelineId);
    if (!session || session->status == RemoteCodingSessionStatus::ended) {
        return false;
    }
    // Without a live stream, what is left of a session is the sharing of its timeline.
    return session->status != RemoteCodingSessionStatus::streamEnded || session->timelineUploadService;
}

bool RemoteCodingComponent::isActiveSessionCollaborator(const std::string& timelineId) const {
    checkIsMainThread(environment_, "isActiveSessionCollaborator(timelineId:)");
    const auto session = this->session(timelineId);
    return session && !session->isHost;
}

std::optional<RemoteCodingSessionDetails>
RemoteCodingComponent::sessionDetails(const std::string& timelineId) const {
    checkIsMainThread(environment_, "sessionDetails(timelineId:)");
    const auto session = this->session(timelineId);
    return session ? std::optional(session->details()) : std::nullopt;
}

std::optional<SynchronisationStatus>
RemoteCodingComponent::synchronisationStatus(const std::string& timelineId) const {
    checkIsMainThread(environment_, "synchronisationStatus(timelineId:)");
    if (const auto session = this->session(timelineId)) {
        const auto& synchroniser = session->timelineUploadService;
        return synchroniser ? std::optional(synchroniser->status()) : std::nullopt;
    }
    const auto ended = endedSynchronisersByTimelineId_.find(timelineId);
    if (ended == endedSynchronisersByTimelineId_.end()) {
        return std::nullopt;
    }
    const auto synchroniser = ended->second.synchroniser.lock();
    return synchroniser ? synchroniser->status() : *ended->second.finalStatus;
}

}  // namespace RemoteCoding
