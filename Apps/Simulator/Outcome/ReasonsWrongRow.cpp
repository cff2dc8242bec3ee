// Why a clip is on a row that has another name than the clip's code.

#include "Apps/Simulator/Outcome/MomentCodes.hpp"
#include "Apps/Simulator/Outcome/Reasons.hpp"

#include <algorithm>
#include <utility>

namespace Simulator {

namespace TraceKind = ReferenceHost::TraceKind;

namespace {

/// A row gets its name.
struct Naming {
    std::size_t at = never;
    const UserEdit* edit = nullptr;         ///< the user's
    const MomentHistory* moment = nullptr;  ///< or the moment whose code the row followed
};

class RowOfClip {
public:
    RowOfClip(const History& history, const Loss& loss, const std::vector<std::size_t>& seen)
        : history_(history),
          loss_(loss),
          stay_(history.stays[loss.stay]),
          moment_(*history.moment(loss.moment)),
          seen_(seen) {
        const auto& clips = stay_.stay->picture.clips;
        clip_ = &*std::ranges::find(clips, loss.clip, &ClipPicture::instanceId);
    }

    Reason why() const {
        const Placement* placement = placementWithCode();
        if (placement != nullptr && isLeftOnItsRow(history_, *placement)) {
            return LossClass::wrongRow;
        }
        if (placement != nullptr && hadNoTarget(history_, stay_, placement->at)) {
            return LossClass::noCodingTarget;
        }
        if (wasSentWithoutRow(moment_)) {
            return LossClass::sentWithoutRow;
        }
        const Naming naming = lastNaming();
        if (naming.moment != nullptr) {
            if (wasSentWithoutRow(*naming.moment)) {
                return LossClass::sentWithoutRow;
            }
            if (cameWithTheRenaming(naming.at)) {
                return LossClass::formerName;
            }
            if (wasLeftOnItsRow(history_, *naming.moment, loss_.stay, naming.at)) {
                return LossClass::wrongRow;
            }
        }
        if (naming.edit != nullptr) {
            if (const Reason reason = whyNotSent(history_, *naming.edit, {}, loss_.moment)) {
                return reason;
            }
        } else if (naming.moment != nullptr) {
            if (const Reason reason = whyRenamedWithout(history_, *naming.moment, moment_, seen_)) {
                return reason;
            }
            if (const Reason reason = whyRenamedWithout(history_, moment_, *naming.moment, seen_)) {
                return reason;
            }
            if (!wasRenamedFrom(*naming.moment, history_.entry(naming.at).field("oldName"))) {
                return LossClass::strayClip;
            }
        }
        return std::nullopt;
    }

private:
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

    /// One fetch first put the clip onto the row of that name and then told of the row's new name: the clip is of another row.
    bool cameWithTheRenaming(std::size_t naming) const {
        return history_.entry(naming).field("oldName") == moment_.last->code &&
               std::ranges::any_of(moment_.placements, [&](const Placement& placement) {
                   return placement.stay == loss_.stay && placement.how == "new" && placement.at < naming &&
                          std::ranges::any_of(
                              stay_.arrivals,
                              [&](const Arrival& arrival) {
                                  return arrival.isPull && arrival.start < placement.at &&
                                         naming < arrival.at;
                              });
               });
    }

    /// Somebody gave the moment the row's present name in place of that one. If not, it stood on the row though it was of another.
    bool wasRenamedFrom(const MomentHistory& moment, std::string_view name) const {
        std::string_view code;
        return std::ranges::any_of(moment.changes, [&](const ReferenceHost::RemoteChange* change) {
            return std::exchange(code, codeIn(*change, moment)) == name && code == clip_->row;
        });
    }

    /// The clip that its author's timeline handed out knew of no row.
    bool wasSentWithoutRow(const MomentHistory& moment) const {
        const Call* creation = creationOf(history_, moment);
        return creation != nullptr &&
               std::ranges::any_of(creation->accepted->drafts, [&](const ReferenceHost::MomentDraft& draft) {
                   return draft.instanceId == moment.last->originInstanceId && !draft.code;
               });
    }

    /// Two rows of a timeline never have one name, so the last that got this one is the clip's.
    Naming lastNaming() const {
        Naming last;
        for (const UserEdit& edit : history_.edits) {
            if (edit.kind == EditKind::renameRow && edit.timelineId == stay_.stay->timelineId &&
                edit.row == clip_->rowId && edit.name == clip_->row) {
                last = {edit.at, &edit, nullptr};
            }
        }
        for (const StayHistory& stay : history_.stays) {
            for (const std::size_t at : stay.target) {
                const auto& entry = history_.entry(at);
                if (stay.stay->timelineId == stay_.stay->timelineId && (last.at == never || at > last.at) &&
                    entry.field("name") == "setRowNameWithRowNum" && entry.field("rowName") == clip_->row) {
                    last = {at, nullptr, momentFollowedAt(at)};
                }
            }
        }
        return last;
    }

    /// The one that was brought onto the timeline just before.
    const MomentHistory* momentFollowedAt(std::size_t naming) const {
        for (std::size_t at = naming; at-- > 0;) {
            const auto& entry = history_.entry(at);
            if (entry.kind == TraceKind::call && entry.field("name") == "updateOnTimeline") {
                return history_.moment(entry.field("momentId"));
            }
        }
        return nullptr;
    }

    const History& history_;
    const Loss& loss_;
    const StayHistory& stay_;
    const MomentHistory& moment_;
    const std::vector<std::size_t>& seen_;
    const ClipPicture* clip_ = nullptr;
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
