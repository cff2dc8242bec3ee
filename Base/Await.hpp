#pragma once

#include "Base/Completion.hpp"
#include "Base/Task.hpp"

#include <chrono>
#include <coroutine>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>

namespace Base {

namespace Detail {

/// Where the answer of one call and the task that waits for it meet.
template <typename Value>
class PendingCall {
public:
    PendingCall(const TaskContext& context, std::coroutine_handle<> waiting)
        : context_(context), waiting_(waiting) {}

    /// The first answer counts; one that comes after the task was destroyed is ignored.
    static void answer(const std::shared_ptr<PendingCall>& call, Result<Value> result) {
        // The lock is held while the job is posted: until then the task cannot be destroyed, and with it the
        // environment that owns the execution.
        const std::lock_guard lock(call->mutex_);
        if (call->isAbandoned_ || call->result_) {
            return;
        }
        call->result_.emplace(std::move(result));
        try {
            call->context_.post([call] { call->resume(); });
        } catch (...) {
            // An execution that refuses one job may take the next: that of another answer, or of the dropped completion.
            call->result_.reset();
        }
    }

    /// Also when nobody waits any more.
    [[nodiscard]] bool isAnswered() const {
        const std::lock_guard lock(mutex_);
        return isAbandoned_ || result_;
    }

    void abandon() noexcept {
        const std::lock_guard lock(mutex_);
        isAbandoned_ = true;
    }

    Result<Value> takeResult() {
        const std::lock_guard lock(mutex_);
        return std::move(*result_);
    }

private:
    void resume() {
        {
            const std::lock_guard lock(mutex_);
            if (isAbandoned_) {
                return;
            }
        }
        waiting_.resume();
    }

    mutable std::mutex mutex_;
    TaskContext context_;
    std::coroutine_handle<> waiting_;
    std::optional<Result<Value>> result_;
    bool isAbandoned_ = false;
};

/// Held by every copy of a completion; the last one to go answers for a host that never did.
template <typename Value>
class DroppedCompletionGuard {
public:
    explicit DroppedCompletionGuard(std::shared_ptr<PendingCall<Value>> call) : call_(std::move(call)) {}
    ~DroppedCompletionGuard() {
        if (!call_->isAnswered()) {
            PendingCall<Value>::answer(
                call_, failure<Value>(std::runtime_error("The call was dropped without an answer")));
        }
    }
    DroppedCompletionGuard(const DroppedCompletionGuard&) = delete;
    DroppedCompletionGuard& operator=(const DroppedCompletionGuard&) = delete;

    [[nodiscard]] const std::shared_ptr<PendingCall<Value>>& call() const { return call_; }

private:
    std::shared_ptr<PendingCall<Value>> call_;
};

}  // namespace Detail

/// An asynchronous call of the host, to be awaited by a task: gives the call's `Result` and comes home with it. What the
/// call throws is its failure. It is answered once: later answers, and answers after the task is gone, are ignored.
///
///     CompletionCall<bool> call([service](Completion<bool> done) { service->update(std::move(done)); });
///     const Result<bool> answer = co_await call;
///
/// The start function must hold what it calls by a shared pointer of its own: the task may go on, and end, before the
/// call has returned.
template <typename Value>
class CompletionCall {
public:
    using Start = std::function<void(Completion<Value>)>;

    explicit CompletionCall(Start start) : start_(std::move(start)) {}
    CompletionCall(const CompletionCall&) = delete;
    CompletionCall& operator=(const CompletionCall&) = delete;
    ~CompletionCall() {
        if (pending_) {
            pending_->abandon();
        }
    }

    [[nodiscard]] bool await_ready() const noexcept { return false; }

    template <typename Promise>
    void await_suspend(std::coroutine_handle<Promise> waiting) {
        // From the first answer on this object may be gone, so everything is done on local copies.
        const auto pending =
            std::make_shared<Detail::PendingCall<Value>>(waiting.promise().context(), waiting);
        pending_ = pending;
        const Start start = std::move(start_);
        const auto guard = std::make_shared<Detail::DroppedCompletionGuard<Value>>(pending);
        try {
            start([guard](Result<Value> result) {
                Detail::PendingCall<Value>::answer(guard->call(), std::move(result));
            });
        } catch (...) {
            Detail::PendingCall<Value>::answer(pending, Result<Value>::failure(std::current_exception()));
        }
    }

    Result<Value> await_resume() { return pending_->takeResult(); }

private:
    Start start_;
    std::shared_ptr<Detail::PendingCall<Value>> pending_;
};

/// Runs a function on the main thread, to be awaited from any home; its failure is what the function throws.
class MainThreadCall : public CompletionCall<void> {
public:
    MainThreadCall(ExecutionProtocol& execution, std::function<void()> function)
        : CompletionCall([&execution, function = std::move(function)](Completion<void> done) {
              execution.postToMain([function, done = std::move(done)] {
                  try {
                      function();
                  } catch (...) {
                      done(Result<void>::failure(std::current_exception()));
                      return;
                  }
                  done(Result<void>());
              });
          }) {}
};

/// Waits without holding a thread, to be awaited; fails when the host cancels the wait.
class SleepCall : public CompletionCall<void> {
public:
    SleepCall(ExecutionProtocol& execution, std::chrono::duration<std::uint64_t, std::nano> duration)
        : CompletionCall([&execution, duration](Completion<void> done) {
              execution.sleep(duration, std::move(done));
          }) {}
};

}  // namespace Base
