#include "Apps/Simulator/Campaign.hpp"

#include "Apps/Simulator/InOrder.hpp"
#include "Apps/Simulator/Runner.hpp"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <filesystem>
#include <ostream>
#include <sstream>
#include <thread>
#include <utility>

namespace Simulator {

namespace {

constexpr std::size_t usualTries = 800;
constexpr std::uint64_t seedsPerRepetition = 50;  // each such seed is run twice
constexpr std::size_t failingSeedsPerFailure =
    20;  // after that many that break nothing new, the search ends as well
constexpr double secondsPerProgress = 5;

double secondsNow() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

bool isRepeated(std::uint64_t seed) { return seed % seedsPerRepetition == 0; }

/// A name as a part of a file's.
std::string fileNameOf(std::string name) {
    std::ranges::replace_if(
        name,
        [](unsigned char character) {
            return !std::isalnum(character) && character != '-' && character != '_';
        },
        '-');
    return name;
}

}  // namespace

Campaign::Campaign(const Options& options, std::ostream& out, std::ostream& progress, Judge judge)
    : options_(options),
      out_(out),
      progress_(progress),
      jobs_(options.jobs != 0 ? options.jobs : std::max(1U, std::thread::hardware_concurrency())),
      tries_(options.tries.value_or(usualTries)),
      judge_(std::move(judge)),
      start_(secondsNow()) {}

bool Campaign::run() {
    inOrder<SeedResult>(
        options_.numberOfSeeds(), jobs_,
        [this](std::size_t number) {
            const std::uint64_t seed = options_.firstSeed + number;
            return SeedResult(seed, Trial(makePlan(seed, options_.plan), isRepeated(seed), judge_));
        },
        [this](const SeedResult& result) { return take(result); });
    const double time = wallTime();
    tellProgress(true);
    reportFailures();
    if (options_.classesFolder) {
        saveClasses();
    }
    const bool isCovered = checkCoverage();
    tally_.write(out_, time);
    return tally_.failingSeeds() == 0 && isCovered;
}

bool Campaign::take(const SeedResult& result) {
    tally_.add(result);
    for (const Finding& finding : result.failures) {
        if (options_.list) {
            out_ << "seed " << result.seed << ' ' << finding.rule << ": " << finding.what << '\n';
        }
        if (std::ranges::find(failures_, finding.rule, &Failure::rule) == failures_.end() &&
            failures_.size() < options_.failures) {
            failures_.push_back({result.seed, finding.rule, result.failures});
        }
    }
    tellProgress(false);
    const bool isTime = options_.minutes && wallTime() >= *options_.minutes * 60;
    return !isTime && failures_.size() < options_.failures &&
           tally_.failingSeeds() < options_.failures * failingSeedsPerFailure;
}

double Campaign::wallTime() const { return secondsNow() - start_; }

void Campaign::tellProgress(bool isLast) {
    const double time = wallTime();
    if (!isLast && time - lastProgress_ < secondsPerProgress) {
        return;
    }
    lastProgress_ = time;
    progress_ << tally_.seeds() << " seeds, " << tally_.failingSeeds() << " failed, "
              << static_cast<long>(static_cast<double>(tally_.seeds()) / std::max(time, 1e-9)) << " a second"
              << std::endl;
}

void Campaign::reportFailures() {
    if (failures_.empty()) {
        return;
    }
    const Shortening shortening{tries_, folderOrTemporary(options_.plansFolder), judge_};
    progress_ << "Shortening the plans of what failed ..." << std::endl;
    inOrder<std::string>(
        failures_.size(), jobs_, [&](std::size_t number) { return reportOf(failures_[number], shortening); },
        [this](const std::string& report) {
            out_ << report << '\n' << std::flush;
            return true;
        });
}

std::string Campaign::reportOf(const Failure& failure, const Shortening& shortening) const {
    std::ostringstream report;
    const Plan plan = makePlan(failure.seed, options_.plan);
    report << "Seed " << failure.seed << " breaks \"" << failure.rule << "\" (" << plan.analysts
           << " analysts, " << plan.steps.size() << " steps):\n";
    Findings findings = failure.findings;
    std::ranges::sort(findings, [&](const Finding& one, const Finding& other) {
        return std::pair(one.rule != failure.rule, one.entry) <
               std::pair(other.rule != failure.rule, other.entry);
    });
    writeFindings(report, findings, ::Simulator::run(plan));
    report << "  again:   " << commandOf(failure.seed, options_.plan) << '\n';
    writeShortest(report, plan, failure.rule, shortening,
                  "seed-" + std::to_string(failure.seed) + '-' + fileNameOf(failure.rule));
    return report.str();
}

void Campaign::saveClasses() {
    const Shortening shortening{tries_, folderOrTemporary(options_.classesFolder), judge_};
    progress_ << "Shortening a plan for each class of loss ..." << std::endl;
    const std::vector<std::pair<std::string, Tally::Met>> classes(tally_.losses().begin(),
                                                                  tally_.losses().end());
    inOrder<std::string>(
        classes.size(), jobs_,
        [&](std::size_t number) {
            return reportOf(classes[number].first, classes[number].second, shortening);
        },
        [this](const std::string& report) {
            out_ << report << '\n' << std::flush;
            return true;
        });
}

std::string Campaign::reportOf(const std::string& lossClass, const Tally::Met& met,
                               const Shortening& shortening) const {
    const auto isShown = [&](const Trial& trial) {
        const auto& losses = trial.verdict.outcome.explained;
        return failuresOf(trial.verdict, trial.record.plan.brokenRules).empty() &&
               std::ranges::find(losses, lossClass, &ExplainedLoss::lossClass) != losses.end();
    };
    const std::string about = "shows \"" + lossClass + "\"; from seed " + std::to_string(met.smallestSeed);
    const ShortPlan shortened = shortenAndSave(makePlan(met.smallestSeed, options_.plan), false, isShown,
                                               shortening, fileNameOf(lossClass), about);
    std::ostringstream report;
    report << '"' << lossClass << "\" in " << shortened.plan.steps.size() << " steps, after "
           << shortened.tries << " tries:\n";
    const Trial trial(shortened.plan, false, judge_);
    std::string what;
    for (const ExplainedLoss& loss : trial.verdict.outcome.explained) {
        report << "  " << loss.lossClass << ": " << loss.what << '\n';
        what = what.empty() && loss.lossClass == lossClass ? loss.what : what;
    }
    writeShortPlan(report, shortened, what);
    return report.str();
}

bool Campaign::checkCoverage() {
    if (options_.coverage) {
        tally_.coverage().write(out_);
    }
    const auto missing =
        options_.requireCoverage ? tally_.coverage().neverTaken() : std::vector<std::string>();
    for (const std::string& name : missing) {
        out_ << "FAILED: never exercised: " << name << '\n';
    }
    return missing.empty();
}

}  // namespace Simulator
