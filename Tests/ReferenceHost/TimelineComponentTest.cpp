#include "ReferenceHost/Timeline/TimelineComponent.hpp"

#include "Base/Error.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/NotificationCenter.hpp"
#include "ReferenceHost/Timeline/CaptureComponent.hpp"

#include <gtest/gtest.h>

#include <any>
#include <string>
#include <vector>

namespace ReferenceHost {

namespace {

using RemoteCoding::StreamingStatus;
namespace TimelineNotifications = RemoteCoding::TimelineNotifications;

class TimelineComponentTest : public testing::Test {
protected:
    struct Completion {
        Completion(std::optional<std::string> videoId_, bool onMainThread_, bool timelineIsThere_)
            : videoId(std::move(videoId_)), onMainThread(onMainThread_), timelineIsThere(timelineIsThere_) {}
        std::optional<std::string> videoId;
        bool onMainThread;
        bool timelineIsThere;
    };

    Base::Result<void> openShare() {
        const std::vector<RemoteCoding::ShareFile> files = {
            {RemoteCoding::SharedVideo("cloud video", "Rovers", {}, false, {}, {}), 0}};
        return component->openLiveShareWithShareFiles(
            files, nullptr, std::nullopt, [this](std::optional<std::string> videoId) {
                const bool isThere = videoId && component->getTimelineWithVideoId(*videoId) != nullptr;
                completions.emplace_back(videoId, execution.isMainThread(), isThere);
            });
    }

    VirtualTime time{1};
    VirtualExecution execution{time};
    NotificationCenter center;
    int lastId = 0;
    std::shared_ptr<TimelineComponent> component = std::make_shared<TimelineComponent>(
        execution, center, [this] { return "id " + std::to_string(++lastId); });
    std::vector<Completion> completions;
};

TEST_F(TimelineComponentTest, FindsOpenTimelinesAndTellsOfTheirChangesAndTheirEnd) {
    std::vector<std::string> told;
    const auto observe = [&](const char* name, const char* mark) {
        (void)center.addObserver(name, nullptr, [&told, mark, this](const RemoteCoding::Notification& post) {
            const auto timeline = std::dynamic_pointer_cast<Timeline>(post.object);
            told.push_back(std::string(mark) + " " + timeline->title());
            EXPECT_EQ(component->findTimeline(timeline->uniqueId()), timeline) << "its edits can still be read";
        });
    };
    observe(TimelineNotifications::timelineDidAnyChange, "changed");
    observe(TimelineNotifications::timelineDidRemove, "closed");

    const auto home = component->openTimeline("Home", "video");
    const auto away = component->openTimeline("Away");
    component->setCapturingTimeline(home->uniqueId());
    EXPECT_EQ(component->frontTimeline(), away);
    EXPECT_EQ(component->capturingTimeline(), home);
    EXPECT_EQ(component->timelineWith(home->uniqueId()), home);
    EXPECT_EQ(component->getTimelineWithVideoId("video"), home);
    EXPECT_EQ(component->getTimelineWithVideoId(""), nullptr) << "a timeline without a video shows none";
    EXPECT_EQ(component->openTimeline("Home again", {}, home->uniqueId()), home);
    EXPECT_EQ(component->frontTimeline(), home);

    home->addRow("Shot", {});
    EXPECT_TRUE(component->closeTimeline(home->uniqueId()));
    EXPECT_FALSE(component->closeTimeline(home->uniqueId()));
    home->addRow("Pass", {});

    EXPECT_EQ(told, (std::vector<std::string>{"changed Home", "closed Home"}));
    EXPECT_EQ(component->capturingTimeline(), nullptr);
    EXPECT_EQ(component->timelineWith(home->uniqueId()), nullptr);
    EXPECT_EQ(component->getTimelineWithVideoId("video"), nullptr);
    EXPECT_EQ(component->frontTimeline(), away);
}

TEST_F(TimelineComponentTest, OpensALiveShareOnATimelineOfItsOwnAndThenCompletes) {
    component->liveShares.openingTime = Base::Seconds(2);
    EXPECT_TRUE(openShare().succeeded());
    time.runFor(Base::Seconds(1.9));
    EXPECT_TRUE(completions.empty());
    time.runFor(Base::Seconds(0.2));

    ASSERT_EQ(completions.size(), 1U);
    EXPECT_TRUE(completions[0].onMainThread);
    EXPECT_TRUE(completions[0].timelineIsThere);
    EXPECT_NE(completions[0].videoId, "cloud video");
    EXPECT_EQ(component->frontTimeline()->title(), "Rovers");
}

TEST_F(TimelineComponentTest, ALiveShareGoesWrongOnDemand) {
    auto& shares = component->liveShares;
    const auto open = [&](const LiveShareBehaviour& behaviour) {
        shares = behaviour;
        completions.clear();
        return openShare();
    };

    LiveShareBehaviour refused;
    refused.refusal = std::make_exception_ptr(Base::DescribedError("No disk space"));
    EXPECT_EQ(Base::describe(open(refused).error()), "No disk space");

    LiveShareBehaviour silent;
    silent.completes = false;
    EXPECT_TRUE(open(silent).succeeded());
    time.runFor(Base::Seconds(60));
    EXPECT_TRUE(completions.empty());

    LiveShareBehaviour failed;
    failed.completesWithoutId = true;
    EXPECT_TRUE(open(failed).succeeded());
    time.runFor(Base::Seconds(1));
    ASSERT_EQ(completions.size(), 1U);
    EXPECT_EQ(completions[0].videoId, std::nullopt);

    LiveShareBehaviour withoutTimeline;
    withoutTimeline.opensTimeline = false;
    withoutTimeline.completesInBackground = true;
    EXPECT_TRUE(open(withoutTimeline).succeeded());
    time.runFor(Base::Seconds(60));
    ASSERT_EQ(completions.size(), 1U);
    EXPECT_FALSE(completions[0].onMainThread);
    EXPECT_TRUE(component->openTimelines().empty());

    LiveShareBehaviour slow;
    slow.timelineLag = Base::Seconds(5);
    slow.completesInsideCall = true;
    EXPECT_TRUE(open(slow).succeeded());
    ASSERT_EQ(completions.size(), 1U) << "completed before the call returned";
    EXPECT_FALSE(completions[0].timelineIsThere);
    time.runFor(Base::Seconds(6));
    EXPECT_NE(component->getTimelineWithVideoId(*completions[0].videoId), nullptr);
}

class CaptureComponentTest : public testing::Test {
protected:
    CaptureComponentTest() {
        (void)center.addObserver(RemoteCoding::Notifications::streamStatusChanged, nullptr,
                                 [this](const RemoteCoding::Notification& post) {
                                     EXPECT_TRUE(execution.isMainThread());
                                     statuses.push_back(
                                         std::any_cast<StreamingStatus>(post.userInfo.at("status")));
                                 });
    }

