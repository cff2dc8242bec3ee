#pragma once

#include "Apps/CodingDesk/Workplace.hpp"

#include <cstdint>
#include <exception>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>

namespace CodingDesk {

/// One analyst: a thread, which is the main thread of the analyst's application, and what is asked of it from outside.
/// Made, used and destroyed by one other thread.
class Analyst {
public:
    Analyst(AnalystIndex index, World& world, Arrivals& arrivals, std::uint64_t seed,
            Workplace::SessionListener listener);

    /// Ends the session if it still runs, gives its last work a few seconds, and waits for the thread.
    ~Analyst();
    Analyst(const Analyst&) = delete;
    Analyst& operator=(const Analyst&) = delete;

    [[nodiscard]] const std::string& name() const { return name_; }

    /// Does it on the analyst's main thread and waits for the result. What it throws is thrown here.
    template <typename Result>
    Result ask(const std::function<Result(Workplace&)>& question) {
        // Shared: whoever waits may be gone while the answer is still being given.
        const auto answer = std::make_shared<std::promise<Result>>();
        auto future = answer->get_future();
        loop_.post([this, answer, &question] {
            try {
                if constexpr (std::is_void_v<Result>) {
                    question(*workplace_);
                    answer->set_value();
                } else {
                    answer->set_value(question(*workplace_));
                }
            } catch (...) {
                answer->set_exception(std::current_exception());
            }
        });
        return future.get();
    }

    /// Has it done on the analyst's main thread, in the order of asking, and goes on.
    void tell(std::function<void(Workplace&)> instruction);

    /// What went wrong on the analyst's main thread, first thing first. Any thread.
    [[nodiscard]] std::exception_ptr failure() const;

private:
    void makeWorkplace(AnalystIndex index, World& world, Arrivals& arrivals, std::uint64_t seed,
                       Workplace::SessionListener listener);
    void runLoop();
    void didFail(std::exception_ptr error);

    const std::string name_;
    ReferenceHost::RunLoop loop_;
    std::unique_ptr<Workplace> workplace_;  // of the thread below
    mutable std::mutex mutex_;              // guards the failure
    std::exception_ptr failure_;
    std::thread thread_;
};

}  // namespace CodingDesk
