#include "Apps/Simulator/Coverage/Coverage.hpp"

#include "Apps/Simulator/Coverage/FailureRows.hpp"
#include "ReferenceHost/Cloud/RemoteRecords.hpp"

#include <algorithm>
#include <array>
#include <ostream>
#include <set>
#include <string_view>
#include <utility>

namespace Simulator {

namespace {

using ReferenceHost::CloudOperation;

constexpr const char* edits = "edit";
constexpr const char* sessions = "session";
constexpr const char* faults = "fault";
constexpr const char* losses = "loss";
constexpr const char* failures = "failure";

const char* groupOf(Action action) {
    return action <= Action::undoRemoveRow ? edits : action <= Action::strayNotifications ? sessions : faults;
}

/// The faults that wait for a call of one operation, with those that they can meet.
std::vector<std::pair<Action, std::vector<CloudOperation>>> callFaults() {
    const std::vector<CloudOperation> all{CloudOperation::createMoments,        CloudOperation::updateMoments,
                                          CloudOperation::savePresentationView, CloudOperation::removeMoments,
                                          CloudOperation::fetchTaggingSessions, CloudOperation::subscribe,
                                          CloudOperation::createTaggingSession, CloudOperation::getVideo};
    return {{Action::failBefore, all},
            {Action::failAfter, all},
            {Action::hang, all},
            {Action::answerFalse, {CloudOperation::updateMoments, CloudOperation::removeMoments}},
            {Action::answerShort, {CloudOperation::createMoments}},
            {Action::answerNone, {CloudOperation::fetchTaggingSessions}},
            {Action::answerOther, {CloudOperation::fetchTaggingSessions}}};
}

std::string joined(std::string_view what, std::string_view operation) {
    return std::string(what).append(" ").append(operation);
}

// ---- stays ----

constexpr const char* firstHost = "stays of hosts for the first time";
constexpr const char* hostAgain = "stays of hosts who publish again, on a new timeline";
constexpr const char* hostOnOld = "stays of hosts who publish again, on the old timeline";
constexpr const char* firstGuest = "stays of guests for the first time";
constexpr const char* guestAgain = "stays of guests who join again, with a new timeline";
constexpr const char* guestOnOld = "stays of guests who join again, with the old timeline";
constexpr const char* lasting = "stays that last to the end";
constexpr const char* over = "stays that end before";
constexpr const char* closedHost = "stays of hosts that go on without their window";
constexpr std::array staysNames{firstHost,  hostAgain, hostOnOld, firstGuest, guestAgain,
                                guestOnOld, lasting,   over,      closedHost};

const char* nameOf(const Stay& stay, bool isFirst, bool isOnOldTimeline) {
    if (stay.isHost) {
        return isFirst ? firstHost : isOnOldTimeline ? hostOnOld : hostAgain;
    }
    return isFirst ? firstGuest : isOnOldTimeline ? guestOnOld : guestAgain;
}

}  // namespace

Coverage::Coverage() {
    std::set<Action> ofCalls;
    for (const auto& [action, operations] : callFaults()) {
        ofCalls.insert(action);
        for (const CloudOperation operation : operations) {
            counts_[faults][joined(Simulator::nameOf(action), ReferenceHost::nameOf(operation))] = 0;
        }
    }
    for (const Action action : allActions()) {
        if (!ofCalls.contains(action)) {
            counts_[groupOf(action)][Simulator::nameOf(action)] = 0;
        }
    }
    for (const char* name : staysNames) {
        counts_[sessions][name] = 0;
    }
    auto& lossCounts = counts_[losses];
    for (const std::string& loss : lossClasses()) {
        lossCounts[loss] = 0;
    }
    const Rows known = noFailures();
    for (const auto& [name, count] : known.counts()) {
        counts_[failures].emplace(name, count);
    }
}

void Coverage::add(const Record& record, const Outcome& outcome) {
    for (const auto& entry : record.trace) {
        if (entry.kind == SimulatedKind::step) {
            addStep(entry);
        } else if (entry.kind == SimulatedKind::fault) {
            addFault(entry);
        }
    }
    addStays(record);
    for (const ExplainedLoss& loss : outcome.explained) {
        ++counts_[losses][loss.lossClass];
    }
    const Rows met = failuresIn(record);
    for (const auto& [name, count] : met.counts()) {
        counts_[failures][std::string(name)] += count;
    }
}

/// Steps that found nothing to do do not count; faults count when they befall something.
void Coverage::addStep(const ReferenceHost::TraceEntry& entry) {
    const std::string_view action = entry.field("action");
    if (!entry.field("skipped").empty()) {
        return;
    }
    for (const char* group : {edits, sessions}) {
        const auto known = counts_[group].find(std::string(action));
        if (known != counts_[group].end()) {
            ++known->second;
        }
    }
}

void Coverage::addFault(const ReferenceHost::TraceEntry& entry) {
    const std::string_view what = entry.field("what");
    const std::string_view operation = entry.field("operation");
    const bool metCall = !entry.field("call").empty();
    const bool metEvent = !entry.field("sequence").empty();
    const bool lasts = entry.field("state") == "begins" && operation.empty() && entry.field("events").empty();
    const auto known = counts_[faults].find(metCall ? joined(what, operation) : std::string(what));
    if (known != counts_[faults].end() && (metCall || metEvent || lasts)) {
        ++known->second;
    }
}

void Coverage::addStays(const Record& record) {
    std::set<std::pair<std::string_view, bool>> roles;
    std::set<std::string_view> timelines;
    auto& counts = counts_[sessions];
    for (const Stay& stay : record.stays) {
        const bool isFirst = roles.emplace(stay.analyst, stay.isHost).second;
        const bool isOnOld = !timelines.insert(stay.timelineId).second;
        ++counts[nameOf(stay, isFirst, isOnOld)];
        ++counts[stay.lasts ? lasting : over];
        if (stay.lasts && stay.isHost && stay.isClosed) {
            ++counts[closedHost];
        }
    }
}

void Coverage::add(const Coverage& other) {
    for (const auto& [group, counts] : other.counts_) {
        for (const auto& [name, count] : counts) {
            counts_[group][name] += count;
        }
    }
}

std::vector<std::string> Coverage::neverTaken() const {
    std::vector<std::string> never;
    for (const auto& [group, counts] : counts_) {
        for (const auto& [name, count] : counts) {
            if (count == 0) {
                never.push_back(group + ": " + name);
            }
        }
    }
    return never;
}

void Coverage::write(std::ostream& stream) const {
    constexpr std::size_t digits = 10;
    for (const char* group : {edits, sessions, faults, failures, losses}) {
        stream << group << '\n';
        for (const auto& [name, count] : counts_.at(group)) {
            const std::string number = std::to_string(count);
            stream << std::string(digits - std::min(digits, number.size()), ' ') << number << "  " << name
                   << '\n';
        }
    }
}

}  // namespace Simulator
