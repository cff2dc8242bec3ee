#include "Apps/Simulator/Outcome/Outcome.hpp"

#include "Apps/Simulator/Outcome/Loss.hpp"
#include "Apps/Simulator/Outcome/Reasons.hpp"

#include <algorithm>
#include <iterator>

namespace Simulator {

namespace {

std::string brokenRule(const std::string& rule) { return "broken rule: " + rule; }

}  // namespace

Outcome judgeOutcome(const Record& record) {
    Outcome outcome;
    const History history(record);
    Losses losses = compareTimelines(history);
    std::ranges::move(findLostClipEdits(history), std::back_inserter(losses));
    std::ranges::move(findLostRowEdits(history), std::back_inserter(losses));
    for (Loss& loss : losses) {
        if (const Reason reason = explain(history, loss)) {
            outcome.explained.push_back({nameOf(*reason), std::move(loss.what)});
        } else if (!record.plan.brokenRules.empty()) {
            outcome.explained.push_back({brokenRule(record.plan.brokenRules.front()), std::move(loss.what)});
        } else {
            outcome.findings.emplace_back(nameOf(loss.kind), std::move(loss.what),
                                          loss.edit != nullptr ? std::optional(loss.edit->at) : std::nullopt);
        }
    }
    return outcome;
}

std::vector<std::string> lossClasses() {
    std::vector<std::string> names;
    for (const LossClassText& text : lossClassTexts()) {
        names.emplace_back(text.name);
    }
    return names;
}

}  // namespace Simulator
