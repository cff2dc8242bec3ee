// Blocks through the serial queue, and the way from the background to the main thread and back.

#include "Benchmarks/Component/QueuedWork.hpp"
#include "Benchmarks/Support/Case.hpp"
#include "Benchmarks/Support/ManualExecution.hpp"

#include <deque>
#include <memory>

namespace Benchmarks {
namespace {

Trial queuedBlocks(std::int64_t blocks) {
    return Trial(blocks, [blocks] { queueAndRunBlocks(blocks); });
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

Trial roundTrips(std::int64_t times) {
    auto execution = std::make_shared<ManualExecution>();
    return Trial(times, [execution, times] {
        const auto task = startHopping(*execution, times);
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
    {"queue, blocks/component", usualSizes(), queuedBlocks},
    {"queue, blocks/floor", usualSizes(), queuedBlocksFloor},
    {"queue, to the main thread and back/component", usualSizes(), roundTrips},
    {"queue, to the main thread and back/floor", usualSizes(), roundTripsFloor},
});

}  // namespace
}  // namespace Benchmarks
