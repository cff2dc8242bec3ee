// The shared component, and what the protocol declares but does not do yet.

#include "Tests/Component/ComponentTest.hpp"
#include "Tests/Component/HostDoors.hpp"

#include <set>
#include <stdexcept>
#include <thread>

namespace ComponentTests {

namespace {

using RemoteCoding::RemoteCodingComponent;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;

class ProtocolTest : public ComponentTest {};

TEST_F(ProtocolTest, TheSharedComponentIsBuiltOnceOnTheInstalledHost) {
    EXPECT_THROW((void)RemoteCodingComponent::shared(), std::logic_error);

    RemoteCodingComponent::installHost(host_.environment());
    // Whichever thread comes first builds it; the reference host takes other threads than this one for its main thread too.
    std::vector<std::shared_ptr<RemoteCodingComponent>> found(4);
    std::vector<std::thread> threads;
    for (auto& place : found) {
        threads.emplace_back([&place] { place = RemoteCodingComponent::shared(); });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    const auto shared = RemoteCodingComponent::shared();
    EXPECT_THAT(found, Each(shared));
    EXPECT_NE(shared, component_);

    ReferenceHost::VirtualExecution execution(time_);
    ReferenceHost::Host other("Bob", execution, service_, trace_);
    EXPECT_THROW(RemoteCodingComponent::installHost(other.environment()), std::logic_error);
    EXPECT_NO_THROW(RemoteCodingComponent::installHost(host_.environment()));
    RemoteCodingComponent::uninstallHost();
    EXPECT_THROW((void)RemoteCodingComponent::shared(), std::logic_error);
}

TEST_F(ProtocolTest, OperationsToComeSaySo) {
    component_->openCreateSharingSessionWindow();
    component_->openJoinSharingSessionWindow();
    component_->promptEndRemoteCodingSession(nullptr, "timeline");
    component_->promptExitRemoteCodingSession(nullptr, "timeline");
    component_->fragmentDownloaded("timeline");
    component_->fragmentDownloadPaused(nullptr, "timeline");
    component_->fragmentDownloadResumed("timeline");
    component_->fragmentDownloadDidError(nullptr, "timeline");
    component_->fragmentDownloadComplete("timeline");
    component_->getManifestURL("timeline", "video", nullptr);
    component_->streamURLs("video", {}, nullptr);
    settle();

    const auto lines = errors();
    EXPECT_EQ(std::set(lines.begin(), lines.end()).size(), 11U);
    EXPECT_THAT(lines, Each(EndsWith(" is not available yet")));
    EXPECT_EQ(lines.front(), "openCreateSharingSessionWindow() is not available yet");
}

TEST_F(ProtocolTest, QuestionsThatCannotBeAnsweredYetFailOnTheMainThread) {
    int answers = 0;
    const auto answered = [&](const auto& result) {
        EXPECT_FALSE(result.succeeded());
        EXPECT_TRUE(execution_.isMainThread());
        ++answers;
        throw std::runtime_error("completion");
    };

    component_->getManifestURL("timeline", "video", answered);
    component_->streamURLs("video", {"stream"}, answered);
    EXPECT_EQ(answers, 0) << "never inside the call";
    settle();

    EXPECT_EQ(answers, 2);
    EXPECT_EQ(errors().back(), "The host failed unexpectedly: completion");
}

TEST_F(ProtocolTest, CallersOnAnotherThreadAreReported) {
    execution_.postToBackground([&] { (void)component_->hasActiveSession("timeline"); });
    settle();

    const auto reports = trace_.entries("Ann", ReferenceHost::TraceKind::wrongThread);
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_EQ(reports.front().field("function"), "hasActiveSession(timelineId:)");
    EXPECT_EQ(reports.front().field("file"), "Components/RemoteCoding/Component/RemoteCodingComponent");
    expectedWrongThreads_ = 1;
}

TEST_F(ProtocolTest, ASessionWhoseSynchroniserCannotBeMadeCanStillBeEnded) {
    FaultyUserDefaults userDefaults;
    auto& original = host_.environment();
    RemoteCoding::HostEnvironment environment{.execution = original.execution,
                                              .componentLocator = original.componentLocator,
                                              .notificationCenter = original.notificationCenter,
                                              .userDefaults = userDefaults,
                                              .logManager = original.logManager,
                                              .account = original.account,
                                              .graphQLClient = original.graphQLClient,
                                              .syncLibrary = original.syncLibrary,
                                              .uuids = original.uuids};
    component_ = RemoteCodingComponent::make(environment);

    const auto timeline = host();
    EXPECT_THAT(errors(), ElementsAre("The host failed unexpectedly: user defaults"));
    EXPECT_TRUE(component_->hasActiveSession(timeline->uniqueId()));
    component_->endRemoteCodingSession(timeline->uniqueId());
    EXPECT_FALSE(component_->sessionDetails(timeline->uniqueId()));

    settle();
    component_.reset();
}

}  // namespace

}  // namespace ComponentTests
