#pragma once

#include <cstdint>
#include <vector>

namespace Simulator {

/// The known reasons for which something is not as a user would have it. What each takes is written down in `Reasons*.cpp`, as
/// conditions on the trace for the very clip or row.
enum class LossClass : std::uint8_t {
    // The edit did not reach the cloud.
    outsideSession,
    beforeSession,
    left,
    passedOver,
    waiting,
    answeredFalse,

    // It reached it, and something else was made of it.
    takenForKnown,
    broughtBackTwice,
    undoneLater,
    takenAwayAgain,

    // It did not reach a timeline.
    neverFetched,
    deletedOutside,
    noCodingTarget,
    noRow,
    unreadable,
    wrongRow,
    renamedMeanwhile,
    formerName,
    strayClip,
    sentWithoutRow,
    deletedWhileAway,
};

struct LossClassText {
    LossClass lossClass;
    const char* name;
    const char* sentence;  ///< in a user's words
};

[[nodiscard]] const std::vector<LossClassText>& lossClassTexts();
[[nodiscard]] const char* nameOf(LossClass lossClass);

}  // namespace Simulator
