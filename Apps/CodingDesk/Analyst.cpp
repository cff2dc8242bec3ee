#include "Apps/CodingDesk/Analyst.hpp"

#include <chrono>

namespace CodingDesk {

namespace {

constexpr int shutdownChecks = 100;
constexpr std::chrono::milliseconds shutdownInterval{50};
constexpr std::chrono::milliseconds lookInterval{20};
constexpr std::chrono::milliseconds shortLook{50};

}  // namespace

Analyst::Analyst(AnalystIndex index, RealWorld& world, const Surroundings& surroundings) : Seat(index) {
    thread_ = std::thread([this] { runLoop(); });
    try {
        makeWorkplace(index, world, surroundings);
    } catch (...) {
        loop_.stop();
        thread_.join();
        throw;
    }
}

void Analyst::makeWorkplace(AnalystIndex index, RealWorld& world, const Surroundings& surroundings) {
    const auto ready = std::make_shared<std::promise<void>>();
    auto future = ready->get_future();
    loop_.post([&, this, ready] {
        try {
            execution_ = std::make_unique<ReferenceHost::RealExecution>(loop_, world.pool, world.scheduler,
                                                                        name(), &world.world.trace);
            workplace_ = std::make_unique<Workplace>(index, *execution_, surroundings, true);
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
    loop_.post([this] {
        workplace_.reset();
        execution_.reset();
    });
    loop_.post([this] { loop_.stop(); });
    thread_.join();
}

void Analyst::lookAround() { std::this_thread::sleep_for(shortLook); }

bool Analyst::comesTrue(const Question& question, Base::Seconds patience) {
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!ask<bool>(question)) {
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(lookInterval);
    }
    return true;
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
