#pragma once

#include "Components/RemoteCoding/HostInterfaces/HostEnvironment.hpp"

#include <memory>

namespace RemoteCoding {

class TevuRemoteCodingService;

/// The host environment on which the objects of the whole process are built. Any thread.
namespace InstalledHost {

/// Replaces an environment installed before; throws `std::logic_error` when the shared service has been built on that one.
void install(HostEnvironment& environment);

/// Lets go of the environment and of the shared service; whoever holds the service may go on with it.
void uninstall();

/// Throws `std::logic_error` before a host is installed.
[[nodiscard]] HostEnvironment& environment();

/// Behind `TevuRemoteCodingService::shared`.
[[nodiscard]] std::shared_ptr<TevuRemoteCodingService> remoteCodingService();

}  // namespace InstalledHost

}  // namespace RemoteCoding
