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
    bool lockTimeline() override {
        timeline_->setCodingTargetAvailable(false);
        return true;
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

TimelineHost referenceHost() {
    return {"ReferenceHost", [] { return std::make_unique<ReferenceFixture>(); }};
}

TimelineHost hostWithLateInsertionCallbacks() {
    return {"LateInsertionCallbacks",
            [] { return std::make_unique<ReferenceFixture>(ReferenceHost::TimelineRules(), true); }};
}

/// Whether the case reports a failure on this host.
bool fails(const TimelineCase& timelineCase, TimelineFixture& host) {
    testing::TestPartResultArray results;
    {
        const testing::ScopedFakeTestPartResultReporter reporter(
            testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
        timelineCase.run(host);
    }
    for (int i = 0; i < results.size(); ++i) {
        if (results.GetTestPartResult(i).failed()) {
            return true;
        }
    }
    return false;
}

/// A rule of the reference host and the case that must notice when it is broken.
struct BrokenRule {
    BrokenRule(std::string name_, bool ReferenceHost::TimelineRules::* rule_, std::string noticedBy_)
        : name(std::move(name_)), rule(rule_), noticedBy(std::move(noticedBy_)) {}
    std::string name;
    bool ReferenceHost::TimelineRules::* rule;
    std::string noticedBy;
};

std::string nameOfBrokenRule(const testing::TestParamInfo<BrokenRule>& info) { return info.param.name; }

class TimelineContractWithBrokenRule : public testing::TestWithParam<BrokenRule> {};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Timeline, TimelineContract,
                         testing::Combine(testing::Values(referenceHost()),
                                          testing::ValuesIn(timelineCases())),
                         nameOfHostAndCase);

INSTANTIATE_TEST_SUITE_P(Timeline, CodingTargetContract,
                         testing::Combine(testing::Values(referenceHost(), hostWithLateInsertionCallbacks()),
                                          testing::ValuesIn(codingTargetCases())),
                         nameOfHostAndCase);

TEST_P(TimelineContractWithBrokenRule, IsNoticed) {
    auto cases = timelineCases();
    std::ranges::move(codingTargetCases(), std::back_inserter(cases));
    const auto found = std::ranges::find(cases, GetParam().noticedBy, &TimelineCase::name);
    ASSERT_NE(found, cases.end());
    ReferenceHost::TimelineRules rules;
    rules.*GetParam().rule = false;

    ReferenceFixture host(rules);

    EXPECT_TRUE(fails(*found, host));
}

using Rules = ReferenceHost::TimelineRules;
INSTANTIATE_TEST_SUITE_P(
    Timeline, TimelineContractWithBrokenRule,
    testing::Values(
        BrokenRule("everyChangeCounts", &Rules::everyChangeCounts,
                   "EveryEditRaisesTheCountAndIsThenAnnounced"),
        BrokenRule("emptyEditIsNoChange", &Rules::emptyEditIsNoChange, "AnEditThatChangesNothingIsNoChange"),
        BrokenRule("externalIdIsNoChange", &Rules::externalIdIsNoChange, "WritingAnExternalIdIsNoChange"),
        BrokenRule("shiftedRowsChange", &Rules::shiftedRowsChange, "AChangedRowIsInThePartialTimeline"),
        BrokenRule("changesAreAnnounced", &Rules::changesAreAnnounced,
                   "EveryEditRaisesTheCountAndIsThenAnnounced"),
        BrokenRule("componentEditsAreAnnounced", &Rules::componentEditsAreAnnounced, "RecoloursARow"),
        BrokenRule("partialIncludesHigher", &Rules::partialIncludesHigher,
                   "APartialTimelineHoldsTheAskedCountAndHigher"),
        BrokenRule("partialIsDetached", &Rules::partialIsDetached, "APartialTimelineIsDetached"),
        BrokenRule("partialTellsItsCount", &Rules::partialTellsItsCount,
                   "APartialTimelineTellsUpToWhereItReaches"),
        BrokenRule("deletedRowsListTheirInstances", &Rules::deletedRowsListTheirInstances,
                   "ADeletedRowListsItsClipsAsDeleted"),
        BrokenRule("undoneDeletionsAreNotListed", &Rules::undoneDeletionsAreNotListed,
                   "AnUndoneDeletionIsNotListed")),
    nameOfBrokenRule);

}  // namespace HostContract
