// Blocks through the serial queue, and the way from the background to the main thread and back.

#include "Base/Await.hpp"
#include "Base/TaskScope.hpp"
#include "Benchmarks/Support/Case.hpp"
#include "Benchmarks/Support/ManualExecution.hpp"
#include "Components/RemoteCoding/Services/SerialBlockQueue.hpp"

#include <deque>
#include <memory>

namespace Benchmarks {
namespace {

using RemoteCoding::SerialBlockQueue;
using RemoteCoding::SynchronisationBlock;

std::vector<std::int64_t> counts() { return {1'000, 100'000}; }

/// Blocks that wait behind a slow one and then run.
Trial queuedBlocks(std::int64_t blocks) {
    auto queue = std::make_shared<SerialBlockQueue>("timeline", nullptr, SerialBlockQueue::FailureHandler());
    return Trial(blocks, [queue, blocks] {
        queue->runBlockSerially([] {}, SynchronisationBlock::pull);
        for (std::int64_t block = 0; block < blocks; ++block) {
            queue->runBlockSerially([&queue = *queue] { queue.runNextBlock(); }, SynchronisationBlock::event);
        }
        queue->runNextBlock();
    });
}

Trial queuedBlocksFloor(std::int64_t blocks) {
    return Trial(blocks, [blocks] {
        std::deque<std::function<void()>> queue;
        std::int64_t ran = 0;
        for (std::int64_t block = 0; block < blocks; ++block) {
            queue.emplace_back([&ran] { ++ran; });
        }
        while (!queue.empty()) {
            const auto block = std::move(queue.front());
            queue.pop_front();
            block();
        }
    });
}

Base::Task<void> hop(Base::ExecutionProtocol* execution, std::int64_t times) {
    std::int64_t arrived = 0;
    while (arrived < times) {
        Base::MainThreadCall visit(*execution, [&arrived] { ++arrived; });
        const Base::Result<void> visited = co_await visit;
        visited.value();
    }
}

Trial roundTrips(std::int64_t times) {
    auto execution = std::make_shared<ManualExecution>();
    return Trial(times, [execution, times] {
        Base::TaskScope scope;
        scope.start(*execution, Base::Home::background, hop(execution.get(), times), {});
        execution->runAll();
    });
}

/// The same with nothing but posted jobs.
struct Hopper {
    void leave() {
        execution.postToMain([this] { execution.postToBackground([this] { comeBack(); }); });
    }
    void comeBack() {
        if (--left > 0) {
            leave();
        }
    }
    ManualExecution& execution;
    std::int64_t left;
};

Trial roundTripsFloor(std::int64_t times) {
    auto execution = std::make_shared<ManualExecution>();
    return Trial(times, [execution, times] {
        Hopper hopper{*execution, times};
        hopper.leave();
        execution->runAll();
    });
}

const CaseGroup group({
    {"queue, blocks/component", counts(), queuedBlocks},
    {"queue, blocks/floor", counts(), queuedBlocksFloor},
    {"queue, to the main thread and back/component", counts(), roundTrips},
    {"queue, to the main thread and back/floor", counts(), roundTripsFloor},
});

}  // namespace
}  // namespace Benchmarks
