#include "ReferenceHost/Timeline/TimelineComponent.hpp"

#include "Base/Error.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace ReferenceHost {

using RemoteCoding::Notification;
using RemoteCoding::TimelineProtocol;
namespace TimelineNotifications = RemoteCoding::TimelineNotifications;

TimelineComponent::TimelineComponent(Base::ExecutionProtocol& execution,
                                     RemoteCoding::NotificationCenterProtocol& notifications,
                                     HeadlessWindowing& windowing, std::function<std::string()> makeId,
                                     CallRecorder recordCall)
    : execution_(execution),
      notifications_(notifications),
      windowing_(windowing),
      makeId_(std::move(makeId)),
      recordCall_(std::move(recordCall)) {}

// ---- what the component asks ----

std::shared_ptr<TimelineProtocol> TimelineComponent::capturingTimeline() {
    return capturingTimelineId_ ? findTimeline(*capturingTimelineId_) : nullptr;
}

std::shared_ptr<TimelineProtocol> TimelineComponent::timelineWith(const std::string& timelineId) {
    return findTimeline(timelineId);
}

std::shared_ptr<TimelineProtocol> TimelineComponent::getTimelineWithVideoId(const std::string& videoId) {
    const auto found =
        std::ranges::find_if(open_, [&](const Open& open) { return open.timeline->videoId() == videoId; });
    return found != open_.end() ? found->timeline : nullptr;
}

Base::Result<void> TimelineComponent::openLiveShareWithShareFiles(
    const std::vector<RemoteCoding::ShareFile>& shareFiles,
    std::shared_ptr<RemoteCoding::WindowProtocol> /*window*/, std::optional<std::string> /*directoryURL*/,
    std::function<void(std::optional<std::string> videoId)> completionHandler) {
    if (recordCall_) {
        recordCall_("openLiveShareWithShareFiles",
                    {{"video", shareFiles.empty() ? std::string() : shareFiles.front().video.identifier}});
    }
    if (liveShares.refusal) {
        return Base::Result<void>::failure(liveShares.refusal);
    }
    if (shareFiles.empty()) {
        return Base::failure<void>(Base::DescribedError("There is no file to open"));
    }
    const auto& title = shareFiles.front().video.name;
    if (liveShares.completesInsideCall) {
        liveShareIsOpen(title, liveShares, completionHandler);
        return {};
    }
    execution_.postToMainAfter(liveShares.openingTime,
                               [weakSelf = weak_from_this(), title, behaviour = liveShares,
                                completionHandler = std::move(completionHandler)] {
                                   if (const auto self = weakSelf.lock()) {
                                       self->liveShareIsOpen(title, behaviour, completionHandler);
                                   }
                               });
    return {};
}

void TimelineComponent::liveShareIsOpen(
    const std::string& title, const LiveShareBehaviour& behaviour,
    const std::function<void(std::optional<std::string>)>& completionHandler) {
    if (!behaviour.completes) {
        return;
    }
    auto videoId = behaviour.completesWithoutId ? std::nullopt : reopenLiveShare(behaviour.onTimeline);
    if (!behaviour.completesWithoutId && !videoId) {
        videoId = makeId_();
        if (behaviour.opensTimeline && behaviour.timelineLag > Base::Seconds(0)) {
            execution_.postToMainAfter(behaviour.timelineLag, [weakSelf = weak_from_this(), title, videoId] {
                if (const auto self = weakSelf.lock()) {
                    self->openLiveShare(title, *videoId);
                }
            });
        } else if (behaviour.opensTimeline) {
            openLiveShare(title, *videoId);
        }
    }
    if (behaviour.completesInBackground) {
        execution_.postToBackground([completionHandler, videoId] { completionHandler(videoId); });
    } else {
        completionHandler(videoId);
    }
}

void TimelineComponent::openLiveShare(const std::string& title, const std::string& videoId) {
    openTimeline(title, videoId);
    open_.back().showsLiveShare = true;
}

std::optional<std::string> TimelineComponent::reopenLiveShare(const std::optional<std::string>& timelineId) {
    for (Open& open : open_) {
        if (open.timeline->uniqueId() == timelineId) {
            open.showsLiveShare = true;
            open.timeline->enterSession(lastWriter ? lastWriter() : 0);
            return open.timeline->videoId();
        }
    }
    return std::nullopt;
}

std::shared_ptr<TimelineProtocol> TimelineComponent::frontTimeline() {
    if (recordCall_) {
        recordCall_("frontTimeline", {});
    }
    return timelineInFront();
}

bool TimelineComponent::isTimelineWindow(const std::shared_ptr<RemoteCoding::WindowProtocol>& window) {
    return std::ranges::any_of(open_, [&](const Open& open) { return open.window == window; });
}

void TimelineComponent::stopLiveShareWithTimelineId(const std::optional<std::string>& timelineId) {
    if (recordCall_) {
        recordCall_("stopLiveShareWithTimelineId", {{"timelineId", timelineId.value_or("")}});
    }
    for (Open& open : open_) {
        if (open.showsLiveShare && open.timeline->uniqueId() == timelineId) {
            open.showsLiveShare = false;
            open.timeline->leaveSession();
        }
    }
}

