#include "Benchmarks/Support/Doors.hpp"

#include <stdexcept>
#include <utility>

namespace Benchmarks {

using RemoteCoding::TimelineProtocol;

void SilentLog::logError(std::string_view message, std::string_view /*detail*/, std::string_view /*file*/,
                         std::string_view /*function*/, std::uint_least32_t /*line*/) {
    // What fails here was not measured.
    throw std::runtime_error("The component logs: " + std::string(message));
}

PlainNotificationCenter::ObserverId PlainNotificationCenter::addObserver(
    const std::string& name, std::shared_ptr<RemoteCoding::HostObject> /*object*/, Observer observer) {
    ++lastId_;
    if (name == RemoteCoding::TimelineNotifications::timelineDidAnyChange) {
        observers_.emplace(lastId_, std::move(observer));
    }
    return lastId_;
}

void PlainNotificationCenter::post(const RemoteCoding::Notification& notification) {
    for (const auto& entry : observers_) {
        entry.second(notification);
    }
}

std::shared_ptr<TimelineProtocol> OneTimeline::capturingTimeline() { return nullptr; }

std::shared_ptr<TimelineProtocol> OneTimeline::timelineWith(const std::string& timelineId) {
    return timeline_->uniqueId() == timelineId ? timeline_ : nullptr;
}

std::shared_ptr<TimelineProtocol> OneTimeline::getTimelineWithVideoId(const std::string& /*videoId*/) {
    return nullptr;
}

Base::Result<void> OneTimeline::openLiveShareWithShareFiles(
    const std::vector<RemoteCoding::ShareFile>& /*shareFiles*/,
    std::shared_ptr<RemoteCoding::WindowProtocol> /*window*/, std::optional<std::string> /*directoryURL*/,
    std::function<void(std::optional<std::string> videoId)> /*completionHandler*/) {
    return Base::failure<void>(std::runtime_error("Nothing is shared here"));
}

std::shared_ptr<TimelineProtocol> OneTimeline::frontTimeline() { return timeline_; }

bool OneTimeline::isTimelineWindow(const std::shared_ptr<RemoteCoding::WindowProtocol>& /*window*/) {
    return false;
}

void OneTimeline::stopLiveShareWithTimelineId(const std::optional<std::string>& /*timelineId*/) {}

namespace {

class PlainHandle final : public RemoteCoding::SubscriptionHandle {
public:
    void cancel() override {}
};

}  // namespace

void PlainClient::fetchTaggingSessions(
    const std::string& /*teamId*/, const std::string& /*videoId*/,
    const std::optional<RemoteCoding::FetchTaggingSessionsOptions>& /*options*/,
    Base::Completion<std::vector<RemoteCoding::TaggingSessionItem>> completion) {
    std::vector<RemoteCoding::TaggingSessionItem> sessions;
    if (session_) {
        sessions.push_back(*std::exchange(session_, std::nullopt));
    }
    completion(std::move(sessions));
}

std::shared_ptr<RemoteCoding::SubscriptionHandle> PlainClient::subscribeToTaggingSessionChanges(
    const std::string& /*taggingSessionId*/, const std::string& /*timelineId*/,
    ChangeHandler /*changeHandler*/, ErrorHandler /*errorHandler*/) {
    return std::make_shared<PlainHandle>();
}

}  // namespace Benchmarks
