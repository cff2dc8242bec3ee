#pragma once

#include "Apps/Simulator/Drawing/TraceIndex.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace Simulator {

/// The vertical bars of one analyst's column: one for each block and each upload that are under way at the same time. A block's bar is
/// single, an upload's double.
class Bars {
public:
    /// Which part of a bar stands in a line.
    enum class Part : std::uint8_t { start, middle, end, whole };

    /// Gives the bar a place, which stays its own up to `close`.
    void open(const TraceSpan& span);
    void close(const TraceSpan& span);

    /// How many were open at the same time at most.
    [[nodiscard]] std::size_t places() const { return places_.size(); }

    /// The bars as they stand in a line; `part` is that of the bar of `span`.
    [[nodiscard]] std::string line(const TraceSpan* span = nullptr, Part part = Part::middle) const;

    /// The same where nothing happens.
    [[nodiscard]] std::string idleLine() const;

private:
    std::vector<const TraceSpan*> places_;
};

}  // namespace Simulator
