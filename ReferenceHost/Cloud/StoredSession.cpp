#include "ReferenceHost/Cloud/StoredSession.hpp"

#include <algorithm>
#include <iterator>
#include <unordered_set>

namespace ReferenceHost {

using RemoteCoding::TaggingSessionChangeType;

namespace {

/// Whether there is anything to tell. A draft without numbers is told whatever it says.
bool update(MomentPointer& moment, const std::string& timelineId, const MomentDraft& draft) {
    auto result = std::make_shared<const MomentRecord>(withDraft(*moment, timelineId, draft));
    const bool isNews = !draft.numbers || !isSameClip(*moment, *result);
    moment = std::move(result);
    return isNews;
}

// Identifiers in the order of their first mention.
class DistinctIds {
public:
    void add(const std::string& id) {
        if (seen_.insert(id).second) {
            ids_.push_back(id);
        }
    }
    [[nodiscard]] bool contains(const std::string& id) const { return seen_.contains(id); }
    [[nodiscard]] const std::vector<std::string>& inOrder() const { return ids_; }

private:
    std::unordered_set<std::string> seen_;
    std::vector<std::string> ids_;
};

}  // namespace

StoredSession::StoredSession(std::string id, std::string videoId, std::string userId)
    : id_(std::move(id)), videoId_(std::move(videoId)), userId_(std::move(userId)) {}

std::vector<std::string> StoredSession::createMoments(const CloudRules& rules, CloudService::ClientId client,
                                                      const std::string& timelineId,
                                                      const std::vector<MomentDraft>& drafts) {
    return Base::synchronized(lock_, [&] {
        const std::uint64_t before = changes_.size();
        std::vector<std::string> answer;
        answer.reserve(drafts.size());
        DistinctIds created;
        DistinctIds repeated;
        for (const MomentDraft& draft : drafts) {
            const auto known = idsByOrigin_.find(Origin(timelineId, draft.instanceId));
            if (rules.createIsIdempotent && known != idsByOrigin_.end()) {
                const std::string momentId = known->second;
                if (update(*find(momentId), timelineId, draft) && !created.contains(momentId)) {
                    repeated.add(momentId);
                }
                answer.push_back(momentId);
            } else {
                answer.push_back(add(timelineId, draft));
                created.add(answer.back());
            }
        }
        tellMoments(rules, client, TaggingSessionChangeType::momentsAdded, stateOf(created.inOrder()));
        tellMoments(rules, client, TaggingSessionChangeType::momentsUpdated, stateOf(repeated.inOrder()));
        log_.push_back(AcceptedCall{CloudOperation::createMoments, client, timelineId, before,
                                    changes_.size(), drafts, answer, nullptr});
        return answer;
    });
}

bool StoredSession::updateMoments(const CloudRules& rules, CloudService::ClientId client,
                                  const std::string& timelineId, const std::vector<MomentDraft>& drafts) {
    return Base::synchronized(lock_, [&] {
        const std::uint64_t before = changes_.size();
        DistinctIds changed;
        bool allFound = true;
        for (const MomentDraft& draft : drafts) {
            MomentPointer* moment = draft.externalId ? find(*draft.externalId) : nullptr;
            if (moment == nullptr) {
                allFound = false;
                continue;
            }
            if (update(*moment, timelineId, draft)) {
                changed.add(*draft.externalId);
            }
        }
        tellMoments(rules, client, TaggingSessionChangeType::momentsUpdated, stateOf(changed.inOrder()));
        log_.push_back(AcceptedCall{
            CloudOperation::updateMoments, client, timelineId, before, changes_.size(), drafts, {}, nullptr});
        return allFound || rules.unknownIdsAreIgnored;
    });
}

bool StoredSession::removeMoments(const CloudRules& rules, CloudService::ClientId client,
                                  const std::string& timelineId, const std::vector<std::string>& momentIds) {
    return Base::synchronized(lock_, [&] {
        const std::uint64_t before = changes_.size();
        std::vector<MomentPointer> removed;
        for (const std::string& momentId : momentIds) {
            if (const MomentPointer* moment = find(momentId)) {
                removed.push_back(*moment);
                remove(momentId);
            }
        }
        const bool allFound = removed.size() == momentIds.size();
        tellMoments(rules, client, TaggingSessionChangeType::momentsDeleted, std::move(removed));
        log_.push_back(AcceptedCall{CloudOperation::removeMoments,
                                    client,
                                    timelineId,
                                    before,
                                    changes_.size(),
                                    {},
                                    momentIds,
                                    nullptr});
        return allFound || rules.unknownIdsAreIgnored;
    });
}

void StoredSession::savePresentationView(const CloudRules& rules, CloudService::ClientId client,
                                         const std::string& timelineId, CodeList codes,
                                         const std::optional<RowEdits>& edits) {
    Base::synchronized(lock_, [&] {
        const std::uint64_t before = changes_.size();
        presentationView_ = edits ? listWith(timelineId, codes, *edits) : codes;
        RemoteChange change;
        change.client = client;
        change.type = TaggingSessionChangeType::presentationViewUpdated;
        change.presentationView = presentationView_;
        tell(rules, std::move(change));
        log_.push_back(AcceptedCall{CloudOperation::savePresentationView,
                                    client,
                                    timelineId,
                                    before,
                                    changes_.size(),
                                    {},
                                    {},
                                    presentationView_});
    });
}

/// The list with those of the edits that it does not have yet. The first one is as the timeline is, with all of them, also those that
/// wait: made to it once more, later, they would undo what others have done to it since.
CodeList StoredSession::listWith(const std::string& timelineId, const CodeList& codes,
                                 const RowEdits& edits) {
    NumberedRowEdits& taken = takenRowEdits_[timelineId];
    RowEdits newEdits;
    std::ranges::copy_if(edits, std::back_inserter(newEdits), [&](const RowEdit& edit) {
        return !taken.contains(edit.number) && !(edit.waits && presentationView_);
    });
    auto list =
        presentationView_
            ? std::make_shared<const std::vector<CodeRecord>>(withEdits(*presentationView_, newEdits, taken))
            : codes;
    for (RowEdit& edit : newEdits) {
        const std::uint64_t number = edit.number;
        taken.emplace(number, std::move(edit));
    }
    return list;
}

TaggingSessionRecord StoredSession::record() const {
    return Base::synchronized(lock_, [&] {
        TaggingSessionRecord record;
        record.id = id_;
        record.videoId = videoId_;
        record.createdByUserId = userId_;
        record.moments.assign(moments_.begin(), moments_.end());
        record.presentationView = presentationView_;
        record.sequence = changes_.size();
        return record;
    });
}

std::vector<AcceptedCall> StoredSession::log() const {
    return Base::synchronized(lock_, [&] { return log_; });
}

std::vector<ChangePointer> StoredSession::changes() const {
    return Base::synchronized(lock_, [&] { return changes_; });
}

std::uint64_t StoredSession::lastSequence() const {
    return Base::synchronized(lock_, [&] { return changes_.size(); });
}

std::size_t StoredSession::numberOfSubscribers() const {
    return Base::synchronized(lock_, [&] { return followers_.size(); });
}

MomentPointer* StoredSession::find(const std::string& momentId) {
    const auto found = momentsById_.find(momentId);
    return found == momentsById_.end() ? nullptr : &*found->second;
}

std::string StoredSession::add(const std::string& timelineId, const MomentDraft& draft) {
    MomentRecord moment;
    moment.sessionId = id_;
    moment.number = ++lastMoment_;
    moment.id = id_ + ".moment-" + std::to_string(moment.number);
    moment.originTimelineId = timelineId;
    moment.originInstanceId = draft.instanceId;
    if (draft.numbers) {
        moment.taken[timelineId] = *draft.numbers;
    }
    MomentDraft whole = draft;
    whole.numbers.reset();
    moments_.push_back(std::make_shared<const MomentRecord>(withDraft(std::move(moment), timelineId, whole)));
    const std::string& id = moments_.back()->id;
    momentsById_[id] = std::prev(moments_.end());
    idsByOrigin_[Origin(timelineId, draft.instanceId)] = id;
    return id;
}

std::vector<std::uint64_t> StoredSession::numbersOf(const std::vector<std::string>& momentIds) {
    return Base::synchronized(lock_, [&] {
        std::vector<std::uint64_t> numbers;
        numbers.reserve(momentIds.size());
        for (const std::string& momentId : momentIds) {
            const MomentPointer* moment = find(momentId);
            numbers.push_back(moment != nullptr ? (*moment)->number : 0);
        }
        return numbers;
    });
}

void StoredSession::remove(const std::string& momentId) {
    const auto found = momentsById_.find(momentId);
    const MomentPointer moment = *found->second;
    moments_.erase(found->second);
    momentsById_.erase(found);
    const auto origin = idsByOrigin_.find(Origin(moment->originTimelineId, moment->originInstanceId));
    if (origin != idsByOrigin_.end() && origin->second == momentId) {
        idsByOrigin_.erase(origin);
    }
}

std::vector<MomentPointer> StoredSession::stateOf(const std::vector<std::string>& momentIds) {
    std::vector<MomentPointer> moments;
    moments.reserve(momentIds.size());
    for (const std::string& momentId : momentIds) {
        moments.push_back(*find(momentId));
    }
    return moments;
}

}  // namespace ReferenceHost
