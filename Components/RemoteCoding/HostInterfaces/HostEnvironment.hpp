#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/AccountProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/ComponentLocatorProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/LogManagerProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/NotificationCenterProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/SyncLibraryProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/SynchronisationObserverProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/TevuGraphQLClientProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/TevuTeamServiceProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/UUIDSourceProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/UserDefaultsProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/WindowingProtocol.hpp"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Base {
class TaskScope;
}

namespace RemoteCoding {

/// The component's asynchronous work that has been started and has not ended. It belongs to the host's environment, so that
/// a host can wait for it, or drop it, when it shuts down.
class REMOTE_CODING_EXPORT UnfinishedTasks {
public:
    UnfinishedTasks();
    ~UnfinishedTasks();  ///< drops what is left
    UnfinishedTasks(const UnfinishedTasks&) = delete;
    UnfinishedTasks& operator=(const UnfinishedTasks&) = delete;

    /// Any thread.
    [[nodiscard]] std::size_t count() const;

    /// Destroys all of it where it stands; its completions are not called. Only when no job of the host's execution runs
    /// any more, and on the main thread. Nothing can be started afterwards.
    void drop();

    /// For the component.
    [[nodiscard]] Base::TaskScope& scope() { return *scope_; }

private:
    std::unique_ptr<Base::TaskScope> scope_;
};

/// Every door to the outside. A host makes one, fills in its implementations, and keeps it until its main loop has stopped
/// and every component made on it is gone.
///
///     RemoteCoding::HostEnvironment environment{.execution = execution, .componentLocator = locator, ...};
///     RemoteCoding::RemoteCodingComponent::installHost(environment);
///     auto component = RemoteCoding::RemoteCodingComponent::shared();
///
/// Several environments may live in one process, each with a component of its own (`RemoteCodingComponent::make`).
///
/// Shutdown, in this order: close the component's windows, and those that show a sheet or a sign-in, whose tasks would not
/// end otherwise; end the sessions; run the main loop until what is posted has run and `tasks.count()` is 0, or
/// patience ends; stop the main loop and the background, and destroy the jobs that have not run; release the component
/// (`uninstallHost` when it is the shared one); destroy the environment; destroy what it refers to.
struct HostEnvironment {
    Base::ExecutionProtocol& execution;
    ComponentLocatorProtocol& componentLocator;
    NotificationCenterProtocol& notificationCenter;
    UserDefaultsProtocol& userDefaults;
    LogManagerProtocol& logManager;
    AccountProtocol& account;
    std::shared_ptr<TevuGraphQLClientProtocol> graphQLClient;  ///< never null
    SyncLibraryProtocol& syncLibrary;
    std::shared_ptr<TevuTeamServiceProtocol> teamService;  ///< never null
    WindowingProtocol& windowing;
    UUIDSourceProtocol& uuids;
    std::vector<std::string>
        languages{};  ///< the user's, best first, as BCP 47 tags; English where none of them is there
    SynchronisationObserverProtocol* synchronisationObserver = nullptr;  ///< optional

    /// The time now, for a host whose clock is not the system's; asked on the main thread. The system's when empty.
    std::function<std::chrono::sys_time<std::chrono::microseconds>()> now{};

    UnfinishedTasks tasks{};
};

}  // namespace RemoteCoding
