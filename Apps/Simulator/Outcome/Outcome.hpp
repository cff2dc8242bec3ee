#pragma once

#include "Apps/Simulator/Finding.hpp"
#include "Apps/Simulator/Record.hpp"

#include <string>
#include <vector>

namespace Simulator {

/// Something that is not as a user would have it, and the known reason for it.
struct ExplainedLoss {
    std::string lossClass;  ///< the class's name
    std::string what;       ///< in words, with analyst and object
};

/// How a run ended.
struct Outcome {
    Findings findings;  ///< differences and losses that nothing explains
    std::vector<ExplainedLoss> explained;
};

/// Compares each timeline whose analyst is still in the session with what the cloud holds, and what the users did with what
/// has become of it.
[[nodiscard]] Outcome judgeOutcome(const Record& record);

/// The names of all loss classes that hosts meet who keep their contract, for counts and documents.
[[nodiscard]] std::vector<std::string> lossClasses();

}  // namespace Simulator
