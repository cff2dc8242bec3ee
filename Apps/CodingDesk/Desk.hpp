#pragma once

#include "Apps/CodingDesk/Analyst.hpp"
#include "Apps/CodingDesk/Console.hpp"
#include "Apps/CodingDesk/Lookout.hpp"
#include "Apps/CodingDesk/ReplayPlan.hpp"
#include "Apps/CodingDesk/Report.hpp"
#include "Apps/CodingDesk/World.hpp"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace CodingDesk {

/// Lets several analysts code one match together, after a plan: opens the session, plays the plan, waits until all is
/// settled, and compares. One thread, which belongs to none of the analysts, uses it.
class Desk {
public:
    /// `console` and `world` outlive the desk.
    Desk(ReplayPlan plan, std::size_t analysts, std::uint64_t seed, Console& console, RealWorld& world);
    ~Desk();
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    /// Throws when the session cannot be started or joined through the windows, or when an analyst's application fails.
    void codeTheMatch();

    /// Prints every timeline, the counts and the times, and each difference. True when all timelines are equal to what
    /// the cloud holds.
    bool report();

    /// Everybody leaves the session, its host first, and each confirms it. Throws as `codeTheMatch`.
    void leave();

    /// Closes all applications; whoever is still in the session is taken out of it without being asked.
    void close();

private:
    void startSession();
    void joinSession();
    void replay();
    void waitForReplayTime(double time);
    void carryOut(const Step& step);
    void pauseAndRename(const Step& step, const RenameRow& rename);
    void switchLink(AnalystIndex analyst, bool up);
    void renameRow(Analyst& analyst, const RenameRow& rename);
    bool settleInPause();
    void sayAtMatchTime(const std::string& text);
    void expectNoSurprises();
    [[nodiscard]] std::string progress() const;

    [[nodiscard]] std::vector<AnalystResult> results() const;
    [[nodiscard]] MatchState remoteState(std::vector<AnalystResult>& results) const;
    void sayFates() const;
    bool sayDifferences(const std::vector<AnalystResult>& results, const MatchState& remote);

    const ReplayPlan plan_;
    Console& console_;
    World& world_;
    Transcript transcript_;
    Arrivals arrivals_;
    std::string taggingSessionId_;
    Analysts analysts_;
    Lookout lookout_;
    std::vector<std::string> rowNames_;  // the present names, by row key
    double replayTime_ = 0;
    double clockStart_ = 0;  // when the replay time was 0, on the world's clock; later by each pause
    std::size_t stepsDone_ = 0;
    std::atomic<std::size_t> editsLeftOut_ = 0;
    bool isSettled_ = false;
};

}  // namespace CodingDesk
