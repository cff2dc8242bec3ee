#include "Apps/Simulator/Coverage/SessionRows.hpp"

#include <algorithm>
#include <array>
#include <limits>

namespace Simulator {

namespace {

using Conformance::Entry;
using Conformance::Kind;
using Conformance::Operation;

constexpr std::string_view withoutCapture = "publishing without a capture";
constexpr std::string_view hostSignedOut = "publishing while nobody is signed in";
constexpr std::string_view captureRefused = "a capture that does not publish";
constexpr std::string_view withoutId = "a live share that fails after its beginning";
constexpr std::string_view guestSignedOut = "a join while nobody is signed in";
constexpr std::string_view withoutTimeline = "a join whose timeline does not appear in time";
constexpr std::string_view stray = "a notification that tells nothing";
constexpr std::string_view otherTimeline = "a change of a timeline that is in no session";
constexpr std::string_view slow = "a silent stream that is only slow";

constexpr double longestJoin = 15;  // seconds

struct FailingStep {
    std::string_view action;
    std::string_view name;
    double patience;  // until a stay would have begun
};
constexpr std::array steps{
    FailingStep{"hostWithoutCapture", withoutCapture, 0},
    FailingStep{"hostSignedOut", hostSignedOut, 0},
    FailingStep{"hostRefused", captureRefused, 0},
    FailingStep{"joinWithoutId", withoutId, longestJoin},
    FailingStep{"joinSignedOut", guestSignedOut, longestJoin},
    FailingStep{"joinWithoutTimeline", withoutTimeline, longestJoin},
    FailingStep{"joinLate", withoutTimeline, longestJoin},
};

}  // namespace

std::span<const std::string_view> SessionRows::names() {
    static constexpr std::array all{withoutCapture,  hostSignedOut, captureRefused, withoutId, guestSignedOut,
                                    withoutTimeline, stray,         otherTimeline,  slow};
    return all;
}

void SessionRows::see(const Entry& entry) {
    if (!attempts_.empty()) {
        pass(entry.time());
    }
    if (entry.raw.kind == SimulatedKind::step) {
        stepped(entry);
    } else if (entry.kind == Kind::stay && entry.field("state") == "begins") {
        attempts_.erase(entry.raw.host);
    } else if (entry.kind == Kind::notification) {
        notified(entry);
    } else if (entry.kind == Kind::answer && entry.call != nullptr &&
               entry.call->operation == Operation::getVideo && entry.field("error").empty() &&
               entry.field("status") != "Error") {
        rows_.meet(slow);
    }
}

void SessionRows::stepped(const Entry& entry) {
    const auto* const step = std::ranges::find(steps, entry.field("action"), &FailingStep::action);
    if (step != steps.end() && entry.field("skipped").empty()) {
        attempts_[entry.raw.host] = Attempt{step->name, entry.time() + step->patience};
    }
}

void SessionRows::notified(const Entry& entry) {
    const std::string_view name = entry.field("name");
    const std::string_view timelineId = entry.field("timelineId");
    if (name == "TimelineNotifications.timelineDidRemove" && timelineId.empty()) {
        rows_.meet(stray);
    } else if (name == "TimelineNotifications.timelineDidAnyChange" &&
               std::ranges::any_of(entry.host->synchronisers,
                                   [](const auto* one) { return !one->isCancelled; }) &&
               std::ranges::none_of(entry.host->synchronisers, [&](const auto* one) {
                   return !one->isCancelled && one->stay.timelineId == timelineId;
               })) {
        rows_.meet(otherTimeline);
    }
}

/// Those whose time is over have led to nothing.
void SessionRows::pass(double time) {
    std::erase_if(attempts_, [&](const auto& attempt) {
        const bool isOver = attempt.second.until < time;
        if (isOver) {
            rows_.meet(attempt.second.name);
        }
        return isOver;
    });
}

void SessionRows::finish() { pass(std::numeric_limits<double>::infinity()); }

}  // namespace Simulator
