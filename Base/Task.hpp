#pragma once

#include "Base/ExecutionProtocol.hpp"

#include <atomic>
#include <coroutine>
#include <exception>
#include <optional>
#include <type_traits>
#include <utility>

/// Coroutines with a home, private to the component.
///
/// A task is lazy: it does nothing until it is awaited by another task or started by a `TaskScope`. It runs at its home,
/// the main thread or the background, and comes back there after every `co_await`, whichever thread the awaited call
/// finished on. A task that awaits another hands its home on to it.
///
/// What g++ 12 asks of whoever writes one: a single `co_await` in a statement, with named operands; no braced list,
/// aggregate temporary, capturing lambda or class-typed `?:` in such a statement; parameters by value.
namespace Base {

enum class Home : std::uint8_t { mainThread, background };

/// Where a task runs.
struct TaskContext {
    ExecutionProtocol* execution = nullptr;
    Home home = Home::mainThread;

    void post(Job job) const {
        if (home == Home::mainThread) {
            execution->postToMain(std::move(job));
        } else {
            execution->postToBackground(std::move(job));
        }
    }
};

namespace Detail {

/// Whoever started a task that nobody awaits.
class TaskOwner {
public:
    virtual void taskDidFinish(const std::exception_ptr& error) noexcept = 0;

protected:
    ~TaskOwner() = default;
};

class PromiseBase {
public:
    struct FinalAwaiter {
        [[nodiscard]] bool await_ready() const noexcept { return false; }
        template <typename Promise>
        void await_suspend(std::coroutine_handle<Promise> finished) const noexcept {
            finished.promise().didFinish();
        }
        void await_resume() const noexcept {}
    };

    [[nodiscard]] std::suspend_always initial_suspend() const noexcept { return {}; }
    [[nodiscard]] FinalAwaiter final_suspend() const noexcept { return {}; }
    void unhandled_exception() noexcept { error_ = std::current_exception(); }

    [[nodiscard]] const TaskContext& context() const noexcept { return context_; }

    void beginOwned(const TaskContext& context, TaskOwner& owner) noexcept {
        context_ = context;
        owner_ = &owner;
    }

    void beginAwaited(const TaskContext& context, std::coroutine_handle<> parent) noexcept {
        context_ = context;
        parent_ = parent;
    }

    /// After the task was run for the first time: true when the parent has to wait for the end. When it is false the
    /// task has ended already. Parent and task meet here, possibly on two threads, and exactly one of them goes on.
    [[nodiscard]] bool parentHasToWait() noexcept {
        return progress_.exchange(Progress::parentWaits, std::memory_order_acq_rel) == Progress::running;
    }

protected:
    void rethrowError() const {
        if (error_) {
            std::rethrow_exception(error_);
        }
    }

private:
    enum class Progress : std::uint8_t { running, parentWaits, finished };

    // Nothing of the frame may be touched after the exchange or the owner's call: it may be gone by then.
    void didFinish() noexcept {
        if (owner_ != nullptr) {
            owner_->taskDidFinish(error_);
            return;
        }
        const auto parent = parent_;
        if (progress_.exchange(Progress::finished, std::memory_order_acq_rel) == Progress::parentWaits) {
            parent.resume();
        }
    }

    TaskContext context_;
    TaskOwner* owner_ = nullptr;
    std::coroutine_handle<> parent_;
    std::atomic<Progress> progress_{Progress::running};
    std::exception_ptr error_;
};

template <typename Value>
class Promise : public PromiseBase {
public:
    template <typename Given>
    void return_value(Given&& value) {
        value_.emplace(std::forward<Given>(value));
    }

    Value takeResult() {
        rethrowError();
        return std::move(*value_);
    }

private:
    std::optional<Value> value_;
};

template <>
class Promise<void> : public PromiseBase {
public:
    void return_void() const noexcept {}
    void takeResult() const { rethrowError(); }
};

}  // namespace Detail

template <typename Value>
class [[nodiscard]] Task {
public:
    class promise_type : public Detail::Promise<Value> {
    public:
        Task get_return_object() noexcept {
            return Task(std::coroutine_handle<promise_type>::from_promise(*this));
        }
    };

    Task() = default;
    Task(Task&& other) noexcept : coroutine_(std::exchange(other.coroutine_, nullptr)) {}
    Task& operator=(Task&& other) noexcept {
        if (this != &other) {
            reset();
            coroutine_ = std::exchange(other.coroutine_, nullptr);
        }
        return *this;
    }
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;
    ~Task() { reset(); }

    /// Destroys the coroutine where it stands, with everything it holds.
    void reset() noexcept {
        if (const auto coroutine = std::exchange(coroutine_, nullptr)) {
            coroutine.destroy();
        }
    }

    [[nodiscard]] std::coroutine_handle<promise_type> coroutine() const noexcept { return coroutine_; }

    class Awaiter {
    public:
        explicit Awaiter(std::coroutine_handle<promise_type> coroutine) : coroutine_(coroutine) {}

        [[nodiscard]] bool await_ready() const noexcept { return false; }

        // Runs the task on the caller's stack up to its first wait. A task that ends without waiting lets its parent go on
        // without suspending, so that a loop over such tasks does not grow the stack.
        template <typename Parent>
        bool await_suspend(std::coroutine_handle<Parent> parent) const {
            const auto coroutine = coroutine_;
            coroutine.promise().beginAwaited(parent.promise().context(), parent);
            coroutine.resume();
            return coroutine.promise().parentHasToWait();
        }

        Value await_resume() const { return coroutine_.promise().takeResult(); }

    private:
        std::coroutine_handle<promise_type> coroutine_;
    };

    [[nodiscard]] Awaiter operator co_await() const noexcept { return Awaiter(coroutine_); }

private:
    explicit Task(std::coroutine_handle<promise_type> coroutine) noexcept : coroutine_(coroutine) {}

    std::coroutine_handle<promise_type> coroutine_ = nullptr;
};

}  // namespace Base
