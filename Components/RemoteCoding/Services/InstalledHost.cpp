#include "Components/RemoteCoding/Services/InstalledHost.hpp"

#include "Components/RemoteCoding/Services/TevuRemoteCodingService.hpp"

#include <mutex>
#include <stdexcept>

namespace RemoteCoding::InstalledHost {

namespace {

struct Process {
    std::mutex mutex;
    HostEnvironment* environment = nullptr;
    std::shared_ptr<TevuRemoteCodingService> service;
};

// Never destroyed: when static objects go, the host's environment is long gone.
Process& process() {
    static auto& process = *new Process;
    return process;
}

/// With the lock held.
HostEnvironment& installed(const Process& process) {
    if (process.environment == nullptr) {
        throw std::logic_error(
            "RemoteCodingComponent::installHost must be called before what is shared is used");
    }
    return *process.environment;
}

}  // namespace

void install(HostEnvironment& environment) {
    auto& shared = process();
    const std::lock_guard guard(shared.mutex);
    if (shared.service && shared.environment != &environment) {
        throw std::logic_error("What is shared already lives on another host environment");
    }
    shared.environment = &environment;
}

void uninstall() {
    auto& shared = process();
    std::shared_ptr<TevuRemoteCodingService> released;  // after the lock: the client may go with it
    const std::lock_guard guard(shared.mutex);
    shared.environment = nullptr;
    released.swap(shared.service);
}

HostEnvironment& environment() {
    auto& shared = process();
    const std::lock_guard guard(shared.mutex);
    return installed(shared);
}

std::shared_ptr<TevuRemoteCodingService> remoteCodingService() {
    auto& shared = process();
    const std::lock_guard guard(shared.mutex);
    if (!shared.service) {
        shared.service = std::make_shared<TevuRemoteCodingService>(installed(shared).graphQLClient);
    }
    return shared.service;
}

}  // namespace RemoteCoding::InstalledHost
