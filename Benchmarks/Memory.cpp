// What a moment takes of the heap for as long as its session lasts.

#include "Benchmarks/Support/Case.hpp"
#include "Benchmarks/Support/Desk.hpp"

namespace Benchmarks {
namespace {

Trial ofBytes(Trial trial) {
    trial.countsBytes = true;
    return trial;
}

/// What is given back when the synchroniser goes and the timeline stays: the bytes are below zero.
Trial heldByTheComponent(std::int64_t clips) {
    auto desk = std::make_shared<Desk>();
    desk->join(makeSession(firstMoments(clips)));
    desk->upload();
    return ofBytes(Trial(clips, [desk] { desk->dropService(); }));
}

Trial heldByTheHost(std::int64_t clips) {
    auto desk = std::make_shared<Desk>();
    return ofBytes(Trial(clips, [desk, &moments = firstMoments(clips)] {
        for (const auto& moment : moments) {
            (void)moment->appendToTimeline(desk->timelinePointer());
        }
    }));
}

const CaseGroup group({
    {"memory, of a moment/component", usualSizes(), heldByTheComponent},
    {"memory, of a moment/host", usualSizes(), heldByTheHost},
});

}  // namespace
}  // namespace Benchmarks
