#include "Apps/Simulator/Verdict.hpp"

#include "Apps/Simulator/Conformance/Conformance.hpp"
#include "Apps/Simulator/Runner.hpp"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

namespace Simulator {

namespace {

/// What a host that breaks a rule of its contract brings upon itself, by the finding's rule.
struct Implied {
    std::string_view brokenRule;
    std::string_view finding;
};
constexpr std::array implied{
    Implied{"createIsIdempotent", "appendedTwice"},  // a clip has two moments
    Implied{"partialKnowsRows", "appendedTwice"},    // a clip that was sent gets no identifier
};

bool isImplied(const Finding& finding, const std::vector<std::string>& brokenRules) {
    return std::ranges::any_of(implied, [&](const Implied& pair) {
        return pair.finding == finding.rule &&
               std::ranges::find(brokenRules, pair.brokenRule) != brokenRules.end();
    });
}

/// Where the second run goes another way than the first; nothing when it does not.
Findings checkRepeats(const Record& first, const Record& second) {
    const auto [entry, other] = std::ranges::mismatch(first.trace, second.trace);
    if (entry == first.trace.end() && other == second.trace.end()) {
        return {};
    }
    const auto at = static_cast<std::size_t>(entry - first.trace.begin());
    return {{"repeats",
             "A second run of the same plan gives another trace from entry " + std::to_string(at) + " on",
             at < first.trace.size() ? std::optional(at) : std::nullopt}};
}

}  // namespace

Verdict judge(const Record& record) {
    Verdict verdict;
    if (record.crash) {
        verdict.findings.emplace_back("crash", *record.crash);
        return verdict;
    }
    for (const std::string& line : record.neverSettled) {
        verdict.findings.emplace_back("neverSettled", line,
                                      record.settled > 0 ? std::optional(record.settled - 1) : std::nullopt);
    }
    for (const std::string& line : record.leftovers) {
        verdict.findings.emplace_back("leftover", line);
    }
    std::ranges::move(checkConformance(record), std::back_inserter(verdict.findings));
    if (record.neverSettled.empty()) {
        verdict.outcome = judgeOutcome(record);
    }
    return verdict;
}

Trial::Trial(const Plan& plan, bool twice, const Judge& judge) : record(run(plan)), verdict(judge(record)) {
    if (twice) {
        std::ranges::move(checkRepeats(record, run(plan)), std::back_inserter(verdict.findings));
    }
}

Findings failuresOf(const Verdict& verdict, const std::vector<std::string>& brokenRules) {
    Findings failures;
    std::ranges::copy_if(verdict.findings, std::back_inserter(failures),
                         [&](const Finding& finding) { return !isImplied(finding, brokenRules); });
    if (brokenRules.empty()) {
        std::ranges::copy(verdict.outcome.findings, std::back_inserter(failures));
    }
    return failures;
}

Findings costsOf(const Verdict& verdict, const std::vector<std::string>& brokenRules) {
    Findings costs;
    if (!brokenRules.empty()) {
        std::ranges::copy_if(verdict.findings, std::back_inserter(costs),
                             [&](const Finding& finding) { return isImplied(finding, brokenRules); });
        std::ranges::copy(verdict.outcome.findings, std::back_inserter(costs));
    }
    return costs;
}

bool hasRule(const Findings& findings, const std::string& rule) {
    return std::ranges::find(findings, rule, &Finding::rule) != findings.end();
}

}  // namespace Simulator
