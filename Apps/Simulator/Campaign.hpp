#pragma once

#include "Apps/Simulator/FailureReport.hpp"
#include "Apps/Simulator/Options.hpp"
#include "Apps/Simulator/Tally.hpp"

#include <iosfwd>
#include <string>
#include <vector>

namespace Simulator {

/// Runs many seeds, shortens what fails, and says what came of it all.
class Campaign {
public:
    /// The report goes to `out`, how far it is to `progress`. All outlive it.
    Campaign(const Options& options, std::ostream& out, std::ostream& progress,
             Judge judge = Simulator::judge);

    /// False when something failed. Throws `std::runtime_error` when a file cannot be written.
    [[nodiscard]] bool run();

private:
    /// A seed that was the first to break a rule.
    struct Failure {
        std::uint64_t seed;
        std::string rule;
        Findings findings;
    };

    [[nodiscard]] bool take(const SeedResult& result);
    void tellProgress(bool isLast);
    [[nodiscard]] double wallTime() const;
    void reportFailures();
    [[nodiscard]] std::string reportOf(const Failure& failure, const Shortening& shortening) const;
    [[nodiscard]] std::string reportOf(const std::string& lossClass, const Tally::Met& met,
                                       const Shortening& shortening) const;
    void saveClasses();
    [[nodiscard]] bool checkCoverage();

    const Options& options_;
    std::ostream& out_;
    std::ostream& progress_;
    const std::size_t jobs_;
    const std::size_t tries_;
    const Judge judge_;
    const double start_;
    double lastProgress_ = 0;
    Tally tally_;
    std::vector<Failure> failures_;
};

}  // namespace Simulator
