// Single events of the subscription, on a timeline that already holds many clips.

#include "Benchmarks/Support/Case.hpp"
#include "Benchmarks/Support/Desk.hpp"

#include <algorithm>

namespace Benchmarks {
namespace {

using Type = RemoteCoding::TaggingSessionChangeType;

/// Fewer than the timeline holds, so that it stays of its size.
std::int64_t eventsOn(std::int64_t clips) { return std::min<std::int64_t>(clips / 10, 1'000); }

/// Moments all over the timeline, each once, not in the order in which they came.
Moments someOf(const Moments& moments, std::int64_t count) {
    constexpr std::size_t stride = 7'919;  // has no divisor in common with the sizes
    Moments some;
    for (std::int64_t index = 0; index < count; ++index) {
        some.push_back(moments[static_cast<std::size_t>(index) * stride % moments.size()]);
    }
    return some;
}

Moments shifted(const Moments& moments) {
    Moments changed;
    for (const auto& moment : moments) {
        changed.push_back(static_cast<const PlainMoment&>(*moment).shifted());
    }
    return changed;
}

Moments momentsFor(Type type, std::int64_t clips) {
    const auto count = eventsOn(clips);
    if (type == Type::momentsAdded) {
        return makeMoments(clips, count);
    }
    const Moments some = someOf(firstMoments(clips), count);
    return type == Type::momentsUpdated ? shifted(some) : some;
}

/// Each event has one moment.
Trial events(Type type, std::int64_t clips) {
    auto desk = std::make_shared<Desk>();
    desk->join(makeSession(firstMoments(clips)));
    desk->upload();
    std::vector<RemoteCoding::ChangedTaggingSession> changes;
    for (const auto& moment : momentsFor(type, clips)) {
        changes.emplace_back(Moments{moment}, std::nullopt);
    }
    return Trial(std::ssize(changes), [desk, type, changes] {
        for (const auto& change : changes) {
            desk->service().handleTaggingSessionUpdate(type, change);
        }
    });
}

Trial eventsFloor(Type type, std::int64_t clips) {
    auto desk = std::make_shared<Desk>();
    desk->appendDirectly(firstMoments(clips));
    const Moments moments = momentsFor(type, clips);
    return Trial(std::ssize(moments), [desk, type, moments] {
        if (type == Type::momentsAdded) {
            desk->appendDirectly(moments);
            return;
        }
        for (const auto& moment : moments) {
            const auto found = desk->table().find(moment->identifier());
            const auto row = desk->timeline().findInstance(found->second)->row();
            if (type == Type::momentsUpdated) {
                (void)moment->updateOnTimeline(desk->timelinePointer(), found->second, row->uniqueId());
            } else {
                desk->timeline().codingTarget()->removeInstanceWithRowId(row->uniqueId(), found->second);
                desk->table().erase(found);
            }
        }
    });
}

std::vector<Case> cases() {
    std::vector<Case> all;
    for (const auto& [name, type] : {std::pair("event, one added", Type::momentsAdded),
                                     std::pair("event, one updated", Type::momentsUpdated),
                                     std::pair("event, one deleted", Type::momentsDeleted)}) {
        all.push_back({std::string(name) + "/component", usualSizes(),
                       [kind = type](std::int64_t clips) { return events(kind, clips); }});
        all.push_back({std::string(name) + "/floor", usualSizes(),
                       [kind = type](std::int64_t clips) { return eventsFloor(kind, clips); }});
    }
    return all;
}

const CaseGroup group(cases());

}  // namespace
}  // namespace Benchmarks
