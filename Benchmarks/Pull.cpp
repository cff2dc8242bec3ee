// The pull of a whole session: the first one, one that changes nothing, one that deletes.

#include "Benchmarks/Support/Case.hpp"
#include "Benchmarks/Support/Desk.hpp"

#include <optional>

namespace Benchmarks {
namespace {

struct Tenths {
    Moments kept;
    Moments deleted;  ///< every tenth
};

Tenths tenths(const Moments& moments) {
    Tenths parts;
    for (std::size_t index = 0; index < moments.size(); ++index) {
        (index % 10 == 0 ? parts.deleted : parts.kept).push_back(moments[index]);
    }
    return parts;
}

Trial firstPull(std::int64_t clips) {
    auto desk = std::make_shared<Desk>();
    return Trial(
        clips,
        [desk, session = makeSession(firstMoments(clips))]() mutable { desk->join(std::move(session)); },
        executionOf(desk));
}

/// Of the fetched session, too, the floor lets go at its end, as the component does.
Trial firstPullFloor(std::int64_t clips) {
    auto desk = std::make_shared<Desk>();
    desk->makeRoom(clips);
    return Trial(clips, [desk, session = std::optional(makeSession(firstMoments(clips)))]() mutable {
        for (const auto& moment : *session->moments) {
            const auto& item = *static_cast<const FetchedMoment&>(*moment).item();
            desk->remember(item.identifier(), desk->append(item)->uniqueId());
        }
        session.reset();
    });
}

Trial laterPull(std::int64_t clips, const Moments& moments) {
    auto desk = joinedDesk(firstMoments(clips));
    return Trial(
        clips, [desk, session = makeSession(moments)]() mutable { desk->pull(std::move(session)); },
        executionOf(desk));
}

/// Every moment that the session holds is written to its clip, as the component does it; then those that it does not hold go.
Trial laterPullFloor(std::int64_t clips, const Moments& moments, const Moments& deleted) {
    auto desk = std::make_shared<Desk>();
    desk->appendAll(firstMoments(clips));
    desk->makeRoom(clips);
    return Trial(clips, [desk, places = desk->placesOf(moments), deleted, gone = desk->placesOf(deleted),
                         session = std::optional(makeSession(moments))]() mutable {
        for (std::size_t index = 0; index < places.size(); ++index) {
            const auto& item = *static_cast<const FetchedMoment&>(*session->moments->at(index)).item();
            desk->update(item, places[index]);
            desk->remember(item.identifier(), places[index].instanceId);
        }
        for (std::size_t index = 0; index < gone.size(); ++index) {
            desk->remove(gone[index]);
            desk->remember(deleted[index]->identifier(), gone[index].instanceId);
        }
        session.reset();
    });
}

const CaseGroup group({
    {"pull, first/component", usualSizes(), firstPull, Counted::wholeAndJobs},
    {"pull, first/floor", usualSizes(), firstPullFloor},
    {"pull, nothing new/component", usualSizes(),
     [](std::int64_t clips) { return laterPull(clips, firstMoments(clips)); }, Counted::wholeAndJobs},
    {"pull, nothing new/floor", usualSizes(),
     [](std::int64_t clips) { return laterPullFloor(clips, firstMoments(clips), {}); }},
    {"pull, a tenth deleted/component", usualSizes(),
     [](std::int64_t clips) { return laterPull(clips, tenths(firstMoments(clips)).kept); },
     Counted::wholeAndJobs},
    {"pull, a tenth deleted/floor", usualSizes(),
     [](std::int64_t clips) {
         const Tenths parts = tenths(firstMoments(clips));
         return laterPullFloor(clips, parts.kept, parts.deleted);
     }},
});

}  // namespace
}  // namespace Benchmarks
