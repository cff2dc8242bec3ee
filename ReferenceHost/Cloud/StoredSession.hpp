#pragma once

#include "Base/Synchronized.hpp"
#include "ReferenceHost/Cloud/CloudRules.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Cloud/CodeListMerge.hpp"
#include "ReferenceHost/Cloud/RemoteRecords.hpp"

#include <list>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace ReferenceHost {

/// One tagging session inside the service: its contents, its history and whoever follows it. Thread-safe; each
/// operation is one step of the session's order.
class StoredSession {
public:
    StoredSession(std::string id, std::string videoId, std::string userId);

    [[nodiscard]] const std::string& id() const { return id_; }
    [[nodiscard]] const std::string& videoId() const { return videoId_; }

    [[nodiscard]] std::vector<std::string> createMoments(const CloudRules& rules,
                                                         CloudService::ClientId client,
                                                         const std::string& timelineId,
                                                         const std::vector<MomentDraft>& drafts);
    [[nodiscard]] std::vector<std::uint64_t> numbersOf(const std::vector<std::string>& momentIds);
    [[nodiscard]] bool updateMoments(const CloudRules& rules, CloudService::ClientId client,
                                     const std::string& timelineId, const std::vector<MomentDraft>& drafts);
    [[nodiscard]] bool removeMoments(const CloudRules& rules, CloudService::ClientId client,
                                     const std::string& timelineId,
                                     const std::vector<std::string>& momentIds);
    void savePresentationView(const CloudRules& rules, CloudService::ClientId client,
                              const std::string& timelineId, CodeList codes,
                              const std::optional<RowEdits>& edits);

    void subscribe(CloudService::SubscriberId id, CloudService::ClientId client,
                   std::optional<std::uint64_t> afterSequence, CloudService::Subscriber subscriber,
                   const CloudRules& rules);
    void unsubscribe(CloudService::SubscriberId id);

    [[nodiscard]] TaggingSessionRecord record() const;
    [[nodiscard]] std::vector<AcceptedCall> log() const;
    [[nodiscard]] std::vector<ChangePointer> changes() const;
    [[nodiscard]] std::uint64_t lastSequence() const;
    [[nodiscard]] std::size_t numberOfSubscribers() const;

private:
    struct Follower {
        CloudService::ClientId client = 0;
        CloudService::Subscriber subscriber;
    };
    using Origin = std::pair<std::string, std::string>;  // timeline id, instance id

    // All of them with the lock held.
    MomentPointer* find(const std::string& momentId);
    std::string add(const std::string& timelineId, const MomentDraft& draft);
    void remove(const std::string& momentId);
    std::vector<MomentPointer> stateOf(const std::vector<std::string>& momentIds);
    CodeList listWith(const std::string& timelineId, const CodeList& codes, const RowEdits& edits);
    void tell(const CloudRules& rules, RemoteChange change);
    void tellMoments(const CloudRules& rules, CloudService::ClientId client,
                     RemoteCoding::TaggingSessionChangeType type, std::vector<MomentPointer> moments);

    const std::string id_;
    const std::string videoId_;
    const std::string userId_;

    Base::ObjectLock lock_;  // of everything below
    std::uint64_t lastMoment_ = 0;
    std::list<MomentPointer> moments_;
    std::unordered_map<std::string, std::list<MomentPointer>::iterator> momentsById_;
    std::map<Origin, std::string> idsByOrigin_;
    CodeList presentationView_;
    std::map<std::string, NumberedRowEdits> takenRowEdits_;  // by timeline: those that the list has
    std::vector<ChangePointer> changes_;  // the change with sequence n stands at index n - 1
    std::vector<AcceptedCall> log_;
    std::map<CloudService::SubscriberId, Follower> followers_;
};

}  // namespace ReferenceHost
