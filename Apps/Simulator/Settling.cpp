#include "Apps/Simulator/Settling.hpp"

#include "Apps/Simulator/Seat.hpp"

#include <iterator>

namespace Simulator {

namespace {

constexpr Base::Seconds look{1};  // from one look at everybody to the next

// Between two pieces of work there may be a moment in which nothing is under way.
constexpr int looksInARow = 3;

}  // namespace

std::vector<std::string> settle(World& world, Base::Seconds patience) {
    const Base::Seconds end = world.time.now() + patience;
    std::vector<std::string> underWay;
    int quietLooks = 0;
    while (quietLooks < looksInARow) {
        underWay.clear();
        for (const auto& seat : world.seats) {
            auto more = seat->underWay();
            underWay.insert(underWay.end(), std::make_move_iterator(more.begin()),
                            std::make_move_iterator(more.end()));
        }
        quietLooks = underWay.empty() ? quietLooks + 1 : 0;
        if (world.time.now() >= end) {
            break;
        }
        world.runFor(look);
    }
    return underWay;
}

std::vector<std::string> leftovers(World& world) {
    std::vector<std::string> found;
    for (const auto& seat : world.seats) {
        const auto add = [&](std::size_t number, const char* what) {
            if (number > 0) {
                found.push_back(seat->name() + ": " + std::to_string(number) + ' ' + what);
            }
        };
        auto& client = seat->host().cloudClient();
        add(seat->stay() != nullptr ? 1 : 0, "session that is not over");
        add(seat->host().unfinishedTasks(), "unfinished tasks");
        add(client.numberOfUncancelledSubscriptions(), "subscriptions not cancelled");
        add(client.numberOfCallsUnderWay(), "calls under way");
    }
    return found;
}

}  // namespace Simulator
