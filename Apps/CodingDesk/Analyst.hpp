#pragma once

#include "Apps/CodingDesk/Seat.hpp"
#include "Apps/CodingDesk/Workplace.hpp"
#include "ReferenceHost/Execution/RealExecution.hpp"
#include "ReferenceHost/Execution/RunLoop.hpp"

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

/// One analyst in real time: a thread, which is the main thread of the analyst's application, and what is asked of it from
/// outside. Made, used and destroyed by one other thread.
class Analyst final : public Seat {
public:
    /// What is given outlives the analyst; the surroundings' world is the real one.
    Analyst(AnalystIndex index, RealWorld& world, const Surroundings& surroundings);

    /// Ends the session if it still runs, gives its last work a few seconds, and waits for the thread.
    ~Analyst() override;
    Analyst(const Analyst&) = delete;
    Analyst& operator=(const Analyst&) = delete;

    // Seat
    void at(const Deed& deed) override { ask<void>(deed); }
    void lookAround() override;

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

protected:
    [[nodiscard]] bool comesTrue(const Question& question, Base::Seconds patience) override;

private:
    void makeWorkplace(AnalystIndex index, RealWorld& world, const Surroundings& surroundings);
    void runLoop();
    void didFail(std::exception_ptr error);

    ReferenceHost::RunLoop loop_;
    // Of the thread below, both.
    std::unique_ptr<ReferenceHost::RealExecution> execution_;
    std::unique_ptr<Workplace> workplace_;
    mutable std::mutex mutex_;  // guards the failure
    std::exception_ptr failure_;
    std::thread thread_;
};

}  // namespace CodingDesk
