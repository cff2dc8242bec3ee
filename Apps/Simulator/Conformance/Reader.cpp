#include "Apps/Simulator/Conformance/Reader.hpp"

#include <array>

namespace Simulator::Conformance {

namespace {

constexpr std::string_view sharingAllowed = "enableSharedTimelines";

Operation operationNamed(std::string_view name) {
    static constexpr std::array<std::pair<std::string_view, Operation>, 8> operations{
        {{"createMoments", Operation::create},
         {"updateMoments", Operation::update},
         {"removeMoments", Operation::remove},
         {"savePresentationView", Operation::save},
         {"fetchTaggingSessions", Operation::fetch},
         {"subscribeToTaggingSessionChanges", Operation::subscribe},
         {"createTaggingSession", Operation::createSession},
         {"getVideo", Operation::getVideo}}};
    const auto* const found =
        std::ranges::find(operations, name, &std::pair<std::string_view, Operation>::first);
    return found == operations.end() ? Operation::other : found->second;
}

/// The newest of those that serve this timeline, and of these rather one that fits.
template <typename Fits>
Synchroniser* newestOf(const HostState& host, std::string_view timelineId, const Fits& fits) {
    Synchroniser* newest = nullptr;
    for (auto one = host.synchronisers.rbegin(); one != host.synchronisers.rend(); ++one) {
        if ((*one)->stay.timelineId == timelineId) {
            if (fits(**one)) {
                return *one;
            }
            newest = newest == nullptr ? *one : newest;
        }
    }
    return newest;
}

/// What stands at this number; what is missing up to it is made.
template <typename Value>
Value& at(std::deque<Value>& values, std::int64_t number) {
    const auto place = static_cast<std::size_t>(std::max<std::int64_t>(number, 0));
    if (values.size() <= place) {
        values.resize(place + 1);
    }
    return values[place];
}

template <typename Value>
Value* find(std::deque<Value>& values, std::int64_t number) {
    return number > 0 && static_cast<std::size_t>(number) < values.size()
               ? &values[static_cast<std::size_t>(number)]
               : nullptr;
}

}  // namespace

Entry Reader::read(std::size_t index) {
    const ReferenceHost::TraceEntry& raw = record_.trace[index];
    Entry entry(raw, index, kindOf(raw.kind));
    if (!raw.host.empty()) {
        entry.host = &hostNamed(raw.host);
    }
    if (entry.host != nullptr) {
        if (entry.kind == Kind::call && entry.field("key") == sharingAllowed) {
            beginNext(index, raw.host);
        }
        findOwner(entry);
    }
    return entry;
}

HostState& Reader::hostNamed(std::string_view name) {
    const auto known = hostsByName_.find(name);
    if (known != hostsByName_.end()) {
        return *known->second;
    }
    HostState& host = hosts_.emplace_back(name);
    hostsByName_.emplace(name, &host);
    return host;
}

// ---- who begins ----

// Asked right before a synchroniser is made.
void Reader::beginNext(std::size_t index, std::string_view analyst) {
    hasBegun_.resize(record_.stays.size());
    for (std::size_t number = 0; number < record_.stays.size(); ++number) {
        const Stay& stay = record_.stays[number];
        if (!hasBegun_[number] && stay.analyst == analyst && stay.from <= index) {
            hasBegun_[number] = true;
            begin(stay);
            return;
        }
    }
}

void Reader::begin(const Stay& stay) {
    HostState& host = hostNamed(stay.analyst);
    Synchroniser& begun = synchronisers_.emplace_back(stay, synchronisers_.size(), host);
    for (Synchroniser* other : host.synchronisers) {
        if (!other->isOver()) {
            other->sharesLog = begun.sharesLog = true;
            if (other->stay.timelineId == stay.timelineId) {
                other->sharesTimeline = begun.sharesTimeline = true;
            }
        }
    }
    host.synchronisers.push_back(&begun);
}

// ---- whose an entry is ----

void Reader::findOwner(Entry& entry) {
    HostState& host = *entry.host;
    const auto numbered = [&](const auto& fits) {
        entry.synchroniser = newestOf(host, entry.field("timelineId"), fits);
    };
    switch (entry.kind) {
    case Kind::call:
        readCall(entry);
        break;
    case Kind::answer:
    case Kind::effect:
        readAnswer(entry);
        break;
    case Kind::subscription:
    case Kind::delivery:
        readSubscription(entry);
        break;
    case Kind::info:
    case Kind::warning:
    case Kind::error:
        entry.synchroniser = ofLog(host);
        break;
    case Kind::usage:
        entry.synchroniser = ofTimeline(host, entry.field("TimelineId"));
        break;
    case Kind::blockStart:
        numbered([next = entry.number("number")](const Synchroniser& one) {
            return !one.block && one.lastBlock + 1 == next;
        });
        break;
    case Kind::blockEnd:
        numbered([number = entry.number("number")](const Synchroniser& one) {
            return one.block && one.block->number == number;
        });
        break;
    case Kind::uploadStart:
        numbered([number = entry.number("number")](const Synchroniser& one) {
            return static_cast<std::int64_t>(one.allPasses.size()) + 1 == number;
        });
        break;
    case Kind::uploadEnd:
        numbered([number = entry.number("number")](const Synchroniser& one) {
            return std::ranges::any_of(one.passes, [&](const Pass* pass) { return pass->number == number; });
        });
        break;
    case Kind::count:
        numbered([old = entry.number("old")](const Synchroniser& one) { return one.lastModifyCount == old; });
        break;
    case Kind::edit:
        entry.synchroniser = ofTimeline(host, entry.field("timelineId"));
        break;
    default:
        break;
    }
}

Synchroniser* Reader::ofTimeline(HostState& host, std::string_view timelineId) const {
    return newestOf(host, timelineId, [](const Synchroniser& one) { return !one.isOver(); });
}

Synchroniser* Reader::ofLog(HostState& host) {
    Synchroniser* only = nullptr;
    for (Synchroniser* one : host.synchronisers) {
        if (!one->isOver()) {
            if (only != nullptr) {
                return nullptr;
            }
            only = one;
        }
    }
    return only;
}

Synchroniser* Reader::ofFetch(HostState& host) {
    const auto pulls = [](const Synchroniser* one) {
        return one->block &&
               (one->block->work == Block::Work::pull || one->block->work == Block::Work::reconnection);
    };
    const auto found = std::find_if(host.synchronisers.rbegin(), host.synchronisers.rend(), pulls);
    return found == host.synchronisers.rend() ? nullptr : *found;
}

void Reader::readCall(Entry& entry) {
    const std::string_view number = entry.field("call");
    if (!number.empty()) {
        readCloudCall(entry, numberIn(number));
        return;
    }
    const std::string_view timelineId = entry.field("timelineId");
    if (!timelineId.empty()) {
        entry.synchroniser = ofTimeline(*entry.host, timelineId);
    }
}

void Reader::readCloudCall(Entry& entry, std::int64_t number) {
    HostState& host = *entry.host;
    Call& call = at(host.calls, number);
    call.operation = operationNamed(entry.field("name"));
    call.entry = &entry.raw;
    call.index = entry.index;
    if (call.operation == Operation::fetch) {
        call.synchroniser = ofFetch(host);
    } else if (call.operation == Operation::createSession) {
        call.synchroniser = host.synchronisers.empty() ? nullptr : host.synchronisers.back();
    } else if (const auto timelineId = entry.field("timelineId"); !timelineId.empty()) {
        call.synchroniser = ofTimeline(host, timelineId);
    }
    if (call.operation == Operation::subscribe) {
        Subscription& subscription = at(host.subscriptions, entry.number("subscription"));
        subscription.synchroniser = call.synchroniser;
        entry.subscription = &subscription;
    }
    entry.call = &call;
    entry.synchroniser = call.synchroniser;
}

void Reader::readSubscription(Entry& entry) {
    entry.subscription = find(entry.host->subscriptions, entry.number("subscription"));
    if (entry.subscription != nullptr) {
        entry.synchroniser = entry.subscription->synchroniser;
    }
}

void Reader::readAnswer(Entry& entry) {
    Call* const call = find(entry.host->calls, entry.number("call"));
    if (call != nullptr && call->entry != nullptr) {
        entry.call = call;
        entry.synchroniser = call->synchroniser;
    }
}

}  // namespace Simulator::Conformance
