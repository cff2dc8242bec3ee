#pragma once

#include "Apps/Simulator/Finding.hpp"
#include "Apps/Simulator/Outcome/Outcome.hpp"
#include "Apps/Simulator/Record.hpp"

#include <functional>
#include <string>
#include <vector>

namespace Simulator {

/// All that the checks have to say about one run.
struct Verdict {
    Findings
        findings;  ///< of what must hold whatever happens: rules "crash", "neverSettled", "leftover", "repeats", and others
    Outcome outcome;
};

/// A run that crashed or never settled has no outcome to judge.
[[nodiscard]] Verdict judge(const Record& record);

/// Any thread, several at a time.
using Judge = std::function<Verdict(const Record&)>;

/// Runs the plan and judges the run.
struct Trial {
    /// `twice`: runs it a second time, too, and compares the two traces.
    explicit Trial(const Plan& plan, bool twice = false, const Judge& judge = Simulator::judge);

    Record record;
    Verdict verdict;
};

/// The findings that are failures. With a broken rule of the host contract, the outcome's findings are what the rule costs, and so
/// are those of the findings that the broken rule itself brings about.
[[nodiscard]] Findings failuresOf(const Verdict& verdict, const std::vector<std::string>& brokenRules);

/// The other findings.
[[nodiscard]] Findings costsOf(const Verdict& verdict, const std::vector<std::string>& brokenRules);

[[nodiscard]] bool hasRule(const Findings& findings, const std::string& rule);

}  // namespace Simulator
