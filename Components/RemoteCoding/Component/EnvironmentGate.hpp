#pragma once

#include "Components/RemoteCoding/HostInterfaces/HostEnvironment.hpp"

#include <mutex>

namespace RemoteCoding {

/// The way back into the host's environment for a completion that the host may call on any thread and at any time, also
/// after the component, and the environment with it, is gone.
class EnvironmentGate {
public:
    explicit EnvironmentGate(HostEnvironment& environment) : environment_(&environment) {}

    /// Any thread. Runs `function` with the environment, or not at all once the gate is closed. `function` must only
    /// post: the main thread waits for it in `close`.
    template <typename Function>
    void whileOpen(Function&& function) {
        const std::lock_guard guard(mutex_);
        if (environment_ != nullptr) {
            function(*environment_);
        }
    }

    void close() {
        const std::lock_guard guard(mutex_);
        environment_ = nullptr;
    }

private:
    std::mutex mutex_;
    HostEnvironment* environment_;
};

}  // namespace RemoteCoding
