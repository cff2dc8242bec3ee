#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/NotificationCenter.hpp"
#include "ReferenceHost/Timeline/TimelineComponent.hpp"
#include "Tests/HostContract/CodingTargetContract.hpp"
#include "Tests/HostContract/NotificationCenterContract.hpp"
#include "Tests/HostContract/TimelineContract.hpp"

#include <gtest/gtest-spi.h>

namespace HostContract {

namespace {

class ReferenceFixture final : public TimelineFixture {
public:
    explicit ReferenceFixture(const ReferenceHost::TimelineRules& rules = {}) {
        component_->rules() = rules;
        timeline_ = component_->openTimeline("Match");
        (void)center_.addObserver(RemoteCoding::TimelineNotifications::timelineDidAnyChange, timeline_,
                                  [this](const auto&) { onAnnouncement ? onAnnouncement() : void(); });
    }

    std::shared_ptr<TimelineProtocol> timeline() override { return timeline_; }
    void runMainJobs() override { (void)time_.runUntilIdle(Base::Seconds(1)); }

    std::string addRow(const std::string& name, Base::Color color) override {
        const auto row = timeline_->addRow(name, color);
        return row ? row->uniqueId() : std::string();
    }
    void renameRow(const std::string& rowId, const std::string& name) override {
        timeline_->renameRow(rowId, name);
    }
    void recolorRow(const std::string& rowId, Base::Color color) override {
        timeline_->recolorRow(rowId, color);
    }
    void moveRow(const std::string& rowId, std::int64_t to) override { timeline_->moveRow(rowId, to); }
    void removeRow(const std::string& rowId) override { timeline_->removeRow(rowId); }
    std::string addInstance(const std::string& rowId, double startTime, double endTime) override {
        return timeline_->addInstance(rowId, startTime, endTime)->uniqueId();
    }
    void retimeInstance(const std::string& instanceId, double startTime, double endTime) override {
        timeline_->retimeInstance(instanceId, startTime, endTime);
    }
    void removeInstance(const std::string& instanceId) override { timeline_->removeInstance(instanceId); }
    bool restoreRow(const std::string& rowId) override { return timeline_->restoreRow(rowId); }
    bool restoreInstance(const std::string& instanceId) override {
        return timeline_->restoreInstance(instanceId);
    }

private:
    ReferenceHost::VirtualTime time_{1};
    ReferenceHost::VirtualExecution execution_{time_};
    ReferenceHost::NotificationCenter center_;
    std::shared_ptr<ReferenceHost::HeadlessWindowing> windowing_ =
        std::make_shared<ReferenceHost::HeadlessWindowing>(execution_, center_);
    int lastId_ = 0;
    std::shared_ptr<ReferenceHost::TimelineComponent> component_ =
        std::make_shared<ReferenceHost::TimelineComponent>(
            execution_, center_, *windowing_, [this] { return "id " + std::to_string(++lastId_); });
    std::shared_ptr<ReferenceHost::Timeline> timeline_;
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(ReferenceHost, NotificationCenterContract,
                         testing::Values(NotificationCenterHost(
                             "ReferenceHost",
                             [] { return std::make_shared<ReferenceHost::NotificationCenter>(); })),
                         nameOf<NotificationCenterHost>);

INSTANTIATE_TEST_SUITE_P(
    Timeline, TimelineContract,
    testing::Combine(testing::Values(TimelineHost("ReferenceHost",
                                                  [] { return std::make_shared<ReferenceFixture>(); })),
                     testing::ValuesIn(TimelineCase::all())),
    nameOfHostAndCase);

TEST(TimelineContractTest, NoticesEachBrokenRule) {
    using Rules = ReferenceHost::TimelineRules;
    const std::vector<std::pair<bool Rules::*, const TimelineCase*>> noticedBy = {
        {&Rules::rowNamesAreUnique, &rowNames},
        {&Rules::everyChangeCounts, &editsCount},
        {&Rules::emptyEditIsNoChange, &emptyEditsDoNotCount},
        {&Rules::externalIdIsNoChange, &emptyEditsDoNotCount},
        {&Rules::shiftedRowsChange, &partialRows},
        {&Rules::changesAreAnnounced, &editsCount},
        {&Rules::componentEditsAreAnnounced, &targetEdits},
        {&Rules::partialIncludesHigher, &partialFromCount},
        {&Rules::partialIsDetached, &reading},
        {&Rules::partialKnowsRows, &partialRows},
        {&Rules::partialTellsItsCount, &partialFromCount},
        {&Rules::deletedRowsListTheirInstances, &deletions},
        {&Rules::undoneDeletionsAreNotListed, &deletions}};
    for (const auto& [rule, timelineCase] : noticedBy) {
        Rules rules;
        rules.*rule = false;
        ReferenceFixture host(rules);
        testing::TestPartResultArray results;
        {
            const testing::ScopedFakeTestPartResultReporter reporter(
                testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
            timelineCase->run(host);
        }
        EXPECT_GT(results.size(), 0) << timelineCase->name << " notices nothing";
    }
}

}  // namespace HostContract
