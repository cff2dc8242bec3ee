#pragma once

#include "Apps/Simulator/Coverage/Coverage.hpp"
#include "Apps/Simulator/Verdict.hpp"

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

namespace Simulator {

/// What is kept of the run of one seed.
struct SeedResult {
    SeedResult(std::uint64_t seed_, const Trial& trial);

    std::uint64_t seed;
    std::size_t analysts;
    std::size_t operations;
    Base::Seconds duration;  ///< on the virtual clock
    Findings failures;
    Findings costs;  ///< of the rules that the hosts break
    std::vector<ExplainedLoss> losses;
    Coverage coverage;
};

/// The sums over many runs.
class Tally {
public:
    /// Something that was met in some seeds.
    struct Met {
        std::size_t times = 0;
        std::size_t seeds = 0;
        std::uint64_t smallestSeed = 0;
        std::string example;  ///< in words, from that seed
    };

    void add(const SeedResult& result);

    [[nodiscard]] std::size_t seeds() const { return seeds_; }
    [[nodiscard]] std::size_t failingSeeds() const { return failingSeeds_; }
    [[nodiscard]] const std::map<std::string, Met>& losses() const { return losses_; }
    [[nodiscard]] const Coverage& coverage() const { return coverage_; }

    /// `wallTime`: in seconds.
    void write(std::ostream& stream, double wallTime) const;

private:
    struct Named {
        const std::string& name;
        const std::string& what;
    };
    static void add(std::map<std::string, Met>& met, std::uint64_t seed,
                    const std::vector<Named>& occurrences);
    void writeMet(std::ostream& stream, const std::map<std::string, Met>& met) const;

    std::size_t seeds_ = 0;
    std::size_t failingSeeds_ = 0;
    std::size_t analysts_ = 0;
    std::size_t operations_ = 0;
    Base::Seconds duration_{0};
    std::map<std::string, Met> failures_;
    std::map<std::string, Met> costs_;
    std::map<std::string, Met> losses_;
    Coverage coverage_;
};

}  // namespace Simulator
