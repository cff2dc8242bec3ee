#include "Components/RemoteCoding/Services/TimelineUploadService.hpp"

#include "Base/Await.hpp"
#include "Base/Error.hpp"
#include "Base/IdIndex.hpp"
#include "Components/RemoteCoding/Models/ErrorLog.hpp"

#include <string_view>
#include <utility>
#include <vector>

namespace RemoteCoding {

namespace {

constexpr std::string_view pullFunction = "syncRemoteTaggingSessionToLocalTimeline(completion:)";

using Sessions = std::vector<TaggingSessionItem>;
using Moments = TimelineUploadService::Moments;

/// Of the timeline's clips, in their order.
std::vector<std::string> momentIdsThatAreNotAmong(const Moments& newMoments, const Moments& updatedMoments,
                                                  const TimelineProtocol& timeline) {
    // Filled for the first clip that has a moment: a timeline that is joined has none.
    std::vector<std::string_view> remoteMomentIds;
    Base::IdIndex index;
    const auto idAt = [&](Base::IdIndex::Position position) { return remoteMomentIds[position]; };
    const auto fill = [&] {
        remoteMomentIds.reserve(newMoments.size() + updatedMoments.size());
        for (const Moments* const moments : {&newMoments, &updatedMoments}) {
            for (const auto& moment : *moments) {
                const auto position = static_cast<Base::IdIndex::Position>(remoteMomentIds.size());
                remoteMomentIds.emplace_back(moment->identifier());
                index.put(remoteMomentIds.back(), position, idAt);
            }
        }
    };
    bool isFilled = false;
    std::vector<std::string> missing;
    const RowList rows = timeline.allRows();
    for (const auto& row : *rows) {
        const InstanceList instances = row->allInstances();
        for (const auto& instance : *instances) {
            auto externalId = instance->externalId();
            if (!externalId) {
                continue;
            }
            if (!std::exchange(isFilled, true)) {
                fill();
            }
            if (!index.find(*externalId, idAt)) {
                missing.push_back(*std::move(externalId));
            }
        }
    }
    return missing;
}

}  // namespace

void TimelineUploadService::syncRemoteTaggingSessionToLocalTimeline(SuccessCompletion completion) {
    environment_.logManager.logInfo("Syncing remote tagging session to the local timeline");
    try {
        if (const auto current = timeline()) {
            startTask(Base::Home::mainThread, pull(shared_from_this(), current, completion), pullFunction);
            return;
        }
        logError(environment_.logManager, "Unable to get timeline", "", pullFunction);
    } catch (...) {
        logUnexpectedFailure(std::current_exception(), pullFunction);
    }
    // Nothing was received, so it is to be asked for again.
    if (completion) {
        completion(false);
    }
}

Base::Task<void> TimelineUploadService::pull(std::shared_ptr<TimelineUploadService> self,
                                             std::shared_ptr<TimelineProtocol> timeline,
                                             SuccessCompletion completion) {
    Base::CompletionCall<Sessions> fetching([client = self->graphQLClient_, teamId = self->teamId_,
                                             videoId = self->videoId_](Base::Completion<Sessions> done) {
        client->fetchTaggingSessions(teamId, videoId, std::nullopt, std::move(done));
    });
    const Base::Result<Sessions> sessions = co_await fetching;
    bool succeeded = true;
    try {
        succeeded = self->applyFetchedSessions(timeline, sessions);
    } catch (...) {
        self->logUnexpectedFailure(std::current_exception(), pullFunction);
        succeeded = false;
    }
    if (completion) {
        completion(succeeded);
    }
}

/// False when the remote session could not be fetched and should be asked for again.
bool TimelineUploadService::applyFetchedSessions(const std::shared_ptr<TimelineProtocol>& timeline,
                                                 const Base::Result<Sessions>& sessions) {
    auto& log = environment_.logManager;
    if (isSyncingCancelled_) {
        return true;
    }
    if (!sessions.succeeded()) {
        log.logWarn("Unable to get remote tagging session. Error=" + Base::describe(sessions.error()));
        return false;
    }
    if (sessions.value().empty()) {
        logError(log, "Expected a tagging session on Tevu, but none found.", "", pullFunction);
        return true;
    }
    const TaggingSessionItem& primarySession = sessions.value().front();
    if (primarySession.identifier != taggingSessionId()) {
        logError(log, "TaggingSessionId does not match the primary tagging session for the Tevu video.", "",
                 pullFunction);
        return true;
    }
    if (hasNotMetItsSession()) {
        // Sent now, before it has received the session, the timeline's rows would replace everybody's list of codes.
        if (modifyCountAtStart_ < timeline->modifyCount()) {
            unsentEdits_.areLost({modifyCountAtStart_ + 1, timeline->modifyCount()});
        }
    } else if (lastModifyCount_ < timeline->modifyCount()) {
        // What the user changed while the reply was under way would be taken for applied and never be sent.
        updateTaggingSession({});
    }
    applyPrimarySession(timeline, primarySession);
    firstPullIsPending_ = false;
    return true;
}

void TimelineUploadService::applyPrimarySession(const std::shared_ptr<TimelineProtocol>& timeline,
                                                const TaggingSessionItem& session) {
    Moments newMoments;
    Moments updatedMoments;
    if (session.moments) {
        for (const auto& rawMoment : *session.moments) {
            if (auto moment = rawMoment ? environment_.syncLibrary.momentItem(*rawMoment) : nullptr) {
                const bool isKnown = momentCache_.knowsMoment(moment->identifier());
                (isKnown ? updatedMoments : newMoments).push_back(std::move(moment));
            }
        }
    }
    const auto deletedMomentIds = momentIdsThatAreNotAmong(newMoments, updatedMoments, *timeline);
    std::optional<PresentationViewItem> presentationView;
    if (session.presentationViews && !session.presentationViews->empty() &&
        session.presentationViews->front()) {
        presentationView = environment_.syncLibrary.presentationViewItem(*session.presentationViews->front());
    }
    updateTimelineWithChanges(timeline, newMoments, updatedMoments, deletedMomentIds, presentationView);
}

}  // namespace RemoteCoding
