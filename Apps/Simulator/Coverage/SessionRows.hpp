#pragma once

#include "Apps/Simulator/Conformance/State.hpp"
#include "Apps/Simulator/Coverage/Rows.hpp"

#include <map>
#include <string_view>

namespace Simulator {

/// Failures of sessions to begin, which say nothing: they are known by a stay that does not follow. And what is told about streams.
class SessionRows {
public:
    [[nodiscard]] static std::span<const std::string_view> names();

    explicit SessionRows(Rows& rows) : rows_(rows) {}

    void see(const Conformance::Entry& entry);
    void finish();

private:
    /// A step that may lead to a stay, until so long after it.
    struct Attempt {
        std::string_view name;
        double until = 0;
    };

    void stepped(const Conformance::Entry& entry);
    void notified(const Conformance::Entry& entry);
    void pass(double time);

    Rows& rows_;
    std::map<std::string_view, Attempt> attempts_;  // by analyst
};

}  // namespace Simulator
