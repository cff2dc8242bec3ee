#pragma once

#include "Apps/Simulator/Conformance/Entry.hpp"

#include <cstdint>
#include <string_view>

namespace Simulator::Conformance {

/// What the system says in its log.
struct KnownLine {
    enum class Ending : std::uint8_t {
        none,     ///< the line is just this
        follows,  ///< something follows: an error, identifiers, a number
    };
    enum class Reason : std::uint8_t {
        any,
        failure,  ///< the answer to a call: the line must follow it, and stands nowhere else
    };

    Kind kind;
    std::string_view text;
    Ending ending = Ending::none;
    Reason reason = Reason::any;
};

/// Null for a line that the system does not have.
[[nodiscard]] const KnownLine* knownLine(Kind kind, std::string_view message);

}  // namespace Simulator::Conformance
