#include "Apps/Simulator/Conformance/IdleCheck.hpp"

#include "Apps/Simulator/Conformance/State.hpp"

#include <string>

namespace Simulator::Conformance {

void IdleCheck::see(const Entry& entry) {
    if (record_.settled == 0 || entry.index < record_.settled || entry.index >= record_.quiet) {
        return;
    }
    switch (entry.kind) {
    case Kind::call:
        // A player asks what has become of a silent stream.
        if (entry.call != nullptr && entry.call->operation != Operation::getVideo) {
            report_.add("idle", entry, "the cloud is called: " + std::string(entry.field("name")));
        }
        break;
    case Kind::blockStart:
    case Kind::uploadStart:
    case Kind::count:
    case Kind::edit:
    case Kind::delivery:
    case Kind::subscription:
        report_.add("idle", entry, "something is done, though everybody is idle: " + entry.raw.kind);
        break;
    default:
        break;
    }
}

}  // namespace Simulator::Conformance
