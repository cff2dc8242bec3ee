#include "ReferenceHost/Cloud/CloudSubscription.hpp"

#include "ReferenceHost/Cloud/CloudConnection.hpp"

#include <utility>

namespace ReferenceHost {

CloudSubscription::CloudSubscription(std::weak_ptr<CloudConnection> connection, std::uint64_t number,
                                     ChangeHandler changeHandler, ErrorHandler errorHandler)
    : connection_(std::move(connection)),
      number_(number),
      handlers_(std::make_shared<Handlers>(std::move(changeHandler), std::move(errorHandler))) {}

void CloudSubscription::cancel() {
    if (!close()) {
        return;
    }
    if (const auto connection = connection_.lock()) {
        connection->subscriptionWasCancelled(number_);
    }
}

bool CloudSubscription::close() {
    // Destroyed outside the lock: they may hold the last reference to whoever cancels again.
    const auto handlers = Base::synchronized(lock_, [&] { return std::exchange(handlers_, nullptr); });
    return handlers != nullptr;
}

bool CloudSubscription::tellChange(RemoteCoding::TaggingSessionChangeType type,
                                   const RemoteCoding::ChangedTaggingSession& change) {
    const auto handlers = Base::synchronized(lock_, [&] { return hasFailed_ ? nullptr : handlers_; });
    if (!handlers) {
        return false;
    }
    if (handlers->change) {
        handlers->change(type, change);
    }
    return true;
}

bool CloudSubscription::tellError(const std::exception_ptr& error) {
    const auto handlers =
        Base::synchronized(lock_, [&] { return std::exchange(hasFailed_, true) ? nullptr : handlers_; });
    if (!handlers) {
        return false;
    }
    if (handlers->error) {
        handlers->error(error);
    }
    return true;
}

bool CloudSubscription::isListening() const {
    return Base::synchronized(lock_, [&] { return handlers_ != nullptr && !hasFailed_; });
}

}  // namespace ReferenceHost
