#pragma once

#include "Apps/Simulator/Deed.hpp"
#include "Apps/Simulator/Plan.hpp"

namespace Simulator {

class Seat;

/// What the step means for this analyst's sessions: hosting, joining, leaving, and what can go wrong with these.
[[nodiscard]] Deed prepareSession(Seat& seat, const Step& step);

// The beginning of every run, before which the plan's first steps may come.

[[nodiscard]] Deed prepareHosting(Seat& seat, const Step& step);
[[nodiscard]] Deed prepareJoining(Seat& seat, const Step& step);

}  // namespace Simulator
