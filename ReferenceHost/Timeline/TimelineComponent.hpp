#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/NotificationCenterProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/TimelineComponentProtocol.hpp"
#include "ReferenceHost/Timeline/CallRecorder.hpp"
#include "ReferenceHost/Timeline/Timeline.hpp"
#include "ReferenceHost/Windowing/HeadlessWindowing.hpp"

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ReferenceHost {

/// How the opening of live shares goes. Read when a share is opened.
struct LiveShareBehaviour {
    std::exception_ptr refusal;          ///< set: the call fails with it at once
    Base::Seconds openingTime{0};        ///< from the call to the completion
    Base::Seconds timelineLag{0};        ///< from the completion to the moment when the timeline is there
    bool completesWithoutId = false;     ///< the share could not be opened; no timeline
    bool opensTimeline = true;           ///< false: completes with an id that no timeline has
    bool completes = true;               ///< false: nothing is ever heard of it
    bool completesInBackground = false;  ///< the completion is called off the main thread
    bool completesInsideCall = false;    ///< opens the timeline and completes before the call returns
    std::optional<std::string>
        onTimeline{};  ///< set: shown on this timeline again, if it is still open and showed one
};

/// The host's open timelines, each in a window that has its title; closing the window closes the timeline. Main thread only.
/// Made as a `std::shared_ptr`; jobs that it has posted hold it weakly.
class TimelineComponent final : public RemoteCoding::TimelineComponentProtocol,
                                public std::enable_shared_from_this<TimelineComponent> {
public:
    /// `makeId` makes the ids of timelines, rows, clips and shown videos. All must outlive the component.
    TimelineComponent(Base::ExecutionProtocol& execution,
                      RemoteCoding::NotificationCenterProtocol& notifications, HeadlessWindowing& windowing,
                      std::function<std::string()> makeId, CallRecorder recordCall = {});

    // TimelineComponentProtocol
    [[nodiscard]] std::shared_ptr<RemoteCoding::TimelineProtocol> capturingTimeline() override;
    [[nodiscard]] std::shared_ptr<RemoteCoding::TimelineProtocol>
    timelineWith(const std::string& timelineId) override;
    [[nodiscard]] std::shared_ptr<RemoteCoding::TimelineProtocol>
    getTimelineWithVideoId(const std::string& videoId) override;

    /// The timeline shows a video with a new id of this host, which is not the cloud's id of the shared
    /// video.
    Base::Result<void> openLiveShareWithShareFiles(
        const std::vector<RemoteCoding::ShareFile>& shareFiles,
        std::shared_ptr<RemoteCoding::WindowProtocol> window, std::optional<std::string> directoryURL,
        std::function<void(std::optional<std::string> videoId)> completionHandler) override;
    [[nodiscard]] std::shared_ptr<RemoteCoding::TimelineProtocol> frontTimeline() override;
    [[nodiscard]] bool isTimelineWindow(const std::shared_ptr<RemoteCoding::WindowProtocol>& window) override;

    /// Posts no `liveShareDidComplete`: the share did not come to its end by itself.
    void stopLiveShareWithTimelineId(const std::optional<std::string>& timelineId) override;

    // The user's side.

    /// Opens an empty timeline and brings it to the front. Without an id it gets a new one.
    std::shared_ptr<Timeline> openTimeline(const std::string& title, std::optional<std::string> videoId = {},
                                           std::optional<std::string> timelineId = {});

    /// Posts `timelineDidRemove`, forgets the timeline, then closes its window. False when there is no such timeline.
    bool closeTimeline(const std::string& timelineId);

    /// The live share that the timeline shows is over: posts `liveShareDidComplete`. The timeline stays open.
    void completeLiveShare(const std::string& timelineId);

    [[nodiscard]] std::shared_ptr<Timeline> findTimeline(const std::string& timelineId) const;
    [[nodiscard]] std::vector<std::shared_ptr<Timeline>> openTimelines() const;  ///< in the order of opening

    /// The timeline whose window is in front of those of the others; null when none is open.
    [[nodiscard]] std::shared_ptr<Timeline> timelineInFront() const;
    void bringToFront(const std::string& timelineId);

    /// Null when there is no such timeline.
    [[nodiscard]] std::shared_ptr<HeadlessWindow> windowOf(const std::string& timelineId) const;

    [[nodiscard]] bool showsLiveShare(const std::string& timelineId) const;

    /// Whose capture runs; absent when nothing is captured. Closing the timeline forgets it.
    void setCapturingTimeline(std::optional<std::string> timelineId);

    /// The capturing timeline is published as a new session.
    void beginPublishing();

    /// Gives the number of the session writer that was made last; without it all are taken for one.
    std::function<std::uint64_t()> lastWriter;

    /// One object for all timelines of this host, those opened before included.
    [[nodiscard]] TimelineRules& rules() { return *rules_; }

    LiveShareBehaviour liveShares;

    /// The callbacks of row insertions through the coding target come as main-thread jobs of their own.
    bool insertionCallbacksComeLater = false;

private:
    struct Open {
        Open(std::shared_ptr<Timeline> timeline_, std::shared_ptr<HeadlessWindow> window_)
            : timeline(std::move(timeline_)), window(std::move(window_)) {}
        std::shared_ptr<Timeline> timeline;
        std::shared_ptr<HeadlessWindow> window;
        bool showsLiveShare = false;
    };

    [[nodiscard]] const Open* find(const std::string& timelineId) const;
    void openLiveShare(const std::string& title, const std::string& videoId);
    /// The id of the video that the timeline shows again; absent when there is none.
    [[nodiscard]] std::optional<std::string> reopenLiveShare(const std::optional<std::string>& timelineId);
    void liveShareIsOpen(const std::string& title, const LiveShareBehaviour& behaviour,
                         const std::function<void(std::optional<std::string>)>& completionHandler);
    void timelineDidChange(const std::shared_ptr<Timeline>& timeline);

    Base::ExecutionProtocol& execution_;
    RemoteCoding::NotificationCenterProtocol& notifications_;
    HeadlessWindowing& windowing_;
    std::function<std::string()> makeId_;
    CallRecorder recordCall_;
    std::shared_ptr<TimelineRules> rules_ = std::make_shared<TimelineRules>();

    std::vector<Open> open_;
    std::optional<std::string> capturingTimelineId_;
};

}  // namespace ReferenceHost
