#pragma once

#include "Components/RemoteCoding/Component/RemoteCodingComponent.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"
#include "ReferenceHost/Execution/VirtualTime.hpp"
#include "ReferenceHost/Host.hpp"
#include "Tests/Component/HostDoors.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <any>

namespace RemoteCoding {

using testing::ElementsAre;
using testing::IsEmpty;
using Status = RemoteCodingSessionStatus;
using TimelinePointer = std::shared_ptr<ReferenceHost::Timeline>;

/// One analyst's host with a component, and what the component tells.
class ComponentTest : public testing::Test {
protected:
    ComponentTest() {
        host_.signIn("ann");
        host_.userDefaults().setBool(UserDefaultsKeys::enableSharedTimelines, false);
        (void)host_.notificationCenter().addObserver(
            Notifications::remoteCodingSessionUpdatedNotification, nullptr,
            [this](const Notification& update) {
                const auto& details = update.userInfo.at("sessionDetails");
                updates_.push_back(std::any_cast<RemoteCodingSessionDetails>(details).status);
            });
    }
    ~ComponentTest() override {
        EXPECT_EQ(execution_.wrongThreadCount(), expectedWrongThreads_);
        EXPECT_EQ(errors(), expectedErrors_);
        host_.stop();
        component_.reset();
    }

    /// Publishes the running capture.
    Base::Result<void> create() {
        return component_->createNewRemoteCodingSession(
            "Derby", ReferenceHost::makePublishSession("video"), "team",
            std::make_shared<ReferenceHost::CaptureDevice>("Main camera"));
    }
    /// A hosted session on a new timeline, its stream live.
    TimelinePointer host() {
        auto timeline = host_.startCapture("Match");
        EXPECT_TRUE(create().succeeded());
        settle();
        updates_.clear();
        return timeline;
    }
    void join(const std::optional<std::string>& taggingSessionId = std::nullopt) {
        component_->joinRemoteCodingSession(ShareFile(SharedVideo("id", "Cup final", {}, false, {}, {}), 0),
                                            "Stream 1", "video", "team", taggingSessionId);
    }
    /// A joined session on a new timeline.
    TimelinePointer joined() {
        join();
        settle();
        updates_.clear();
        return host_.timelines().timelineInFront();
    }
    std::shared_ptr<FaultyTimelineComponent> useFaultyTimelineComponent() {
        auto faulty = std::make_shared<FaultyTimelineComponent>(host_.timelines());
        host_.locator().setTimelineComponent(faulty);
        return faulty;
    }
    void runFor(double seconds) { time_.runFor(Base::Seconds(seconds)); }
    void settle() { runFor(10); }

    void post(const char* name, std::map<std::string, std::any> userInfo,
              std::shared_ptr<HostObject> object = nullptr) {
        host_.notificationCenter().post(Notification(name, std::move(object), std::move(userInfo)));
    }
    [[nodiscard]] std::optional<Status> statusOf(const TimelinePointer& timeline) const {
        const auto details = component_->sessionDetails(timeline->uniqueId());
        return details ? std::optional(details->status) : std::nullopt;
    }
    /// The error lines so far, each with its detail, if it has one.
    [[nodiscard]] std::vector<std::string> errors() const {
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
    ReferenceHost::Host host_{"Ann", execution_, service_, trace_};
    std::shared_ptr<RemoteCodingComponent> component_ = RemoteCodingComponent::make(host_.environment());
    std::vector<Status> updates_;  ///< what the updates have told
    std::vector<std::string> expectedErrors_;
    std::size_t expectedWrongThreads_ = 0;
};

}  // namespace RemoteCoding
