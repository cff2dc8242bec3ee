// Single events of the subscription, on a timeline that already holds many clips.

#include "Benchmarks/Support/Case.hpp"
#include "Benchmarks/Support/Desk.hpp"

#include <string>
#include <utility>

namespace Benchmarks {
namespace {

using Type = RemoteCoding::TaggingSessionChangeType;

/// So many that the timeline stays of its size; the same share at each size, so that what grows now and then has its part.
std::int64_t eventsOn(std::int64_t clips) { return clips / 10; }

/// So many that all that grows with the moments has grown at least once.
std::int64_t eventsToGrowBy(Type type, std::int64_t clips) {
    return type == Type::momentsAdded ? clips : clips / 2;
}

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

Moments momentsFor(Type type, std::int64_t clips, std::int64_t count) {
    if (type == Type::momentsAdded) {
        return makeMoments(clips, count);
    }
    const Moments some = someOf(firstMoments(clips), count);
    return type == Type::momentsUpdated ? shifted(some) : some;
}

using Events = std::vector<RemoteCoding::ChangedTaggingSession>;

/// Each event has one moment.
Events eventsWith(const Moments& moments) {
    Events events;
    for (const auto& moment : moments) {
        events.emplace_back(Moments{moment}, std::nullopt);
    }
    return events;
}

Trial events(Type type, std::int64_t clips) {
    auto desk = joinedDesk(firstMoments(clips));
    const Events changes = eventsWith(momentsFor(type, clips, eventsOn(clips)));
    return Trial(std::ssize(changes), [desk, type, changes] {
        for (const auto& change : changes) {
            desk->synchroniser().receive(type, change);
        }
    });
}

/// What a floor needs to know of each moment. The clips that are to be added have no place yet.
struct Edits {
    Type type;
    Moments moments;
    std::vector<Place> places;

    void make(Desk& desk, std::size_t index) const {
        const auto& moment = *moments[index];
        if (type == Type::momentsAdded) {
            desk.remember(moment.identifier(), desk.append(moment)->uniqueId());
            return;
        }
        const Place& place = places[index];
        if (type == Type::momentsUpdated) {
            desk.update(moment, place);
        } else {
            desk.remove(place);
        }
        desk.remember(moment.identifier(), place.instanceId);
    }
};

std::shared_ptr<Desk> bare(std::int64_t clips) {
    auto desk = std::make_shared<Desk>();
    desk->appendAll(firstMoments(clips));
    desk->makeRoom(2 * clips);
    return desk;
}

Edits editsOn(const Desk& desk, Type type, Moments moments) {
    auto places = type == Type::momentsAdded ? std::vector<Place>() : desk.placesOf(moments);
    return {type, std::move(moments), std::move(places)};
}

Trial eventsFloor(Type type, std::int64_t clips) {
    auto desk = bare(clips);
    const Edits edits = editsOn(*desk, type, momentsFor(type, clips, eventsOn(clips)));
    return Trial(std::ssize(edits.moments), [desk, edits] {
        for (std::size_t index = 0; index < edits.moments.size(); ++index) {
            edits.make(*desk, index);
        }
    });
}

/// Each event is a job of its own, until all that grows has grown.
Trial eventJobs(Type type, std::int64_t clips) {
    auto desk = joinedDesk(firstMoments(clips));
    const Events changes = eventsWith(momentsFor(type, clips, eventsToGrowBy(type, clips)));
    return Trial(
        std::ssize(changes),
        [desk, type, changes] {
            for (const auto& change : changes) {
                desk->execution().postToMain(
                    [&desk = *desk, type, &change] { desk.synchroniser().receive(type, change); });
                desk->execution().runAll();
            }
        },
        executionOf(desk));
}

Trial eventJobsFloor(Type type, std::int64_t clips) {
    auto desk = bare(clips);
    const Edits edits = editsOn(*desk, type, momentsFor(type, clips, eventsToGrowBy(type, clips)));
    return Trial(
        std::ssize(edits.moments),
        [desk, edits] {
            for (std::size_t index = 0; index < edits.moments.size(); ++index) {
                desk->execution().postToMain([&desk = *desk, &edits, index] { edits.make(desk, index); });
                desk->execution().runAll();
            }
        },
        executionOf(desk));
}

std::vector<Case> cases() {
    std::vector<Case> all;
    for (const auto& [name, type] : {std::pair("event, one added", Type::momentsAdded),
                                     std::pair("event, one updated", Type::momentsUpdated),
                                     std::pair("event, one deleted", Type::momentsDeleted)}) {
        const auto add = [&, kind = type](const std::string& side, Trial (*prepare)(Type, std::int64_t),
                                          Counted counted) {
            all.push_back({name + side, usualSizes(),
                           [=](std::int64_t clips) { return prepare(kind, clips); }, counted});
        };
        add("/component", events, Counted::whole);
        add("/floor", eventsFloor, Counted::whole);
        add(", as jobs/component", eventJobs, Counted::growingJobs);
        add(", as jobs/floor", eventJobsFloor, Counted::growingJobs);
    }
    return all;
}

const CaseGroup group(cases());

}  // namespace
}  // namespace Benchmarks
