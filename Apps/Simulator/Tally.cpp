#include "Apps/Simulator/Tally.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ostream>
#include <set>

namespace Simulator {

namespace {

Coverage coverageOf(const Trial& trial) {
    Coverage coverage;
    coverage.add(trial.record, trial.verdict.outcome);
    return coverage;
}

std::string decimal(double number, int digits) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.*f", digits, number);
    return text.data();
}

std::string leftAligned(std::string text, std::size_t columns) {
    text.append(columns - std::min(columns, text.size()), ' ');
    return text;
}

}  // namespace

SeedResult::SeedResult(std::uint64_t seed_, const Trial& trial)
    : seed(seed_),
      analysts(trial.record.plan.analysts),
      operations(trial.record.plan.steps.size()),
      duration(trial.record.trace.empty() ? Base::Seconds(0) : trial.record.trace.back().time),
      failures(failuresOf(trial.verdict, trial.record.plan.brokenRules)),
      costs(costsOf(trial.verdict, trial.record.plan.brokenRules)),
      losses(trial.verdict.outcome.explained),
      coverage(coverageOf(trial)) {}

void Tally::add(const SeedResult& result) {
    ++seeds_;
    failingSeeds_ += result.failures.empty() ? 0U : 1U;
    analysts_ += result.analysts;
    operations_ += result.operations;
    duration_ += result.duration;
    const auto named = [](const auto& items, auto name) {
        std::vector<Named> occurrences;
        occurrences.reserve(items.size());
        for (const auto& item : items) {
            occurrences.push_back({item.*name, item.what});
        }
        return occurrences;
    };
    add(failures_, result.seed, named(result.failures, &Finding::rule));
    add(costs_, result.seed, named(result.costs, &Finding::rule));
    add(losses_, result.seed, named(result.losses, &ExplainedLoss::lossClass));
    coverage_.add(result.coverage);
}

void Tally::add(std::map<std::string, Met>& met, std::uint64_t seed, const std::vector<Named>& occurrences) {
    std::set<std::string_view> seen;
    for (const auto& [name, what] : occurrences) {
        Met& one = met[name];
        if (one.seeds == 0) {
            one.smallestSeed = seed;  // seeds come in their order
            one.example = what;
        }
        ++one.times;
        one.seeds += seen.insert(name).second ? 1U : 0U;
    }
}

void Tally::write(std::ostream& stream, double wallTime) const {
    stream << seeds_ << " seeds, " << operations_ << " steps of " << analysts_ << " analysts, "
           << decimal(duration_.count() / 3600, 1) << " hours on their clocks, " << decimal(wallTime, 1)
           << " s on ours: " << decimal(static_cast<double>(seeds_) / std::max(wallTime, 1e-9), 1)
           << " seeds a second.\n";
    if (!costs_.empty()) {
        stream << "What the broken rules cost:\n";
        writeMet(stream, costs_);
    }
    stream << (losses_.empty() ? "No known loss was met.\n" : "Losses that are known and explained:\n");
    writeMet(stream, losses_);
    if (failingSeeds_ > 0) {
        stream << "FAILED in " << failingSeeds_ << (failingSeeds_ == 1 ? " seed:\n" : " seeds:\n");
        writeMet(stream, failures_);
    }
}

void Tally::writeMet(std::ostream& stream, const std::map<std::string, Met>& met) const {
    std::size_t columns = 0;
    for (const auto& [name, one] : met) {
        columns = std::max(columns, name.size());
    }
    for (const auto& [name, one] : met) {
        stream << "  " << leftAligned(name, columns) << ' '
               << std::string(8 - std::min<std::size_t>(8, std::to_string(one.times).size()), ' ')
               << one.times << " in " << one.seeds << (one.seeds == 1 ? " seed" : " seeds")
               << ", first in seed " << one.smallestSeed << ": " << one.example << '\n';
    }
}

}  // namespace Simulator
