#pragma once

#include <mutex>
#include <utility>

namespace Base {

/// An object's own lock, for `synchronized`. Not recursive.
class ObjectLock {
public:
    ObjectLock() = default;
    ObjectLock(const ObjectLock&) = delete;
    ObjectLock& operator=(const ObjectLock&) = delete;

private:
    template <typename Function>
    friend decltype(auto) synchronized(const ObjectLock& lock, Function&& function);
    mutable std::mutex mutex_;
};

/// Runs `function` while it holds the lock and gives back what it returns. `function` must not wait for another thread.
template <typename Function>
decltype(auto) synchronized(const ObjectLock& lock, Function&& function) {
    const std::lock_guard guard(lock.mutex_);
    return std::forward<Function>(function)();
}

}  // namespace Base
