#pragma once

#include "Components/RemoteCoding/HostInterfaces/HostEnvironment.hpp"

#include <functional>
#include <stdexcept>

namespace RemoteCoding {

/// A timeline component in front of another, that goes wrong where told to.
class FaultyTimelineComponent : public TimelineComponentProtocol {
public:
    using ShareCompletion = std::function<void(std::optional<std::string>)>;

    explicit FaultyTimelineComponent(TimelineComponentProtocol& behind) : behind_(behind) {}

    std::shared_ptr<TimelineProtocol> capturingTimeline() override { return behind().capturingTimeline(); }
    std::shared_ptr<TimelineProtocol> timelineWith(const std::string& timelineId) override {
        return behind().timelineWith(timelineId);
    }
    std::shared_ptr<TimelineProtocol> getTimelineWithVideoId(const std::string& videoId) override {
        return behind().getTimelineWithVideoId(videoId);
    }
    Base::Result<void> openLiveShareWithShareFiles(const std::vector<ShareFile>& shareFiles,
                                                   std::shared_ptr<WindowProtocol> window,
                                                   std::optional<std::string> directoryURL,
                                                   ShareCompletion completionHandler) override {
        completion = completionHandler;
        opensOneFileWithoutWindow = shareFiles.size() == 1 && !window && !directoryURL;
        auto result = behind().openLiveShareWithShareFiles(
            shareFiles, window, directoryURL,
            [repeats = completionRepeats, completionHandler](const auto& videoId) {
                for (int count = 0; count <= repeats; ++count) {
                    completionHandler(videoId);
                }
            });
        return failsAfterOpening ? Base::failure<void>(std::runtime_error("after opening")) : result;
    }

    std::shared_ptr<TimelineProtocol> frontTimeline() override { return behind().frontTimeline(); }
    bool isTimelineWindow(const std::shared_ptr<WindowProtocol>& window) override {
        return behind().isTimelineWindow(window);
    }
    void stopLiveShareWithTimelineId(const std::optional<std::string>& timelineId) override {
        behind().stopLiveShareWithTimelineId(timelineId);
    }

    std::function<void()> before;  ///< called inside each operation, if there is one
    bool throws = false;
    bool failsAfterOpening = false;
    int completionRepeats = 0;
    bool opensOneFileWithoutWindow = false;
    ShareCompletion completion;  ///< the last, kept for longer than a host may

private:
    TimelineComponentProtocol& behind() const {
        if (before) {
            before();
        }
        return throws ? throw std::runtime_error("timeline component") : behind_;
    }

    TimelineComponentProtocol& behind_;
};

}  // namespace RemoteCoding
