#include "Apps/Simulator/Conformance/CallCheck.hpp"

#include <string>

namespace Simulator::Conformance {

void CallCheck::see(const Entry& entry) {
    if (entry.kind != Kind::answer && entry.kind != Kind::effect) {
        return;
    }
    const bool isAnswer = entry.kind == Kind::answer;
    if (entry.call == nullptr || entry.call->entry->field("name") != entry.field("name")) {
        report_.add("answerOfCall", entry,
                    isAnswer ? "an answer that belongs to no call" : "an effect that belongs to no call");
    } else if (isAnswer && entry.call->isAnswered) {
        report_.add("answerOnce", entry, "a call is answered a second time");
    }
}

void CallCheck::settled(const Entry& entry, const std::deque<HostState>& hosts) {
    for (const HostState& host : hosts) {
        for (const Call& call : host.calls) {
            // A player may ask for its video at any time.
            const bool isForSession =
                call.operation != Operation::subscribe && call.operation != Operation::getVideo;
            if (call.entry != nullptr && isForSession && !call.isAnswered) {
                report_.add("answerMissing", entry,
                            std::string(host.name) + "'s call " + std::string(call.entry->field("call")) +
                                ", " + std::string(call.entry->field("name")) + ", is not answered");
            }
        }
    }
}

}  // namespace Simulator::Conformance
