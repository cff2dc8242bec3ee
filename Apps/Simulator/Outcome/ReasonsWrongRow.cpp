// Why a clip is on a row that has another name than the clip's code.

#include "Apps/Simulator/Outcome/MomentCodes.hpp"
#include "Apps/Simulator/Outcome/Reasons.hpp"

#include <algorithm>

namespace Simulator {

namespace {

class RowOfClip {
public:
    RowOfClip(const History& history, const Loss& loss, const std::vector<std::size_t>& seen)
        : history_(history),
          loss_(loss),
          stay_(history.stays[loss.stay]),
          moment_(*history.moment(loss.moment)),
          seen_(seen) {}

    Reason why() const {
        if (const Reason reason = whyOneOfTwo()) {
            return reason;
        }
        const Placement* placement = placementWithCode();
        if (placement != nullptr && isLeftOnItsRow(history_, *placement)) {
            return LossClass::wrongRow;
        }
        if (placement != nullptr && hadNoTarget(history_, stay_, placement->at)) {
            return LossClass::noCodingTarget;
        }
        if (placement != nullptr && wasFirstNamedWithCode(*placement)) {
            return LossClass::renamedMeanwhile;
        }
        if (wasSentWithoutRow(history_, moment_)) {
            return LossClass::sentWithoutRow;
        }
        if (placement == nullptr) {
            if (const Reason reason = whyNotArrived(history_, loss_)) {
                return reason;
            }
        } else if (placement->how == "notFound") {
            if (const Reason reason = whyTakenAway(*placement)) {
                return reason;
            }
        }
        if (const Reason reason = whyNamedOtherwise(history_, loss_, seen_)) {
            return reason;
        }
        return whyNotRenamed(history_, loss_);
    }

private:
    /// Two clips of the timeline stand for the moment, and only one of them follows it.
    Reason whyOneOfTwo() const {
        const auto standsForIt = [&](const ClipPicture& clip) { return clip.momentId == loss_.moment; };
        if (std::ranges::count_if(stay_.stay->picture.clips, standsForIt) < 2) {
            return std::nullopt;
        }
        Loss twice;
        twice.kind = LossKind::clipTwice;
        twice.stay = loss_.stay;
        twice.moment = loss_.moment;
        twice.clip = loss_.clip;
        return explain(history_, twice);
    }

    /// The clip had been deleted when its moment came with the new name, and its user has taken that back.
    Reason whyTakenAway(const Placement& placement) const {
        const UserEdit* removal = nullptr;
        for (const UserEdit& edit : history_.edits) {
            const bool removes = takesAway(edit);
            if (removes && edit.timelineId == stay_.stay->timelineId && edit.at < placement.at &&
                std::ranges::find(edit.clips, loss_.clip) != edit.clips.end()) {
                removal = &edit;
            }
        }
        return removal != nullptr ? whyNotSent(history_, *removal, loss_.clip, loss_.moment) : std::nullopt;
    }

    /// The change that gave the moment the code that it has.
    std::uint64_t changeOfCode() const {
        std::uint64_t sequence = 0;
        std::string_view code;
        for (const auto* change : moment_.changes) {
            if (codeIn(*change, moment_) != code) {
                code = codeIn(*change, moment_);
                sequence = change->sequence;
            }
        }
        return sequence;
    }

    /// Where the moment was brought onto the timeline last with the code that it has.
    const Placement* placementWithCode() const {
        const std::uint64_t sequence = changeOfCode();
        const auto arrival = std::ranges::find_if(stay_.arrivals, [&](const Arrival& candidate) {
            return candidate.isPull ? candidate.sequence >= sequence : candidate.sequence == sequence;
        });
        const Placement* last = nullptr;
        for (const Placement& placement : moment_.placements) {
            if (arrival != stay_.arrivals.end() && placement.stay == loss_.stay &&
                placement.at > arrival->start) {
                last = &placement;
            }
        }
        return last;
    }

    /// The clip was there when its moment, which had got the row's new name meanwhile, came for the first time.
    bool wasFirstNamedWithCode(const Placement& placement) const {
        return (placement.how == "own" || placement.how == "known") &&
               moment_.changes.front()->sequence < changeOfCode() &&
               std::ranges::none_of(
                   moment_.placements,
                   [&](const Placement& earlier) {
                       return earlier.stay == loss_.stay && earlier.at < placement.at;
                   }) &&
               std::ranges::none_of(
                   history_.calls,
                   [&](const Call& call) {
                       return call.stay == loss_.stay && call.answered < placement.at &&
                              std::ranges::find(call.answer, moment_.last->id) != call.answer.end();
                   });
    }

    const History& history_;
    const Loss& loss_;
    const StayHistory& stay_;
    const MomentHistory& moment_;
    const std::vector<std::size_t>& seen_;
};

}  // namespace

Reason whyOnWrongRow(const History& history, const Loss& loss, const std::vector<std::size_t>& seen) {
    const MomentHistory* moment = history.moment(loss.moment);
    if (moment == nullptr || moment->changes.empty() || std::ranges::find(seen, loss.stay) != seen.end()) {
        return std::nullopt;
    }
    std::vector<std::size_t> stays = seen;
    stays.push_back(loss.stay);
    return RowOfClip(history, loss, stays).why();
}

Reason whyOnWrongRow(const History& history, const Loss& loss) { return whyOnWrongRow(history, loss, {}); }

}  // namespace Simulator
