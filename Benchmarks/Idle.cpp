// What happens all the time and is to cost nothing, however much a timeline holds.

#include "Benchmarks/Support/Case.hpp"
#include "Benchmarks/Support/Desk.hpp"

namespace Benchmarks {
namespace {

constexpr std::int64_t repetitions = 10'000;

using RemoteCoding::Notification;

Trial notifications(const std::shared_ptr<Desk>& desk,
                    const std::shared_ptr<ReferenceHost::Timeline>& about) {
    const Notification notification(RemoteCoding::TimelineNotifications::timelineDidAnyChange, about);
    // The first one of ours starts the interval.
    desk->notifications().post(notification);
    return Trial(repetitions, [desk, notification] {
        for (std::int64_t turn = 0; turn < repetitions; ++turn) {
            desk->notifications().post(notification);
        }
    });
}

Trial ours(std::int64_t clips) {
    auto desk = joinedDesk(firstMoments(clips));
    return notifications(desk, desk->timelinePointer());
}

Trial notOurs(std::int64_t clips) {
    const auto desk = joinedDesk(firstMoments(clips));
    ReferenceHost::Timeline::Options options;
    options.uniqueId = "5d2c1b0a-9f8e-4d7c-8b6a-5e4d3c2b1a09";
    return notifications(desk, ReferenceHost::Timeline::make(std::move(options)));
}

Trial nothingToDo(std::int64_t clips) {
    const auto desk = joinedDesk(firstMoments(clips));
    return Trial(repetitions, [desk] {
        for (std::int64_t turn = 0; turn < repetitions; ++turn) {
            desk->synchroniser().upload();
        }
    });
}

/// As above, with its block, from the throttler's call to the end.
Trial blockWithNothingToDo(std::int64_t clips) {
    const auto desk = joinedDesk(firstMoments(clips));
    return Trial(repetitions, [desk] {
        for (std::int64_t turn = 0; turn < repetitions; ++turn) {
            desk->synchroniser().uploadInABlock();
        }
    });
}

const CaseGroup group({
    {"idle, notification of another timeline/component", usualSizes(), notOurs},
    {"idle, notification inside the interval/component", usualSizes(), ours},
    {"idle, pass with nothing to do/component", usualSizes(), nothingToDo},
    {"idle, block with nothing to do/component", usualSizes(), blockWithNothingToDo},
});

}  // namespace
}  // namespace Benchmarks
