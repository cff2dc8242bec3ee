#pragma once

#include "Apps/Simulator/Drawing/TraceIndex.hpp"

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace Simulator {

/// What of a trace is drawn, and how wide.
struct DrawingOptions {
    std::optional<double> from;         ///< seconds
    std::optional<double> to;           ///< seconds
    std::vector<std::string> analysts;  ///< none: all
    std::optional<std::string>
        about;                ///< a moment, clip or row by its id, the beginning of it, or its short name
    bool everything = false;  ///< with the log's information lines and the notifications
    std::size_t width = 160;  ///< in columns; more where there are many analysts
};

/// Draws the trace as one timeline from top to bottom, with a column for each analyst. Throws `std::invalid_argument` when
/// an analyst or an id does not occur in it.
void draw(std::ostream& stream, const TraceEntries& entries, const DrawingOptions& options);

}  // namespace Simulator
