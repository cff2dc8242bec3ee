#pragma once

#include "Apps/CodingDesk/Analyst.hpp"
#include "Apps/CodingDesk/Console.hpp"
#include "Apps/CodingDesk/ReplayPlan.hpp"
#include "Apps/CodingDesk/Report.hpp"
#include "Apps/CodingDesk/World.hpp"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CodingDesk {

/// Lets several analysts code one match together, after a plan: opens the session, plays the plan, waits until all is
/// settled, and compares. One thread, which belongs to none of the analysts, uses it.
class Desk {
public:
    /// `console` and `world` outlive the desk.
    Desk(ReplayPlan plan, std::size_t analysts, std::uint64_t seed, Console& console, World& world);
    ~Desk();
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    /// Throws when the session cannot be opened or joined, or when an analyst's application fails.
    void codeTheMatch();

    /// Prints every timeline, the counts and the times, and whether all are equal.
    bool report();

    /// Everybody leaves the session, its host last, and all applications are closed.
    void close();

private:
    struct Presence {
        std::optional<RemoteCoding::SynchronisationStatus> status;  ///< absent before there is a session
        std::int64_t modifyCount = 0;
        bool isReconnecting = false;  ///< somebody was told so

        /// Everything sent, everything received, and what comes next will be received too.
        [[nodiscard]] bool isUpToDate() const;
    };

    void openSession();
    void joinSession();
    void replay();
    void waitForReplayTime(double time);
    void carryOut(const Step& step);
    void pauseAndRename(const Step& step, const RenameRow& rename);
    void switchLink(AnalystIndex analyst, bool up);
    [[nodiscard]] bool settle();
    bool lookAround();
    void showProgress();
    void tellSession(AnalystIndex analyst, const RemoteCoding::RemoteCodingSessionDetails& details);
    void failIfAnalystFailed() const;
    void sayDifferences(const std::vector<AnalystResult>& results, const MatchState& remote, bool& allEqual);
    [[nodiscard]] MatchState remoteState(std::vector<AnalystResult>& results);
    [[nodiscard]] double matchTimeNow() const { return plan_.matchTimeAt(replayTime_); }
    [[nodiscard]] PlannedRow row(RowKey key) const { return {rowNames_[key], plan_.rows[key].color}; }

    const ReplayPlan plan_;
    Console& console_;
    World& world_;
    Arrivals arrivals_;
    SessionAddress address_;
    std::vector<std::unique_ptr<Analyst>> analysts_;
    std::vector<Presence> presence_;     // as last asked for
    std::vector<std::string> rowNames_;  // the present names, by row key
    double replayTime_ = 0;
    double clockStart_ = 0;  // when the replay time was 0, on the world's clock; later by each pause
    double lastProgress_ = 0;
    std::string activity_;  // what everybody does, for the live line
    std::size_t stepsDone_ = 0;
    std::atomic<std::size_t> editsMade_ = 0;
    std::atomic<std::size_t> editsSkipped_ = 0;
    bool isSettled_ = true;
};

}  // namespace CodingDesk
