#include "Apps/Simulator/Outcome/ClipEdits.hpp"

#include <algorithm>
#include <numeric>

namespace Simulator {

using ReferenceHost::CloudOperation;

namespace {

/// Puts ids that mean the same clip together.
class Groups {
public:
    std::size_t of(std::string_view id) {
        const auto [found, isNew] = numbers_.try_emplace(id, parents_.size());
        if (isNew) {
            parents_.push_back(parents_.size());
        }
        return root(found->second);
    }
    void join(std::string_view one, std::string_view other) {
        if (!one.empty() && !other.empty()) {
            parents_[of(one)] = of(other);
        }
    }

private:
    std::size_t root(std::size_t number) {
        while (parents_[number] != number) {
            number = parents_[number] = parents_[parents_[number]];
        }
        return number;
    }

    std::unordered_map<std::string_view, std::size_t> numbers_;
    std::vector<std::size_t> parents_;
};

Groups groupsOf(const History& history) {
    Groups groups;
    for (const UserEdit& edit : history.edits) {
        for (std::size_t index = 0; index < edit.clips.size(); ++index) {
            groups.join(edit.clips[index], edit.moments[index]);
        }
    }
    for (const auto& [id, moment] : history.moments) {
        if (moment.last != nullptr) {
            groups.join(moment.last->originInstanceId, id);
        }
        for (const Placement& placement : moment.placements) {
            if (placement.how != "unplaced") {
                groups.join(placement.clip, id);
            }
        }
    }
    return groups;
}

bool hasClips(const UserEdit& edit) {
    return edit.kind <= EditKind::restoreClip || edit.kind == EditKind::removeRow ||
           edit.kind == EditKind::restoreRow;
}

}  // namespace

std::vector<SharedClip> findSharedClips(const History& history) {
    Groups groups = groupsOf(history);
    std::vector<SharedClip> clips;
    std::unordered_map<std::size_t, std::size_t> clipOf;  // by group
    const auto clip = [&](std::string_view id) -> SharedClip& {
        const auto [found, isNew] = clipOf.try_emplace(groups.of(id), clips.size());
        if (isNew) {
            clips.emplace_back();
        }
        return clips[found->second];
    };
    for (const UserEdit& edit : history.edits) {
        if (!hasClips(edit)) {
            continue;
        }
        for (const std::string_view id : edit.clips) {
            SharedClip& shared = clip(id);
            if (edit.stay == never ||
                (!shared.edits.empty() &&
                 history.stays[shared.edits.front()->stay].session != history.stays[edit.stay].session)) {
                shared.isFromElsewhere = true;
            } else {
                shared.edits.push_back(&edit);
                shared.clips.push_back(id);
            }
        }
    }
    for (const auto& [id, moment] : history.moments) {
        if (moment.last != nullptr) {
            SharedClip& shared = clip(id);
            shared.moments.push_back(id);
            if (moment.lives) {
                shared.livingMoments.push_back(id);
            }
        }
    }
    return clips;
}

const Call* callThatBrought(const History& history, const SharedClip& clip, const UserEdit& edit) {
    const auto isTold = [&](const ReferenceHost::AcceptedCall& accepted) {
        if (takesAway(edit)) {
            return accepted.operation == CloudOperation::removeMoments &&
                   std::ranges::any_of(accepted.momentIds, [&](const std::string& id) {
                       return std::ranges::find(clip.moments, id) != clip.moments.end();
                   });
        }
        return std::ranges::any_of(accepted.drafts, [&](const auto& draft) {
            return std::ranges::find(edit.clips, draft.instanceId) != edit.clips.end() &&
                   (edit.kind != EditKind::retime || (draft.start == edit.start && draft.end == edit.end)) &&
                   (edit.kind != EditKind::note || draft.notes == edit.notes);
        });
    };
    for (const std::size_t number : history.stays[edit.stay].calls) {
        const Call& call = history.calls[number];
        if (call.accepted != nullptr && call.effect > edit.at && isTold(*call.accepted)) {
            return &call;
        }
    }
    return nullptr;
}

bool wasKnown(const History& history, const SharedClip& clip, const UserEdit& earlier,
              const UserEdit& later) {
    if (earlier.at >= later.at || earlier.timelineId == later.timelineId) {
        return earlier.at < later.at;
    }
    const Call* call = callThatBrought(history, clip, earlier);
    return call != nullptr &&
           history.stays[later.stay].receivedBefore(later.at) >= call->accepted->sequenceAfter;
}

}  // namespace Simulator
