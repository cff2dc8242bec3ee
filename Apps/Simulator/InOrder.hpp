#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace Simulator {

/// Does `work(0)`, `work(1)`, … below `count` on so many threads, and hands the results to `take` on the calling thread in this
/// order, whichever is ready first. Ends early when `take` gives false; what is under way then is waited for and dropped. What
/// either throws comes out of here.
template <typename Result>
void inOrder(std::size_t count, std::size_t jobs, const std::function<Result(std::size_t)>& work,
             const std::function<bool(Result&)>& take) {
    // An early result waits, but threads that get far ahead do so as well, so that results do not pile up.
    const std::size_t mostAhead = 16 * jobs;
    struct Done {
        std::unique_ptr<Result> result;
        std::exception_ptr error;
    };
    std::mutex mutex;
    std::condition_variable changed;
    std::map<std::size_t, Done> ready;
    std::size_t next = 0;
    std::size_t taken = 0;
    bool isOver = false;

    const auto workOn = [&] {
        std::unique_lock lock(mutex);
        while (true) {
            changed.wait(lock, [&] { return isOver || next >= count || next < taken + mostAhead; });
            if (isOver || next >= count) {
                return;
            }
            const std::size_t number = next++;
            lock.unlock();
            Done done;
            try {
                done.result = std::make_unique<Result>(work(number));
            } catch (...) {
                done.error = std::current_exception();
            }
            lock.lock();
            ready.emplace(number, std::move(done));
            changed.notify_all();
        }
    };

    std::vector<std::jthread> threads;
    struct EndThreads {
        ~EndThreads() {
            {
                const std::lock_guard lock(mutex);
                isOver = true;
            }
            changed.notify_all();
            threads.clear();  // joins
        }
        std::mutex& mutex;
        std::condition_variable& changed;
        bool& isOver;
        std::vector<std::jthread>& threads;
    };
    const EndThreads endThreads{mutex, changed, isOver, threads};
    for (std::size_t i = 0; i < std::min(jobs, count); ++i) {
        threads.emplace_back(workOn);
    }
    for (std::size_t number = 0; number < count; ++number) {
        Done done;
        {
            std::unique_lock lock(mutex);
            changed.wait(lock, [&] { return ready.contains(number); });
            done = std::move(ready.extract(number).mapped());
            taken = number + 1;
        }
        changed.notify_all();
        if (done.error) {
            std::rethrow_exception(done.error);
        }
        if (!take(*done.result)) {
            return;
        }
    }
}

}  // namespace Simulator
