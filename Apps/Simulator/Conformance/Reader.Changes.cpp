// What entries change.

#include "Apps/Simulator/Conformance/Reader.hpp"

namespace Simulator::Conformance {

namespace {

Block::Work workNamed(std::string_view name) {
    return name == "pull"           ? Block::Work::pull
           : name == "event"        ? Block::Work::event
           : name == "reconnection" ? Block::Work::reconnection
                                    : Block::Work::upload;
}

}  // namespace

void Reader::didSee(const Entry& entry) {
    if (entry.host == nullptr) {
        return;
    }
    Synchroniser* const synchroniser = entry.synchroniser;
    switch (entry.kind) {
    case Kind::call:
        if (synchroniser != nullptr && entry.call != nullptr) {
            synchroniser->callsUnderWay += entry.call->operation == Operation::subscribe ? 0 : 1;
            if (entry.call->operation == Operation::fetch && synchroniser->block) {
                synchroniser->block->fetch = entry.index;
            }
        } else if (synchroniser != nullptr && entry.field("name") == "timelineFromModifyCount") {
            synchroniser->read = &entry.raw;
            synchroniser->readIndex = entry.index;
        }
        break;
    case Kind::answer:
        if (answersCall(entry)) {
            entry.call->isAnswered = true;
            if (synchroniser != nullptr) {
                --synchroniser->callsUnderWay;
            }
        }
        break;
    case Kind::subscription:
        if (entry.subscription != nullptr) {
            const auto state = entry.field("state");
            entry.subscription->state = state == "open"     ? Subscription::State::open
                                        : state == "failed" ? Subscription::State::failed
                                                            : Subscription::State::cancelled;
        }
        break;
    case Kind::usage:
        if (synchroniser != nullptr && entry.message() == "SessionEnded") {
            synchroniser->isCancelled = true;
            synchroniser->end = entry.index;
        }
        break;
    case Kind::blockStart:
        if (synchroniser != nullptr) {
            synchroniser->lastBlock = entry.number("number");
            synchroniser->block =
                Block{synchroniser->lastBlock, workNamed(entry.field("kind")), entry.index, entry.time()};
        }
        break;
    case Kind::blockEnd:
        if (synchroniser != nullptr) {
            synchroniser->block.reset();
        }
        break;
    case Kind::count:
        if (synchroniser != nullptr) {
            synchroniser->lastModifyCount = entry.number("new");
            const bool isPull = synchroniser->block && synchroniser->block->work != Block::Work::event;
            synchroniser->hasPulled |= isPull && entry.field("reason") == "applied";
        }
        break;
    case Kind::uploadStart:
        startUpload(entry);
        break;
    case Kind::uploadEnd:
        endUpload(entry);
        break;
    case Kind::notification:
        readNotification(entry);
        break;
    case Kind::alert:
        entry.host->isHeld = true;
        break;
    case Kind::alertAnswer:
        entry.host->isHeld = false;
        entry.host->heldUntil = entry.time();
        break;
    default:
        break;
    }
}

void Reader::readNotification(const Entry& entry) {
    const std::string_view timelineId = entry.field("timelineId");
    const std::string_view name = entry.field("name");
    if (name == "TimelineNotifications.timelineDidAnyChange") {
        auto& counts = entry.host->modifyCounts;
        const auto known =
            std::ranges::find(counts, timelineId, &std::pair<std::string_view, std::int64_t>::first);
        if (known == counts.end()) {
            counts.emplace_back(timelineId, entry.number("modifyCount"));
        } else {
            known->second = entry.number("modifyCount");
        }
    } else if (name == "TimelineNotifications.timelineDidRemove") {
        entry.host->closed.push_back(timelineId);
    }
}

void Reader::startUpload(const Entry& entry) {
    Synchroniser* const synchroniser = entry.synchroniser;
    if (synchroniser == nullptr) {
        return;
    }
    Pass& pass = synchroniser->allPasses.emplace_back();
    pass.number = entry.number("number");
    pass.first = entry.number("first");
    pass.last = entry.number("last");
    pass.start = entry.index;
    pass.block = synchroniser->block ? synchroniser->block->number : 0;
    pass.read = synchroniser->read;
    pass.isAlone = synchroniser->passes.empty();
    for (Pass* other : synchroniser->passes) {
        other->isAlone = false;
    }
    synchroniser->passes.push_back(&pass);
}

void Reader::endUpload(const Entry& entry) {
    if (entry.synchroniser != nullptr) {
        std::erase_if(entry.synchroniser->passes,
                      [number = entry.number("number")](const Pass* pass) { return pass->number == number; });
    }
}

}  // namespace Simulator::Conformance
