#include "Apps/Simulator/Coverage/PullRows.hpp"

#include "Apps/Simulator/Conformance/Ids.hpp"

#include <algorithm>
#include <array>

namespace Simulator {

namespace {

using Conformance::Block;
using Conformance::Entry;
using Conformance::Kind;
using Conformance::Operation;
using Conformance::Subscription;

constexpr std::string_view firstFails = "a first pull that fails";
constexpr std::string_view firstFindsNone = "a first pull that finds no session";
constexpr std::string_view firstFindsOther = "a first pull that finds another primary session";
constexpr std::string_view attemptFails = "an attempt to reconnect whose pull fails";
constexpr std::string_view attemptFindsNone = "an attempt to reconnect that finds no session";
constexpr std::string_view attemptFindsOther = "an attempt to reconnect that finds another primary session";
constexpr std::string_view uploadFails = "an attempt to reconnect whose upload fails";
constexpr std::string_view attemptEnds = "an attempt to reconnect that the end of the session cuts off";
constexpr std::string_view overEdits = "a pull that meets unsent edits";
constexpr std::string_view answeredAfterEnd = "a pull that is answered after the end of the session";
constexpr std::string_view noRows = "a session without a list of rows";
constexpr std::string_view unreadable = "moments that cannot be read";
constexpr std::string_view refused = "a subscription that is refused";
constexpr std::string_view breaksOff = "a subscription that breaks off";

}  // namespace

std::span<const std::string_view> PullRows::names() {
    static constexpr std::array all{firstFails,       firstFindsNone,    firstFindsOther, attemptFails,
                                    attemptFindsNone, attemptFindsOther, uploadFails,     attemptEnds,
                                    overEdits,        answeredAfterEnd,  noRows,          unreadable,
                                    refused,          breaksOff};
    return all;
}

PullRows::PullRows(Rows& rows, const Record& record) : rows_(rows) {
    for (const auto& [id, session] : record.sessions) {
        const auto first = std::ranges::find_if(session.changes, [](const auto& change) {
            return change->type == RemoteCoding::TaggingSessionChangeType::presentationViewUpdated;
        });
        if (first != session.changes.end()) {
            firstList_[id] = (*first)->sequence;
        }
    }
}

void PullRows::see(const Entry& entry) {
    switch (entry.kind) {
    case Kind::effect:
        if (entry.call != nullptr && entry.call->operation == Operation::fetch) {
            lastChange_[entry.raw.host] = static_cast<std::uint64_t>(entry.number("sequence"));
        }
        break;
    case Kind::answer:
        if (Conformance::answersCall(entry) && entry.call->operation == Operation::fetch) {
            fetched(entry);
        }
        break;
    case Kind::subscription:
        if (entry.subscription != nullptr && entry.field("state") == "failed") {
            rows_.meet(entry.subscription->state == Subscription::State::opening ? refused : breaksOff);
        }
        break;
    case Kind::uploadStart:
        if (entry.synchroniser != nullptr && entry.synchroniser->block &&
            entry.synchroniser->block->fetch != 0) {
            rows_.meet(overEdits);
        }
        break;
    case Kind::uploadEnd:
        if (entry.synchroniser != nullptr && entry.field("succeeded") == "false" &&
            entry.synchroniser->block && entry.synchroniser->block->work == Block::Work::reconnection &&
            entry.synchroniser->block->fetch == 0) {
            rows_.meet(uploadFails);
        }
        break;
    case Kind::usage:
        if (entry.synchroniser != nullptr && entry.message() == "SessionEnded" && entry.synchroniser->block &&
            entry.synchroniser->block->work == Block::Work::reconnection) {
            rows_.meet(attemptEnds);
        }
        break;
    case Kind::fault:
        if (entry.field("what") == "hideMoments" && entry.field("drops").empty()) {
            std::erase(hidden_, entry.raw.host);
            if (entry.field("state") == "begins") {
                hidden_.emplace_back(entry.raw.host);
            }
        }
        break;
    default:
        break;
    }
}

void PullRows::fetched(const Entry& entry) {
    const Conformance::Synchroniser* const synchroniser = entry.synchroniser;
    if (synchroniser == nullptr || !synchroniser->block) {
        return;
    }
    if (synchroniser->isCancelled) {
        rows_.meet(answeredAfterEnd);
        return;
    }
    const bool isFirst = synchroniser->block->work == Block::Work::pull;
    const Conformance::Ids found(entry.field("ids"));
    const std::string_view sessionId = synchroniser->stay.sessionId;
    if (!entry.field("error").empty()) {
        rows_.meet(isFirst ? firstFails : attemptFails);
    } else if (found.begin() == found.end()) {
        rows_.meet(isFirst ? firstFindsNone : attemptFindsNone);
    } else if (*found.begin() != sessionId) {
        rows_.meet(isFirst ? firstFindsOther : attemptFindsOther);
    } else {
        const auto firstList = firstList_.find(sessionId);
        if (firstList == firstList_.end() || firstList->second > lastChange_[entry.raw.host]) {
            rows_.meet(noRows);
        }
        if (std::ranges::find(hidden_, entry.raw.host) != hidden_.end()) {
            rows_.meet(unreadable);
        }
    }
}

}  // namespace Simulator
