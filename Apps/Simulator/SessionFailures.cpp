#include "Apps/Simulator/SessionFailures.hpp"

#include "Base/Error.hpp"

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>

namespace Simulator {

using ReferenceHost::LiveShareBehaviour;

namespace {

constexpr double signedOutFor = 2;        // longer than a live share takes to open
constexpr double longestTimelineLag = 6;  // the component waits for three seconds

std::exception_ptr refusal(const char* why) { return std::make_exception_ptr(Base::DescribedError(why)); }

void signOutForAWhile(Seat& seat, Action what) {
    auto& account = seat.host().account();
    seat.faults().begin(
        what, signedOutFor, [&] { account.signOut(); }, [&account, &seat] { account.signIn(seat.name()); });
}

Deed prepareFailingHosting(Seat& seat, const Step& step) {
    const bool keepsTimeline = step.action == Action::hostWithoutCapture;
    if (seat.isJoining() || seat.isHosting() || (seat.stay() != nullptr && !keepsTimeline)) {
        return nothingToDo("in a session already");
    }
    auto& host = seat.host();
    switch (step.action) {
    case Action::hostWithoutCapture:
        return doing([&seat, &host] {
            host.stopCapture();
            askToPublish(seat);
        });
    case Action::hostSignedOut:
        return doing([&seat, step] {
            signOutForAWhile(seat, step.action);
            publish(seat, step);
        });
    default:
        return doing([&seat, &host, step] {
            host.capture().refusal = refusal("The stream was refused");
            publish(seat, step);
            host.capture().refusal = nullptr;
        });
    }
}

/// Joins while the live share behaves like this.
void joinMeeting(Seat& seat, const std::function<void(LiveShareBehaviour&)>& change) {
    auto& liveShares = seat.host().timelines().liveShares;
    const LiveShareBehaviour usual = liveShares;
    change(liveShares);
    join(seat, seat.world().cloud.primarySessionOf(seat.world().offer->videoId));
    liveShares = usual;
}

Deed prepareFailingJoining(Seat& seat, const Step& step) {
    // What cannot come to a session may be tried beside one.
    const bool mayBegin = step.action == Action::joinLate || step.action == Action::joinSignedOut ||
                          step.action == Action::joinOtherSession;
    if (!seat.world().offer || seat.isJoining() || (seat.stay() != nullptr && mayBegin)) {
        return nothingToDo("in a session already, or none is live");
    }
    std::function<void(LiveShareBehaviour&)> change = [](LiveShareBehaviour&) {};
    switch (step.action) {
    case Action::joinRefused:
        change = [](LiveShareBehaviour& share) { share.refusal = refusal("The share was refused"); };
        break;
    case Action::joinWithoutId:
        change = [](LiveShareBehaviour& share) { share.completesWithoutId = true; };
        break;
    case Action::joinSignedOut:
        return doing([&seat, step, change] {
            signOutForAWhile(seat, step.action);
            joinMeeting(seat, change);
        });
    case Action::joinWithoutTimeline:
        change = [](LiveShareBehaviour& share) { share.opensTimeline = false; };
        break;
    case Action::joinLate:
        change = [lag = std::clamp(step.amount, 0.0, longestTimelineLag)](LiveShareBehaviour& share) {
            share.timelineLag = Base::Seconds(lag);
        };
        break;
    default:
        return doing([&seat] {
            World& world = seat.world();
            const std::string videoId = world.offer->videoId;
            if (world.cloud.primarySessionOf(videoId)) {
                join(seat, world.cloud.addTaggingSession(World::teamId, videoId, seat.name()));
            }
        });
    }
    return doing([&seat, change] { joinMeeting(seat, change); });
}

void tellStrayNotifications(Seat& seat) {
    using RemoteCoding::Notification;
    namespace TimelineNotifications = RemoteCoding::TimelineNotifications;
    auto& center = seat.host().notificationCenter();
    center.post(Notification(RemoteCoding::Notifications::streamStatusChanged));
    center.post(Notification(TimelineNotifications::timelineDidRemove));
    center.post(Notification(TimelineNotifications::timelineDidAnyChange));
    center.post(Notification(TimelineNotifications::liveShareDidComplete));
    center.post(Notification(TimelineNotifications::liveShareDidComplete, nullptr,
                             {{"timelineId", std::string("no timeline")}}));
}

}  // namespace

Deed prepareFailingSession(Seat& seat, const Step& step) {
    switch (step.action) {
    case Action::hostWithoutCapture:
    case Action::hostSignedOut:
    case Action::hostRefused:
        return prepareFailingHosting(seat, step);
    case Action::endUnknown:
        return doing([&seat, asks = step.object % 2 == 1] {
            if (asks) {
                seat.component().promptExitRemoteCodingSession(nullptr, "no timeline");
            } else {
                seat.component().endRemoteCodingSession("no timeline");
            }
        });
    case Action::strayNotifications:
        return doing([&seat] { tellStrayNotifications(seat); });
    default:
        return prepareFailingJoining(seat, step);
    }
}

}  // namespace Simulator
