#pragma once

#include "Base/ExecutionProtocol.hpp"

#include <cstddef>
#include <cstdint>

/// The fixed delays and limits of the component.
namespace RemoteCoding::Limits {

/// Local changes are gathered for this long before they are uploaded.
inline constexpr Base::Seconds changeCoalescing{1.0};

/// Between two attempts to reconnect, in seconds.
inline constexpr double reconnectionDelay = 2.0;

/// Attempts to reconnect before the subscription is simply opened again.
inline constexpr std::int64_t maximumReconnectionAttempts = 300;

/// From the moment the host has opened a live share until its timeline is looked up.
inline constexpr Base::Seconds joinDelay{3.0};

/// A joined session's live stream whose fragments stay out for this long is looked at.
inline constexpr Base::Seconds fragmentDownloadedTimeInterval{15.0};

/// The same after the player has said that it pauses: a pause is expected to be short.
inline constexpr Base::Seconds fragmentsPausedTimeInterval{5.0};

/// By how much both of them may come late, so that the host can fire timers together.
inline constexpr Base::Seconds fragmentTimerTolerance{1.0};

/// New moment ids that one job writes back before it lets others have the main thread. A number, not a time, so that a run on
/// virtual time can be repeated exactly.
inline constexpr std::size_t writeBackSlice = 1000;

/// User-perceived characters that the name of a new session's video may have.
inline constexpr std::size_t videoNameCharacters = 255;

}  // namespace RemoteCoding::Limits
