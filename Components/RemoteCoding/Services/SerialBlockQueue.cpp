#include "Components/RemoteCoding/Services/SerialBlockQueue.hpp"

#include <utility>

namespace RemoteCoding {

SerialBlockQueue::SerialBlockQueue(std::string timelineId, SynchronisationObserverProtocol* observer,
                                   FailureHandler failed)
    : timelineId_(std::move(timelineId)), observer_(observer), failed_(std::move(failed)) {}

void SerialBlockQueue::runBlockSerially(Block block, SynchronisationBlock kind) {
    submit(Entry{std::move(block), kind, ++submitted_});
}

void SerialBlockQueue::runBlockSerially(std::weak_ptr<void> subject, Block block, SynchronisationBlock kind) {
    submit(Entry{std::move(block), kind, ++submitted_, std::move(subject)});
}

void SerialBlockQueue::submit(Entry entry) {
    if (isRunningSerialBlockOperation_) {
        queuedSerialBlockOperations_.push_front(std::move(entry));
        return;
    }
    isRunningSerialBlockOperation_ = true;
    run(std::move(entry));
}

void SerialBlockQueue::runNextBlock() {
    endCurrentBlock();
    if (queuedSerialBlockOperations_.empty()) {
        isRunningSerialBlockOperation_ = false;
    } else if (blocksOnStack_ > 0) {
        nextIsDue_ = true;
    } else {
        run(takeOldest());
    }
}

void SerialBlockQueue::dropWaitingBlocks() {
    // A block may hold the queue's owner, so the list is emptied before its blocks are destroyed.
    const auto dropped = std::exchange(queuedSerialBlockOperations_, {});
}

void SerialBlockQueue::run(Entry entry) {
    execute(entry);
    while (nextIsDue_ && !queuedSerialBlockOperations_.empty()) {
        nextIsDue_ = false;
        entry = takeOldest();
        execute(entry);
    }
    nextIsDue_ = false;
}

void SerialBlockQueue::execute(const Entry& entry) {
    current_ = entry.number;
    if (observer_ != nullptr) {
        observer_->blockDidStart(timelineId_, entry.number, entry.kind);
    }
    ++blocksOnStack_;
    const std::shared_ptr<void> subject = entry.subject ? entry.subject->lock() : nullptr;
    try {
        if (entry.subject && !subject) {
            runNextBlock();
        } else {
            entry.block();
        }
    } catch (...) {
        failed_(std::current_exception());
        if (current_ == entry.number) {
            runNextBlock();
        }
    }
    --blocksOnStack_;
}

void SerialBlockQueue::endCurrentBlock() {
    if (!current_) {
        return;
    }
    const std::uint64_t ended = *current_;
    current_.reset();
    if (observer_ != nullptr) {
        observer_->blockDidEnd(timelineId_, ended);
    }
}

SerialBlockQueue::Entry SerialBlockQueue::takeOldest() {
    Entry oldest = std::move(queuedSerialBlockOperations_.back());
    queuedSerialBlockOperations_.pop_back();
    return oldest;
}

}  // namespace RemoteCoding
