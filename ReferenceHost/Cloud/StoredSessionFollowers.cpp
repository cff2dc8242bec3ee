// Who follows a session, and what they are told.

#include "ReferenceHost/Cloud/StoredSession.hpp"

#include <algorithm>
#include <utility>

namespace ReferenceHost {

using RemoteCoding::TaggingSessionChangeType;

void StoredSession::subscribe(CloudService::SubscriberId id, CloudService::ClientId client,
                              std::optional<std::uint64_t> afterSequence, CloudService::Subscriber subscriber,
                              const CloudRules& rules) {
    Base::synchronized(lock_, [&] {
        const std::uint64_t now = changes_.size();
        for (std::uint64_t sequence = std::min(afterSequence.value_or(now), now); sequence < now;
             ++sequence) {
            const ChangePointer& change = changes_[sequence];
            if (rules.senderIsTold || change->client != client) {
                subscriber(change);
            }
        }
        followers_[id] = Follower{client, std::move(subscriber)};
    });
}

void StoredSession::unsubscribe(CloudService::SubscriberId id) {
    // Let go of outside the lock: what a subscriber holds may come back here when it is destroyed.
    const auto node = Base::synchronized(lock_, [&] { return followers_.extract(id); });
}

void StoredSession::tellMoments(const CloudRules& rules, CloudService::ClientId client,
                                TaggingSessionChangeType type, std::vector<MomentPointer> moments) {
    if (moments.empty()) {
        return;
    }
    RemoteChange change;
    change.client = client;
    change.type = type;
    change.moments = std::move(moments);
    tell(rules, std::move(change));
}

void StoredSession::tell(const CloudRules& rules, RemoteChange change) {
    change.sequence = changes_.size() + 1;
    const auto told = std::make_shared<const RemoteChange>(std::move(change));
    changes_.push_back(told);
    for (const auto& [id, follower] : followers_) {
        if (rules.senderIsTold || follower.client != told->client) {
            follower.subscriber(told);
        }
    }
}

}  // namespace ReferenceHost
