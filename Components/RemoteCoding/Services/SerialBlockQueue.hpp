#pragma once

#include "Components/RemoteCoding/HostInterfaces/SynchronisationObserverProtocol.hpp"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace RemoteCoding {

/// Runs blocks one after the other, first in, first out. A block ends not when its code returns but when it calls
/// `runNextBlock()`, which may be much later.
///
/// Main thread only. The stack does not grow with the number of blocks: a `runNextBlock()` inside a block's code takes
/// effect as soon as that code returns. Whoever owns the queue keeps it alive while one of its operations runs.
class SerialBlockQueue {
public:
    using Block = std::function<void()>;
    using FailureHandler = std::function<void(std::exception_ptr)>;

    /// `observer` may be null. `failed` gets what a block throws; the block then counts as ended.
    SerialBlockQueue(std::string timelineId, SynchronisationObserverProtocol* observer,
                     FailureHandler failed);

    /// Runs the block before it returns when nothing runs, else queues it.
    void runBlockSerially(Block block, SynchronisationBlock kind);

    /// The same for a block that works on `subject` and does not own it: when its turn comes and `subject` is gone, it
    /// counts as ended without having run; else `subject` is held while its code runs.
    void runBlockSerially(std::weak_ptr<void> subject, Block block, SynchronisationBlock kind);

    /// Ends the running block and runs the oldest waiting one. Harmless when nothing runs.
    void runNextBlock();

    [[nodiscard]] bool isRunningSerialBlockOperation() const { return isRunningSerialBlockOperation_; }
    [[nodiscard]] std::size_t numberOfWaitingBlocks() const { return queuedSerialBlockOperations_.size(); }

    /// Lets go of all waiting blocks; only when nothing can run any more.
    void dropWaitingBlocks();

private:
    struct Entry {
        Block block;
        SynchronisationBlock kind;
        std::uint64_t number;
        std::optional<std::weak_ptr<void>>
            subject{};  ///< beside the block, whose captures would else be allocated
    };

    void submit(Entry entry);

    void run(Entry entry);
    void execute(const Entry& entry);
    void endCurrentBlock();
    [[nodiscard]] Entry takeOldest();

    std::string timelineId_;
    SynchronisationObserverProtocol* observer_;
    FailureHandler failed_;

    std::deque<Entry> queuedSerialBlockOperations_;  ///< the newest in front
    bool isRunningSerialBlockOperation_ = false;

    std::uint64_t submitted_ = 0;
    std::optional<std::uint64_t> current_;  ///< the number of the block that has started and not ended
    int blocksOnStack_ = 0;                 ///< how many blocks' code is being executed right now
    bool nextIsDue_ = false;                ///< the block whose code is being executed has ended already
};

}  // namespace RemoteCoding
