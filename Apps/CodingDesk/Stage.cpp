#include "Apps/CodingDesk/Stage.hpp"

#include "Apps/CodingDesk/Cast.hpp"
#include "Apps/CodingDesk/Comparison.hpp"
#include "Apps/CodingDesk/Options.hpp"
#include "Apps/CodingDesk/Scenery.hpp"
#include "Apps/CodingDesk/Text.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>

namespace CodingDesk {

namespace {

constexpr std::chrono::seconds lastNews{1};  // of sessions that are over
constexpr std::chrono::seconds longestRest{60};

// Edits are gathered for a second before they are sent, and reach the others well within the rest.
constexpr std::chrono::seconds coalescingAndTravel{3};

/// The time of day of the cloud's clock, in the time zone in which the windows show dates.
std::string timeOfDay(const ReferenceHost::CloudService& cloud) {
    const std::time_t seconds =
        std::chrono::system_clock::to_time_t(std::chrono::floor<std::chrono::seconds>(cloud.time()));
    std::tm local{};
    std::array<char, 16> text{};
    if (localtime_r(&seconds, &local) == nullptr ||
        std::strftime(text.data(), text.size(), "%H:%M:%S", &local) == 0) {
        return "?";
    }
    return text.data();
}

std::string joined(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts) {
        all += (all.empty() ? "" : "; ") + text;
    }
    return all;
}

}  // namespace

Stage::Stage(Console& console, std::uint64_t seed)
    : seed_(seed),
      time_(seed),
      scheduler_(time_),
      world_(scheduler_),
      transcript_(console, [this] { return timeOfDay(world_.cloud); }),
      arrivals_(Options::mostAnalysts) {
    Scenery::furnish(world_.cloud);
}

Stage::~Stage() = default;

VirtualSeat& Stage::enter(bool isSignedIn) {
    const Surroundings surroundings{world_, arrivals_, transcript_, seed_};
    seats_.push_back(std::make_unique<VirtualSeat>(seats_.size(), time_, surroundings, isSignedIn));
    return *seats_.back();
}

void Stage::expect(bool holds, const std::string& expected) {
    if (!holds) {
        throw ScenarioFailure("expected: " + expected);
    }
}

void Stage::expectEqual(const std::string& what, const std::string& got, const std::string& expected) {
    if (got != expected) {
        throw ScenarioFailure(what + ": expected " + quoted(expected) + ", got " + quoted(got));
    }
}

void Stage::expectErrorLine(const VirtualSeat& seat, const std::string& message) {
    expectedErrors_.emplace_back(seat.name(), message);
}

void Stage::expectEqualTimelines(const std::vector<VirtualSeat*>& seats,
                                 const std::string& taggingSessionId) {
    pass(coalescingAndTravel);
    for (VirtualSeat* seat : seats) {
        seat->waitUntil("everything was sent", [](Workplace& workplace) {
            const auto status = workplace.status();
            return status && status->isSettled();
        });
    }
    pass(coalescingAndTravel);
    const auto snapshot = world_.cloud.snapshot(taggingSessionId);
    expect(snapshot.has_value(), "the cloud has the session");
    for (VirtualSeat* seat : seats) {
        const auto found = differences(seat->workplace().state(), stateOf(*snapshot));
        expect(found.empty(), seat->name() + "'s timeline is equal to what the cloud holds, but " +
                                  (found.empty() ? "" : found.front().what));
    }
}

void Stage::close() {
    const auto isQuiet = [this] {
        return std::ranges::all_of(seats_, [](const auto& seat) { return seat->leftovers().empty(); });
    };
    pass(lastNews);
    if (!time_.runUntil(isQuiet, longestRest)) {
        for (const auto& seat : seats_) {
            const auto left = seat->leftovers();
            expect(left.empty(),
                   "nothing is left of " + seat->name() + "'s work, but there is: " + joined(left));
        }
    }
    checkErrorLines();
}

void Stage::checkErrorLines() {
    for (const auto& entry : world_.trace.entries({}, ReferenceHost::TraceKind::logError)) {
        const std::pair<std::string, std::string> line(entry.host, entry.field("message"));
        const auto expected = std::ranges::find(expectedErrors_, line);
        expect(expected != expectedErrors_.end(),
               "no error in " + line.first + "'s log but those that belong here, got " + quoted(line.second));
        expectedErrors_.erase(expected);
    }
    for (const auto& [analyst, message] : expectedErrors_) {
        expect(false, "the error " + quoted(message) + " in " + analyst + "'s log");
    }
}

}  // namespace CodingDesk
