#include "Apps/CodingDesk/Arrivals.hpp"

#include "Apps/CodingDesk/Palette.hpp"
#include "Apps/CodingDesk/Text.hpp"

#include <algorithm>
#include <cmath>

namespace CodingDesk {

namespace Sight {

std::string clip(const std::string& row, double start, double end) {
    return "clip " + decimal(start, 6) + ' ' + decimal(end, 6) + ' ' + row;
}

std::string clipGone(const std::string& row, double start, double end) {
    return "no " + clip(row, start, end);
}

std::string row(const std::string& name) { return "row " + name; }

std::string rowColor(const std::string& name, Base::Color color) {
    return "row " + hexOf(color) + ' ' + name;
}

}  // namespace Sight

void Arrivals::edited(AnalystIndex by, const std::string& sight, double time) {
    const std::scoped_lock lock(mutex_);
    edits_.try_emplace(sight, EditRecord{by, time, std::vector<std::optional<double>>(analysts_)});
}

void Arrivals::seen(AnalystIndex at, const std::string& sight, double time) {
    const std::scoped_lock lock(mutex_);
    const auto found = edits_.find(sight);
    if (found == edits_.end() || found->second.by == at || found->second.delays[at]) {
        return;
    }
    found->second.delays[at] = time - found->second.time;
}

ArrivalSummary Arrivals::summary() const {
    const std::scoped_lock lock(mutex_);
    ArrivalSummary summary;
    summary.edits = edits_.size();
    std::vector<double> delays;
    for (const auto& [sight, edit] : edits_) {
        for (AnalystIndex at = 0; at < analysts_; ++at) {
            const auto delay = edit.delays[at];
            if (delay && (delays.empty() || *delay > summary.largest)) {
                summary.largest = *delay;
                summary.largestBy = edit.by;
                summary.largestAt = at;
            }
            if (delay) {
                delays.push_back(*delay);
            } else if (at != edit.by) {
                ++summary.missing;
            }
        }
    }
    summary.arrivals = delays.size();
    if (delays.empty()) {
        return summary;
    }
    std::ranges::sort(delays);
    const auto rank = [&](double share) {
        const auto position = std::ceil(share * static_cast<double>(delays.size()));
        return delays[static_cast<std::size_t>(std::max(position, 1.0)) - 1];
    };
    summary.median = rank(0.5);
    summary.percentile95 = rank(0.95);
    return summary;
}

}  // namespace CodingDesk
