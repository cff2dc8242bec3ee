#pragma once

#include "Apps/Simulator/Conformance/Entry.hpp"
#include "Apps/Simulator/Coverage/Rows.hpp"

namespace Simulator {

/// Failures with a line of their own in the log.
class LineRows {
public:
    [[nodiscard]] static std::span<const std::string_view> names();

    explicit LineRows(Rows& rows) : rows_(rows) {}

    void see(const Conformance::Entry& entry);

private:
    Rows& rows_;
};

}  // namespace Simulator
