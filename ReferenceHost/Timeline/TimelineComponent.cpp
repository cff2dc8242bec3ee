#include "ReferenceHost/Timeline/TimelineComponent.hpp"

#include "Base/Error.hpp"

#include <algorithm>
#include <utility>

namespace ReferenceHost {

using RemoteCoding::Notification;
using RemoteCoding::TimelineProtocol;
namespace TimelineNotifications = RemoteCoding::TimelineNotifications;

TimelineComponent::TimelineComponent(Base::ExecutionProtocol& execution,
                                     RemoteCoding::NotificationCenterProtocol& notifications,
                                     std::function<std::string()> makeId, CallRecorder recordCall)
    : execution_(execution),
      notifications_(notifications),
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
    const auto found = std::find_if(timelines_.begin(), timelines_.end(),
                                    [&](const auto& timeline) { return timeline->videoId() == videoId; });
    return found != timelines_.end() ? *found : nullptr;
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
        return Base::failure<void>(Base::DescribedError("There is no file to open."));
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
    std::optional<std::string> videoId;
    if (!behaviour.completesWithoutId) {
        videoId = makeId_();
        if (behaviour.opensTimeline && behaviour.timelineLag > Base::Seconds(0)) {
            execution_.postToMainAfter(behaviour.timelineLag, [weakSelf = weak_from_this(), title, videoId] {
                if (const auto self = weakSelf.lock()) {
                    self->openTimeline(title, videoId);
                }
            });
        } else if (behaviour.opensTimeline) {
            openTimeline(title, videoId);
        }
    }
    if (behaviour.completesInBackground) {
        execution_.postToBackground([completionHandler, videoId] { completionHandler(videoId); });
    } else {
        completionHandler(videoId);
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
    options.runInsertionCallback = [weakSelf = weak_from_this()](Base::Job callback) {
        const auto self = weakSelf.lock();
        if (self && self->insertionCallbacksComeLater) {
            self->execution_.postToMain(std::move(callback));
        } else {
            callback();
        }
    };
    auto timeline = Timeline::make(std::move(options));
    timelines_.push_back(timeline);
    bringToFront(timeline->uniqueId());
    return timeline;
}

bool TimelineComponent::closeTimeline(const std::string& timelineId) {
    const auto timeline = findTimeline(timelineId);
    if (!timeline) {
        return false;
    }
    notifications_.post(Notification(TimelineNotifications::timelineDidRemove, timeline));
    std::erase(timelines_, timeline);
    if (capturingTimelineId_ == timelineId) {
        capturingTimelineId_.reset();
    }
    if (frontTimelineId_ == timelineId) {
        frontTimelineId_.reset();
        if (!timelines_.empty()) {
            frontTimelineId_ = timelines_.back()->uniqueId();
        }
    }
    return true;
}

void TimelineComponent::completeLiveShare(const std::string& timelineId) {
    notifications_.post(
        Notification(TimelineNotifications::liveShareDidComplete, nullptr, {{"timelineId", timelineId}}));
}

std::shared_ptr<Timeline> TimelineComponent::findTimeline(const std::string& timelineId) const {
    const auto found = std::find_if(timelines_.begin(), timelines_.end(),
                                    [&](const auto& timeline) { return timeline->uniqueId() == timelineId; });
    return found != timelines_.end() ? *found : nullptr;
}

std::vector<std::shared_ptr<Timeline>> TimelineComponent::openTimelines() const { return timelines_; }

std::shared_ptr<Timeline> TimelineComponent::frontTimeline() const {
    return frontTimelineId_ ? findTimeline(*frontTimelineId_) : nullptr;
}

void TimelineComponent::bringToFront(const std::string& timelineId) {
    if (findTimeline(timelineId)) {
        frontTimelineId_ = timelineId;
    }
}

void TimelineComponent::setCapturingTimeline(std::optional<std::string> timelineId) {
    capturingTimelineId_ = std::move(timelineId);
}

void TimelineComponent::timelineDidChange(const std::shared_ptr<Timeline>& timeline) {
    // Nobody is told of a timeline that is not open any more.
    if (std::find(timelines_.begin(), timelines_.end(), timeline) != timelines_.end()) {
        notifications_.post(Notification(TimelineNotifications::timelineDidAnyChange, timeline));
    }
}

}  // namespace ReferenceHost
