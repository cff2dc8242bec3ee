#include "Components/RemoteCoding/Services/TaggingSessionSubscription.hpp"

#include "Base/Error.hpp"

#include <utility>

namespace RemoteCoding {

TaggingSessionSubscription::TaggingSessionSubscription(
    std::shared_ptr<GraphQLTaggingSessionProtocol> tevuClient, LogManagerProtocol& log)
    : tevuClient_(std::move(tevuClient)), log_(log) {}

TaggingSessionSubscription::~TaggingSessionSubscription() {
    try {
        unsubscribe();
    } catch (
        ...) {  // NOLINT(bugprone-empty-catch): the client failed to let go of a subscription that nobody uses any more
    }
}

void TaggingSessionSubscription::subscribe(const std::string& taggingSessionId, const std::string& timelineId,
                                           GraphQLTaggingSessionProtocol::ChangeHandler changeHandler,
                                           GraphQLTaggingSessionProtocol::ErrorHandler errorHandler) {
    if (const auto held = takeSubscription(false)) {
        held->cancel();
    }
    std::uint64_t opening = 0;
    {
        const std::lock_guard lock(mutex_);
        if (isClosed_) {
            return;
        }
        opening = ++opening_;
    }
    // The log outlives every subscription; this object need not outlive the client's last call.
    auto wrappingErrorHandler = [&log = log_,
                                 errorHandler = std::move(errorHandler)](std::exception_ptr error) {
        log.logWarn("Error while listening for tagging session changes. Error=" + Base::describe(error));
        errorHandler(std::move(error));
    };
    auto handle = tevuClient_->subscribeToTaggingSessionChanges(
        taggingSessionId, timelineId, std::move(changeHandler), std::move(wrappingErrorHandler));
    {
        const std::lock_guard lock(mutex_);
        if (opening == opening_) {
            subscription_ = std::exchange(handle, nullptr);
        }
    }
    if (handle) {
        handle->cancel();
    }
}

void TaggingSessionSubscription::unsubscribe() {
    if (const auto held = takeSubscription(false)) {
        held->cancel();
    }
}

void TaggingSessionSubscription::close() {
    if (const auto held = takeSubscription(true)) {
        held->cancel();
    }
}

bool TaggingSessionSubscription::isSubscribed() const {
    const std::lock_guard lock(mutex_);
    return subscription_ != nullptr;
}

std::shared_ptr<SubscriptionHandle> TaggingSessionSubscription::takeSubscription(bool forGood) {
    const std::lock_guard lock(mutex_);
    ++opening_;
    isClosed_ = isClosed_ || forGood;
    return std::exchange(subscription_, nullptr);
}

}  // namespace RemoteCoding
