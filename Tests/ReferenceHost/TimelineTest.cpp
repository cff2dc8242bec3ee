#include "ReferenceHost/Timeline/Timeline.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ReferenceHost {

namespace {

constexpr Base::Color red{200, 0, 0};
constexpr Base::Color green{0, 200, 0};

class TimelineTest : public testing::Test {
protected:
    TimelineTest() {
        Timeline::Options options;
        options.uniqueId = "timeline";
        options.makeId = [this] { return "id " + std::to_string(++lastId_); };
        options.didChange = [this](const auto&) { ++announcements; };
        timeline = Timeline::make(std::move(options));
    }

    std::shared_ptr<Timeline> timeline;
    int announcements = 0;

private:
    int lastId_ = 0;
};

TEST_F(TimelineTest, ARemoteMomentBecomesAClipOnTheFirstRowOfItsCode) {
    const auto first = timeline->addRow("Shot", red);
    timeline->addRow("Shot", red);
    const auto count = timeline->modifyCount();
    announcements = 0;

    const auto known = timeline->appendRemoteInstance("Shot", "moment 1", 1.0, 2.0, "header", green);
    EXPECT_EQ(known->row(), first);
    EXPECT_EQ(first->color(), red) << "the colour is for a row that is missing";
    EXPECT_EQ(known->externalId(), "moment 1");
    EXPECT_EQ(known->values(), ClipValues(1.0, 2.0, "header"));
    EXPECT_EQ(timeline->findInstance(known->uniqueId()), known);

    const auto unknown = timeline->appendRemoteInstance("", "moment 2", 3.0, 3.0, "", green);
    EXPECT_EQ(unknown->row(), timeline->rowAt(2));
    EXPECT_EQ(timeline->rowAt(2)->name(), "");
    EXPECT_EQ(timeline->rowAt(2)->color(), green);
    EXPECT_EQ(timeline->modifyCount(), count + 2) << "row and clip are one change";
    EXPECT_EQ(announcements, 2);
}

TEST_F(TimelineTest, ARemoteUpdateChangesTheClipOfThatRowAndNothingElse) {
    const auto row = timeline->addRow("Shot", red);
    const auto other = timeline->addRow("Pass", red);
    const auto clip = timeline->addInstance(row->uniqueId(), 1.0, 2.0, "header");
    clip->setExternalId("moment 1");
    const auto count = timeline->modifyCount();
    const auto update = [&](const std::string& instanceId, const std::string& rowId, double end) {
        return timeline->updateRemoteInstance(instanceId, rowId, 1.0, end, "header");
    };

    EXPECT_EQ(update(clip->uniqueId(), other->uniqueId(), 9.0), nullptr);
    EXPECT_EQ(update("nobody", row->uniqueId(), 9.0), nullptr);
    EXPECT_EQ(update(clip->uniqueId(), row->uniqueId(), 2.0), clip) << "found, though nothing changes";
    EXPECT_EQ(timeline->modifyCount(), count);

    EXPECT_EQ(update(clip->uniqueId(), row->uniqueId(), 2.5), clip);
    EXPECT_EQ(timeline->modifyCount(), count + 1);
    EXPECT_EQ(clip->endTime(), 2.5);
    EXPECT_EQ(clip->externalId(), "moment 1");

    timeline->removeInstance(clip->uniqueId());
    EXPECT_EQ(update(clip->uniqueId(), row->uniqueId(), 3.0), nullptr);
    EXPECT_EQ(clip->endTime(), 2.5) << "a removed clip keeps its last values";
}

TEST_F(TimelineTest, SharedClipsCanBeLeftOutOfAPartialTimeline) {
    const auto row = timeline->addRow("Shot", red);
    const auto own = timeline->addInstance(row->uniqueId(), 1.0, 2.0);
    const auto shared = timeline->appendRemoteInstance("Shot", "moment 1", 3.0, 4.0, "", red);
    const auto gone = timeline->appendRemoteInstance("Shot", "moment 2", 5.0, 6.0, "", red);
    timeline->removeInstance(gone->uniqueId());

    const auto all = timeline->timelineFromModifyCount(1, false);
    const auto withoutShared = timeline->timelineFromModifyCount(1, true);

    EXPECT_EQ(all->allRows()->front()->numberOfInstances(), 2);
    ASSERT_EQ(withoutShared->allRows()->front()->numberOfInstances(), 1);
    EXPECT_EQ(withoutShared->allRows()->front()->allInstances()->front()->uniqueId(), own->uniqueId());
    EXPECT_EQ(all->deletedInstanceIds(), std::vector{gone->uniqueId()});
    EXPECT_TRUE(withoutShared->deletedInstanceIds().empty());
    EXPECT_TRUE(shared->isShared());
}

TEST_F(TimelineTest, NothingKeepsATimelineAliveButItsHolders) {
    const auto row = timeline->addRow("Shot", red);
    const auto clip = timeline->addInstance(row->uniqueId(), 1.0, 2.0);
    timeline->removeRow(timeline->addRow("Pass", red)->uniqueId());
    auto partial = timeline->timelineFromModifyCount(1, false);
    const auto target = timeline->codingTarget();
    const std::weak_ptr<Timeline> weakTimeline = timeline;
    const std::weak_ptr<RemoteCoding::TimelineProtocol> weakPartial = partial;
    const std::weak_ptr<RemoteCoding::TimelineRowProtocol> weakPartialRow = partial->allRows()->front();

    partial.reset();
    timeline.reset();

    EXPECT_TRUE(weakTimeline.expired());
    EXPECT_TRUE(weakPartial.expired());
    EXPECT_TRUE(weakPartialRow.expired());
    EXPECT_EQ(clip->row(), row) << "what is held stays readable";
    clip->setExternalId("moment 1");
    target->removeRowWithRowId(row->uniqueId());
    EXPECT_EQ(row->numberOfInstances(), 1);
}

}  // namespace

}  // namespace ReferenceHost
