// Why a row's new name was written to one of its clips, and not to another.

#include "Apps/Simulator/Outcome/MomentCodes.hpp"

#include <algorithm>
#include <utility>

namespace Simulator {

namespace {

/// One name for the row, as it was written to one moment. The other did not get it.
class RenamedWithout {
public:
    RenamedWithout(const History& history, const MomentHistory& moment, const MomentHistory& other,
                   const std::vector<std::size_t>& seen)
        : history_(history), moment_(moment), other_(other), seen_(seen) {}

    Reason why(const ReferenceHost::RemoteChange& change, std::string_view before) {
        const std::string_view code = codeIn(change, moment_);
        rename_ = callOf(history_, moment_.session, change.sequence);
        edit_ = rename_ != nullptr ? editBefore(code) : nullptr;
        const bool isOutside = edit_ != nullptr && edit_->stay == never;
        if (edit_ != nullptr && !isOutside && edit_->oldName != before) {
            return LossClass::strayClip;
        }
        creation_ = creationOf(history_, other_);
        if (rename_ == nullptr || creation_ == nullptr) {
            return std::nullopt;
        }
        const std::uint64_t created = other_.changes.front()->sequence;
        if (created > change.sequence) {
            const StayHistory& author = history_.stays[creation_->stay];
            const bool wasOfOldName = codeIn(*other_.changes.front(), other_) == before;
            return wasOfOldName && author.receivedBefore(creation_->at) < change.sequence
                       ? Reason(LossClass::renamedMeanwhile)
                       : std::nullopt;
        }
        return codeAt(other_, change.sequence) == before ? whyKept() : std::nullopt;
    }

private:
    /// The other moment was there, and had the old name.
    Reason whyKept() const {
        if (wasLeftOnItsRow(history_, moment_, rename_->stay, rename_->at) ||
            wasLeftOnItsRow(history_, other_, rename_->stay, rename_->at)) {
            return LossClass::wrongRow;  // where it was renamed, they were on two rows
        }
        if (!wasThere()) {
            return wasUnplaced() ? LossClass::noRow : LossClass::renamedMeanwhile;
        }
        if (const Reason reason = whyOnTwoRows()) {
            return reason;
        }
        if (const Reason reason = whyStillThere()) {
            return reason;
        }
        return edit_ != nullptr ? whyNotSent(history_, *edit_, {}, other_.last->id) : std::nullopt;
    }

    /// With which the call's author has given the name, in the session or before it.
    const UserEdit* editBefore(std::string_view name) const {
        const UserEdit* found = nullptr;
        for (const UserEdit& edit : history_.edits) {
            if (edit.timelineId == timelineId() && edit.at < rename_->at &&
                edit.kind == EditKind::renameRow && edit.name == name) {
                found = &edit;
            }
        }
        return found;
    }

    /// The moment was on the timeline where the row was renamed before it was renamed there.
    bool wasThere() const {
        if (other_.last->originTimelineId == timelineId()) {
            return creation_->answered < rename_->at;
        }
        return wasBrought([](const Placement& placement) { return placement.how != "unplaced"; });
    }
    /// Its row could not be made there.
    bool wasUnplaced() const {
        return wasBrought([](const Placement& placement) { return placement.how == "unplaced"; });
    }
    template <typename Condition>
    bool wasBrought(const Condition& condition) const {
        const std::size_t renamed = edit_ != nullptr ? edit_->at : rename_->at;
        return std::ranges::any_of(other_.placements, [&](const Placement& placement) {
            return placement.at < renamed && placement.stay != never &&
                   history_.stays[placement.stay].stay->timelineId == timelineId() && condition(placement);
        });
    }

    /// Where the row was renamed, the other moment's clip was on another one, though both moments had the name.
    Reason whyOnTwoRows() const {
        const auto& clips = history_.stays[rename_->stay].stay->picture.clips;
        const auto clip = std::ranges::find(clips, other_.last->id, &ClipPicture::momentId);
        if (edit_ == nullptr || clip == clips.end() || clip->rowId == edit_->row) {
            return std::nullopt;
        }
        if (clip->row == other_.last->code) {
            return LossClass::strayClip;  // it has its row's name again
        }
        Loss there;
        there.kind = LossKind::clipOnWrongRow;
        there.stay = rename_->stay;
        there.moment = other_.last->id;
        there.clip = clip->instanceId;
        return whyOnWrongRow(history_, there, seen_);
    }

    /// The call's author had deleted the moment's clip before, and the cloud still has it.
    Reason whyStillThere() const {
        for (const UserEdit& edit : history_.edits) {
            const auto place = std::ranges::find(edit.moments, other_.last->id);
            if (edit.timelineId == timelineId() && edit.at < rename_->at && place != edit.moments.end() &&
                takesAway(edit)) {
                return whyNotSent(history_, edit, {}, *place);
            }
        }
        return std::nullopt;
    }

    std::string_view timelineId() const { return history_.stays[rename_->stay].stay->timelineId; }

    const History& history_;
    const MomentHistory& moment_;
    const MomentHistory& other_;
    const std::vector<std::size_t>& seen_;
    const Call* rename_ = nullptr;
    const Call* creation_ = nullptr;  // of the other
    const UserEdit* edit_ = nullptr;
};

/// The clip's own timeline did not know yet, at that entry, that the moment stands for it.
bool wasUnnamed(const History& history, const MomentHistory& moment, const UserEdit& edit) {
    const StayHistory& stay = history.stays[edit.stay];
    const std::string& id = moment.last->id;
    return edit.timelineId == moment.last->originTimelineId &&
           std::ranges::none_of(stay.calls,
                                [&](std::size_t number) {
                                    const Call& call = history.calls[number];
                                    return call.answered < edit.at &&
                                           std::ranges::find(call.answer, id) != call.answer.end();
                                }) &&
           std::ranges::none_of(moment.placements, [&](const Placement& placement) {
               return placement.stay == edit.stay && placement.at < edit.at;
           });
}

}  // namespace

Reason whyRenamedWithout(const History& history, const MomentHistory& moment, const MomentHistory& other,
                         const std::vector<std::size_t>& seen) {
    std::string_view old;
    for (const auto* change : moment.changes) {
        const std::string_view code = codeIn(*change, moment);
        const std::string_view before = std::exchange(old, code);
        const bool isFirst = change == moment.changes.front();
        if (isFirst || before == code || (isIn(*change, other) && codeIn(*change, other) == code)) {
            continue;
        }
        if (const Reason reason = RenamedWithout(history, moment, other, seen).why(*change, before)) {
            return reason;
        }
    }
    return std::nullopt;
}

Reason whyNotRenamed(const History& history, const Loss& loss) {
    const MomentHistory& moment = *history.moment(loss.moment);
    for (const UserEdit& edit : history.edits) {
        if (edit.kind != EditKind::renameRow || edit.oldName != moment.last->code || edit.stay == never ||
            history.stays[edit.stay].session != moment.session) {
            continue;
        }
        if (wasReadAsDeleted(history, moment, loss.moment)) {
            return LossClass::unreadable;
        }
        if (wasUnnamed(history, moment, edit)) {
            return LossClass::renamedMeanwhile;
        }
        if (wasRenamedWhileListed(history, edit)) {
            return LossClass::takenForKnown;
        }
        Loss missing;
        missing.kind = LossKind::clipMissing;
        missing.stay = edit.stay;
        missing.moment = loss.moment;
        if (const Reason reason = whyNotArrived(history, missing)) {
            return reason;
        }
    }
    return std::nullopt;
}

}  // namespace Simulator
