// Why a clip is on a row that has another name than the clip's code.

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
    RowOfClip(const History& history, const Loss& loss)
        : history_(history),
          loss_(loss),
          stay_(history.stays[loss.stay]),
          moment_(*history.moment(loss.moment)) {
        const auto& clips = stay_.stay->picture.clips;
        clip_ = &*std::ranges::find(clips, loss.clip, &ClipPicture::instanceId);
    }

    Reason why() const {
        const Placement* placement = placementWithCode();
        if (placement != nullptr && isLeftOnItsRow(*placement)) {
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
            if (wasLeftOnItsRow(*naming.moment, loss_.stay, naming.at)) {
                return LossClass::wrongRow;
            }
        }
        if (naming.edit != nullptr) {
            if (const Reason reason = whyNotSent(history_, *naming.edit, {}, loss_.moment)) {
                return reason;
            }
        } else if (naming.moment != nullptr) {
            if (const Reason reason = whyRenamedWithout(*naming.moment, moment_)) {
                return reason;
            }
            if (const Reason reason = whyRenamedWithout(moment_, *naming.moment)) {
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

    bool isLeftOnItsRow(const Placement& placement) const {
        const auto& record = history_.entry(placement.at);
        for (std::size_t at = placement.at + 1; at < history_.record.trace.size(); ++at) {
            const auto& entry = history_.entry(at);
            if (entry.host != record.host || entry.kind != TraceKind::logError) {
                return false;
            }
            if (entry.field("message") == "Instance for moment is on the wrong row") {
                return true;
            }
        }
        return false;
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

    /// In that stay, before that entry.
    bool wasLeftOnItsRow(const MomentHistory& moment, std::size_t stay, std::size_t before) const {
        return std::ranges::any_of(moment.placements, [&](const Placement& placement) {
            return placement.at < before && placement.stay == stay && isLeftOnItsRow(placement);
        });
    }

    /// The clip that its author's timeline handed out knew of no row.
    bool wasSentWithoutRow(const MomentHistory& moment) const {
        const Call* creation = callOf(moment.changes.front()->sequence);
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

    /// Somebody's new name for the row was written to this moment and not to the other: its author did not have that yet, the other's
    /// did not know of the name, or the other could not be written.
    Reason whyRenamedWithout(const MomentHistory& moment, const MomentHistory& other) const {
        std::string_view old;
        for (const auto* change : moment.changes) {
            const std::string_view code = codeIn(*change, moment);
            const std::string_view before = std::exchange(old, code);
            if (before.empty() || before == code || isIn(*change, other)) {
                continue;
            }
            const Call* rename = callOf(change->sequence);
            const UserEdit* edit = rename != nullptr ? renameBefore(*rename, code) : nullptr;
            if (edit != nullptr && edit->oldName != before) {
                return LossClass::strayClip;
            }
            const Call* creation = callOf(other.changes.front()->sequence);
            if (rename == nullptr || creation == nullptr) {
                continue;
            }
            if (other.changes.front()->sequence > change->sequence) {
                const StayHistory& author = history_.stays[creation->stay];
                if (codeIn(*other.changes.front(), other) == before &&
                    author.receivedBefore(creation->at) < change->sequence) {
                    return LossClass::renamedMeanwhile;
                }
            } else if (codeAt(other, change->sequence) == before) {
                if (wasLeftOnItsRow(moment, rename->stay, rename->at) ||
                    wasLeftOnItsRow(other, rename->stay, rename->at)) {
                    return LossClass::wrongRow;  // where it was renamed, they were on two rows
                }
                if (!wasThere(other, *creation, *rename, edit)) {
                    return LossClass::renamedMeanwhile;
                }
                if (const Reason reason = whyStillThere(other, *rename)) {
                    return reason;
                }
                if (const Reason reason =
                        edit != nullptr ? whyNotSent(history_, *edit, {}, other.last->id) : std::nullopt) {
                    return reason;
                }
            }
        }
        return std::nullopt;
    }

    /// The call's author had deleted the moment's clip before, and the cloud still has it.
    Reason whyStillThere(const MomentHistory& moment, const Call& call) const {
        for (const std::size_t index : history_.stays[call.stay].edits) {
            const UserEdit& edit = history_.edits[index];
            const auto place = std::ranges::find(edit.moments, moment.last->id);
            if (edit.at < call.at && place != edit.moments.end() &&
                (edit.kind == EditKind::removeClip || edit.kind == EditKind::removeRow)) {
                return whyNotSent(history_, edit, {}, *place);
            }
        }
        return std::nullopt;
    }

    /// With which the call's author has given the name.
    const UserEdit* renameBefore(const Call& call, std::string_view name) const {
        const UserEdit* found = nullptr;
        for (const std::size_t index : history_.stays[call.stay].edits) {
            const UserEdit& edit = history_.edits[index];
            if (edit.at < call.at && edit.kind == EditKind::renameRow && edit.name == name) {
                found = &edit;
            }
        }
        return found;
    }

    /// The moment was on the timeline where the row was renamed before it was renamed there.
    bool wasThere(const MomentHistory& moment, const Call& creation, const Call& rename,
                  const UserEdit* edit) const {
        const std::string& timelineId = history_.stays[rename.stay].stay->timelineId;
        if (moment.last->originTimelineId == timelineId) {
            return creation.answered < rename.at;
        }
        const std::size_t renamed = edit != nullptr ? edit->at : rename.at;
        return std::ranges::any_of(moment.placements, [&](const Placement& placement) {
            return placement.at < renamed && placement.stay != never &&
                   history_.stays[placement.stay].stay->timelineId == timelineId;
        });
    }

    const Call* callOf(std::uint64_t sequence) const {
        const auto found = std::ranges::find_if(history_.calls, [&](const Call& call) {
            return call.stay != never && history_.stays[call.stay].session == stay_.session &&
                   call.accepted != nullptr && call.accepted->sequenceBefore < sequence &&
                   sequence <= call.accepted->sequenceAfter;
        });
        return found != history_.calls.end() ? &*found : nullptr;
    }

    static bool isIn(const ReferenceHost::RemoteChange& change, const MomentHistory& moment) {
        return std::ranges::find(moment.changes, &change) != moment.changes.end();
    }
    static std::string_view codeIn(const ReferenceHost::RemoteChange& change, const MomentHistory& moment) {
        return (*std::ranges::find_if(change.moments,
                                      [&](const auto& state) { return state->id == moment.last->id; }))
            ->code;
    }
    static std::string_view codeAt(const MomentHistory& moment, std::uint64_t sequence) {
        std::string_view code;
        for (const auto* change : moment.changes) {
            if (change->sequence <= sequence) {
                code = codeIn(*change, moment);
            }
        }
        return code;
    }

    const History& history_;
    const Loss& loss_;
    const StayHistory& stay_;
    const MomentHistory& moment_;
    const ClipPicture* clip_ = nullptr;
};

}  // namespace

Reason whyOnWrongRow(const History& history, const Loss& loss) {
    const MomentHistory* moment = history.moment(loss.moment);
    return moment != nullptr && !moment->changes.empty() ? RowOfClip(history, loss).why() : std::nullopt;
}

}  // namespace Simulator
