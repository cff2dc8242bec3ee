#include "Apps/Simulator/Faults.hpp"

#include "Apps/Simulator/Seat.hpp"
#include "Apps/Simulator/Texts.hpp"

#include <algorithm>
#include <array>
#include <utility>

namespace Simulator {

using ReferenceHost::CloudOperation;
using ReferenceHost::Fault;

namespace {

constexpr double longestHang = 30;
constexpr double longestLinkDown = 15 * 60;

// Those that a step can choose.
constexpr std::array<CloudOperation, 8> operations{
    CloudOperation::createMoments,        CloudOperation::updateMoments,
    CloudOperation::savePresentationView, CloudOperation::removeMoments,
    CloudOperation::fetchTaggingSessions, CloudOperation::subscribe,
    CloudOperation::createTaggingSession, CloudOperation::getVideo};

}  // namespace

Faults::Faults(Seat& seat) : seat_(seat) {
    seat.host().cloudClient().setFaultPlan(
        [this](const ReferenceHost::CloudCall& call) { return faultOf(call); });
}

std::optional<Deed> Faults::prepare(const Step& step) {
    auto fault = prepareCall(step);
    return fault ? fault : prepareWay(step);
}

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
    return doing([this, what = step.action, operation, fault] {
        armed_[operation].push_back({what, fault});
        record(what, "begins", {{"operation", nameOf(operation)}, {"hang", textOf(fault.hang.count())}});
    });
}

std::optional<Deed> Faults::prepareWay(const Step& step) {
    auto& client = seat_.host().cloudClient();
    switch (step.action) {
    case Action::dropSubscription:
        return doing([this, &client, step] {
            record(step.action, "begins");
            client.dropSubscriptions();
            record(step.action, "ends");
        });
    case Action::linkDown:
        return doing([this, &client, step] {
            begin(
                step.action, std::min(step.amount, longestLinkDown), {},
                [&client] { client.setLinkUp(false); }, [&client] { client.setLinkUp(true); });
        });
    default:
        return std::nullopt;
    }
}

// ---- faults that last ----

void Faults::begin(Action what, double seconds, ReferenceHost::TraceFields fields,
                   const std::function<void()>& begin, std::function<void()> end) {
    const Base::Seconds duration(std::max(seconds, 0.0));
    World& world = seat_.world();
    Lasting& lasting = lasting_[what];
    lasting.until = std::max(lasting.until, world.time.now() + duration);
    if (!lasting.end) {
        lasting.end = std::move(end);
        record(what, "begins", std::move(fields));
        begin();
    }
    world.scheduler.postAfter(duration, [this, what] {
        // Another step may have made it last longer.
        if (lasting_[what].until <= seat_.world().time.now()) {
            this->end(what);
        }
    });
}

void Faults::end(Action what) {
    if (const auto end = std::exchange(lasting_[what].end, nullptr)) {
        end();
        record(what, "ends");
    }
}

void Faults::endAll() {
    for (const auto& [what, lasting] : lasting_) {
        end(what);
    }
    for (auto& [operation, faults] : std::exchange(armed_, {})) {
        for (const Armed& armed : faults) {
            record(armed.what, "ends", {{"operation", nameOf(operation)}});
        }
    }
}

void Faults::record(Action what, const char* state, ReferenceHost::TraceFields fields) {
    ReferenceHost::TraceFields all{{"what", nameOf(what)}, {"state", state}};
    all.insert(all.end(), std::make_move_iterator(fields.begin()), std::make_move_iterator(fields.end()));
    seat_.world().record(seat_.name(), SimulatedKind::fault, std::move(all));
}

// ---- faults that wait for what they befall ----

Fault Faults::faultOf(const ReferenceHost::CloudCall& call) {
    const auto waiting = armed_.find(call.operation);
    if (waiting == armed_.end() || waiting->second.empty()) {
        return {};
    }
    const Armed armed = waiting->second.front();
    waiting->second.pop_front();
    record(armed.what, "ends",
           {{"operation", nameOf(call.operation)}, {"call", std::to_string(call.number)}});
    return armed.fault;
}

}  // namespace Simulator
