// What becomes of clips that were deleted and brought back, and of those that are left of deleted moments.

#include "Apps/Simulator/Outcome/Reasons.hpp"

#include <algorithm>
#include <iterator>
#include <set>

namespace Simulator {

using RemoteCoding::TaggingSessionChangeType;

namespace {

bool restores(const UserEdit& edit) {
    return edit.kind == EditKind::restoreClip || edit.kind == EditKind::restoreRow;
}

/// When the moment was deleted; 0: it was not.
std::uint64_t deletionOf(const MomentHistory& moment) {
    const auto& last = *moment.changes.back();
    return last.type == TaggingSessionChangeType::momentsDeleted ? last.sequence : 0;
}

/// The edited clip stood for a moment whose deletion the timeline had received: nothing but this timeline shows it. Of a deletion that
/// was taken back: it stood for that before it was deleted.
bool wasOnAStaleClip(const History& history, const UserEdit& edit, std::string_view clip) {
    const UserEdit* first = &edit;
    if (restores(edit)) {
        const auto removal =
            std::find_if(history.edits.rbegin(), history.edits.rend(), [&](const UserEdit& other) {
                return other.at < edit.at && takesAway(other) &&
                       std::ranges::find(other.clips, clip) != other.clips.end();
            });
        if (removal == history.edits.rend() || removal->stay != edit.stay) {
            return false;
        }
        first = &*removal;
    }
    const auto place = std::ranges::find(first->clips, clip);
    const MomentHistory* moment =
        place != first->clips.end()
            ? history.moment(first->moments[static_cast<std::size_t>(place - first->clips.begin())])
            : nullptr;
    return moment != nullptr && deletionOf(*moment) != 0 &&
           deletionOf(*moment) <= history.stays[first->stay].receivedBefore(first->at);
}

/// Several analysts have brought the clip back.
bool wasBroughtBackTwice(const SharedClip& clip) {
    std::set<std::string_view> timelines;
    for (const UserEdit* edit : clip.edits) {
        if (restores(*edit)) {
            timelines.insert(edit->timelineId);
        }
    }
    return timelines.size() > 1 && clip.moments.size() > 2;
}

/// The deletion was told to the cloud by the synchroniser of an earlier stay, which was still sending: this stay's had not heard of
/// the moment.
bool wasSentByAnEarlierStay(const History& history, const UserEdit& removal, std::string_view clip) {
    const auto place = std::ranges::find(removal.clips, clip) - removal.clips.begin();
    const std::string_view id = removal.moments[static_cast<std::size_t>(place)];
    const MomentHistory* moment = history.moment(id);
    return moment != nullptr && removal.stay != never &&
           std::ranges::any_of(history.stays,
                               [&](const StayHistory& stay) {
                                   return stay.stay->timelineId == removal.timelineId &&
                                          stay.stay->to < removal.at;
                               }) &&
           std::ranges::any_of(history.stays[removal.stay].calls, [&](std::size_t number) {
               const Call& call = history.calls[number];
               return call.at > removal.at && call.name == "removeMoments" && call.accepted != nullptr &&
                      std::ranges::find(call.ids, id) != call.ids.end() &&
                      std::ranges::none_of(moment->placements, [&](const Placement& placement) {
                          return placement.stay == removal.stay && placement.at < call.at;
                      });
           });
}

/// The clip was deleted on this timeline before its analyst left, or outside of the session; or the cloud has its deletion from
/// then.
bool wasDeletedBeforeJoining(const History& history, const UserEdit& undo, std::string_view clip) {
    return restores(undo) && std::ranges::any_of(history.edits, [&](const UserEdit& edit) {
               return takesAway(edit) && edit.at < undo.at &&
                      std::ranges::find(edit.clips, clip) != edit.clips.end() &&
                      (edit.stay != undo.stay || wasSentByAnEarlierStay(history, edit, clip));
           });
}

/// The living moment was made for a copy of the former one that its analyst has deleted and brought back.
bool wasCopyOf(const History& history, std::string_view living, std::string_view former) {
    const MomentHistory& copy = *history.moment(living);
    const MomentHistory& moment = *history.moment(former);
    return deletionOf(moment) != 0 && std::ranges::any_of(moment.placements, [&](const Placement& placement) {
               return placement.clip == copy.last->originInstanceId && placement.stay != never &&
                      history.stays[placement.stay].stay->timelineId == copy.last->originTimelineId;
           });
}

/// A timeline that could not be edited kept the clip when it was deleted, and has sent it anew: it lives, or a copy of it does, or it
/// is the one of two that the user has deleted.
bool wasKeptWithoutTarget(const History& history, const SharedClip& clip, const Loss& loss) {
    std::vector<std::string_view> atIssue = clip.livingMoments;
    if (loss.kind == LossKind::clipDoubled) {
        for (const std::string_view living : clip.livingMoments) {
            std::ranges::copy_if(clip.moments, std::back_inserter(atIssue),
                                 [&](std::string_view former) { return wasCopyOf(history, living, former); });
        }
    }
    if (loss.kind == LossKind::deletionLost) {
        const auto place = std::ranges::find(loss.edit->clips, loss.clip) - loss.edit->clips.begin();
        atIssue.push_back(loss.edit->moments[static_cast<std::size_t>(place)]);
    }
    return std::ranges::any_of(atIssue, [&](std::string_view id) {
        const MomentHistory* found = history.moment(id);
        if (found == nullptr || found->changes.empty()) {
            return false;
        }
        const MomentHistory& living = *found;
        const std::uint64_t creation = living.changes.front()->sequence;
        return std::ranges::any_of(history.stays, [&](const StayHistory& stay) {
            return stay.session == living.session && stay.stay->timelineId == living.last->originTimelineId &&
                   std::ranges::any_of(stay.arrivals, [&](const Arrival& arrival) {
                       return hadNoTarget(history, stay, arrival.at) &&
                              std::ranges::any_of(clip.moments, [&](std::string_view deleted) {
                                  const std::uint64_t deletion = deletionOf(*history.moment(deleted));
                                  return deletion != 0 && deletion < creation &&
                                         (arrival.isPull ? arrival.sequence >= deletion
                                                         : arrival.sequence == deletion);
                              });
                   });
        });
    });
}

/// Why a deletion of this clip on the same timeline was not sent.
Reason whyStillThere(const History& history, std::string_view clip, std::string_view moment,
                     const UserEdit& other) {
    const auto removal =
        std::find_if(history.edits.rbegin(), history.edits.rend(), [&](const UserEdit& edit) {
            return takesAway(edit) && edit.timelineId == other.timelineId &&
                   std::ranges::find(edit.clips, clip) != edit.clips.end();
        });
    return removal != history.edits.rend() ? whyNotSent(history, *removal, clip, moment) : std::nullopt;
}

/// The living moment was made by the last upload of a session whose timeline was published anew, without the names of that session.
bool wasSentWithoutItsName(const History& history, const MomentHistory& moment) {
    const std::uint64_t sequence = moment.changes.front()->sequence;
    return std::ranges::any_of(history.calls, [&](const Call& call) {
        if (call.stay == never || call.accepted == nullptr || call.name != "createMoments" ||
            history.stays[call.stay].session != moment.session || call.accepted->sequenceBefore >= sequence ||
            call.accepted->sequenceAfter < sequence) {
            return false;
        }
        const Stay& stay = *history.stays[call.stay].stay;
        return stay.to < call.at && std::ranges::any_of(
                                        history.stays,
                                        [&](const StayHistory& next) {
                                            return next.stay->timelineId == stay.timelineId &&
                                                   next.stay->from >= stay.to && next.stay->from < call.at &&
                                                   next.session != moment.session;
                                        });
    });
}

/// Clips that stand for the moment on the timeline.
std::vector<std::string_view> clipsAtIssue(const History& history, const Loss& loss) {
    std::vector<std::string_view> clips;
    if (!loss.moment.empty()) {
        clips = clipsOf(history, loss.stay, loss.moment);
    }
    if (!loss.clip.empty()) {
        clips.push_back(loss.clip);
    }
    return clips;
}

}  // namespace

Reason whyOfBroughtBack(const History& history, const Loss& loss) {
    const std::vector<std::string_view> atIssue = clipsAtIssue(history, loss);
    const UserEdit* edit = loss.edit != nullptr
                               ? loss.edit
                               : lastEditOf(history, history.stays[loss.stay].stay->timelineId, atIssue);
    if (edit != nullptr && edit->stay != never) {
        const std::string_view edited =
            loss.edit != nullptr ? loss.clip : *std::ranges::find_first_of(edit->clips, atIssue);
        if (loss.edit != nullptr && wasOnAStaleClip(history, *edit, edited)) {
            return LossClass::deletedWhileAway;
        }
        if (wasDeletedBeforeJoining(history, *edit, edited)) {
            return LossClass::undoneLater;
        }
        if (loss.kind != LossKind::deletionLost && loss.kind != LossKind::clipDoubled) {
            if (const Reason reason = whyStillThere(history, edited, loss.moment, *edit)) {
                return reason;
            }
        }
        const bool isGone = loss.kind == LossKind::tagLost || loss.kind == LossKind::clipExtra;
        if (isGone && wasTakenAwayAgain(history, *edit, edited)) {
            return LossClass::takenAwayAgain;
        }
    }
    const std::vector<SharedClip> clips = findSharedClips(history);
    const auto clip = std::ranges::find_if(clips, [&](const SharedClip& candidate) {
        return std::ranges::find(candidate.moments, loss.moment) != candidate.moments.end();
    });
    if (clip == clips.end()) {
        return std::nullopt;
    }
    if (wasKeptWithoutTarget(history, *clip, loss)) {
        return LossClass::noCodingTarget;
    }
    for (const std::string_view id : clip->moments) {
        const MomentHistory& moment = *history.moment(id);
        if (wasReadAsDeleted(history, moment, id)) {
            return LossClass::unreadable;
        }
        if (moment.lives && wasSentWithoutItsName(history, moment)) {
            return LossClass::left;
        }
    }
    return loss.edit != nullptr && wasBroughtBackTwice(*clip) ? Reason(LossClass::broughtBackTwice)
                                                              : std::nullopt;
}

}  // namespace Simulator
