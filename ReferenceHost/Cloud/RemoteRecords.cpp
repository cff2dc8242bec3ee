#include "ReferenceHost/Cloud/RemoteRecords.hpp"

#include <algorithm>

namespace ReferenceHost {

MomentRecord withDraft(MomentRecord moment, const std::string& timelineId, const MomentDraft& draft) {
    EditNumbers all;
    EditNumbers& taken = draft.numbers ? moment.taken[timelineId] : all;
    const auto takes = [&](std::uint64_t EditNumbers::* part) {
        if (!draft.numbers) {
            return true;
        }
        const bool isNew = *draft.numbers.*part > taken.*part;
        taken.*part = std::max(taken.*part, *draft.numbers.*part);
        return isNew;
    };
    if (takes(&EditNumbers::code)) {
        moment.code = draft.code.value_or(moment.code);
        moment.codeColor = draft.codeColor.value_or(moment.codeColor);
    }
    if (takes(&EditNumbers::times)) {
        moment.start = draft.start;
        moment.end = draft.end;
    }
    if (takes(&EditNumbers::notes)) {
        moment.notes = draft.notes;
    }
    return moment;
}

bool isSameClip(const MomentRecord& left, const MomentRecord& right) {
    return left.code == right.code && left.codeColor == right.codeColor && left.start == right.start &&
           left.end == right.end && left.notes == right.notes;
}

const char* nameOf(CloudOperation operation) {
    switch (operation) {
    case CloudOperation::fetchTaggingSessions:
        return "fetchTaggingSessions";
    case CloudOperation::subscribe:
        return "subscribeToTaggingSessionChanges";
    case CloudOperation::createTaggingSession:
        return "createTaggingSession";
    case CloudOperation::savePresentationView:
        return "savePresentationView";
    case CloudOperation::createMoments:
        return "createMoments";
    case CloudOperation::updateMoments:
        return "updateMoments";
    case CloudOperation::removeMoments:
        return "removeMoments";
    case CloudOperation::getVideo:
        return "getVideo";
    case CloudOperation::getVideosForTeamId:
        return "getVideosForTeamId";
    case CloudOperation::openPublishSession:
        return "openPublishSession";
    case CloudOperation::fetchTeams:
        return "fetchTeams";
    }
    return "unknown";
}

const char* nameOf(RemoteCoding::TaggingSessionChangeType type) {
    switch (type) {
    case RemoteCoding::TaggingSessionChangeType::momentsAdded:
        return "momentsAdded";
    case RemoteCoding::TaggingSessionChangeType::momentsUpdated:
        return "momentsUpdated";
    case RemoteCoding::TaggingSessionChangeType::momentsDeleted:
        return "momentsDeleted";
    case RemoteCoding::TaggingSessionChangeType::presentationViewUpdated:
        return "presentationViewUpdated";
    case RemoteCoding::TaggingSessionChangeType::unknown:
        break;
    }
    return "unknown";
}

bool isWrite(CloudOperation operation) {
    return operation >= CloudOperation::createTaggingSession && operation <= CloudOperation::removeMoments;
}

}  // namespace ReferenceHost
