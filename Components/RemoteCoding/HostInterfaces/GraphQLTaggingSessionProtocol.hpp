#pragma once

#include "Base/Completion.hpp"
#include "Components/RemoteCoding/HostInterfaces/TaggingSessionModel.hpp"

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace RemoteCoding {

/// An open subscription.
class REMOTE_CODING_EXPORT SubscriptionHandle : public HostObject {
public:
    /// Any thread; harmless when repeated. When it is called on the main thread no handler runs after it has returned; in
    /// any case the client lets go of both handlers, and with them of what they hold. It must not wait for the main thread.
    virtual void cancel() = 0;
};

/// Narrows a fetch of tagging sessions. The component always passes none.
struct FetchTaggingSessionsOptions {
    std::optional<std::string> createdByUserId;
    std::optional<std::string> nextToken;
};

/// The GraphQL client's access to tagging sessions.
class REMOTE_CODING_EXPORT GraphQLTaggingSessionProtocol : public HostObject {
public:
    using ChangeHandler = std::function<void(TaggingSessionChangeType, const ChangedTaggingSession&)>;
    using ErrorHandler = std::function<void(std::exception_ptr)>;

    /// Main thread. All tagging sessions of a video with all their contents, the primary session first. One answer,
    /// from any thread; an error when the service cannot be reached: the client does not repeat what
    /// has failed. What it gives is not older than what this client's writes were answered meanwhile.
    virtual void fetchTaggingSessions(const std::string& teamId, const std::string& videoId,
                                      const std::optional<FetchTaggingSessionsOptions>& options,
                                      Base::Completion<std::vector<TaggingSessionItem>> completion) = 0;

    /// Off the main thread. Opens a subscription to everything that happens to the tagging session from this
    /// client's last fetch of it on (from now on when it was not fetched): the changes of all clients, this one's
    /// own included, in the order in which the service accepted them. An event may arrive before the answer to the write
    /// that it tells of.
    ///
    /// Both handlers are called on the main thread, one at a time, possibly before this call has returned its handle,
    /// never after `cancel`. After an error the subscription delivers nothing more, but its handle is still to be
    /// cancelled. A subscription that cannot be opened reports so through `errorHandler`. Never null.
    [[nodiscard]] virtual std::shared_ptr<SubscriptionHandle>
    subscribeToTaggingSessionChanges(const std::string& taggingSessionId, const std::string& timelineId,
                                     ChangeHandler changeHandler, ErrorHandler errorHandler) = 0;
};

}  // namespace RemoteCoding
