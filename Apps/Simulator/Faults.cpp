#include "Apps/Simulator/Faults.hpp"

#include "Apps/Simulator/Seat.hpp"
#include "Apps/Simulator/Texts.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Simulator {

using ReferenceHost::CloudOperation;
using ReferenceHost::EventFault;
using ReferenceHost::Fault;
using ReferenceHost::TraceFields;

Faults::Faults(Seat& seat) : seat_(seat) {
    auto& client = seat.host().cloudClient();
    client.setFaultPlan([this](const ReferenceHost::CloudCall& call) { return faultOf(call); });
    client.setEventFaultPlan([this](const ReferenceHost::CloudEvent& event) { return faultOf(event); });
}

std::optional<Deed> Faults::prepare(const Step& step) {
    for (const auto preparation :
         {&Faults::prepareCall, &Faults::prepareFetch, &Faults::prepareEvents, &Faults::prepareWay,
          &Faults::prepareHost, &Faults::prepareStream, &Faults::prepareDownload}) {
        if (auto deed = (this->*preparation)(step)) {
            return deed;
        }
    }
    return std::nullopt;
}

// ---- faults that last ----

void Faults::begin(Action what, double seconds, const std::function<void()>& begin, std::function<void()> end,
                   TraceFields fields) {
    const Base::Seconds duration(std::max(seconds, 0.0));
    Lasting& lasting = lasting_[what];
    lasting.until = std::max(lasting.until, seat_.world().time.now() + duration);
    if (!lasting.end) {
        lasting.end = std::move(end);
        fields.emplace_back("seconds", textOf(duration.count()));
        record(what, "begins", std::move(fields));
        begin();
    }
    seat_.execution().postToMainAfter(duration, [this, what] {
        // Another step may have made it last longer.
        if (lasting_[what].until <= seat_.world().time.now()) {
            this->end(what);
        }
    });
}

bool Faults::lasts(Action what) const {
    const auto found = lasting_.find(what);
    return found != lasting_.end() && found->second.end;
}

void Faults::end(Action what) {
    Lasting& lasting = lasting_[what];
    lasting.until = Base::Seconds(0);
    if (const auto end = std::exchange(lasting.end, nullptr)) {
        end();
        record(what, "ends");
    }
}

void Faults::endAll() {
    for (const auto& [what, lasting] : lasting_) {
        end(what);
    }
    for (const auto& [operation, armed] : std::exchange(calls_, {})) {
        for (const ArmedCall& call : armed) {
            record(call.what, "ends", {{"operation", nameOf(operation)}});
        }
    }
    for (const ArmedEvents& armed : std::exchange(events_, {})) {
        record(armed.what, "ends");
    }
}

void Faults::record(Action what, const char* state, TraceFields fields) {
    TraceFields all{{"what", nameOf(what)}, {"state", state}};
    all.insert(all.end(), std::make_move_iterator(fields.begin()), std::make_move_iterator(fields.end()));
    seat_.world().record(seat_.name(), SimulatedKind::fault, std::move(all));
}

// ---- faults that wait for what they befall ----

void Faults::arm(Action what, CloudOperation operation, Fault fault) {
    calls_[operation].push_back({what, fault});
    record(what, "begins", {{"operation", nameOf(operation)}});
}

Fault Faults::faultOf(const ReferenceHost::CloudCall& call) {
    if (lasts(Action::restartService) ||
        (lasts(Action::fetchesFail) && call.operation == CloudOperation::fetchTaggingSessions)) {
        return Fault(Fault::Kind::failBeforeEffect);
    }
    const auto armed = calls_.find(call.operation);
    if (armed == calls_.end() || armed->second.empty()) {
        return {};
    }
    const ArmedCall met = armed->second.front();
    armed->second.pop_front();
    record(met.what, "ends", {{"operation", nameOf(call.operation)}, {"call", std::to_string(call.number)}});
    return met.fault;
}

EventFault Faults::faultOf(const ReferenceHost::CloudEvent& event) {
    if (events_.empty()) {
        return {};
    }
    ArmedEvents& armed = events_.front();
    const EventFault fault = armed.fault;
    const TraceFields fields{{"subscription", std::to_string(event.subscription)},
                             {"taggingSessionId", event.sessionId},
                             {"sequence", std::to_string(event.change->sequence)}};
    if (--armed.left > 0) {
        record(armed.what, "meets", fields);
    } else {
        record(armed.what, "ends", fields);
        events_.pop_front();
    }
    return fault;
}

}  // namespace Simulator
