#pragma once

#include "Base/ExecutionProtocol.hpp"

/// The component's fixed delays and limits.
namespace RemoteCoding::Limits {

/// Between the host's opening of a live share and the set-up of its session: the host needs the time to fill the
/// new timeline.
inline constexpr Base::Seconds joinedSessionDelay{3.0};

}  // namespace RemoteCoding::Limits
