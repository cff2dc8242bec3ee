#pragma once

#include "Base/Synchronized.hpp"
#include "Components/RemoteCoding/HostInterfaces/GraphQLTaggingSessionProtocol.hpp"

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>

namespace ReferenceHost {

class CloudConnection;

/// The host's end of one subscription: its handlers, until it is cancelled.
class CloudSubscription final : public RemoteCoding::SubscriptionHandle {
public:
    using ChangeHandler = RemoteCoding::GraphQLTaggingSessionProtocol::ChangeHandler;
    using ErrorHandler = RemoteCoding::GraphQLTaggingSessionProtocol::ErrorHandler;

    CloudSubscription(std::weak_ptr<CloudConnection> connection, std::uint64_t number,
                      ChangeHandler changeHandler, ErrorHandler errorHandler);

    void cancel() override;

    /// Any thread. Lets go of the handlers; false when that was done before.
    bool close();

    /// Main thread. Calls the handler, if it is still there; false when it is not.
    bool tellChange(RemoteCoding::TaggingSessionChangeType type,
                    const RemoteCoding::ChangedTaggingSession& change);
    /// As above; nothing is told after it.
    bool tellError(const std::exception_ptr& error);

    /// Main thread. Whether a change would be told.
    [[nodiscard]] bool isListening() const;

private:
    struct Handlers {
        Handlers(ChangeHandler change_, ErrorHandler error_)
            : change(std::move(change_)), error(std::move(error_)) {}
        ChangeHandler change;
        ErrorHandler error;
    };

    const std::weak_ptr<CloudConnection> connection_;
    const std::uint64_t number_;
    Base::ObjectLock lock_;               // of what follows
    std::shared_ptr<Handlers> handlers_;  // null once cancelled; shared with a handler that runs
    bool hasFailed_ = false;
};

}  // namespace ReferenceHost
