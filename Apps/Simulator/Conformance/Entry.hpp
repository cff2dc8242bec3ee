#pragma once

#include "ReferenceHost/Trace.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Simulator::Conformance {

struct Call;
struct HostState;
struct Subscription;
struct Synchroniser;

/// The kinds of entries that the checks tell apart.
enum class Kind : std::uint8_t {
    call,
    answer,
    effect,
    subscription,
    delivery,
    info,
    warning,
    error,
    usage,
    blockStart,
    blockEnd,
    count,
    uploadStart,
    uploadEnd,
    wrongThread,
    observerFailed,
    notification,
    alert,
    alertAnswer,
    edit,
    fault,
    stay,
    stage,
    other,
};

[[nodiscard]] Kind kindOf(std::string_view text);

/// 0 for what is no number.
[[nodiscard]] std::int64_t numberIn(std::string_view text);

/// Whether two moments of virtual time are one, but for rounding.
[[nodiscard]] inline bool isSameMoment(double left, double right) {
    const double difference = left - right;
    return difference < 1e-6 && difference > -1e-6;
}

/// One entry of the trace, and what it is known to be about.
struct Entry {
    Entry(const ReferenceHost::TraceEntry& raw_, std::size_t index_, Kind kind_)
        : raw(raw_), index(index_), kind(kind_) {}

    [[nodiscard]] std::string_view field(std::string_view name) const { return raw.field(name); }
    [[nodiscard]] std::int64_t number(std::string_view name) const { return numberIn(raw.field(name)); }
    [[nodiscard]] double time() const { return raw.time.count(); }
    /// Of a line of the log.
    [[nodiscard]] std::string_view message() const { return raw.field("message"); }

    const ReferenceHost::TraceEntry& raw;
    std::size_t index;
    Kind kind;
    HostState* host = nullptr;             ///< null: of nobody
    Synchroniser* synchroniser = nullptr;  ///< null: of none, or nobody can tell of which
    Call* call = nullptr;                  ///< of a call of the cloud, its effect and its answer
    Subscription* subscription = nullptr;  ///< of the call that opens one, its states, its deliveries
};

}  // namespace Simulator::Conformance