// ---- what the user does ----

std::shared_ptr<Timeline> TimelineComponent::openTimeline(const std::string& title,
                                                          std::optional<std::string> videoId,
                                                          std::optional<std::string> timelineId) {
    if (timelineId) {
        if (auto open = findTimeline(*timelineId)) {
            bringToFront(*timelineId);
            return open;
        }
    }
    Timeline::Options options;
    options.uniqueId = timelineId ? *std::move(timelineId) : makeId_();
    options.title = title;
    options.videoId = std::move(videoId);
    options.makeId = makeId_;
    options.rules = rules_;
    options.recordCall = recordCall_;
    options.didChange = [weakSelf = weak_from_this()](const std::shared_ptr<Timeline>& timeline) {
        if (const auto self = weakSelf.lock()) {
            self->timelineDidChange(timeline);
        }
    };
    options.runLater = [weakSelf = weak_from_this()](Base::Job job) {
        if (const auto self = weakSelf.lock()) {
            self->execution_.postToMain(std::move(job));
        }
    };
    options.runInsertionCallback = [weakSelf = weak_from_this()](Base::Job callback) {
        const auto self = weakSelf.lock();
        if (self && self->insertionCallbacksComeLater) {
            self->execution_.postToMain(std::move(callback));
        } else {
            callback();
        }
    };
    auto timeline = Timeline::make(std::move(options));
    auto window = windowing_.makePlainWindow(title);
    window->didClose = [weakSelf = weak_from_this(), id = timeline->uniqueId()] {
        if (const auto self = weakSelf.lock()) {
            self->closeTimeline(id);
        }
    };
    open_.emplace_back(timeline, window);
    window->show();
    return timeline;
}

bool TimelineComponent::closeTimeline(const std::string& timelineId) {
    const auto timeline = findTimeline(timelineId);
    if (!timeline) {
        return false;
    }
    const auto window = windowOf(timelineId);
    notifications_.post(Notification(TimelineNotifications::timelineDidRemove, timeline));
    std::erase_if(open_, [&](const Open& open) { return open.timeline == timeline; });
    if (capturingTimelineId_ == timelineId) {
        capturingTimelineId_.reset();
    }
    window->performClose(nullptr);
    return true;
}

void TimelineComponent::completeLiveShare(const std::string& timelineId) {
    notifications_.post(
        Notification(TimelineNotifications::liveShareDidComplete, nullptr, {{"timelineId", timelineId}}));
}

void TimelineComponent::beginPublishing() {
    if (const auto timeline = capturingTimelineId_ ? findTimeline(*capturingTimelineId_) : nullptr) {
        timeline->beginPublishing(lastWriter ? lastWriter() : 0);
    }
}

const TimelineComponent::Open* TimelineComponent::find(const std::string& timelineId) const {
    const auto found = std::ranges::find_if(
        open_, [&](const Open& open) { return open.timeline->uniqueId() == timelineId; });
    return found != open_.end() ? &*found : nullptr;
}

std::shared_ptr<Timeline> TimelineComponent::findTimeline(const std::string& timelineId) const {
    const Open* open = find(timelineId);
    return open != nullptr ? open->timeline : nullptr;
}

std::vector<std::shared_ptr<Timeline>> TimelineComponent::openTimelines() const {
    std::vector<std::shared_ptr<Timeline>> timelines;
    std::ranges::transform(open_, std::back_inserter(timelines), &Open::timeline);
    return timelines;
}

std::shared_ptr<Timeline> TimelineComponent::timelineInFront() const {
    for (const auto& window : windowing_.visibleWindows()) {
        const auto found = std::ranges::find(open_, window, &Open::window);
        if (found != open_.end()) {
            return found->timeline;
        }
    }
    return nullptr;
}

void TimelineComponent::bringToFront(const std::string& timelineId) {
    if (const auto window = windowOf(timelineId)) {
        window->show();
    }
}

std::shared_ptr<HeadlessWindow> TimelineComponent::windowOf(const std::string& timelineId) const {
    const Open* open = find(timelineId);
    return open != nullptr ? open->window : nullptr;
}

bool TimelineComponent::showsLiveShare(const std::string& timelineId) const {
    const Open* open = find(timelineId);
    return open != nullptr && open->showsLiveShare;
}

void TimelineComponent::setCapturingTimeline(std::optional<std::string> timelineId) {
    capturingTimelineId_ = std::move(timelineId);
}

void TimelineComponent::timelineDidChange(const std::shared_ptr<Timeline>& timeline) {
    // Nobody is told of a timeline that is not open any more.
    if (find(timeline->uniqueId()) != nullptr) {
        notifications_.post(Notification(TimelineNotifications::timelineDidAnyChange, timeline));
    }
}

}  // namespace ReferenceHost
