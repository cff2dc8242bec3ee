// Why a clip's row was given a name that the clip's moment was not given.

#include "Apps/Simulator/Outcome/MomentCodes.hpp"
#include "Apps/Simulator/Outcome/RowNames.hpp"

#include <algorithm>
#include <utility>

namespace Simulator {

namespace {

class NamesOfRow {
public:
    NamesOfRow(const History& history, const Loss& loss, const std::vector<std::size_t>& seen)
        : history_(history),
          loss_(loss),
          stay_(history.stays[loss.stay]),
          moment_(*history.moment(loss.moment)),
          clip_(*std::ranges::find(stay_.stay->picture.clips, loss.clip, &ClipPicture::instanceId)),
          since_(standsThereSince()),
          seen_(seen) {}

    Reason why() const {
        std::string_view name = clip_.row;
        for (Naming naming = namingBefore(never, name); naming.at != never;
             naming = namingBefore(naming.at, name)) {
            if (const Reason reason = whyNamed(naming, name)) {
                return reason;
            }
            name = history_.entry(naming.at).field("oldName");
            if (name == moment_.last->code) {
                return whyWithAnother(naming);
            }
        }
        return std::nullopt;
    }

private:
    Naming namingBefore(std::size_t at, std::string_view name) const {
        return lastNaming(history_, stay_.stay->timelineId, clip_.rowId, name, at);
    }

    /// The entry with which the clip was sent, or came onto the timeline; never: it is not in the trace.
    std::size_t standsThereSince() const {
        if (moment_.last->originInstanceId == loss_.clip) {
            const Call* creation = creationOf(history_, moment_);
            return creation != nullptr ? creation->at : never;
        }
        const auto placement = std::ranges::find(moment_.placements, loss_.clip, &Placement::clip);
        return placement != moment_.placements.end() ? placement->at : never;
    }

    /// The clip's row got this name, and its moment did not.
    Reason whyNamed(const Naming& naming, std::string_view name) const {
        if (naming.edit != nullptr) {
            const Reason reason = whyNotSent(history_, *naming.edit, {}, loss_.moment);
            return reason ? reason : whyRowIsUnlisted(history_, *naming.edit, loss_.moment);
        }
        if (naming.moment == nullptr) {
            return std::nullopt;
        }
        if (wasSentWithoutRow(history_, *naming.moment)) {
            return LossClass::sentWithoutRow;
        }
        for (Naming same = naming; same.at != never; same = namingBefore(same.at, name)) {
            if (same.moment == naming.moment && cameWithTheRenaming(same.at)) {
                return LossClass::formerName;
            }
        }
        if (wasLeftOnItsRow(history_, *naming.moment, loss_.stay, naming.at)) {
            return LossClass::wrongRow;
        }
        if (hadNoTargetForTheName(naming, name)) {
            return LossClass::noCodingTarget;
        }
        if (const Reason reason = whyApart(*naming.moment, moment_)) {
            return reason;
        }
        const bool isStray =
            !wasRenamedFrom(*naming.moment, history_.entry(naming.at).field("oldName"), name);
        return isStray ? Reason(LossClass::strayClip) : std::nullopt;
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

    /// The moment had come with the name before, which the row could not be given. After that, the clip was put onto the row of the
    /// former name, or sent with it.
    bool hadNoTargetForTheName(const Naming& naming, std::string_view name) const {
        return std::ranges::any_of(naming.moment->placements, [&](const Placement& placement) {
            if (placement.stay != loss_.stay || placement.at > std::min(naming.at, since_) ||
                !hadNoTarget(history_, stay_, placement.at)) {
                return false;
            }
            const auto arrival = std::ranges::find_if(stay_.arrivals, [&](const Arrival& candidate) {
                return candidate.start < placement.at && placement.at < candidate.at;
            });
            return arrival != stay_.arrivals.end() && codeAt(*naming.moment, arrival->sequence) == name;
        });
    }

    /// Somebody gave the moment the row's present name in place of that one. If not, it stood on the row though it was of another.
    static bool wasRenamedFrom(const MomentHistory& moment, std::string_view oldName, std::string_view name) {
        std::string_view code;
        return std::ranges::any_of(moment.changes, [&](const ReferenceHost::RemoteChange* change) {
            return std::exchange(code, codeIn(*change, moment)) == oldName && code == name;
        });
    }

    /// One of them got a name that the other did not get.
    Reason whyApart(const MomentHistory& moment, const MomentHistory& other) const {
        const Reason reason = whyRenamedWithout(history_, moment, other, seen_);
        return reason ? reason : whyRenamedWithout(history_, other, moment, seen_);
    }

    /// When the clip was put onto the row, or sent with its name, the row had followed another moment's: what has put that one's clip
    /// onto this row has put this clip there, too. Since then the row has followed a third.
    Reason whyWithAnother(const Naming& since) const {
        const Naming naming = since_ != never ? namingBefore(since_, moment_.last->code) : Naming();
        if (naming.moment == nullptr || naming.moment == &moment_ ||
            naming.moment->last->code != moment_.last->code) {
            return std::nullopt;
        }
        const MomentHistory& other = *naming.moment;
        const auto& clips = stay_.stay->picture.clips;
        const auto clip = std::ranges::find(clips, other.last->id, &ClipPicture::momentId);
        if (clip != clips.end() && clip->rowId == clip_.rowId) {
            Loss loss;
            loss.kind = LossKind::clipOnWrongRow;
            loss.stay = loss_.stay;
            loss.moment = other.last->id;
            loss.clip = clip->instanceId;
            std::vector<std::size_t> seen = seen_;
            std::erase(seen, loss_.stay);  // the other was there earlier: it does not ask for this one
            return whyOnWrongRow(history_, loss, seen);
        }
        return clip == clips.end() && since.moment != nullptr && wasOnTheRow(other)
                   ? whyApart(*since.moment, other)
                   : std::nullopt;
    }

    /// A clip that its user has deleted.
    bool wasOnTheRow(const MomentHistory& moment) const {
        UserEdit row;
        row.stay = loss_.stay;
        row.timelineId = stay_.stay->timelineId;
        row.row = clip_.rowId;
        return std::ranges::any_of(clipsOf(history_, loss_.stay, moment.last->id),
                                   [&](const std::string_view clip) { return isOfRow(history_, clip, row); });
    }

    const History& history_;
    const Loss& loss_;
    const StayHistory& stay_;
    const MomentHistory& moment_;
    const ClipPicture& clip_;
    const std::size_t since_;
    const std::vector<std::size_t>& seen_;
};

}  // namespace

Reason whyNamedOtherwise(const History& history, const Loss& loss, const std::vector<std::size_t>& seen) {
    return NamesOfRow(history, loss, seen).why();
}

}  // namespace Simulator
