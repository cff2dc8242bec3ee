#pragma once

#include "Base/Result.hpp"
#include "Components/RemoteCoding/HostInterfaces/SharedVideo.hpp"
#include "Components/RemoteCoding/HostInterfaces/TimelineProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/WindowProtocol.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace RemoteCoding {

/// The host's open timelines. Main thread only.
class REMOTE_CODING_EXPORT TimelineComponentProtocol : public HostObject {
public:
    /// The timeline of the running capture; null when nothing is captured.
    [[nodiscard]] virtual std::shared_ptr<TimelineProtocol> capturingTimeline() = 0;

    /// The open timeline with that id; null when there is none (any more). Called often: at the start of every
    /// synchronisation step.
    [[nodiscard]] virtual std::shared_ptr<TimelineProtocol> timelineWith(const std::string& timelineId) = 0;

    /// The open timeline that shows that video; null when there is none.
    [[nodiscard]] virtual std::shared_ptr<TimelineProtocol>
    getTimelineWithVideoId(const std::string& videoId) = 0;

    /// Opens a live share on a timeline of its own. A failure that shows at once is the result; otherwise
    /// `completionHandler` is called once, later or before the call returns, on any thread, with the id under which
    /// `getTimelineWithVideoId` will find the timeline, or with none when the share could not be opened. The
    /// component passes one file, no window (the host chooses) and no directory.
    virtual Base::Result<void> openLiveShareWithShareFiles(
        const std::vector<ShareFile>& shareFiles, std::shared_ptr<WindowProtocol> window,
        std::optional<std::string> directoryURL,
        std::function<void(std::optional<std::string> videoId)> completionHandler) = 0;

    /// The timeline in which the user works; null when none is open.
    [[nodiscard]] virtual std::shared_ptr<TimelineProtocol> frontTimeline() = 0;

    /// Whether the window shows a timeline. `window` is one of `WindowingProtocol::applicationWindows`.
    [[nodiscard]] virtual bool isTimelineWindow(const std::shared_ptr<WindowProtocol>& window) = 0;

    /// Ends the live share that the timeline shows; its timeline stays open. Nothing happens for an absent id or for a timeline that
    /// shows none.
    virtual void stopLiveShareWithTimelineId(const std::optional<std::string>& timelineId) = 0;
};

}  // namespace RemoteCoding
