#include "ReferenceHost/Cloud/RemoteRecords.hpp"

namespace ReferenceHost {

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
