#pragma once

#include "Base/Result.hpp"
#include "Base/Synchronized.hpp"
#include "Components/RemoteCoding/HostInterfaces/SharedVideo.hpp"
#include "Components/RemoteCoding/HostInterfaces/VideoItem.hpp"
#include "ReferenceHost/Cloud/CloudRules.hpp"
#include "ReferenceHost/Cloud/CloudTeams.hpp"
#include "ReferenceHost/Cloud/CloudVideos.hpp"
#include "ReferenceHost/Cloud/RemoteRecords.hpp"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ReferenceHost {

class Scheduler;
class StoredSession;

/// The cloud service that all analysts of one process share: teams, their videos, and the videos' tagging sessions, each with
/// its moments, its presentation view, and one order of all its changes. A tagging session may belong to a video of which
/// nothing else is known.
///
/// Threads: every operation may be called from any thread and takes effect before it returns. Hosts reach the service
/// through a `CloudClient`, which adds the network in between; tests may call it directly, as one more client would.
///
/// What may surprise: a write is told to the subscribers even when it changes nothing. One call makes one event for
/// all its moments, except that a creation which meets moments that exist already makes two: first
/// `momentsAdded` for the new ones, then `momentsUpdated` for the others. A moment keeps its origin whoever updates it.
class CloudService {
public:
    using ClientId = std::uint64_t;
    using SubscriberId = std::uint64_t;

    /// Called for each change, in order, by whichever thread made it and while the session is locked: it may only take
    /// the change away.
    using Subscriber = std::function<void(ChangePointer)>;

    /// `scheduler`: the service's own time and thread, on which its clients' calls arrive. It outlives the service. `seed`: of
    /// what the service makes up.
    explicit CloudService(Scheduler& scheduler, std::uint64_t seed = 1);
    ~CloudService();
    CloudService(const CloudService&) = delete;
    CloudService& operator=(const CloudService&) = delete;

    [[nodiscard]] Scheduler& scheduler() const { return scheduler_; }
    [[nodiscard]] CloudRules rules() const;
    void setRules(CloudRules rules);

    [[nodiscard]] ClientId addClient();

    /// The service's clock: virtual time is a Saturday afternoon in spring.
    static constexpr Base::RFC3339::Time epoch =
        std::chrono::sys_days(std::chrono::May / 16 / 2026) + std::chrono::hours(14);
    [[nodiscard]] Base::RFC3339::Time time() const;

    [[nodiscard]] CloudVideos& videos() { return videos_; }
    [[nodiscard]] CloudTeams& teams() { return teams_; }

    /// Fails with a `TevuAPIError::Video` of the case `notFound` when there is none, or none any more.
    [[nodiscard]] Base::Result<RemoteCoding::VideoItem> getVideo(const std::string& videoId) const;

    /// Those that have changed after that time, deleted ones too.
    [[nodiscard]] std::vector<RemoteCoding::LiveStreamingVideoItem>
    getVideosForTeamId(const std::string& teamId, Base::RFC3339::Time updatedAfter) const;

    /// The identifier of the video's primary tagging session; makes it when the video has none.
    [[nodiscard]] std::string createTaggingSession(const std::string& teamId, const std::string& videoId,
                                                   const std::string& userId);

    /// One more tagging session for the video, as an older application might have made it. Primary when it is the first.
    std::string addTaggingSession(const std::string& teamId, const std::string& videoId,
                                  const std::string& userId);

    /// All tagging sessions of the video, the primary one first; of one user only when `createdByUserId` is given.
    [[nodiscard]] std::vector<TaggingSessionRecord>
    fetchTaggingSessions(const std::string& teamId, const std::string& videoId,
                         const std::optional<std::string>& createdByUserId = std::nullopt) const;

    /// The writes below fail when the video has no such tagging session.
    [[nodiscard]] Base::Result<std::vector<std::string>>
    createMoments(ClientId client, const std::string& videoId, const std::string& sessionId,
                  const std::string& timelineId, const std::vector<MomentDraft>& drafts);
    /// The moments' numbers in their session; 0 for one that is gone.
    [[nodiscard]] std::vector<std::uint64_t> numbersOf(const std::string& sessionId,
                                                       const std::vector<std::string>& momentIds) const;
    [[nodiscard]] Base::Result<bool> updateMoments(ClientId client, const std::string& videoId,
                                                   const std::string& sessionId,
                                                   const std::string& timelineId,
                                                   const std::vector<MomentDraft>& drafts);
    [[nodiscard]] Base::Result<bool> removeMoments(ClientId client, const std::string& videoId,
                                                   const std::string& sessionId,
                                                   const std::string& timelineId,
                                                   const std::vector<std::string>& momentIds);
    /// Gives the identifier of the view. With `edits` these are made to the list that is there, each once, and `codes` counts only
    /// when there is none; without, `codes` replaces the list.
    [[nodiscard]] Base::Result<std::string>
    savePresentationView(ClientId client, const std::string& videoId, const std::string& sessionId,
                         const std::string& timelineId, CodeList codes,
                         std::optional<RowEdits> edits = std::nullopt);

    /// Tells the subscriber every change after `afterSequence` (from now on when absent), those in the past before it
    /// returns. Fails when there is no such session.
    [[nodiscard]] Base::Result<SubscriberId> subscribe(ClientId client, const std::string& sessionId,
                                                       std::optional<std::uint64_t> afterSequence,
                                                       Subscriber subscriber);

    /// The subscriber is not called any more when this returns. An unknown id is ignored.
    void unsubscribe(const std::string& sessionId, SubscriberId subscriber);

    /// For checks: what the cloud holds now.
    [[nodiscard]] std::optional<TaggingSessionRecord> snapshot(const std::string& sessionId) const;
    [[nodiscard]] std::optional<std::string> primarySessionOf(const std::string& videoId) const;
    /// For checks: every write so far, in the order in which it took effect.
    [[nodiscard]] std::vector<AcceptedCall> log(const std::string& sessionId) const;
    /// For checks: every change so far, in order.
    [[nodiscard]] std::vector<ChangePointer> changes(const std::string& sessionId) const;
    /// The number of the session's last change; 0 before the first, and for no session.
    [[nodiscard]] std::uint64_t lastSequence(const std::string& sessionId) const;
    [[nodiscard]] std::size_t numberOfSubscribers(const std::string& sessionId) const;

private:
    std::shared_ptr<StoredSession> sessionNamed(const std::string& sessionId) const;
    std::shared_ptr<StoredSession> sessionOfVideo(const std::string& videoId,
                                                  const std::string& sessionId) const;
    std::vector<std::string> sessionsOf(const std::string& videoId) const;
    std::string makeSession(const std::string& videoId, const std::string& userId);

    Scheduler& scheduler_;
    CloudVideos videos_;
    CloudTeams teams_;
    Base::ObjectLock
        lock_;  // of the members below; a session has a lock of its own, never taken together with it
    CloudRules rules_;
    ClientId lastClient_ = 0;
    SubscriberId lastSubscriber_ = 0;
    std::map<std::string, std::shared_ptr<StoredSession>> sessions_;
    std::map<std::string, std::vector<std::shared_ptr<StoredSession>>> sessionsByVideo_;
};

}  // namespace ReferenceHost
