#pragma once

#include "Components/RemoteCoding/HostInterfaces/RemoteCodingSessionDetails.hpp"
#include "Components/RemoteCoding/HostInterfaces/SynchronisationStatus.hpp"

#include <optional>
#include <string>

namespace CodingDesk {

/// What has become of the analyst's session, as a sentence: "Ana: the session “Cup” is live."
[[nodiscard]] std::string news(const std::string& analyst,
                               const RemoteCoding::RemoteCodingSessionDetails& details);

/// How far the synchronisation of a session's timeline has come, as an end of a sentence: "receives what the others change;
/// everything is sent". Absent: there is no synchronisation.
[[nodiscard]] std::string inWords(const std::optional<RemoteCoding::SynchronisationStatus>& status);

}  // namespace CodingDesk
