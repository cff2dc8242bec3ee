#include "Base/TaskScope.hpp"

namespace Base {

/// One started task.
class TaskScope::Root final : public Detail::TaskOwner {
public:
    Root(TaskScope& scope, Task<void> task, FailureHandler failed)
        : scope_(scope), task_(std::move(task)), failed_(std::move(failed)) {}

    void begin(const TaskContext& context) { task_.coroutine().promise().beginOwned(context, *this); }

    void run() const {
        if (const auto coroutine = task_.coroutine()) {
            coroutine.resume();
        }
    }

    void drop() noexcept {
        task_.reset();
        failed_ = nullptr;
    }

    void taskDidFinish(const std::exception_ptr& error) noexcept override {
        if (error && failed_) {
            try {
                failed_(error);
            } catch (
                ...) {  // NOLINT(bugprone-empty-catch): a failing failure handler has nobody left to tell
            }
        }
        scope_.remove(*this);
    }

private:
    TaskScope& scope_;
    Task<void> task_;
    FailureHandler failed_;
};

TaskScope::TaskScope() = default;

TaskScope::~TaskScope() { drop(); }

void TaskScope::start(ExecutionProtocol& execution, Home home, Task<void> task, FailureHandler failed) {
    auto root = std::make_shared<Root>(*this, std::move(task), std::move(failed));
    const TaskContext context{&execution, home};
    root->begin(context);
    {
        const std::lock_guard lock(mutex_);
        if (isDropped_) {
            return;
        }
        roots_.emplace(root.get(), root);
    }
    try {
        context.post([root] { root->run(); });
    } catch (...) {
        remove(*root);
        throw;
    }
}

std::size_t TaskScope::count() const {
    const std::lock_guard lock(mutex_);
    return roots_.size();
}

void TaskScope::whenDropped(std::weak_ptr<void> owner, std::function<void()> handler) {
    const std::lock_guard lock(mutex_);
    std::erase_if(dropHandlers_, [](const DropHandler& known) { return known.owner.expired(); });
    dropHandlers_.push_back(DropHandler{std::move(owner), std::move(handler)});
}

void TaskScope::drop() {
    std::unordered_map<const Root*, std::shared_ptr<Root>> roots;
    std::vector<DropHandler> handlers;
    {
        const std::lock_guard lock(mutex_);
        isDropped_ = true;
        roots.swap(roots_);
        handlers.swap(dropHandlers_);
    }
    for (const auto& entry : roots) {
        entry.second->drop();
    }
    for (const auto& handler : handlers) {
        if (const auto owner = handler.owner.lock()) {
            handler.run();
        }
    }
}

// Called from the last suspension of the root's coroutine. The frame is destroyed here, at once, although the job that runs
// it still refers to the root; and before the task stops being counted, so that a count of 0 means that all is let go of.
void TaskScope::remove(Root& root) noexcept {
    root.drop();
    std::shared_ptr<Root> removed;  // destroyed after the lock is let go of
    const std::lock_guard lock(mutex_);
    if (const auto found = roots_.find(&root); found != roots_.end()) {
        removed = std::move(found->second);
        roots_.erase(found);
    }
}

}  // namespace Base
