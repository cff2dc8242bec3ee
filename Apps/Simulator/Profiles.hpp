#pragma once

#include "Apps/Simulator/Plan.hpp"
#include "ReferenceHost/SeededRandom.hpp"

#include <vector>

namespace Simulator {

struct WeightedAction {
    Action action;
    unsigned weight;
};
using Weights = std::vector<WeightedAction>;

[[nodiscard]] Action choose(const Weights& weights, ReferenceHost::SeededRandom& random);

/// What kind of afternoon it is: what happens how often, and how fast.
struct Profile {
    Weights edits;
    Weights faults;
    Weights sessions;
    double faultShare = 0.2;  ///< of the steps
    double sessionShare = 0.05;
    double twinShare = 0.2;    ///< of the edits that somebody else makes, too, at nearly the same moment
    double burstShare = 0.5;   ///< of the steps that follow within a fraction of a second
    double pauseShare = 0.06;  ///< of the steps that follow after many seconds
    double leastPause = 5;
    double mostPause = 25;
    double republishShare =
        0;                    ///< of the steps at which somebody leaves a session and begins another at once
    bool takesTurns = false;  ///< each step waits until the one before it has reached everybody
    double longOutageShare = 0;    ///< of the outages that last for minutes
    double earlyStartShare = 0.2;  ///< of the plans that begin before everybody has joined
};

/// Without faults only those profiles are drawn that can do without.
[[nodiscard]] Profile drawProfile(ReferenceHost::SeededRandom& random, bool faults);

}  // namespace Simulator
