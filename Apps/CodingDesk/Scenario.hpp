#pragma once

#include <span>
#include <string_view>

namespace CodingDesk {

class Stage;

/// A play about what can happen to a session, with checks of what the analysts should see. It ends by an exception when
/// something is not as it should be.
struct Scenario {
    std::string_view name;   ///< as it is asked for on the command line
    std::string_view about;  ///< what happens, in at most 54 columns
    void (*play)(Stage& stage);
};

/// All of them, in the order in which they are listed and played.
[[nodiscard]] std::span<const Scenario> scenarios();

/// Null when there is none of that name.
[[nodiscard]] const Scenario* findScenario(std::string_view name);

/// One function a scenario, each in a file of its own in `Scenarios/`.
namespace Scenarios {
void failingStream(Stage& stage);
void hostEnds(Stage& stage);
void guestLeaves(Stage& stage);
void signInExpires(Stage& stage);
void networkDown(Stage& stage);
void noCapture(Stage& stage);
}  // namespace Scenarios

}  // namespace CodingDesk
