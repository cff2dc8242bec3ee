#pragma once

#include "Base/TaskScope.hpp"
#include "Components/RemoteCoding/Models/HostCalls.hpp"

#include <exception>
#include <source_location>
#include <string_view>
#include <utility>

namespace RemoteCoding {

/// Any thread. Starts a task at home on the main thread that nobody waits for; what it throws, and an execution that does
/// not take it, is logged with the caller as its source. `function` names the operation in log lines and must last. False
/// when the execution did not take the task.
inline bool startOnMainThread(HostEnvironment& environment, std::string_view function, Base::Task<void> task,
                              const std::source_location& location = std::source_location::current()) {
    bool isStarted = false;
    guarded(
        environment, function,
        [&] {
            environment.tasks.scope().start(
                environment.execution, Base::Home::mainThread, std::move(task),
                [&environment, function, location](const std::exception_ptr& error) {
                    logError(environment.logManager, "The host failed unexpectedly", Base::describe(error),
                             function, location);
                });
            isStarted = true;
        },
        location);
    return isStarted;
}

}  // namespace RemoteCoding
