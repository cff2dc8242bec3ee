#pragma once

#include "Base/TaskScope.hpp"
#include "Components/RemoteCoding/Models/HostCalls.hpp"

#include <exception>
#include <string_view>
#include <utility>

namespace RemoteCoding {

/// Any thread. Starts a task at home on the main thread that nobody waits for; what it throws, and an execution that does
/// not take it, is logged. `function` names the operation in log lines and must last.
inline void startOnMainThread(HostEnvironment& environment, std::string_view function,
                              Base::Task<void> task) {
    guarded(environment, function, [&] {
        environment.tasks.scope().start(environment.execution, Base::Home::mainThread, std::move(task),
                                        [&environment, function](const std::exception_ptr& error) {
                                            logError(environment.logManager, "The host failed unexpectedly",
                                                     Base::describe(error), function);
                                        });
    });
}

}  // namespace RemoteCoding
