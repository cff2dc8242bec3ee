#pragma once

#include "Components/RemoteCoding/HostInterfaces/GraphQLTaggingSessionProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/LogManagerProtocol.hpp"

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

namespace RemoteCoding {

/// Holds the one open subscription of a synchroniser.
///
/// Threads: any. `subscribe` runs in the background while `unsubscribe` and `close` run on the main thread; a handle
/// that arrives after one of these is cancelled at once. The client is never called with the lock held.
class TaggingSessionSubscription {
public:
    TaggingSessionSubscription(std::shared_ptr<GraphQLTaggingSessionProtocol> tevuClient,
                               LogManagerProtocol& log);
    ~TaggingSessionSubscription();  ///< cancels what is open
    TaggingSessionSubscription(const TaggingSessionSubscription&) = delete;
    TaggingSessionSubscription& operator=(const TaggingSessionSubscription&) = delete;

    /// Opens a subscription in place of the one that is held. Both handlers belong to the client until the handle is
    /// cancelled. Throws what the client throws. After `close` it does nothing.
    void subscribe(const std::string& taggingSessionId, const std::string& timelineId,
                   GraphQLTaggingSessionProtocol::ChangeHandler changeHandler,
                   GraphQLTaggingSessionProtocol::ErrorHandler errorHandler);

    /// Cancels the subscription; another may be opened later.
    void unsubscribe();

    /// Cancels the subscription for good.
    void close();

    [[nodiscard]] bool isSubscribed() const;

private:
    /// Takes the held handle out and makes sure that one which is being opened is not stored.
    [[nodiscard]] std::shared_ptr<SubscriptionHandle> takeSubscription(bool forGood);

    const std::shared_ptr<GraphQLTaggingSessionProtocol> tevuClient_;
    LogManagerProtocol& log_;

    mutable std::mutex mutex_;
    std::shared_ptr<SubscriptionHandle> subscription_;
    std::uint64_t opening_ = 0;  ///< counts up whenever what is being opened has become stale
    bool isClosed_ = false;
};

}  // namespace RemoteCoding
