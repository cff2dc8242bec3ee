#pragma once

#include "Apps/CodingDesk/Arrivals.hpp"
#include "Apps/CodingDesk/Comparison.hpp"
#include "Apps/CodingDesk/Console.hpp"

#include <cstddef>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

namespace CodingDesk {

/// One analyst's timeline at the end.
struct AnalystResult {
    std::string name;
    MatchState state;
    std::map<std::string, std::size_t>
        tagged;  ///< by row name: how many of the cloud's clips this analyst tagged
};

/// Each row of the timeline as a strip from the start of the match to `matchEnd`.
void writeStrips(std::ostream& out, const AnalystResult& analyst, double matchEnd, const ConsoleLook& look);

/// One line a row: the clips on each analyst's timeline, how many of them that analyst tagged, and what the cloud holds.
void writeCounts(std::ostream& out, const std::vector<AnalystResult>& analysts, const MatchState& remote);

void writeArrivals(std::ostream& out, const ArrivalSummary& summary,
                   const std::vector<AnalystResult>& analysts);

}  // namespace CodingDesk