    Base::Result<void> publish() {
        return capture->captureToTevuLibraryWithPublishSession(
            std::make_shared<PublishSession>("video"), "team", std::make_shared<CaptureDevice>("Camera"));
    }

    VirtualTime time{1};
    VirtualExecution execution{time};
    NotificationCenter center;
    std::shared_ptr<CaptureComponent> capture = std::make_shared<CaptureComponent>(execution, center);
    std::vector<StreamingStatus> statuses;
};

TEST_F(CaptureComponentTest, APublicationGoesThroughItsStatusesAfterTheCall) {
    capture->startCapturing();
    EXPECT_TRUE(publish().succeeded());
    EXPECT_TRUE(statuses.empty()) << "nothing is told inside the call";
    EXPECT_EQ(capture->publication()->session->videoId(), "video");
    EXPECT_EQ(capture->publication()->device->localizedName(), "Camera");

    time.runFor(Base::Seconds(1));
    capture->interruptStream();
    capture->resumeStream();
    capture->stopPublishing();
    capture->interruptStream();
    EXPECT_EQ(statuses,
              (std::vector{StreamingStatus::starting, StreamingStatus::live, StreamingStatus::interrupted,
                           StreamingStatus::live, StreamingStatus::stopped}));
    EXPECT_TRUE(capture->isCapturing());

    statuses.clear();
    EXPECT_TRUE(publish().succeeded());
    capture->stopCapturing();
    time.runFor(Base::Seconds(1));
    EXPECT_EQ(statuses, (std::vector{StreamingStatus::stopped})) << "an ended publication does not go live";
    EXPECT_FALSE(capture->isCapturing());
}

TEST_F(CaptureComponentTest, PublishingIsRefusedWithoutACaptureOrOnDemand) {
    EXPECT_EQ(Base::describe(publish().error()), "Nothing is captured.");

    capture->startCapturing();
    capture->refusal = std::make_exception_ptr(Base::DescribedError("The encoder is busy."));
    EXPECT_EQ(Base::describe(publish().error()), "The encoder is busy.");

    time.runFor(Base::Seconds(1));
    EXPECT_TRUE(statuses.empty());
    EXPECT_FALSE(capture->publication());
}

}  // namespace

}  // namespace ReferenceHost
