#include "Apps/Simulator/Outcome/Outcome.hpp"

#include "Apps/Simulator/Outcome/Loss.hpp"

#include <algorithm>
#include <iterator>

namespace Simulator {

Outcome judgeOutcome(const Record& record) {
    Outcome outcome;
    const History history(record);
    Losses losses = compareTimelines(history);
    std::ranges::move(findLostClipEdits(history), std::back_inserter(losses));
    std::ranges::move(findLostRowEdits(history), std::back_inserter(losses));
    for (const Loss& loss : losses) {
        outcome.findings.emplace_back(std::string(nameOf(loss.kind)), loss.what);
    }
    return outcome;
}

std::vector<std::string> lossClasses() { return {}; }

}  // namespace Simulator
