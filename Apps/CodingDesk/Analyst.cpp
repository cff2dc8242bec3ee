#include "Apps/CodingDesk/Analyst.hpp"

#include "Apps/CodingDesk/Cast.hpp"

#include <chrono>

namespace CodingDesk {

namespace {

constexpr int shutdownChecks = 100;
constexpr std::chrono::milliseconds shutdownInterval{50};

}  // namespace

Analyst::Analyst(AnalystIndex index, World& world, Arrivals& arrivals, std::uint64_t seed,
                 Workplace::SessionListener listener)
    : name_(castName(index)) {
    thread_ = std::thread([this] { runLoop(); });
    try {
        makeWorkplace(index, world, arrivals, seed, std::move(listener));
    } catch (...) {
        loop_.stop();
        thread_.join();
        throw;
    }
}

void Analyst::makeWorkplace(AnalystIndex index, World& world, Arrivals& arrivals, std::uint64_t seed,
                            Workplace::SessionListener listener) {
    const auto ready = std::make_shared<std::promise<void>>();
    auto future = ready->get_future();
    loop_.post([&, this, ready] {
        try {
            workplace_ =
                std::make_unique<Workplace>(index, loop_, world, arrivals, seed, std::move(listener));
            ready->set_value();
        } catch (...) {
            ready->set_exception(std::current_exception());
        }
    });
    future.get();
}

Analyst::~Analyst() {
    try {
        ask<void>([](Workplace& workplace) { workplace.endSession(); });
        for (int i = 0; i < shutdownChecks; ++i) {
            if (ask<std::size_t>([](Workplace& workplace) { return workplace.unfinishedTasks(); }) == 0) {
                break;
            }
            std::this_thread::sleep_for(shutdownInterval);
        }
    } catch (...) {
        // The session stays as it is; the application goes all the same.
    }
    loop_.post([this] { workplace_.reset(); });
    loop_.post([this] { loop_.stop(); });
    thread_.join();
}

void Analyst::tell(std::function<void(Workplace&)> instruction) {
    loop_.post([this, instruction = std::move(instruction)] {
        try {
            instruction(*workplace_);
        } catch (...) {
            didFail(std::current_exception());
        }
    });
}

std::exception_ptr Analyst::failure() const {
    const std::scoped_lock lock(mutex_);
    return failure_;
}

void Analyst::runLoop() {
    while (true) {
        try {
            loop_.run();
            return;
        } catch (...) {
            didFail(std::current_exception());
        }
    }
}

void Analyst::didFail(std::exception_ptr error) {
    const std::scoped_lock lock(mutex_);
    if (!failure_) {
        failure_ = std::move(error);
    }
}

}  // namespace CodingDesk
