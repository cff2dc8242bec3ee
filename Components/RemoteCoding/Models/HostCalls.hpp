#pragma once

#include "Base/Error.hpp"
#include "Base/Threading.hpp"
#include "Components/RemoteCoding/HostInterfaces/HostEnvironment.hpp"
#include "Components/RemoteCoding/Models/ErrorLog.hpp"

#include <exception>
#include <source_location>
#include <string_view>
#include <utility>

namespace RemoteCoding {

/// Runs work that calls the host where the contract foresees no failure: what the host throws ends the work and is
/// logged.
template <typename Work>
void guarded(HostEnvironment& environment, std::string_view function, Work&& work,
             const std::source_location& location = std::source_location::current()) {
    try {
        std::forward<Work>(work)();
    } catch (...) {
        logError(environment.logManager, "The host failed unexpectedly",
                 Base::describe(std::current_exception()), function, location);
    }
}

/// Reports a caller that is not on the main thread.
inline void checkIsMainThread(HostEnvironment& environment, std::string_view function,
                              const std::source_location& location = std::source_location::current()) {
    Base::Threading::checkIsMainThread(environment.execution, sourceName(location.file_name()), function,
                                       location.line());
}

}  // namespace RemoteCoding
