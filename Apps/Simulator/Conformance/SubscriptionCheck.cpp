#include "Apps/Simulator/Conformance/SubscriptionCheck.hpp"

#include <string>

namespace Simulator::Conformance {

namespace {

using State = Subscription::State;

constexpr std::string_view subscribing = "Subscribing to tagging session updates. TeamId=";

bool isOpen(const Subscription& subscription) {
    return subscription.state == State::opening || subscription.state == State::open;
}

/// Those of its subscriptions that are not cancelled.
template <typename Is>
auto numberOf(const Synchroniser& synchroniser, const Is& is) {
    return std::ranges::count_if(synchroniser.host.subscriptions, [&](const Subscription& one) {
        return one.synchroniser == &synchroniser && is(one);
    });
}

}  // namespace

SubscriptionCheck::SubscriptionCheck(Report& report, const Record& record)
    : report_(report), isInOrder_(isKept(record, "deliveredInOrder") && isKept(record, "senderIsTold")) {}

void SubscriptionCheck::see(const Entry& entry) {
    switch (entry.kind) {
    case Kind::call:
        if (entry.subscription != nullptr) {
            opened(entry);
        }
        break;
    case Kind::answer:
        if (entry.call != nullptr && entry.call->operation == Operation::createSession &&
            entry.synchroniser != nullptr && entry.field("error").empty()) {
            ++entry.synchroniser->maySubscribe;
        }
        break;
    case Kind::blockStart:
        if (entry.synchroniser != nullptr && entry.number("number") == 1 && entry.field("kind") == "pull") {
            ++entry.synchroniser->maySubscribe;
        }
        break;
    case Kind::subscription:
        changed(entry);
        break;
    case Kind::delivery:
        delivered(entry);
        break;
    case Kind::usage:
        ended(entry);
        break;
    default:
        break;
    }
    if (entry.kind != Kind::fault) {
        line_ = &entry.raw;
    }
}

void SubscriptionCheck::opened(const Entry& entry) {
    Synchroniser* const synchroniser = entry.synchroniser;
    if (line_ == nullptr || line_->host != entry.raw.host ||
        !line_->field("message").starts_with(subscribing) ||
        !line_->field("message").ends_with(entry.field("timelineId"))) {
        report_.add("subscribeLine", entry, "a subscription without its line in the log");
    }
    if (synchroniser == nullptr) {
        report_.add("subscribeReason", entry, "a subscription for a timeline that is in no session");
        return;
    }
    if (synchroniser->isCancelled) {
        report_.add("subscribeAfterEnd", entry, "a subscription is opened after the session has ended");
    }
    const auto held =
        numberOf(*synchroniser, [](const Subscription& one) { return one.state != State::cancelled; });
    if (held > 1) {
        report_.add("oneSubscription", entry, "a subscription is opened while another one is held");
    }
    const bool isSure = !synchroniser->sharesLog;
    if (--synchroniser->maySubscribe < 0 && isSure) {
        synchroniser->maySubscribe = 0;
        report_.add("subscribeReason", entry, "a subscription is opened for no known reason");
    }
}

void SubscriptionCheck::changed(const Entry& entry) {
    if (entry.subscription == nullptr) {
        return;
    }
    const std::string_view state = entry.field("state");
    if (entry.subscription->state == State::cancelled) {
        report_.add("afterCancel", entry, "a cancelled subscription is told \"" + std::string(state) + '"');
    } else if (state == "open") {
        entry.subscription->last = static_cast<std::uint64_t>(entry.number("after"));
        entry.subscription->isPlaced = entry.field("after") != "now";
    }
}

void SubscriptionCheck::delivered(const Entry& entry) {
    Subscription* const subscription = entry.subscription;
    if (subscription == nullptr || !isOpen(*subscription)) {
        report_.add("afterCancel", entry,
                    "a change is delivered to a subscription that has failed or was cancelled");
        return;
    }
    const auto sequence = static_cast<std::uint64_t>(entry.number("sequence"));
    const bool isNext = sequence == subscription->last + 1 || sequence == subscription->last;
    if (isInOrder_ && subscription->isPlaced && !isNext) {
        report_.add("deliveryOrder", entry,
                    "change " + std::to_string(sequence) + " comes after change " +
                        std::to_string(subscription->last));
    }
    subscription->last = sequence;
    subscription->isPlaced = true;
}

void SubscriptionCheck::ended(const Entry& entry) {
    if (entry.message() != "SessionEnded" || entry.synchroniser == nullptr) {
        return;
    }
    if (numberOf(*entry.synchroniser,
                 [](const Subscription& one) { return one.state != State::cancelled; }) != 0) {
        report_.add("subscribeAfterEnd", entry,
                    "the session has ended, and its subscription is not cancelled");
    }
}

void SubscriptionCheck::settled(const Entry& entry, const std::deque<Synchroniser>& synchronisers) {
    for (const Synchroniser& synchroniser : synchronisers) {
        if (synchroniser.isCancelled || synchroniser.stay.sessionId.empty() || synchroniser.sharesTimeline) {
            continue;
        }
        const auto open = numberOf(synchroniser, isOpen);
        if (open != 1) {
            report_.add("isSubscribed", entry,
                        synchroniser.stay.analyst + " is in a session with " + std::to_string(open) +
                            " open subscriptions");
        }
    }
}

}  // namespace Simulator::Conformance
