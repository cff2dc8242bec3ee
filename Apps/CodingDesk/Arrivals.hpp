#pragma once

#include "Apps/CodingDesk/ReplayPlan.hpp"

#include <cstddef>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace CodingDesk {

/// What an edit makes visible on a timeline, as a text that is the same wherever it is seen. Clips are told apart by their
/// row and times.
namespace Sight {
[[nodiscard]] std::string clip(const std::string& row, double start, double end);
[[nodiscard]] std::string clipGone(const std::string& row, double start, double end);
[[nodiscard]] std::string row(const std::string& name);
[[nodiscard]] std::string rowColor(const std::string& name, Base::Color color);
}  // namespace Sight

/// How long edits took to be seen at the others. All times in seconds; 0 when nothing arrived.
struct ArrivalSummary {
    std::size_t edits = 0;
    std::size_t arrivals = 0;
    std::size_t missing = 0;  ///< never seen: overtaken by a later edit of the same thing, or lost
    double median = 0;
    double percentile95 = 0;  ///< nearest rank
    double largest = 0;
    AnalystIndex largestBy = 0;
    AnalystIndex largestAt = 0;
};

/// Measures from an edit to the moment when each of the others first sees it. Any thread.
class Arrivals {
public:
    explicit Arrivals(std::size_t analysts) : analysts_(analysts) {}

    /// Said before the edit is made. What is already on its way is measured from its first edit.
    void edited(AnalystIndex by, const std::string& sight, double time);

    /// Only the first time counts; what nobody has edited is ignored, and so is what its own editor sees.
    void seen(AnalystIndex at, const std::string& sight, double time);

    [[nodiscard]] ArrivalSummary summary() const;

private:
    struct EditRecord {
        AnalystIndex by = 0;
        double time = 0;
        std::vector<std::optional<double>> delays;  ///< by analyst
    };

    const std::size_t analysts_;
    mutable std::mutex mutex_;  // guards the map
    std::map<std::string, EditRecord> edits_;
};

}  // namespace CodingDesk
