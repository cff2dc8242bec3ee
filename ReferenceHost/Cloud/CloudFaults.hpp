#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "ReferenceHost/Cloud/RemoteRecords.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// Faults on demand, on top of what a link that is down does by itself.
namespace ReferenceHost {

/// One call of a client, as a plan gets to see it before it is sent.
struct CloudCall {
    std::string host;          ///< the name of the client
    std::uint64_t number = 0;  ///< of this client's calls, from 1 on
    CloudOperation operation = CloudOperation::fetchTaggingSessions;
    std::string teamId;
    std::string videoId;
    std::string sessionId;
    std::string timelineId;
    std::vector<std::string> ids;  ///< instance ids of a creation, moment ids of an update or a removal
    std::size_t count = 0;         ///< moments or rows
    Base::Seconds time{};          ///< when it was made
};

/// What befalls one call.
struct Fault {
    enum class Kind : std::uint8_t {
        none,
        failBeforeEffect,  ///< an error; nothing was done. A subscription: it fails at once
        failAfterEffect,   ///< an error, though it was done
        answerFalse,       ///< updates and removals: false, and nothing was done
        answerShort,  ///< creations: done in full, but the last `shortBy` identifiers are missing from the answer
        answerNone,   ///< fetches of tagging sessions: none, whatever there is
        answerOther,  ///< fetches of tagging sessions: another session takes the first one's place
        neverAnswer,  ///< it was done, and nobody ever hears of it
    };

    Fault() = default;
    explicit Fault(Kind kind_, Base::Seconds hang_ = Base::Seconds{0}, std::size_t shortBy_ = 1)
        : kind(kind_), hang(hang_), shortBy(shortBy_) {}

    Kind kind = Kind::none;
    Base::Seconds hang{0};  ///< keeps the answer back, or the opening of a subscription, whatever the kind
    std::size_t shortBy = 1;
};

/// Asked once for each call, on the thread that makes it; several threads at a time where the host has several.
using FaultPlan = std::function<Fault(const CloudCall&)>;

/// One event on its way to a subscription.
struct CloudEvent {
    std::string host;
    std::uint64_t subscription = 0;  ///< of this client's subscriptions, from 1 on
    std::string sessionId;
    ChangePointer change;
};

/// What befalls one event.
struct EventFault {
    /// An event beside it that means nothing, right behind it.
    enum class Extra : std::uint8_t { none, ofUnknownType, withoutContents };

    EventFault() = default;
    explicit EventFault(bool dropSubscription_, unsigned repeats_ = 0,
                        Base::Seconds delay_ = Base::Seconds{0})
        : dropSubscription(dropSubscription_), repeats(repeats_), delay(delay_) {}

    bool dropSubscription = false;  ///< the subscription fails instead, and this event is lost with it
    unsigned repeats = 0;           ///< how often it is delivered again, right after itself
    Base::Seconds delay{0};         ///< later events wait behind it
    Extra extra = Extra::none;
};

/// Asked once for each event, when it leaves the service, on the thread of whoever made the change. It may look at the
/// event only: the session is locked meanwhile.
using EventFaultPlan = std::function<EventFault(const CloudEvent&)>;

}  // namespace ReferenceHost
