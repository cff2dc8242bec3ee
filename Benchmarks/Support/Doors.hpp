#pragma once

#include "Benchmarks/Support/Session.hpp"
#include "Components/RemoteCoding/HostInterfaces/HostEnvironment.hpp"
#include "Components/RemoteCoding/HostInterfaces/TevuGraphQLClientProtocol.hpp"
#include "ReferenceHost/Timeline/Timeline.hpp"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The host's doors that the synchroniser uses all the time, as cheap as they can be: what they cost would otherwise hide what the
/// component costs.
namespace Benchmarks {

class SilentLog final : public RemoteCoding::LogManagerProtocol {
public:
    void logInfo(std::string_view) override {}
    void logWarn(std::string_view) override {}
    void logError(std::string_view message, std::string_view detail, std::string_view file,
                  std::string_view function, std::uint_least32_t line) override;
    void logUsage(std::string_view, RemoteCoding::LogOpName, const RemoteCoding::UsageAttributes&) override {}
};

class PlainNotificationCenter final : public RemoteCoding::NotificationCenterProtocol {
public:
    [[nodiscard]] ObserverId addObserver(const std::string& name,
                                         std::shared_ptr<RemoteCoding::HostObject> object,
                                         Observer observer) override;
    void removeObserver(ObserverId observer) override { observers_.erase(observer); }
    void post(const RemoteCoding::Notification& notification) override;

private:
    std::map<ObserverId, Observer> observers_;  // of changes of timelines
    ObserverId lastId_ = 0;
};

/// One timeline that is open.
class OneTimeline final : public RemoteCoding::TimelineComponentProtocol {
public:
    explicit OneTimeline(std::shared_ptr<ReferenceHost::Timeline> timeline)
        : timeline_(std::move(timeline)) {}

    [[nodiscard]] std::shared_ptr<RemoteCoding::TimelineProtocol> capturingTimeline() override;
    [[nodiscard]] std::shared_ptr<RemoteCoding::TimelineProtocol>
    timelineWith(const std::string& timelineId) override;
    [[nodiscard]] std::shared_ptr<RemoteCoding::TimelineProtocol>
    getTimelineWithVideoId(const std::string& videoId) override;
    Base::Result<void> openLiveShareWithShareFiles(
        const std::vector<RemoteCoding::ShareFile>& shareFiles,
        std::shared_ptr<RemoteCoding::WindowProtocol> window, std::optional<std::string> directoryURL,
        std::function<void(std::optional<std::string> videoId)> completionHandler) override;
    [[nodiscard]] std::shared_ptr<RemoteCoding::TimelineProtocol> frontTimeline() override;
    [[nodiscard]] bool isTimelineWindow(const std::shared_ptr<RemoteCoding::WindowProtocol>& window) override;
    void stopLiveShareWithTimelineId(const std::optional<std::string>& timelineId) override;

private:
    std::shared_ptr<ReferenceHost::Timeline> timeline_;
};

/// Gives what it was told to give; tells its subscribers nothing by itself.
class PlainClient final : public RemoteCoding::TevuGraphQLClientProtocol {
public:
    /// The next fetch takes it away.
    void setSession(RemoteCoding::TaggingSessionItem session) { session_ = std::move(session); }

    void
    fetchTaggingSessions(const std::string& teamId, const std::string& videoId,
                         const std::optional<RemoteCoding::FetchTaggingSessionsOptions>& options,
                         Base::Completion<std::vector<RemoteCoding::TaggingSessionItem>> completion) override;
    [[nodiscard]] std::shared_ptr<RemoteCoding::SubscriptionHandle>
    subscribeToTaggingSessionChanges(const std::string& taggingSessionId, const std::string& timelineId,
                                     ChangeHandler changeHandler, ErrorHandler errorHandler) override;

    // Not used here; never answered.
    void getVideo(const std::string&, Base::Completion<RemoteCoding::VideoItem>) override {}
    void getVideosForTeamId(const std::string&, std::chrono::sys_time<std::chrono::microseconds>,
                            Base::Completion<std::vector<RemoteCoding::LiveStreamingVideoItem>>) override {}
    void openPublishSession(const std::string&, const std::string&,
                            const std::vector<RemoteCoding::StreamAngle>&,
                            Base::Completion<RemoteCoding::PublishSessionSummary>) override {}

private:
    std::optional<RemoteCoding::TaggingSessionItem> session_;
};

class NoTeams final : public RemoteCoding::TevuTeamServiceProtocol {
public:
    void fetchTeams(const std::vector<RemoteCoding::TevuFeaturePrivilege>&,
                    Base::Completion<std::vector<RemoteCoding::TeamSummary>>) override {}
};

}  // namespace Benchmarks
