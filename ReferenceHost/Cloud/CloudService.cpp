#include "ReferenceHost/Cloud/CloudService.hpp"

#include "Base/Error.hpp"
#include "ReferenceHost/Cloud/StoredSession.hpp"
#include "ReferenceHost/SeededRandom.hpp"

namespace ReferenceHost {

namespace {

template <typename Value>
Base::Result<Value> noSuchSession() {
    return Base::failure<Value>(Base::DescribedError("The tagging session does not exist"));
}

}  // namespace

CloudService::CloudService(Scheduler& scheduler, std::uint64_t seed)
    : scheduler_(scheduler),
      videos_([this] { return time(); }, SeededRandom::stream(seed, "cloud identifiers").next()) {}

CloudService::~CloudService() = default;

CloudRules CloudService::rules() const {
    return Base::synchronized(lock_, [&] { return rules_; });
}

void CloudService::setRules(CloudRules rules) {
    Base::synchronized(lock_, [&] { rules_ = rules; });
}

CloudService::ClientId CloudService::addClient() {
    return Base::synchronized(lock_, [&] { return ++lastClient_; });
}

std::string CloudService::createTaggingSession(const std::string& teamId, const std::string& videoId,
                                               const std::string& userId) {
    static_cast<void>(teamId);  // a video's identifier is unique over all teams
    return Base::synchronized(lock_, [&] {
        const auto video = sessionsByVideo_.find(videoId);
        if (rules_.createSessionGivesPrimary && video != sessionsByVideo_.end()) {
            return video->second.front()->id();
        }
        return makeSession(videoId, userId);
    });
}

std::string CloudService::addTaggingSession(const std::string& teamId, const std::string& videoId,
                                            const std::string& userId) {
    static_cast<void>(teamId);
    return Base::synchronized(lock_, [&] { return makeSession(videoId, userId); });
}

std::string CloudService::makeSession(const std::string& videoId, const std::string& userId) {
    auto session =
        std::make_shared<StoredSession>("session-" + std::to_string(sessions_.size() + 1), videoId, userId);
    sessions_[session->id()] = session;
    videos_.touch(videoId);
    sessionsByVideo_[videoId].push_back(session);
    return session->id();
}

std::vector<TaggingSessionRecord>
CloudService::fetchTaggingSessions(const std::string& teamId, const std::string& videoId,
                                   const std::optional<std::string>& createdByUserId) const {
    static_cast<void>(teamId);
    const auto sessions = Base::synchronized(lock_, [&] {
        const auto video = sessionsByVideo_.find(videoId);
        return video == sessionsByVideo_.end() ? std::vector<std::shared_ptr<StoredSession>>()
                                               : video->second;
    });
    std::vector<TaggingSessionRecord> records;
    for (const auto& session : sessions) {
        TaggingSessionRecord record = session->record();
        if (!createdByUserId || record.createdByUserId == *createdByUserId) {
            records.push_back(std::move(record));
        }
    }
    return records;
}

Base::Result<std::vector<std::string>>
CloudService::createMoments(ClientId client, const std::string& videoId, const std::string& sessionId,
                            const std::string& timelineId, const std::vector<MomentDraft>& drafts) {
    const auto session = sessionOfVideo(videoId, sessionId);
    return session ? session->createMoments(rules(), client, timelineId, drafts)
                   : noSuchSession<std::vector<std::string>>();
}

std::vector<std::uint64_t> CloudService::numbersOf(const std::string& sessionId,
                                                   const std::vector<std::string>& momentIds) const {
    const auto session = sessionNamed(sessionId);
    return session ? session->numbersOf(momentIds) : std::vector<std::uint64_t>(momentIds.size());
}

Base::Result<bool> CloudService::updateMoments(ClientId client, const std::string& videoId,
                                               const std::string& sessionId, const std::string& timelineId,
                                               const std::vector<MomentDraft>& drafts) {
    const auto session = sessionOfVideo(videoId, sessionId);
    return session ? session->updateMoments(rules(), client, timelineId, drafts) : noSuchSession<bool>();
}

Base::Result<bool> CloudService::removeMoments(ClientId client, const std::string& videoId,
                                               const std::string& sessionId, const std::string& timelineId,
                                               const std::vector<std::string>& momentIds) {
    const auto session = sessionOfVideo(videoId, sessionId);
    return session ? session->removeMoments(rules(), client, timelineId, momentIds) : noSuchSession<bool>();
}

Base::Result<std::string> CloudService::savePresentationView(ClientId client, const std::string& videoId,
                                                             const std::string& sessionId,
                                                             const std::string& timelineId, CodeList codes,
                                                             std::optional<RowEdits> edits) {
    const auto session = sessionOfVideo(videoId, sessionId);
    if (!session) {
        return noSuchSession<std::string>();
    }
    session->savePresentationView(rules(), client, timelineId, std::move(codes), edits);
    return session->id() + ".view";
}

Base::Result<CloudService::SubscriberId> CloudService::subscribe(ClientId client,
                                                                 const std::string& sessionId,
                                                                 std::optional<std::uint64_t> afterSequence,
                                                                 Subscriber subscriber) {
    const auto session = sessionNamed(sessionId);
    if (!session) {
        return noSuchSession<SubscriberId>();
    }
    const SubscriberId id = Base::synchronized(lock_, [&] { return ++lastSubscriber_; });
    session->subscribe(id, client, afterSequence, std::move(subscriber), rules());
    return id;
}

void CloudService::unsubscribe(const std::string& sessionId, SubscriberId subscriber) {
    if (const auto session = sessionNamed(sessionId)) {
        session->unsubscribe(subscriber);
    }
}

std::optional<TaggingSessionRecord> CloudService::snapshot(const std::string& sessionId) const {
    const auto session = sessionNamed(sessionId);
    return session ? std::optional(session->record()) : std::nullopt;
}

std::optional<std::string> CloudService::primarySessionOf(const std::string& videoId) const {
    return Base::synchronized(lock_, [&] {
        const auto video = sessionsByVideo_.find(videoId);
        return video == sessionsByVideo_.end() ? std::nullopt : std::optional(video->second.front()->id());
    });
}

std::vector<AcceptedCall> CloudService::log(const std::string& sessionId) const {
    const auto session = sessionNamed(sessionId);
    return session ? session->log() : std::vector<AcceptedCall>();
}

std::vector<ChangePointer> CloudService::changes(const std::string& sessionId) const {
    const auto session = sessionNamed(sessionId);
    return session ? session->changes() : std::vector<ChangePointer>();
}

std::uint64_t CloudService::lastSequence(const std::string& sessionId) const {
    const auto session = sessionNamed(sessionId);
    return session ? session->lastSequence() : 0;
}

std::size_t CloudService::numberOfSubscribers(const std::string& sessionId) const {
    const auto session = sessionNamed(sessionId);
    return session ? session->numberOfSubscribers() : 0;
}

std::shared_ptr<StoredSession> CloudService::sessionNamed(const std::string& sessionId) const {
    return Base::synchronized(lock_, [&] {
        const auto found = sessions_.find(sessionId);
        return found == sessions_.end() ? nullptr : found->second;
    });
}

std::shared_ptr<StoredSession> CloudService::sessionOfVideo(const std::string& videoId,
                                                            const std::string& sessionId) const {
    auto session = sessionNamed(sessionId);
    return session && session->videoId() == videoId ? session : nullptr;
}

}  // namespace ReferenceHost
