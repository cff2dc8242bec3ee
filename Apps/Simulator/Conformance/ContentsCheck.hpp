#pragma once

#include "Apps/Simulator/Conformance/Report.hpp"
#include "Apps/Simulator/Conformance/State.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Simulator::Conformance {

/// What uploads send: every clip that has changed and nothing twice.
class ContentsCheck {
public:
    ContentsCheck(Report& report, const Record& record);

    void see(const Entry& entry);

private:
    /// The moment that a synchroniser knows to stand for a clip.
    struct Known {
        std::string_view momentId;
        std::size_t since = 0;  // index into the trace
        double time = 0;
    };
    /// What one upload has sent so far.
    struct Sent {
        std::vector<std::string_view> mustRemove;
        std::string_view created;
        std::string_view removed;
        std::int64_t createdCount = 0;
        std::int64_t updatedCount = 0;
        bool hasSaved = false;
    };
    struct State {
        std::unordered_map<std::string_view, Known> moments;           // by clip
        std::unordered_map<std::string_view, std::string_view> clips;  // by moment
        std::unordered_map<std::string_view, std::size_t> removed;     // moments, since when
        std::unordered_map<std::string_view, std::size_t> deleted;     // clips, since when
        std::unordered_map<std::int64_t, Sent> sent;                   // by upload
        std::size_t lastAnswer = 0;                                    // to a creation
    };

    void called(const Entry& entry, State& state);
    void appended(const Entry& entry, State& state);
    void created(const Entry& entry, State& state);
    void removes(const Entry& entry, State& state);
    void answered(const Entry& entry, State& state);
    void started(const Entry& entry, State& state);
    void ended(const Entry& entry, State& state);
    void hidden(const Entry& entry);
    void leaveOut(State& state, std::string_view momentId);
    void edited(const Entry& entry, State& state);
    void know(const Entry& entry, State& state, std::string_view clip, std::string_view momentId);
    static void forgetMoment(State& state, std::string_view momentId);
    [[nodiscard]] bool isLiving(std::string_view sessionId, std::string_view momentId) const;

    Report& report_;
    ForEach<State> states_;
    // Moments that some host could not read at some time, and those that have come to stand for two clips. Nothing is checked of
    // them.
    std::unordered_set<std::string_view> unclear_;
    std::unordered_map<std::string_view, std::uint64_t> deletions_;     // sequence numbers, by moment
    std::unordered_map<std::string_view, std::uint64_t> lastSequence_;  // by session
};

}  // namespace Simulator::Conformance
