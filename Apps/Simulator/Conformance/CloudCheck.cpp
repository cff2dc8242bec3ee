#include "Apps/Simulator/Conformance/CloudCheck.hpp"

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Simulator::Conformance {

namespace {

using ReferenceHost::AcceptedCall;
using ReferenceHost::ChangePointer;
using ReferenceHost::CloudOperation;
using ReferenceHost::CodeList;
using ReferenceHost::MomentDraft;
using ReferenceHost::MomentRecord;
using RemoteCoding::TaggingSessionChangeType;

const std::vector<ReferenceHost::CodeRecord>& codesOf(const CodeList& list) {
    static const std::vector<ReferenceHost::CodeRecord> none;
    return list ? *list : none;
}

/// One session as its writes make it, written down without a look at how the reference cloud does it.
class Fold {
public:
    Fold(const std::string& id, const SessionHistory& history, bool creationIsIdempotent, Report& report)
        : id_(id), history_(history), creationIsIdempotent_(creationIsIdempotent), report_(report) {}

    void check() {
        for (std::size_t index = 0; index < history_.changes.size(); ++index) {
            if (history_.changes[index]->sequence != index + 1) {
                add("cloudChanges", "the changes are not numbered without gaps");
                return;
            }
        }
        for (const AcceptedCall& call : history_.log) {
            take(call);
        }
        if (next_ != history_.changes.size()) {
            add("cloudChanges", "changes were told that no call has made");
        }
        compare();
    }

private:
    using Origin = std::pair<std::string_view, std::string_view>;

    void add(std::string_view rule, const std::string& what) { report_.add(rule, id_ + ": " + what); }

    void take(const AcceptedCall& call) {
        if (call.sequenceBefore != next_) {
            add("cloudChanges", "a call does not follow the changes before it");
        }
        switch (call.operation) {
        case CloudOperation::createMoments:
            create(call);
            break;
        case CloudOperation::updateMoments:
            update(call);
            break;
        case CloudOperation::removeMoments:
            remove(call);
            break;
        case CloudOperation::savePresentationView:
            codes_ = call.presentationView;
            told(call, TaggingSessionChangeType::presentationViewUpdated, {});
            break;
        default:
            add("cloudFold", "a write of an unknown kind");
        }
        if (call.sequenceAfter != next_) {
            add("cloudChanges", "a call has not told what it has changed, or more than that");
            next_ = call.sequenceAfter;
        }
    }

    void create(const AcceptedCall& call) {
        std::vector<std::string_view> made;
        std::vector<std::string_view> repeated;
        if (call.momentIds.size() != call.drafts.size()) {
            add("cloudFold", "a creation gives another number of identifiers than clips");
            return;
        }
        for (std::size_t index = 0; index < call.drafts.size(); ++index) {
            const MomentDraft& draft = call.drafts[index];
            const std::string_view momentId = call.momentIds[index];
            const Origin origin(call.timelineId, draft.instanceId);
            const auto known = living_.find(origin);
            if (creationIsIdempotent_ && known != living_.end()) {
                if (known->second != momentId) {
                    add("cloudFold", "a second creation of one clip gives another identifier");
                }
                const bool isNews = write(moments_[momentId], call.timelineId, draft);
                if (isNews && std::ranges::find(made, momentId) == made.end()) {
                    note(repeated, momentId);
                }
                continue;
            }
            const auto [moment, isNew] = moments_.try_emplace(momentId);
            if (!isNew) {
                add("cloudFold", "an identifier is used twice: " + std::string(momentId));
            }
            moment->second.originTimelineId = call.timelineId;
            moment->second.originInstanceId = draft.instanceId;
            MomentDraft whole = draft;
            whole.numbers.reset();
            write(moment->second, call.timelineId, whole);
            moment->second.taken[call.timelineId] = draft.numbers.value_or(ReferenceHost::EditNumbers());
            living_[origin] = momentId;
            order_.push_back(momentId);
            made.push_back(momentId);
        }
        told(call, TaggingSessionChangeType::momentsAdded, made);
        told(call, TaggingSessionChangeType::momentsUpdated, repeated);
    }

    void update(const AcceptedCall& call) {
        std::vector<std::string_view> updated;
        for (const MomentDraft& draft : call.drafts) {
            const auto moment = draft.externalId ? moments_.find(*draft.externalId) : moments_.end();
            if (moment != moments_.end() && write(moment->second, call.timelineId, draft)) {
                note(updated, moment->first);
            }
        }
        told(call, TaggingSessionChangeType::momentsUpdated, updated);
    }

    void remove(const AcceptedCall& call) {
        std::vector<std::string_view> removed;
        for (const std::string& momentId : call.momentIds) {
            const auto moment = moments_.find(momentId);
            if (moment == moments_.end()) {
                continue;
            }
            const auto origin =
                living_.find(Origin(moment->second.originTimelineId, moment->second.originInstanceId));
            if (origin != living_.end() && origin->second == momentId) {
                living_.erase(origin);
            }
            removed.push_back(momentId);
            moments_.erase(moment);
        }
        told(call, TaggingSessionChangeType::momentsDeleted, removed);
    }

    /// Of a draft with numbers, only what a later edit of its timeline has set is written. Whether others are told of it.
    static bool write(MomentRecord& moment, const std::string& timelineId, const MomentDraft& draft) {
        const MomentRecord before = moment;
        const auto isLater = [&](std::uint64_t ReferenceHost::EditNumbers::* part) {
            if (!draft.numbers) {
                return true;
            }
            std::uint64_t& last = moment.taken[timelineId].*part;
            return std::exchange(last, std::max(last, *draft.numbers.*part)) < *draft.numbers.*part;
        };
        if (isLater(&ReferenceHost::EditNumbers::code)) {
            moment.code = draft.code.value_or(moment.code);
            moment.codeColor = draft.codeColor.value_or(moment.codeColor);
        }
        if (isLater(&ReferenceHost::EditNumbers::times)) {
            moment.start = draft.start;
            moment.end = draft.end;
        }
        if (isLater(&ReferenceHost::EditNumbers::notes)) {
            moment.notes = draft.notes;
        }
        return !draft.numbers || !isSame(before, moment);
    }

    static void note(std::vector<std::string_view>& ids, std::string_view id) {
        if (std::ranges::find(ids, id) == ids.end()) {
            ids.push_back(id);
        }
    }

    /// The next change must be this one. A change of no moments is not told.
    void told(const AcceptedCall& call, TaggingSessionChangeType type,
              const std::vector<std::string_view>& momentIds) {
        const bool isOfRows = type == TaggingSessionChangeType::presentationViewUpdated;
        if (!isOfRows && momentIds.empty()) {
            return;
        }
        if (next_ >= history_.changes.size()) {
            add("cloudChanges", "a write was not told");
            return;
        }
        const ReferenceHost::RemoteChange& change = *history_.changes[next_++];
        bool isRight =
            change.type == type && change.client == call.client && change.moments.size() == momentIds.size();
        for (std::size_t index = 0; isRight && index < momentIds.size(); ++index) {
            const MomentRecord& moment = *change.moments[index];
            const auto now = moments_.find(moment.id);
            isRight =
                moment.id == momentIds[index] && (type == TaggingSessionChangeType::momentsDeleted ||
                                                  (now != moments_.end() && isSame(moment, now->second)));
        }
        if (isOfRows) {
            isRight = isRight && codesOf(change.presentationView) == codesOf(codes_);
        }
        if (!isRight) {
            add("cloudChanges",
                "change " + std::to_string(change.sequence) + " is not what its call has done");
        }
    }

    static bool isSame(const MomentRecord& one, const MomentRecord& folded) {
        return one.code == folded.code && one.codeColor == folded.codeColor && one.start == folded.start &&
               one.end == folded.end && one.notes == folded.notes &&
               one.originTimelineId == folded.originTimelineId &&
               one.originInstanceId == folded.originInstanceId;
    }

    void compare() {
        std::erase_if(order_, [&](std::string_view id) { return !moments_.contains(id); });
        const auto& held = history_.session.moments;
        bool isEqual = held.size() == order_.size();
        for (std::size_t index = 0; isEqual && index < held.size(); ++index) {
            isEqual = held[index]->id == order_[index] && isSame(*held[index], moments_[order_[index]]);
        }
        if (!isEqual) {
            add("cloudFold", "the moments are not what the accepted calls come to");
        }
        if (codesOf(history_.session.presentationView) != codesOf(codes_)) {
            add("cloudFold", "the list of rows is not the one that was saved last");
        }
        if (history_.session.sequence != history_.changes.size()) {
            add("cloudFold", "the session does not know its last change");
        }
    }

    const std::string& id_;
    const SessionHistory& history_;
    bool creationIsIdempotent_;
    Report& report_;
    std::unordered_map<std::string_view, MomentRecord> moments_;  // living ones
    std::map<Origin, std::string_view> living_;                   // by origin
    std::vector<std::string_view> order_;                         // of creation
    CodeList codes_;
    std::size_t next_ = 0;  // of the changes
};

}  // namespace

void checkCloud(const Record& record, Report& report) {
    const auto& broken = record.plan.brokenRules;
    const bool isIdempotent = std::ranges::find(broken, "createIsIdempotent") == broken.end();
    for (const auto& [id, history] : record.sessions) {
        Fold(id, history, isIdempotent, report).check();
    }
}

}  // namespace Simulator::Conformance
