#pragma once

#include "Base/Task.hpp"

#include <cstddef>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace Base {

/// Owns the tasks that nobody awaits. Any thread, unless an operation says otherwise.
class TaskScope {
public:
    using FailureHandler = std::function<void(std::exception_ptr)>;

    TaskScope();
    ~TaskScope();
    TaskScope(const TaskScope&) = delete;
    TaskScope& operator=(const TaskScope&) = delete;

    /// Posts the task to its home; it never runs inside this call. `failed` gets what the task throws, on whichever thread
    /// that happened. Throws what the execution throws when it does not take the job; the task is destroyed then. After
    /// `drop` the task is destroyed at once.
    void start(ExecutionProtocol& execution, Home home, Task<void> task, FailureHandler failed);

    /// Tasks started and not ended.
    [[nodiscard]] std::size_t count() const;

    /// Runs inside `drop`, after the tasks are gone, for what only a task's end would have let go of; forgotten once `owner`
    /// has expired.
    void whenDropped(std::weak_ptr<void> owner, std::function<void()> handler);

    /// Destroys all tasks where they stand. Only while none of them can run: the execution has stopped. What runs
    /// late all the same finds nothing to resume.
    void drop();

private:
    class Root;
    struct DropHandler {
        std::weak_ptr<void> owner;
        std::function<void()> run;
    };

    void remove(Root& root) noexcept;

    mutable std::mutex mutex_;
    std::unordered_map<const Root*, std::shared_ptr<Root>> roots_;
    std::vector<DropHandler> dropHandlers_;
    bool isDropped_ = false;
};

}  // namespace Base
