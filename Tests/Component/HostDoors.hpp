#pragma once

#include "Components/RemoteCoding/HostInterfaces/HostEnvironment.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace ComponentTests {

/// A timeline component in front of another, that goes wrong where told to.
class FaultyTimelineComponent : public RemoteCoding::TimelineComponentProtocol {
public:
    using ShareCompletion = std::function<void(std::optional<std::string>)>;

    explicit FaultyTimelineComponent(RemoteCoding::TimelineComponentProtocol& behind) : behind_(behind) {}

    std::shared_ptr<RemoteCoding::TimelineProtocol> capturingTimeline() override {
        throwOnDemand();
        return behind_.capturingTimeline();
    }
    std::shared_ptr<RemoteCoding::TimelineProtocol> timelineWith(const std::string& timelineId) override {
        throwOnDemand();
        return behind_.timelineWith(timelineId);
    }
    std::shared_ptr<RemoteCoding::TimelineProtocol>
    getTimelineWithVideoId(const std::string& videoId) override {
        throwOnDemand();
        return behind_.getTimelineWithVideoId(videoId);
    }
    Base::Result<void> openLiveShareWithShareFiles(const std::vector<RemoteCoding::ShareFile>& shareFiles,
                                                   std::shared_ptr<RemoteCoding::WindowProtocol> window,
                                                   std::optional<std::string> directoryURL,
                                                   ShareCompletion completionHandler) override {
        throwOnDemand();
        arguments.emplace_back(shareFiles.size(), window == nullptr && !directoryURL);
        completions.push_back(completionHandler);
        return behind_.openLiveShareWithShareFiles(
            shareFiles, std::move(window), std::move(directoryURL),
            [repeats = completionRepeats, completion = std::move(completionHandler)](const auto& videoId) {
                for (int count = 0; count <= repeats; ++count) {
                    completion(videoId);
                }
            });
    }

    bool throws = false;
    int completionRepeats = 0;
    std::vector<std::pair<std::size_t, bool>> arguments;  ///< number of files; no window and no directory
    std::vector<ShareCompletion> completions;             ///< kept for longer than a host may

private:
    void throwOnDemand() const {
        if (throws) {
            throw std::runtime_error("timeline component");
        }
    }

    RemoteCoding::TimelineComponentProtocol& behind_;
};

/// User defaults that cannot be read.
class FaultyUserDefaults : public RemoteCoding::UserDefaultsProtocol {
public:
    std::optional<bool> boolForKey(const std::string& /*key*/) const override {
        throw std::runtime_error("user defaults");
    }
};

}  // namespace ComponentTests
