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
    auto desk = joinedDesk(firstMoments(clips));
    return ofBytes(Trial(clips, [desk] { desk->dropSynchroniser(); }));
}

/// The same after events, one by one, have made 40,000 clips so many: the indexes, which keep a quarter of their slots free, have just
/// grown then, and are emptiest.
Trial heldAfterEvents(std::int64_t clips) {
    constexpr std::int64_t atFirst = 40'000;
    auto desk = joinedDesk(makeMoments(0, atFirst));
    for (const auto& moment : makeMoments(atFirst, clips - atFirst)) {
        desk->synchroniser().receive(RemoteCoding::TaggingSessionChangeType::momentsAdded,
                                     RemoteCoding::ChangedTaggingSession(Moments{moment}, std::nullopt));
    }
    return ofBytes(Trial(clips, [desk] { desk->dropSynchroniser(); }));
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
    {"memory, of a moment/component", usualSizes(), heldByTheComponent, Counted::nothing},
    {"memory, after events/component", {49'200, 98'400, 196'700}, heldAfterEvents, Counted::nothing},
    {"memory, of a moment/host", usualSizes(), heldByTheHost, Counted::nothing},
});

}  // namespace
}  // namespace Benchmarks
