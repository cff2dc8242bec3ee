#include "Benchmarks/Component/QueuedWork.hpp"

#include "Base/Await.hpp"
#include "Base/TaskScope.hpp"
#include "Components/RemoteCoding/Services/SerialBlockQueue.hpp"

namespace Benchmarks {
namespace {

using RemoteCoding::SerialBlockQueue;
using RemoteCoding::SynchronisationBlock;

Base::Task<void> hop(Base::ExecutionProtocol* execution, std::int64_t times) {
    std::int64_t arrived = 0;
    while (arrived < times) {
        Base::MainThreadCall visit(*execution, [&arrived] { ++arrived; });
        const Base::Result<void> visited = co_await visit;
        visited.value();
    }
}

}  // namespace

void queueAndRunBlocks(std::int64_t blocks) {
    SerialBlockQueue queue("timeline", nullptr, SerialBlockQueue::FailureHandler());
    queue.runBlockSerially([] {}, SynchronisationBlock::pull);
    for (std::int64_t block = 0; block < blocks; ++block) {
        queue.runBlockSerially([&queue] { queue.runNextBlock(); }, SynchronisationBlock::event);
    }
    queue.runNextBlock();
}

std::shared_ptr<void> startHopping(Base::ExecutionProtocol& execution, std::int64_t times) {
    auto scope = std::make_shared<Base::TaskScope>();
    scope->start(execution, Base::Home::background, hop(&execution, times), {});
    return scope;
}

}  // namespace Benchmarks
