// The faults of an analyst's calls, and of the way to the cloud and back.

#include "Apps/Simulator/Faults.hpp"
#include "Apps/Simulator/Seat.hpp"
#include "ReferenceHost/Cloud/PendingCall.hpp"

#include <algorithm>
#include <array>

namespace Simulator {

using ReferenceHost::CloudOperation;
using ReferenceHost::EventFault;
using ReferenceHost::Fault;

namespace {

constexpr double longestHang = 30;
constexpr double longestDelay = 20;        // of an event
constexpr double longestOutage = 15 * 60;  // of a link, or of fetches
constexpr double longestRestart = 60;

// Those that a step can choose.
constexpr std::array operations{CloudOperation::createMoments,        CloudOperation::updateMoments,
                                CloudOperation::savePresentationView, CloudOperation::removeMoments,
                                CloudOperation::fetchTaggingSessions, CloudOperation::subscribe,
                                CloudOperation::createTaggingSession, CloudOperation::getVideo};

}  // namespace

std::optional<Deed> Faults::prepareCall(const Step& step) {
    CloudOperation operation = operations[step.object % operations.size()];
    Fault fault;
    switch (step.action) {
    case Action::failBefore:
        fault.kind = Fault::Kind::failBeforeEffect;
        break;
    case Action::failAfter:
        fault.kind = Fault::Kind::failAfterEffect;
        break;
    case Action::hang:
        fault.hang = Base::Seconds(std::clamp(step.amount, 0.0, longestHang));
        break;
    case Action::answerFalse:
        fault.kind = Fault::Kind::answerFalse;
        operation = step.object % 2 == 0 ? CloudOperation::updateMoments : CloudOperation::removeMoments;
        break;
    case Action::answerShort:
        fault.kind = Fault::Kind::answerShort;
        fault.shortBy = 1 + step.other % 3;
        operation = CloudOperation::createMoments;
        break;
    default:
        return std::nullopt;
    }
    return doing([this, what = step.action, operation, fault] { arm(what, operation, fault); });
}

std::optional<Deed> Faults::prepareFetch(const Step& step) {
    if (step.action != Action::answerNone && step.action != Action::answerOther) {
        return std::nullopt;
    }
    return doing([this, step] {
        arm(step.action, CloudOperation::fetchTaggingSessions,
            Fault(step.action == Action::answerNone ? Fault::Kind::answerNone : Fault::Kind::answerOther));
        if (step.object % 2 == 0) {
            dropSubscriptions(step.action);
        }
    });
}

std::optional<Deed> Faults::prepareEvents(const Step& step) {
    EventFault fault;
    switch (step.action) {
    case Action::repeatEvents:
        fault.repeats = 1;
        break;
    case Action::delayEvents:
        fault.delay = Base::Seconds(std::clamp(step.amount, 0.0, longestDelay));
        break;
    case Action::strangeEvents:
        fault.extra =
            step.object % 2 == 0 ? EventFault::Extra::ofUnknownType : EventFault::Extra::withoutContents;
        break;
    default:
        return std::nullopt;
    }
    return doing([this, what = step.action, fault, number = 1 + step.other % 4] {
        events_.push_back({what, fault, number});
        record(what, "begins", {{"events", std::to_string(number)}});
    });
}

std::optional<Deed> Faults::prepareWay(const Step& step) {
    auto& client = seat_.host().cloudClient();
    switch (step.action) {
    case Action::dropSubscription:
        return doing([this] { dropSubscriptions(Action::dropSubscription); });
    case Action::linkDown:
        return doing([this, &client, step] {
            begin(
                step.action, std::min(step.amount, longestOutage), [&client] { client.setLinkUp(false); },
                [&client] { client.setLinkUp(true); });
        });
    case Action::fetchesFail:
        return doing(
            [this, step] { begin(step.action, std::min(step.amount, longestOutage), [] {}, [] {}); });
    case Action::restartService:
        return doing([this, seconds = std::min(step.amount, longestRestart)] {
            for (const auto& seat : seat_.world().seats) {
                seat->faults().serviceRestarts(seconds);
            }
        });
    case Action::rowsAreNotMade:
        return doing([this, step] {
            begin(
                step.action, step.amount, [this] { seat_.world().setRowsAreMade(false); },
                [this] { seat_.world().setRowsAreMade(true); });
        });
    case Action::hideMoments:
        return hideMoments(step);
    default:
        return std::nullopt;
    }
}

void Faults::dropSubscriptions(Action what) {
    record(what, "begins", {{"drops", "subscriptions"}});
    seat_.host().cloudClient().dropSubscriptions();
    record(what, "ends", {{"drops", "subscriptions"}});
}

void Faults::serviceRestarts(double seconds) {
    begin(
        Action::restartService, seconds,
        [&client = seat_.host().cloudClient()] {
            // A link that is down and up again has lost all that was under way.
            if (client.isLinkUp()) {
                client.setLinkUp(false);
                client.setLinkUp(true);
            }
        },
        [] {});
}

Deed Faults::hideMoments(const Step& step) {
    const Stay* stay = seat_.stay();
    const auto sessionId =
        stay != nullptr ? seat_.world().cloud.primarySessionOf(stay->videoId) : std::nullopt;
    const auto session = sessionId ? seat_.world().cloud.snapshot(*sessionId) : std::nullopt;
    if (!session || session->moments.empty()) {
        return nothingToDo("there is no moment");
    }
    std::vector<std::string> ids;
    for (std::size_t index = step.other % 3; index < session->moments.size(); index += 3) {
        ids.push_back(session->moments[index]->id);
    }
    return doing([this, step, ids] {
        auto& client = seat_.host().cloudClient();
        begin(
            step.action, step.amount, [&] { client.setUnreadable(ids); },
            [&client] { client.setUnreadable({}); }, {{"ids", ReferenceHost::joined(ids)}});
        if (step.object % 2 == 0) {
            dropSubscriptions(step.action);
        }
    });
}

}  // namespace Simulator
