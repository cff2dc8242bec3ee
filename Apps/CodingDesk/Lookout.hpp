#pragma once

#include "Apps/CodingDesk/Analyst.hpp"
#include "Apps/CodingDesk/Console.hpp"
#include "Apps/CodingDesk/World.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CodingDesk {

using Analysts = std::vector<std::unique_ptr<Analyst>>;

/// How far the synchronisation has come at everybody: asks, tells of lost and regained connections, and waits until all is
/// settled. On the desk's thread.
class Lookout {
public:
    /// One analyst, as last asked.
    struct Presence {
        std::optional<RemoteCoding::SynchronisationStatus> status;  ///< absent before there is a session
        std::int64_t modifyCount = 0;

        /// Everything sent, everything received, and what comes next will be received too.
        [[nodiscard]] bool isUpToDate() const;
        [[nodiscard]] bool isReconnecting() const;
    };

    /// All of these outlive the lookout.
    Lookout(const Analysts& analysts, Console& console, const World& world)
        : analysts_(analysts), console_(console), world_(world) {}

    /// Asks everybody. True when all are up to date. Throws what went wrong in an analyst's application.
    bool askEverybody();

    /// Waits until nothing changes any more, at most `patience`; false when that was not enough.
    [[nodiscard]] bool waitUntilSettled();

    [[nodiscard]] const std::vector<Presence>& presences() const { return presences_; }

    /// Shows what goes on, with a word on everybody; only once in a while, however often it is called.
    void showProgress(const std::string& activity);

    /// What `waitUntilSettled` shows.
    void setActivity(std::string activity) { activity_ = std::move(activity); }

    static constexpr double patience = 30;  ///< seconds

private:
    const Analysts& analysts_;
    Console& console_;
    const World& world_;
    std::vector<Presence> presences_;  // by analyst
    std::string activity_;
    double lastProgress_ = 0;
};

}  // namespace CodingDesk
