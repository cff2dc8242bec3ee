#pragma once

#include "Apps/Simulator/Drawing/Drawing.hpp"
#include "Apps/Simulator/Plan.hpp"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace Simulator {

/// What the user asked for on the command line.
struct Options {
    // Which runs.
    std::uint64_t firstSeed = 1;
    std::optional<std::size_t> seeds;
    PlanOptions plan;
    std::optional<std::string> planFile;  ///< instead of seeds

    // How.
    std::size_t jobs = 0;              ///< threads; 0: as many as the machine has cores
    std::optional<double> minutes;     ///< no further seed is begun after that long
    std::size_t failures = 3;          ///< rules to be found broken before the search ends
    std::optional<std::size_t> tries;  ///< runs that may be spent on shortening one plan

    // What is written besides the report.
    std::optional<std::string> saveFile;     ///< the plan of the only run
    std::optional<std::string> traceFile;    ///< the trace of the only run
    std::optional<std::string> plansFolder;  ///< for the shortened plans of failures; absent: a temporary one
    std::optional<std::string> classesFolder;  ///< for one shortened plan of each loss class
    bool list = false;  ///< every finding of every seed, on a line each, as soon as it is there
    bool coverage = false;
    bool requireCoverage = false;

    /// As many seeds as were asked for; without a number, as fit into the time, or a hundred.
    [[nodiscard]] std::size_t numberOfSeeds() const {
        return seeds.value_or(minutes ? std::numeric_limits<std::size_t>::max() : 100);
    }

    // Drawing a trace instead of running anything.
    std::optional<std::string> drawFile;
    DrawingOptions drawing;

    bool help = false;
};

/// A command line that cannot be followed: one sentence that says which option and why.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// `arguments`: without the program's name. Throws `UsageError`.
[[nodiscard]] Options parseOptions(const std::vector<std::string>& arguments);

/// The options with which the plan of a seed is drawn, as they would be typed.
[[nodiscard]] std::string planArguments(const PlanOptions& options);

[[nodiscard]] std::string helpText();

}  // namespace Simulator
