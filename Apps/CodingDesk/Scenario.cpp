#include "Apps/CodingDesk/Scenario.hpp"

#include <algorithm>
#include <array>

namespace CodingDesk {

std::span<const Scenario> scenarios() {
    static constexpr std::array<Scenario, 6> all{{
        {"no-capture", "a session is wanted before there is a capture", Scenarios::noCapture},
        {"guest-leaves", "one of two guests leaves; the others go on", Scenarios::guestLeaves},
        {"host-ends", "the stream ends, then the session; the timelines stay", Scenarios::hostEnds},
        {"failing-stream", "a stream that is slow, then one that has failed", Scenarios::failingStream},
        {"sign-in-expires", "signing in, giving up on it, and signing in again", Scenarios::signInExpires},
        {"network-down", "no network when a session is started, and right after it", Scenarios::networkDown},
    }};
    return all;
}

const Scenario* findScenario(std::string_view name) {
    const auto all = scenarios();
    const auto found = std::ranges::find(all, name, &Scenario::name);
    return found == all.end() ? nullptr : &*found;
}

}  // namespace CodingDesk
