#pragma once

#include "Components/RemoteCoding/Component/RemoteCodingComponent.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"
#include "ReferenceHost/Execution/VirtualTime.hpp"
#include "ReferenceHost/Host.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <any>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ComponentTests {

using Base::Seconds;
using RemoteCoding::RemoteCodingSessionDetails;
using RemoteCoding::RemoteCodingSessionStatus;

/// One analyst's host with a component, and what the component tells.
class ComponentTest : public testing::Test {
protected:
    explicit ComponentTest(bool enableSharedTimelines = false) : host_("Ann", execution_, service_, trace_) {
        host_.signIn("ann");
        host_.userDefaults().setBool(RemoteCoding::UserDefaultsKeys::enableSharedTimelines,
                                     enableSharedTimelines);
        observer_ = host_.notificationCenter().addObserver(
            RemoteCoding::Notifications::remoteCodingSessionUpdatedNotification, nullptr,
            [this](const RemoteCoding::Notification& notification) {
                EXPECT_EQ(notification.object, nullptr);
                updates_.push_back(
                    std::any_cast<RemoteCodingSessionDetails>(notification.userInfo.at("sessionDetails")));
            });
        component_ = RemoteCoding::RemoteCodingComponent::make(host_.environment());
    }

    ~ComponentTest() override {
        EXPECT_EQ(execution_.wrongThreadCount(), expectedWrongThreads_);
        host_.stop();
        component_.reset();
        host_.notificationCenter().removeObserver(observer_);
    }

    /// Publishes the running capture.
    Base::Result<void> create() {
        return component_->createNewRemoteCodingSession(
            "Derby", std::make_shared<ReferenceHost::PublishSession>("video"), "team",
            std::make_shared<ReferenceHost::CaptureDevice>("Main camera"));
    }

    /// A hosted session on a new timeline, its stream live.
    std::shared_ptr<ReferenceHost::Timeline> host() {
        auto timeline = host_.startCapture("Match");
        EXPECT_TRUE(create().succeeded());
        settle();
        return timeline;
    }

    void join(const std::optional<std::string>& taggingSessionId = std::nullopt) {
        const RemoteCoding::ShareFile file(RemoteCoding::SharedVideo("id", "Cup final", {}, false, {}, {}),
                                           0);
        component_->joinRemoteCodingSession(file, "Stream 1", "video", "team", taggingSessionId);
    }

    /// A joined session on a new timeline.
    std::shared_ptr<ReferenceHost::Timeline> joined() {
        join();
        settle();
        auto timeline = host_.timelines().frontTimeline();
        EXPECT_TRUE(component_->isActiveSessionCollaborator(timeline->uniqueId()));
        return timeline;
    }

    void settle() { time_.runFor(Seconds(10)); }

    void post(const char* name, std::map<std::string, std::any> userInfo,
              std::shared_ptr<RemoteCoding::HostObject> object = nullptr) {
        host_.notificationCenter().post(
            RemoteCoding::Notification(name, std::move(object), std::move(userInfo)));
    }

    RemoteCodingSessionStatus statusOf(const std::shared_ptr<ReferenceHost::Timeline>& timeline) const {
        return component_->sessionDetails(timeline->uniqueId())->status;
    }

    /// The statuses that the updates have told since the last call.
    std::vector<RemoteCodingSessionStatus> takeUpdates() {
        std::vector<RemoteCodingSessionStatus> statuses;
        for (const auto& details : updates_) {
            statuses.push_back(details.status);
        }
        updates_.clear();
        return statuses;
    }

    /// The error lines so far, each with its detail, if it has one.
    std::vector<std::string> errors() const {
        std::vector<std::string> lines;
        for (const auto& entry : trace_.entries("Ann", ReferenceHost::TraceKind::logError)) {
            const std::string detail(entry.field("detail"));
            lines.push_back(std::string(entry.field("message")) + (detail.empty() ? "" : ": " + detail));
        }
        return lines;
    }

    ReferenceHost::VirtualTime time_{1};
    ReferenceHost::Trace trace_{[this] { return time_.now(); }};
    ReferenceHost::VirtualExecution execution_{time_, "Ann", &trace_};
    ReferenceHost::VirtualScheduler scheduler_{time_};
    ReferenceHost::CloudService service_{scheduler_};
    ReferenceHost::Host host_;
    std::shared_ptr<RemoteCoding::RemoteCodingComponent> component_;
    std::vector<RemoteCodingSessionDetails> updates_;
    std::size_t expectedWrongThreads_ = 0;

private:
    ReferenceHost::NotificationCenter::ObserverId observer_;
};

/// The same where sessions share their timelines.
class SharedTimelineTest : public ComponentTest {
protected:
    SharedTimelineTest() : ComponentTest(true) {}
};

}  // namespace ComponentTests
