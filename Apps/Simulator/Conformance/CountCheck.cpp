#include "Apps/Simulator/Conformance/CountCheck.hpp"

#include <algorithm>
#include <string>
#include <utility>

namespace Simulator::Conformance {

CountCheck::CountCheck(Report& report, const Record& record)
    : report_(report),
      countsAreKnown_(countsAreKnown(record)),
      uploadsTellTheirRange_(isKept(record, "partialTellsItsCount")) {}

void CountCheck::see(const Entry& entry) {
    const Synchroniser* const synchroniser = entry.synchroniser;
    if (const auto* const expected = std::exchange(succeeded_, nullptr)) {
        const bool moves =
            entry.kind == Kind::count && synchroniser == expected && entry.field("reason") == "uploaded";
        if (!moves) {
            report_.add("countAfterUpload", entry, "an upload has succeeded, and the count does not move");
        } else if (entry.number("new") != sentUpTo_) {
            report_.add("countAfterUpload", entry,
                        "the upload held the changes up to " + std::to_string(sentUpTo_) +
                            ", the count moves to " + std::string(entry.field("new")));
        }
    } else if (entry.kind == Kind::count && entry.field("reason") == "uploaded") {
        report_.add("countAfterUpload", entry, "the count moves without an upload that has succeeded");
    }
    if (synchroniser == nullptr) {
        return;
    }
    switch (entry.kind) {
    case Kind::count:
        moved(entry);
        break;
    case Kind::uploadStart: {
        State& state = states_[*synchroniser];
        state.accountedFor = std::max(state.accountedFor, entry.number("last"));
        break;
    }
    case Kind::uploadEnd:
        if (entry.field("succeeded") == "true") {
            const auto pass = std::ranges::find(synchroniser->passes, entry.number("number"), &Pass::number);
            succeeded_ = synchroniser;
            sentUpTo_ = pass != synchroniser->passes.end() ? (*pass)->last : 0;
        }
        break;
    case Kind::edit:
        states_[*synchroniser].edits.push_back(entry.number("count"));
        break;
    default:
        break;
    }
}

void CountCheck::moved(const Entry& entry) {
    const Synchroniser& synchroniser = *entry.synchroniser;
    if (entry.number("old") != synchroniser.lastModifyCount) {
        report_.add("countOld", entry,
                    "the count was " + std::to_string(synchroniser.lastModifyCount) + " before, not " +
                        std::string(entry.field("old")));
    }
    if (entry.field("reason") == "applied") {
        applied(entry, states_[synchroniser]);
    } else if (entry.field("reason") != "uploaded") {
        report_.add("countReason", entry, "the count moves for no known reason");
    }
}

void CountCheck::applied(const Entry& entry, State& state) {
    const Synchroniser& synchroniser = *entry.synchroniser;
    const std::int64_t newCount = entry.number("new");
    const std::int64_t present = synchroniser.host.modifyCountOf(synchroniser.stay.timelineId);
    // A pull holds its timeline, also when that is closed before the reply: nobody hears of its changes any more, and nothing of
    // it can be sent.
    const bool isClosed = synchroniser.host.isClosed(synchroniser.stay.timelineId);
    if (countsAreKnown_ && !isClosed && newCount != present) {
        report_.add("countAfterApply", entry,
                    "the timeline is at " + std::to_string(present) + ", the count moves to " +
                        std::string(entry.field("new")));
    }
    if (!synchroniser.block || synchroniser.block->work == Block::Work::upload) {
        report_.add("countAfterApply", entry, "remote changes are applied outside a block for them");
    }
    // What a timeline held when it first met its session is not sent before.
    const bool isFirstMeeting = !synchroniser.hasPulled && synchroniser.lastModifyCount == 0 &&
                                synchroniser.block && synchroniser.block->work != Block::Work::event;
    for (const std::int64_t edit : state.edits) {
        if (edit > state.accountedFor && edit <= newCount && !isFirstMeeting && !isClosed &&
            uploadsTellTheirRange_) {
            report_.add("editsPassedOver", entry,
                        "the edit with the count " + std::to_string(edit) +
                            " is passed over, and was never being sent");
        }
    }
    state.accountedFor = std::max(state.accountedFor, newCount);
    std::erase_if(state.edits, [&](std::int64_t edit) { return edit <= state.accountedFor; });
}

}  // namespace Simulator::Conformance
