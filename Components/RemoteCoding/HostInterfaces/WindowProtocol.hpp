#pragma once

#include "Components/RemoteCoding/HostInterfaces/HostObject.hpp"

namespace RemoteCoding {

/// A window of the host's toolkit.
class REMOTE_CODING_EXPORT WindowProtocol : public HostObject {};

}  // namespace RemoteCoding
