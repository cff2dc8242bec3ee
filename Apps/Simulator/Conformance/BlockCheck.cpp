#include "Apps/Simulator/Conformance/BlockCheck.hpp"

#include <string>

namespace Simulator::Conformance {

void BlockCheck::see(const Entry& entry) {
    if (entry.kind == Kind::blockStart) {
        started(entry);
    } else if (entry.kind == Kind::blockEnd) {
        ended(entry);
    }
}

void BlockCheck::started(const Entry& entry) {
    const Synchroniser* const synchroniser = entry.synchroniser;
    if (synchroniser == nullptr) {
        report_.add("blockOrder", entry, "a block of a timeline that is in no session");
        return;
    }
    if (synchroniser->block) {
        report_.add("blockOverlap", entry,
                    "block " + std::string(entry.field("number")) + " begins while block " +
                        std::to_string(synchroniser->block->number) + " runs");
    }
    if (entry.number("number") != synchroniser->lastBlock + 1) {
        report_.add("blockOrder", entry,
                    "block " + std::string(entry.field("number")) + " begins after block " +
                        std::to_string(synchroniser->lastBlock));
    }
}

void BlockCheck::ended(const Entry& entry) {
    const Synchroniser* const synchroniser = entry.synchroniser;
    if (synchroniser == nullptr || !synchroniser->block ||
        synchroniser->block->number != entry.number("number")) {
        report_.add("blockEnd", entry,
                    "block " + std::string(entry.field("number")) + " ends, which does not run");
    }
}

}  // namespace Simulator::Conformance
