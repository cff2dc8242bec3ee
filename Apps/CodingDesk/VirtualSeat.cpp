#include "Apps/CodingDesk/VirtualSeat.hpp"

#include "Apps/CodingDesk/Text.hpp"

#include <chrono>
#include <exception>
#include <memory>
#include <stdexcept>

namespace CodingDesk {

namespace {

constexpr std::chrono::seconds shortLook{1};
constexpr std::chrono::hours longestDeed{1};  // a deed may wait for the answer to an alert

}  // namespace

VirtualSeat::VirtualSeat(AnalystIndex index, ReferenceHost::VirtualTime& time,
                         const Surroundings& surroundings, bool isSignedIn)
    : Seat(index),
      time_(time),
      execution_(time, name(), &surroundings.world.trace),
      workplace_(index, execution_, surroundings, isSignedIn) {}

void VirtualSeat::at(const Deed& deed) {
    struct Outcome {
        bool isDone = false;
        std::exception_ptr error;
    };
    const auto outcome = std::make_shared<Outcome>();
    execution_.postToMain([this, deed, outcome] {
        try {
            deed(workplace_);
        } catch (...) {
            outcome->error = std::current_exception();
        }
        outcome->isDone = true;
    });
    if (!time_.runUntil([&] { return outcome->isDone; }, longestDeed)) {
        throw std::runtime_error(name() + "'s main thread is blocked");
    }
    if (outcome->error) {
        std::rethrow_exception(outcome->error);
    }
}

void VirtualSeat::lookAround() { time_.runFor(shortLook); }

bool VirtualSeat::comesTrue(const Question& question, Base::Seconds patience) {
    return time_.runUntil([&] { return question(workplace_); }, patience);
}

std::vector<std::string> VirtualSeat::leftovers() {
    std::vector<std::string> found;
    const auto add = [&](std::size_t number, const char* what) {
        if (number > 0) {
            found.push_back(std::to_string(number) + ' ' + what);
        }
    };
    add(workplace_.session() ? 1 : 0, "session that is not over");
    add(workplace_.unfinishedTasks(), "unfinished tasks");
    add(workplace_.host().cloudClient().numberOfUncancelledSubscriptions(), "subscriptions not cancelled");
    add(workplace_.host().cloudClient().numberOfCallsUnderWay(), "calls under way");
    add(execution_.wrongThreadCount(), "calls on a wrong thread");
    for (const std::string& message : workplace_.person().surprises()) {
        found.push_back("the unexpected alert " + quoted(message));
    }
    for (const std::string& message : workplace_.person().alertsToCome()) {
        found.push_back("no alert " + quoted(message) + ", though it was expected");
    }
    return found;
}

}  // namespace CodingDesk
