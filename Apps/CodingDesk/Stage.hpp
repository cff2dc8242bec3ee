#pragma once

#include "Apps/CodingDesk/Arrivals.hpp"
#include "Apps/CodingDesk/Transcript.hpp"
#include "Apps/CodingDesk/VirtualSeat.hpp"
#include "Apps/CodingDesk/World.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"
#include "ReferenceHost/Execution/VirtualTime.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace CodingDesk {

/// A scenario did not do what it should; the text says what was expected, and what came instead.
class ScenarioFailure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Where a scenario is played: a cloud with two teams and analysts around it, all on virtual time. The same seed gives the same
/// play to the letter. One thread.
class Stage {
public:
    /// The console outlives the stage.
    Stage(Console& console, std::uint64_t seed);
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    /// One more analyst starts the application. The stage keeps the seat.
    VirtualSeat& enter(bool isSignedIn = true);

    /// What the narrator says of things that nobody on the stage sees or does.
    void tell(const std::string& text) { transcript_.tell(text); }

    /// Lets so much time pass.
    void pass(Base::Seconds duration) { time_.runFor(duration); }

    [[nodiscard]] World& world() { return world_; }

    // What should be; the scenario ends with a `ScenarioFailure` where it is not.

    void expect(bool holds, const std::string& expected);
    void expectEqual(const std::string& what, const std::string& got, const std::string& expected);

    /// The analyst's component is to log this error, once; those that nobody has announced are failures at the end.
    void expectErrorLine(const VirtualSeat& seat, const std::string& message);

    /// All these timelines come to rest and are equal to what the cloud holds for the session.
    void expectEqualTimelines(const std::vector<VirtualSeat*>& seats, const std::string& taggingSessionId);

    /// The end: everybody closes the application. Nothing may be left running, unanswered, or logged that was not expected.
    void close();

private:
    void checkErrorLines();

    const std::uint64_t seed_;
    ReferenceHost::VirtualTime time_;
    ReferenceHost::VirtualScheduler scheduler_;
    World world_;
    Transcript transcript_;
    Arrivals arrivals_;
    std::vector<std::unique_ptr<VirtualSeat>> seats_;
    std::vector<std::pair<std::string, std::string>> expectedErrors_;  // analyst and message
};

}  // namespace CodingDesk
