#include "ReferenceHost/Cloud/CloudTaggingSessionService.hpp"

#include "Base/Error.hpp"
#include "ReferenceHost/Cloud/CloudConnection.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Cloud/CreatedMoments.hpp"
#include "ReferenceHost/Timeline/Timeline.hpp"
#include "ReferenceHost/Timeline/TimelineInstance.hpp"
#include "ReferenceHost/Timeline/TimelineRow.hpp"

#include <algorithm>
#include <optional>

namespace ReferenceHost {

namespace {

CloudCall callOf(CloudOperation operation, const std::string& teamId, const std::string& videoId,
                 const std::string& sessionId, const std::string& timelineId) {
    CloudCall call;
    call.operation = operation;
    call.teamId = teamId;
    call.videoId = videoId;
    call.sessionId = sessionId;
    call.timelineId = timelineId;
    return call;
}

std::optional<MomentDraft> draftOf(const std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>& instance,
                                   const CloudRules& rules) {
    const auto ours = std::dynamic_pointer_cast<TimelineInstance>(instance);
    if (!ours) {
        return std::nullopt;
    }
    MomentDraft draft;
    // Before the values: an edit meanwhile is written again with its own number, a value with another's number never.
    if (rules.onlyEditsAreWritten) {
        ours->tellCode(std::nullopt, 0);
        draft.numbers = ours->editNumbers();
        draft.numbers->code = ours->original()->editNumbers().code;  // as the name below
    }
    const ClipValues values = ours->values();
    draft.instanceId = ours->uniqueId();
    draft.externalId = ours->externalId();
    if (ours->row()) {
        // The row as it is now: it may have got its name from somebody else since the clip was captured.
        const auto row = ours->original()->row();
        draft.code = row->name();
        draft.codeColor = row->color();
        ours->tellCode(draft.code, draft.numbers.value_or(EditNumbers()).code);
    }
    draft.start = values.startTime;
    draft.end = values.endTime;
    draft.notes = values.notes;
    return draft;
}

// Absent when one of them cannot be read.
std::optional<std::vector<MomentDraft>> draftsOf(const RemoteCoding::InstanceList& instances,
                                                 const CloudRules& rules) {
    std::vector<MomentDraft> drafts;
    drafts.reserve(instances->size());
    for (const auto& instance : *instances) {
        auto draft = draftOf(instance, rules);
        if (!draft) {
            return std::nullopt;
        }
        drafts.push_back(std::move(*draft));
    }
    return drafts;
}

template <typename Value>
Base::Result<Value> unreadable() {
    return Base::failure<Value>(
        Base::DescribedError("A clip of another kind of timeline cannot be written to the cloud"));
}

bool isDone(bool answer) { return answer; }
bool isDone(const std::vector<std::string>& /*momentIds*/) { return true; }

/// The completion, which first tells the clips that they were written.
template <typename Answer>
Base::Completion<Answer> notingWrites(const RemoteCoding::InstanceList& instances,
                                      const std::vector<MomentDraft>& drafts,
                                      Base::Completion<Answer> completion) {
    std::vector<EditNumbers> numbers;
    numbers.reserve(drafts.size());
    for (const MomentDraft& draft : drafts) {
        numbers.push_back(draft.numbers.value_or(EditNumbers()));
    }
    return [instances, numbers = std::move(numbers),
            completion = std::move(completion)](Base::Result<Answer> answer) {
        const bool written = answer.succeeded() && isDone(answer.value());
        for (std::size_t index = 0; written && index < numbers.size(); ++index) {
            static_cast<TimelineInstance&>(*(*instances)[index]).didWrite(numbers[index]);
        }
        completion(std::move(answer));
    };
}

bool isAnsweredFalse(const Fault& fault) { return fault.kind == Fault::Kind::answerFalse; }

}  // namespace

CloudTaggingSessionService::CloudTaggingSessionService(std::shared_ptr<CloudConnection> connection)
    : connection_(std::move(connection)),
      writer_(connection_->nextWriter()),
      created_(std::make_shared<CreatedMoments>()) {}

void CloudTaggingSessionService::createTaggingSession(const std::string& teamId, const std::string& videoId,
                                                      const std::string& userId,
                                                      Base::Completion<std::string> completion) {
    CloudCall call = callOf(CloudOperation::createTaggingSession, teamId, videoId, {}, {});
    connection_->send(std::make_shared<PendingCallOf<std::string>>(
        std::move(call),
        [teamId, videoId, userId](CloudService& service, const Fault&) {
            return Base::Result<std::string>(service.createTaggingSession(teamId, videoId, userId));
        },
        std::move(completion)));
}

void CloudTaggingSessionService::savePresentationView(const std::string& teamId, const std::string& videoId,
                                                      const std::string& taggingSessionId,
                                                      const std::string& timelineId, const std::string& name,
                                                      RemoteCoding::RowList rows,
                                                      Base::Completion<std::string> completion) {
    static_cast<void>(name);  // always empty
    std::shared_ptr<Timeline> timeline;
    bool isOurs = false;
    for (const auto& row : *rows) {
        const auto ours = timeline ? nullptr : std::dynamic_pointer_cast<TimelineRow>(row);
        isOurs = isOurs || ours;
        timeline = ours ? ours->timeline() : timeline;
    }
    std::optional<RowEdits> edits;
    if (isOurs && connection_->rules().listsAreMerged) {
        edits = RowEdits();  // of a timeline that has been closed: its list is not everybody's
    }
    if (timeline && edits) {
        const auto isRemoved = [&](const std::string& moment) { return created_->isRemoved(moment); };
        edits = timeline->rowEdits().unsaved(taggingSessionId, writer_, isRemoved);
        completion = [completion = std::move(completion), timeline = std::weak_ptr(timeline),
                      taggingSessionId, edits = *edits](Base::Result<std::string> saved) {
            const auto current = saved.succeeded() ? timeline.lock() : nullptr;
            if (current) {
                current->rowEdits().areSaved(taggingSessionId, edits);
            }
            completion(std::move(saved));
        };
    }
    // A session's first list counts as having all these edits. So the rows are read after the edits, and from the timeline: the
    // given ones may be older.
    rows = timeline && edits ? timeline->allRows() : rows;
    auto codes = std::make_shared<std::vector<CodeRecord>>();
    codes->reserve(rows->size());
    for (const auto& row : *rows) {
        codes->push_back(CodeRecord{row->name(), row->color()});
    }
    CloudCall call =
        callOf(CloudOperation::savePresentationView, teamId, videoId, taggingSessionId, timelineId);
    call.count = codes->size();
    const auto client = connection_->client();
    connection_->send(std::make_shared<PendingCallOf<std::string>>(
        std::move(call),
        [=, codes = CodeList(std::move(codes))](CloudService& service, const Fault&) {
            return service.savePresentationView(client, videoId, taggingSessionId, timelineId, codes, edits);
        },
        std::move(completion)));
}

void CloudTaggingSessionService::createMoments(const std::string& teamId, const std::string& videoId,
                                               const std::string& taggingSessionId,
                                               const std::string& timelineId,
                                               RemoteCoding::InstanceList instances,
                                               Base::Completion<std::vector<std::string>> completion) {
    auto drafts = draftsOf(instances, connection_->rules());
    if (!drafts) {
        completion(unreadable<std::vector<std::string>>());
        return;
    }
    const auto numbers = std::make_shared<std::vector<std::uint64_t>>();
    completion = notingWrites(instances, *drafts, std::move(completion));
    completion = created_->naming(instances, taggingSessionId, numbers, std::move(completion));
    CloudCall call = callOf(CloudOperation::createMoments, teamId, videoId, taggingSessionId, timelineId);
    call.count = drafts->size();
    for (const MomentDraft& draft : *drafts) {
        call.ids.push_back(draft.instanceId);
    }
    const auto client = connection_->client();
    connection_->send(std::make_shared<PendingCallOf<std::vector<std::string>>>(
        std::move(call),
        [=, drafts = std::move(*drafts)](CloudService& service, const Fault& fault) {
            auto answer = service.createMoments(client, videoId, taggingSessionId, timelineId, drafts);
            if (answer.succeeded()) {
                *numbers = service.numbersOf(taggingSessionId, answer.value());
            }
            if (fault.kind != Fault::Kind::answerShort || !answer.succeeded()) {
                return answer;
            }
            std::vector<std::string> ids = answer.value();
            ids.resize(ids.size() - std::min(ids.size(), fault.shortBy));
            return Base::Result<std::vector<std::string>>(std::move(ids));
        },
        std::move(completion)));
}

void CloudTaggingSessionService::updateMoments(const std::string& teamId, const std::string& videoId,
                                               const std::string& taggingSessionId,
                                               const std::string& timelineId,
                                               RemoteCoding::InstanceList instances,
                                               Base::Completion<bool> completion) {
    auto drafts = draftsOf(instances, connection_->rules());
    if (!drafts) {
        completion(unreadable<bool>());
        return;
    }
    completion = notingWrites(instances, *drafts, std::move(completion));
    CloudCall call = callOf(CloudOperation::updateMoments, teamId, videoId, taggingSessionId, timelineId);
    call.count = drafts->size();
    for (const MomentDraft& draft : *drafts) {
        call.ids.push_back(draft.externalId.value_or(std::string()));
    }
    const auto client = connection_->client();
    connection_->send(std::make_shared<PendingCallOf<bool>>(
        std::move(call),
        [=, drafts = std::move(*drafts)](CloudService& service, const Fault& fault) {
            return isAnsweredFalse(fault)
                       ? Base::Result<bool>(false)
                       : service.updateMoments(client, videoId, taggingSessionId, timelineId, drafts);
        },
        std::move(completion)));
}

void CloudTaggingSessionService::removeMoments(const std::string& teamId, const std::string& videoId,
                                               const std::string& taggingSessionId,
                                               const std::string& timelineId,
                                               std::vector<std::string> momentIds,
                                               Base::Completion<bool> completion) {
    completion = created_->notingRemoval(momentIds, std::move(completion));
    CloudCall call = callOf(CloudOperation::removeMoments, teamId, videoId, taggingSessionId, timelineId);
    call.count = momentIds.size();
    call.ids = momentIds;
    const auto client = connection_->client();
    connection_->send(std::make_shared<PendingCallOf<bool>>(
        std::move(call),
        [=, momentIds = std::move(momentIds)](CloudService& service, const Fault& fault) {
            return isAnsweredFalse(fault)
                       ? Base::Result<bool>(false)
                       : service.removeMoments(client, videoId, taggingSessionId, timelineId, momentIds);
        },
        std::move(completion)));
}

}  // namespace ReferenceHost
