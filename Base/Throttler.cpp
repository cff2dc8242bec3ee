#include "Base/Throttler.hpp"

#include <utility>

namespace Base {

struct Throttler::State {
    State(ExecutionProtocol& execution_, Seconds coalesceInterval_, std::function<void()> callback_)
        : execution(execution_), coalesceInterval(coalesceInterval_), callback(std::move(callback_)) {}

    // The wait is over before the callback runs, so that the callback may request again, throw, or destroy the throttler.
    void fire() {
        timer = nullptr;
        callback();
    }

    ExecutionProtocol& execution;
    Seconds coalesceInterval;
    std::function<void()> callback;
    std::shared_ptr<TimerProtocol> timer;  // present while a request waits
};

Throttler::Throttler(ExecutionProtocol& execution, Seconds coalesceInterval, std::function<void()> callback)
    : state_(std::make_shared<State>(execution, coalesceInterval, std::move(callback))) {}

Throttler::~Throttler() {
    if (const auto timer = std::exchange(state_->timer, nullptr)) {
        try {
            timer->invalidate();
        } catch (...) {  // NOLINT(bugprone-empty-catch): a timer that fires all the same finds its state gone
        }
    }
}

void Throttler::throttle() {
    if (isWaiting()) {
        return;
    }
    auto endWait = [weakState = std::weak_ptr(state_)] {
        if (const auto state = weakState.lock()) {
            try {
                state->fire();
            } catch (...) {  // dropped, as the constructor says
            }
        }
    };
    state_->timer = state_->execution.startTimer(state_->coalesceInterval, Seconds(0), std::move(endWait));
}

void Throttler::fireNow() {
    const auto state = state_;  // the callback may destroy this throttler
    if (const auto timer = std::exchange(state->timer, nullptr)) {
        timer->invalidate();
        state->fire();
    }
}

bool Throttler::isWaiting() const { return state_->timer != nullptr; }

}  // namespace Base
