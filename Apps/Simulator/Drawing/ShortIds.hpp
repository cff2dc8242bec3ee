#pragma once

#include "Apps/Simulator/Drawing/TraceIndex.hpp"

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace Simulator {

/// The first long identifier in the text; empty when there is none.
[[nodiscard]] std::string_view firstLongId(std::string_view text);

/// Shorter names for a trace's long identifiers: a UUID by as many of its first digits as tell all of them apart, four at
/// least; a moment "session-1.moment-12" as "m12", or "1.m12" where there are several sessions.
class ShortIds {
public:
    explicit ShortIds(const TraceEntries& entries);

    /// Each long identifier in the text by its short name.
    [[nodiscard]] std::string shorten(std::string_view text) const;

    /// Whether `name` means this identifier: it is all of it, a beginning of four digits or more, or the short name.
    [[nodiscard]] bool means(std::string_view name, std::string_view id) const;

private:
    void collect(std::string_view text);

    std::map<std::string, std::string, std::less<>> shortNames_;
};

}  // namespace Simulator
