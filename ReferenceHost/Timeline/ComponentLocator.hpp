#pragma once

#include "Components/RemoteCoding/HostInterfaces/ComponentLocatorProtocol.hpp"

#include <memory>

namespace ReferenceHost {

/// Finds the host's components. Each may be absent. The remote coding component is registered by whoever
/// makes it and is not owned: it goes when its maker drops it. Main thread only.
class ComponentLocator final : public RemoteCoding::ComponentLocatorProtocol {
public:
    [[nodiscard]] std::shared_ptr<RemoteCoding::TimelineComponentProtocol> timelineComponent() override {
        return timelineComponent_;
    }
    [[nodiscard]] std::shared_ptr<RemoteCoding::CaptureComponentProtocol> captureComponent() override {
        return captureComponent_;
    }
    [[nodiscard]] std::shared_ptr<RemoteCoding::RemoteCodingComponentProtocol>
    remoteCodingComponent() override {
        return remoteCodingComponent_.lock();
    }

    void setTimelineComponent(std::shared_ptr<RemoteCoding::TimelineComponentProtocol> component) {
        timelineComponent_ = std::move(component);
    }
    void setCaptureComponent(std::shared_ptr<RemoteCoding::CaptureComponentProtocol> component) {
        captureComponent_ = std::move(component);
    }
    void
    setRemoteCodingComponent(const std::shared_ptr<RemoteCoding::RemoteCodingComponentProtocol>& component) {
        remoteCodingComponent_ = component;
    }

private:
    std::shared_ptr<RemoteCoding::TimelineComponentProtocol> timelineComponent_;
    std::shared_ptr<RemoteCoding::CaptureComponentProtocol> captureComponent_;
    std::weak_ptr<RemoteCoding::RemoteCodingComponentProtocol> remoteCodingComponent_;
};

}  // namespace ReferenceHost
