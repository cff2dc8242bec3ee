#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/NotificationCenter.hpp"
#include "ReferenceHost/Timeline/TimelineComponent.hpp"
#include "Tests/HostContract/CodingTargetContract.hpp"
#include "Tests/HostContract/TimelineContract.hpp"

#include <gtest/gtest-spi.h>

#include <algorithm>

namespace HostContract {

namespace {

class ReferenceFixture final : public TimelineFixture {
public:
    explicit ReferenceFixture(const ReferenceHost::TimelineRules& rules = {},
                              bool insertionCallbacksComeLater = false) {
        component_->rules() = rules;
        component_->insertionCallbacksComeLater = insertionCallbacksComeLater;
        timeline_ = component_->openTimeline("Match");
        observer_ = center_.addObserver(RemoteCoding::TimelineNotifications::timelineDidAnyChange, timeline_,
                                        [this](const auto&) {
                                            ++announcements_;
                                            if (onAnnouncement) {
                                                onAnnouncement();
                                            }
                                        });
    }
    ~ReferenceFixture() override { center_.removeObserver(observer_); }

    std::shared_ptr<TimelineProtocol> timeline() override { return timeline_; }
    std::size_t announcements() const override { return announcements_; }
    void runMainJobs() override { (void)time_.runUntilIdle(Base::Seconds(1)); }

    std::string addRow(const std::string& name, Base::Color color) override {
        return timeline_->addRow(name, color)->uniqueId();
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
    int lastId_ = 0;
    std::shared_ptr<ReferenceHost::TimelineComponent> component_ =
        std::make_shared<ReferenceHost::TimelineComponent>(
            execution_, center_, [this] { return "id " + std::to_string(++lastId_); });
    std::shared_ptr<ReferenceHost::Timeline> timeline_;
    RemoteCoding::NotificationCenterProtocol::ObserverId observer_ = 0;
    std::size_t announcements_ = 0;
};

const TimelineHost referenceHost("ReferenceHost", [] { return std::make_shared<ReferenceFixture>(); });
const TimelineHost lateInsertions("LateInsertionCallbacks", [] {
    return std::make_shared<ReferenceFixture>(ReferenceHost::TimelineRules(), true);
});

}  // namespace

INSTANTIATE_TEST_SUITE_P(Timeline, TimelineContract,
                         testing::Combine(testing::Values(referenceHost), testing::ValuesIn(timelineCases())),
                         nameOfHostAndCase);
INSTANTIATE_TEST_SUITE_P(CodingTarget, TimelineContract,
                         testing::Combine(testing::Values(referenceHost, lateInsertions),
                                          testing::ValuesIn(codingTargetCases())),
                         nameOfHostAndCase);

TEST(TimelineContractTest, NoticesEachBrokenRule) {
    using Rules = ReferenceHost::TimelineRules;
    const std::vector<std::pair<bool Rules::*, std::string>> noticedBy = {
        {&Rules::everyChangeCounts, "EveryEditRaisesTheCountAndIsThenAnnounced"},
        {&Rules::emptyEditIsNoChange, "WhatChangesNothingIsNoChange"},
        {&Rules::externalIdIsNoChange, "WritingAnExternalIdIsNoChange"},
        {&Rules::shiftedRowsChange, "APartialTimelineHoldsChangedRowsWithTheirChangedClipsOnly"},
        {&Rules::changesAreAnnounced, "EveryEditRaisesTheCountAndIsThenAnnounced"},
        {&Rules::componentEditsAreAnnounced, "RenamesRecoloursAndRemoves"},
        {&Rules::partialIncludesHigher, "APartialTimelineHoldsTheAskedCountAndHigher"},
        {&Rules::partialIsDetached, "APartialTimelineIsDetached"},
        {&Rules::partialTellsItsCount, "APartialTimelineHoldsTheAskedCountAndHigher"},
        {&Rules::deletedRowsListTheirInstances, "DeletionsAreListedFromTheirCountOn"},
        {&Rules::undoneDeletionsAreNotListed, "AnUndoneDeletionIsNotListed"}};
    auto cases = timelineCases();
    std::ranges::move(codingTargetCases(), std::back_inserter(cases));
    for (const auto& [rule, name] : noticedBy) {
        Rules rules;
        rules.*rule = false;
        testing::TestPartResultArray results;
        {
            const testing::ScopedFakeTestPartResultReporter reporter(
                testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
            ReferenceFixture host(rules);
            std::ranges::find(cases, name, &TimelineCase::name)->run(host);
        }
        EXPECT_GT(results.size(), 0) << name << " notices nothing";
    }
}

}  // namespace HostContract
