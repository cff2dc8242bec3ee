#include "ReferenceHost/Cloud/CloudTaggingSessionService.hpp"

#include "Base/Error.hpp"
#include "ReferenceHost/Cloud/CloudConnection.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Timeline/TimelineInstance.hpp"

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

std::optional<MomentDraft> draftOf(const std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>& instance) {
    const auto ours = std::dynamic_pointer_cast<TimelineInstance>(instance);
    if (!ours) {
        return std::nullopt;
    }
    const ClipValues values = ours->values();
    MomentDraft draft;
    draft.instanceId = ours->uniqueId();
    draft.externalId = ours->externalId();
    if (const auto row = ours->row()) {
        draft.code = row->name();
        draft.codeColor = row->color();
    }
    draft.start = values.startTime;
    draft.end = values.endTime;
    draft.notes = values.notes;
    return draft;
}

// Absent when one of them cannot be read.
std::optional<std::vector<MomentDraft>> draftsOf(const RemoteCoding::InstanceList& instances) {
    std::vector<MomentDraft> drafts;
    drafts.reserve(instances->size());
    for (const auto& instance : *instances) {
        auto draft = draftOf(instance);
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

bool isAnsweredFalse(const Fault& fault) { return fault.kind == Fault::Kind::answerFalse; }

}  // namespace

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
            return service.savePresentationView(client, videoId, taggingSessionId, timelineId, codes);
        },
        std::move(completion)));
}

void CloudTaggingSessionService::createMoments(const std::string& teamId, const std::string& videoId,
                                               const std::string& taggingSessionId,
                                               const std::string& timelineId,
                                               RemoteCoding::InstanceList instances,
                                               Base::Completion<std::vector<std::string>> completion) {
    auto drafts = draftsOf(instances);
    if (!drafts) {
        completion(unreadable<std::vector<std::string>>());
        return;
    }
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
    auto drafts = draftsOf(instances);
    if (!drafts) {
        completion(unreadable<bool>());
        return;
    }
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
