// The shared component, and what the protocol declares but does not do yet.

#include "Tests/Component/ComponentTest.hpp"

#include <set>
#include <stdexcept>
#include <thread>

namespace RemoteCoding {
namespace {

using testing::Each;

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
    EXPECT_THAT(found, Each(RemoteCodingComponent::shared()));
    EXPECT_NE(found.front(), component_);

    ReferenceHost::VirtualExecution execution(time_);
    ReferenceHost::Host other("Bob", execution, service_, trace_);
    EXPECT_THROW(RemoteCodingComponent::installHost(other.environment()), std::logic_error);
    EXPECT_NO_THROW(RemoteCodingComponent::installHost(host_.environment()));
    RemoteCodingComponent::uninstallHost();
    EXPECT_THROW((void)RemoteCodingComponent::shared(), std::logic_error);
}

TEST_F(ProtocolTest, OperationsToComeSaySoAndTheirQuestionsFailOnTheMainThread) {
    int answers = 0;
    const auto answered = [&](const auto& result) {
        EXPECT_FALSE(result.succeeded());
        EXPECT_TRUE(execution_.isMainThread());
        ++answers;
        throw std::runtime_error("completion");
    };
    component_->openCreateSharingSessionWindow();
    component_->openJoinSharingSessionWindow();
    component_->promptEndRemoteCodingSession(nullptr, "timeline");
    component_->promptExitRemoteCodingSession(nullptr, "timeline");
    component_->fragmentDownloaded("timeline");
    component_->fragmentDownloadPaused(nullptr, "timeline");
    component_->fragmentDownloadResumed("timeline");
    component_->fragmentDownloadDidError(nullptr, "timeline");
    component_->fragmentDownloadComplete("timeline");
    component_->getManifestURL("timeline", "video", answered);
    component_->streamURLs("video", {"stream"}, answered);
    component_->streamURLs("video", {}, nullptr);
    const auto lines = errors();
    EXPECT_EQ(std::set(lines.begin(), lines.end()).size(), 11U);
    EXPECT_THAT(lines, Each(testing::EndsWith(" is not available yet")));
    EXPECT_EQ(lines.front(), "openCreateSharingSessionWindow() is not available yet");
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
    expectedWrongThreads_ = 1;
}

}  // namespace
}  // namespace RemoteCoding
