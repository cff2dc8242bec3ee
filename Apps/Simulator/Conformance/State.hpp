#pragma once

#include "Apps/Simulator/Conformance/Entry.hpp"
#include "Apps/Simulator/Record.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

/// What the trace has said so far, as all checks need it.
namespace Simulator::Conformance {

struct Pass;

/// What the cloud can be asked. The four steps of an upload stand in their order.
enum class Operation : std::uint8_t {
    fetch,
    subscribe,
    createSession,
    update,
    create,
    remove,
    save,
    getVideo,
    other,
};

[[nodiscard]] inline bool isStep(Operation operation) {
    return operation >= Operation::update && operation <= Operation::save;
}

/// One call of the cloud.
struct Call {
    Operation operation = Operation::other;
    const ReferenceHost::TraceEntry* entry = nullptr;  ///< null: a number that was never called
    std::size_t index = 0;
    Synchroniser* synchroniser = nullptr;
    Pass* pass = nullptr;  ///< null: none, or one of several
    bool isAnswered = false;
};

/// Whether the entry is the answer that a call was waiting for.
[[nodiscard]] inline bool answersCall(const Entry& entry) {
    return entry.kind == Kind::answer && entry.call != nullptr && !entry.call->isAnswered;
}

/// As above, and it tells of no error.
[[nodiscard]] inline bool grantsCall(const Entry& entry) {
    return answersCall(entry) && entry.field("error").empty();
}

struct Subscription {
    enum class State : std::uint8_t { opening, open, failed, cancelled };

    State state = State::opening;
    Synchroniser* synchroniser = nullptr;
    std::uint64_t last = 0;  ///< the sequence number of what was delivered last, or after which it opened
    bool isPlaced = false;   ///< and it is known
};

/// One upload that has found something to send.
struct Pass {
    std::int64_t number = 0;
    std::int64_t first = 0;  ///< modify counts, both included
    std::int64_t last = 0;
    std::size_t start = 0;                            ///< index into the trace
    std::int64_t block = 0;                           ///< in which it was started; 0: in none
    const ReferenceHost::TraceEntry* read = nullptr;  ///< the host's word on what changed
    std::optional<Operation> step;                    ///< the last one taken
    const Call* waitsFor = nullptr;
    bool hasFailed = false;
    bool isAlone = true;    ///< no other upload of its synchroniser was under way at any time
    bool isUnsure = false;  ///< a call may have been this one's or another's
};

struct Block {
    enum class Work : std::uint8_t { upload, pull, event, reconnection };

    std::int64_t number = 0;
    Work work = Work::upload;
    std::size_t start = 0;
    double time = 0;
    std::size_t fetch = 0;  ///< where it fetches the session; 0: it has not
};

/// One synchroniser: what one analyst's component does in one stay.
struct Synchroniser {
    Synchroniser(const Stay& stay_, std::size_t index_, HostState& host_)
        : stay(stay_), index(index_), host(host_) {}

    [[nodiscard]] bool isWorking() const { return block || !passes.empty() || callsUnderWay > 0; }
    /// Nothing holds it any more: it is gone, or will be before it does anything.
    [[nodiscard]] bool isOver() const { return isCancelled && !isWorking(); }

    const Stay& stay;
    std::size_t index;
    HostState& host;
    bool isCancelled = false;
    std::size_t end = 0;  ///< index of the entry that tells so

    std::optional<Block> block;  ///< that runs
    std::int64_t lastBlock = 0;  ///< the number of the last that began
    std::int64_t lastModifyCount = 0;
    std::deque<Pass> allPasses;
    std::vector<Pass*> passes;  ///< under way
    std::int64_t callsUnderWay = 0;
    bool hasPulled = false;  ///< a fetched session was applied
    int maySubscribe = 0;    ///< how often it may still subscribe without a further reason

    /// The last time that the host was asked for what has changed.
    const ReferenceHost::TraceEntry* read = nullptr;
    std::size_t readIndex = 0;

    /// Another one was at work on the same timeline, or the same host, at the same time: entries without a number of their own, or
    /// lines of the log, may be of either. Stays so.
    bool sharesTimeline = false;
    bool sharesLog = false;
};

struct HostState {
    explicit HostState(std::string_view name_) : name(name_) {}

    /// 0 for one that never changed.
    [[nodiscard]] std::int64_t modifyCountOf(std::string_view timelineId) const {
        const auto found =
            std::ranges::find(modifyCounts, timelineId, &std::pair<std::string_view, std::int64_t>::first);
        return found == modifyCounts.end() ? 0 : found->second;
    }
    [[nodiscard]] bool isClosed(std::string_view timelineId) const {
        return std::ranges::find(closed, timelineId) != closed.end();
    }
    /// Whether an alert held its main thread at that moment or later.
    [[nodiscard]] bool wasHeldSince(double time) const { return isHeld || heldUntil >= time; }

    std::string_view name;
    std::vector<Synchroniser*> synchronisers;
    std::vector<std::pair<std::string_view, std::int64_t>> modifyCounts;  ///< by timeline
    std::vector<std::string_view> closed;                                 ///< timelines
    std::deque<Call> calls;                                               ///< at their numbers
    std::deque<Subscription> subscriptions;                               ///< at their numbers
    bool isHeld = false;                                                  ///< an alert is shown
    double heldUntil = -1;
};

/// Whether the hosts and the cloud of a run keep this rule of their contract.
[[nodiscard]] inline bool isKept(const Record& record, std::string_view rule) {
    return std::ranges::find(record.plan.brokenRules, rule) == record.plan.brokenRules.end();
}

/// Whether every change of a timeline is announced, so that the trace knows its count.
[[nodiscard]] inline bool countsAreKnown(const Record& record) {
    return isKept(record, "changesAreAnnounced") && isKept(record, "componentEditsAreAnnounced");
}

/// One value for each synchroniser, made when it is first asked for.
template <typename Value>
class ForEach {
public:
    Value& operator[](const Synchroniser& synchroniser) {
        if (values_.size() <= synchroniser.index) {
            values_.resize(synchroniser.index + 1);
        }
        return values_[synchroniser.index];
    }

private:
    std::deque<Value> values_;
};

}  // namespace Simulator::Conformance
