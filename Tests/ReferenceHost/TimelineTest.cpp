// What a timeline remembers of its changes and of the moments that its clips stand for.

#include "ReferenceHost/Timeline/Timeline.hpp"

#include "ReferenceHost/SeededRandom.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

using ReferenceHost::Timeline;
using Strings = std::vector<std::string>;

std::shared_ptr<Timeline> makeTimeline() {
    Timeline::Options options;
    options.uniqueId = "timeline";
    options.makeId = [number = 0]() mutable { return "id " + std::to_string(++number); };
    return Timeline::make(std::move(options));
}

Strings changedClips(const Timeline& timeline, std::int64_t since) {
    Strings ids;
    const auto changes = timeline.timelineFromModifyCount(since, false);
    const auto rows = changes->allRows();
    for (const auto& row : *rows) {
        const auto clips = row->allInstances();
        std::ranges::transform(*clips, std::back_inserter(ids),
                               [](const auto& clip) { return clip->uniqueId(); });
    }
    return ids;
}

TEST(TimelineTest, TellsWhatChangedSinceAnyCountAfterAnyNumberOfEdits) {
    const auto timeline = makeTimeline();
    const auto row = timeline->addRow("Attack", Base::Color());
    Strings clips;
    for (int number = 0; number < 12; ++number) {
        clips.push_back(timeline->addInstance(row->uniqueId(), number, number + 1)->uniqueId());
    }
    std::map<std::string, std::int64_t> present;  // with the count of the latest change
    std::map<std::string, std::int64_t> removed;
    for (std::size_t number = 0; number < clips.size(); ++number) {
        present[clips[number]] = static_cast<std::int64_t>(number) + 2;  // the row was the first change
    }
    ReferenceHost::SeededRandom random(5);
    for (int turn = 0; turn < 500; ++turn) {
        const std::string& id = clips[random.below(clips.size())];
        auto& from = removed.contains(id) ? removed : present;
        auto& to = random.chance(0.3) ? removed : present;
        if (&from != &to) {
            EXPECT_TRUE(&to == &removed ? timeline->removeInstance(id) : timeline->restoreInstance(id));
            from.erase(id);
            to[id] = timeline->modifyCount();
        } else if (timeline->retimeInstance(id, turn, turn + 100)) {
            present[id] = timeline->modifyCount();
        }
        const auto since =
            timeline->modifyCount() - static_cast<std::int64_t>(random.below(40));  // or the whole
        const auto isSince = [&](const auto& entry) { return entry.second >= since; };
        Strings changed;  // in the order in which they were added
        std::ranges::copy_if(clips, std::back_inserter(changed), [&](const std::string& clip) {
            const auto found = present.find(clip);
            return found != present.end() && isSince(*found);
        });
        ASSERT_EQ(changedClips(*timeline, since), changed) << "turn " << turn;

        std::map<std::int64_t, std::string> deleted;  // in the order of their deletion
        for (const auto& [clip, count] : removed) {
            if (count >= since) {
                deleted[count] = clip;
            }
        }
        Strings deletedIds;
        std::ranges::transform(deleted, std::back_inserter(deletedIds),
                               [](const auto& entry) { return entry.second; });
        ASSERT_EQ(timeline->timelineFromModifyCount(since, false)->deletedInstanceIds(), deletedIds);
    }
}

TEST(TimelineTest, FindsAMomentsClipWhileOthersHaveHadTheSameMoment) {
    const auto timeline = makeTimeline();
    const auto found = [&](const std::string& momentId) {
        const auto clip = timeline->findInstanceOf(momentId);
        return clip ? clip->uniqueId() : "none";
    };
    const auto append = [&](const std::string& momentId) {
        return timeline->appendRemoteInstance("Attack", momentId, 1, 2, {}, Base::Color());
    };
    const auto first = append("moment");
    const auto second = append("moment");
    const auto third = append("moment");
    EXPECT_EQ(found("moment"), first->uniqueId());
    timeline->removeInstance(first->uniqueId());
    EXPECT_EQ(found("moment"), second->uniqueId());
    timeline->restoreInstance(first->uniqueId());
    EXPECT_EQ(found("moment"), first->uniqueId());

    first->setExternalId("another");
    EXPECT_EQ(found("moment"), second->uniqueId());
    EXPECT_EQ(found("another"), first->uniqueId());
    third->setExternalId(std::nullopt);
    second->setExternalId("another");
    EXPECT_EQ(found("moment"), "none");
    EXPECT_EQ(found("another"), first->uniqueId());
    third->setExternalId("moment");
    first->setExternalId("moment");
    EXPECT_EQ(found("moment"), third->uniqueId());
    EXPECT_EQ(found("another"), second->uniqueId());

    timeline->beginPublishing(0);
    EXPECT_EQ(found("moment"), "none");
    EXPECT_EQ(found("another"), "none");
}

}  // namespace
