// Two analysts code one match together, each in a host of its own: the smallest program that does the whole thing. The hosts are
// reference hosts on virtual time; a real one puts its own timelines, capture, cloud client and run loop in their place.

#include "Components/RemoteCoding/Component/RemoteCodingComponent.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"
#include "ReferenceHost/Execution/VirtualTime.hpp"
#include "ReferenceHost/Host.hpp"

#include <any>
#include <chrono>
#include <iostream>
#include <memory>
#include <string>

namespace {

ReferenceHost::HostOptions signedInAs(const std::string& user) {
    ReferenceHost::HostOptions options;
    options.userId = user;
    return options;
}

/// One analyst's computer: a host, and the component that it has loaded.
class Computer {
public:
    Computer(const std::string& user, ReferenceHost::VirtualTime& time, ReferenceHost::CloudService& cloud,
             ReferenceHost::Trace& trace)
        : execution_(time, user, &trace),
          host(user, execution_, cloud, trace, signedInAs(user)),
          component(RemoteCoding::RemoteCodingComponent::make(host.environment())) {
        host.setRemoteCodingComponent(component);
        observer_ = host.environment().notificationCenter.addObserver(
            RemoteCoding::Notifications::remoteCodingSessionUpdatedNotification, nullptr,
            [user](const RemoteCoding::Notification& notification) {
                const auto details = std::any_cast<RemoteCoding::RemoteCodingSessionDetails>(
                    notification.userInfo.at("sessionDetails"));
                std::cout << user << ": session \"" << details.name << "\" has status " << int(details.status)
                          << '\n';
            });
    }

    ~Computer() {
        host.environment().notificationCenter.removeObserver(observer_);
        host.stop();
        component.reset();
    }

    Computer(const Computer&) = delete;
    Computer& operator=(const Computer&) = delete;

private:
    ReferenceHost::VirtualExecution execution_;

public:
    ReferenceHost::Host host;
    std::shared_ptr<RemoteCoding::RemoteCodingComponent> component;

private:
    RemoteCoding::NotificationCenterProtocol::ObserverId observer_{};
};

}  // namespace

int main() {
    using std::chrono_literals::operator""s;
    ReferenceHost::VirtualTime time(1);
    ReferenceHost::VirtualScheduler scheduler(time);
    ReferenceHost::Trace trace([&] { return time.now(); });
    ReferenceHost::CloudService cloud(scheduler);
    Computer ann("Ann", time, cloud, trace);
    Computer ben("Ben", time, cloud, trace);

    // Ann captures the match and publishes it as a session.
    const auto match = ann.host.startCapture("Cup match");
    const auto attack = match->addRow("Attack", Base::Color(200, 30, 30));
    const auto created = ann.component->createNewRemoteCodingSession(
        "Cup match, live", ReferenceHost::makePublishSession("video-1"), "team-1",
        std::make_shared<ReferenceHost::CaptureDevice>("Main camera"));
    if (!created.succeeded()) {
        std::cerr << "The session could not be created\n";
        return 1;
    }
    time.runFor(5s);

    // Ben joins it. The timeline opens about three seconds later; it is found by the session's first update.
    RemoteCoding::ShareFile shareFile;
    shareFile.video.name = "Cup match, live";
    ben.component->joinRemoteCodingSession(shareFile, "Main camera", "video-1", "team-1",
                                           cloud.primarySessionOf("video-1"));
    time.runFor(10s);
    const auto shared = ben.host.timelines().timelineInFront();

    // Both code at the same time.
    match->addInstance(attack->uniqueId(), 12.0, 17.5);
    shared->addInstance(shared->findRowNamed("Attack")->uniqueId(), 31.0, 36.0);
    const bool settled = time.runUntil(
        [&] {
            const auto anns = ann.component->synchronisationStatus(match->uniqueId());
            const auto bens = ben.component->synchronisationStatus(shared->uniqueId());
            return anns && bens && anns->isSettled() && bens->isSettled();
        },
        60s);
    time.runFor(5s);

    std::cout << "Ann sees " << attack->numberOfInstances() << " clips, Ben sees "
              << shared->findRowNamed("Attack")->numberOfInstances() << '\n';
    const bool equal =
        attack->numberOfInstances() == 2 && shared->findRowNamed("Attack")->numberOfInstances() == 2;

    ben.component->exitRemoteCodingSession(shared->uniqueId());
    ann.component->endRemoteCodingSession(match->uniqueId());
    time.runFor(1s);  // the sessions' last updates are posted
    const bool finished =
        time.runUntil([&] { return ann.host.unfinishedTasks() + ben.host.unfinishedTasks() == 0; }, 60s);
    return settled && equal && finished ? 0 : 1;
}
