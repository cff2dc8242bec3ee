#pragma once

#include "Apps/Simulator/Outcome/History.hpp"

#include <deque>
#include <optional>

namespace Simulator {

/// Reads the trace into a history.
class TraceReader {
public:
    explicit TraceReader(History& history);

    void read();

private:
    using Entry = ReferenceHost::TraceEntry;

    /// One synchroniser's doings while the trace is read.
    struct Running {
        std::deque<std::uint64_t> delivered;  ///< changes whose blocks have not run
        std::uint64_t lastBlock = 0;
        std::optional<std::uint64_t> event;  ///< the change that is being applied
        std::size_t blockStart = never;
        bool pulls = false;         ///< in the present block
        std::uint64_t fetched = 0;  ///< up to which change the last fetch went that was answered
    };

    void readEntry(std::size_t at, const Entry& entry);
    void readCall(std::size_t at, const Entry& entry);
    void readEffect(std::size_t at, const Entry& entry);
    void readAnswer(std::size_t at, const Entry& entry);
    void readDelivery(const Entry& entry);
    void readBlock(std::size_t at, const Entry& entry);
    void readCount(std::size_t at, const Entry& entry);
    void readUpload(std::size_t at, const Entry& entry);
    void readEdit(std::size_t at, const Entry& entry);
    void readFault(std::size_t at, const Entry& entry);

    /// The stay of that timeline that has begun last; never when there is none.
    [[nodiscard]] std::size_t stayOf(std::size_t at, std::string_view timelineId,
                                     std::string_view sessionId = {}) const;
    [[nodiscard]] std::size_t pullingStay(std::string_view analyst) const;
    [[nodiscard]] std::size_t stayOfUpload(std::size_t at, const Entry& start) const;
    [[nodiscard]] const ReferenceHost::AcceptedCall* acceptedCall(const Call& call, const Entry& effect);

    using CallKey = std::pair<std::string_view, std::string_view>;  // host, number
    struct CallKeyHash {
        std::size_t operator()(const CallKey& key) const {
            return std::hash<std::string_view>()(key.first) * 31 + std::hash<std::string_view>()(key.second);
        }
    };

    History& history_;
    std::vector<Running> running_;                                            // by stay
    std::unordered_map<std::string_view, std::vector<std::size_t>> staysOf_;  // by timeline
    std::unordered_map<CallKey, std::size_t, CallKeyHash> calls_;             // that write
    std::unordered_map<CallKey, std::size_t, CallKeyHash> subscriptions_;     // their stays
    std::unordered_map<CallKey, std::uint64_t, CallKeyHash> fetches_;         // how far they went
    std::unordered_map<CallKey, std::size_t, CallKeyHash> pulling_;           // by fetch: the stay
    std::unordered_map<const SessionHistory*, std::size_t> logs_;             // how far they are matched
};

}  // namespace Simulator
