// The pull of a whole session: the first one, one that changes nothing, one that deletes.

#include "Benchmarks/Support/Case.hpp"
#include "Benchmarks/Support/Desk.hpp"

namespace Benchmarks {
namespace {

/// A tenth of the moments is missing: every tenth.
Moments withoutATenth(const Moments& moments) {
    Moments rest;
    for (std::size_t index = 0; index < moments.size(); ++index) {
        if (index % 10 != 0) {
            rest.push_back(moments[index]);
        }
    }
    return rest;
}

Trial firstPull(std::int64_t clips) {
    auto desk = std::make_shared<Desk>();
    desk->execution().beginTiming();
    return Trial(
        clips,
        [desk, session = makeSession(firstMoments(clips))]() mutable { desk->join(std::move(session)); },
        [desk] { return desk->execution().mainJobs(); });
}

Trial firstPullFloor(std::int64_t clips) {
    auto desk = std::make_shared<Desk>();
    return Trial(clips, [desk, &moments = firstMoments(clips)] { desk->appendDirectly(moments); });
}

std::shared_ptr<Desk> joined(std::int64_t clips) {
    auto desk = std::make_shared<Desk>();
    desk->join(makeSession(firstMoments(clips)));
    desk->upload();
    desk->execution().beginTiming();
    return desk;
}

Trial laterPull(std::int64_t clips, const Moments& moments) {
    auto desk = joined(clips);
    return Trial(
        clips, [desk, session = makeSession(moments)]() mutable { desk->pull(std::move(session)); },
        [desk] { return desk->execution().mainJobs(); });
}

/// What the edits of a later pull cost without the component: a look-up for each moment, and the edits.
Trial laterPullFloor(std::int64_t clips, const Moments& moments) {
    auto desk = std::make_shared<Desk>();
    desk->appendDirectly(firstMoments(clips));
    return Trial(clips, [desk, moments] {
        std::unordered_map<std::string, std::string> left;
        for (const auto& moment : moments) {
            const auto instance = desk->timeline().findInstance(desk->table().at(moment->identifier()));
            (void)moment->updateOnTimeline(desk->timelinePointer(), instance->uniqueId(),
                                           instance->row()->uniqueId());
            left.try_emplace(moment->identifier(), instance->uniqueId());
        }
        if (moments.size() < desk->table().size()) {
            for (const auto& [momentId, instanceId] : desk->table()) {
                if (!left.contains(momentId)) {
                    const auto row = desk->timeline().findInstance(instanceId)->row();
                    desk->timeline().codingTarget()->removeInstanceWithRowId(row->uniqueId(), instanceId);
                }
            }
        }
    });
}

const CaseGroup group({
    {"pull, first/component", usualSizes(), firstPull},
    {"pull, first/floor", usualSizes(), firstPullFloor},
    {"pull, nothing new/component", usualSizes(),
     [](std::int64_t clips) { return laterPull(clips, firstMoments(clips)); }},
    {"pull, nothing new/floor", usualSizes(),
     [](std::int64_t clips) { return laterPullFloor(clips, firstMoments(clips)); }},
    {"pull, a tenth deleted/component", usualSizes(),
     [](std::int64_t clips) { return laterPull(clips, withoutATenth(firstMoments(clips))); }},
    {"pull, a tenth deleted/floor", usualSizes(),
     [](std::int64_t clips) { return laterPullFloor(clips, withoutATenth(firstMoments(clips))); }},
});

}  // namespace
}  // namespace Benchmarks
