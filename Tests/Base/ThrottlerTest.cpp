#include "Base/Throttler.hpp"

#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualTime.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <stdexcept>
#include <vector>

namespace {

using Base::Seconds;
using Base::Throttler;

class ThrottlerTest : public testing::Test {
protected:
    std::unique_ptr<Throttler> throttlerWith(std::function<void()> callback) {
        return std::make_unique<Throttler>(execution_, Seconds(1), std::move(callback));
    }
    /// A throttler that notes when its callback runs, and then does this.
    std::unique_ptr<Throttler> notingThrottler(std::function<void()> more = [] {}) {
        return throttlerWith([this, more = std::move(more)] {
            EXPECT_TRUE(execution_.isMainThread());
            calls_.push_back(time_.now().count());
            more();
        });
    }
    void runFor(double seconds) { time_.runFor(Seconds(seconds)); }

    ReferenceHost::VirtualTime time_{1};
    ReferenceHost::VirtualExecution execution_{time_};
    std::vector<double> calls_;
};

TEST_F(ThrottlerTest, ABurstEndsInOneCallWhenTheIntervalIsOver) {
    auto throttler = notingThrottler();
    for (int i = 0; i < 3; ++i) {
        throttler->throttle();
        EXPECT_TRUE(throttler->isWaiting());
        runFor(0.25);
    }
    EXPECT_TRUE(calls_.empty());
    runFor(10);
    EXPECT_EQ(calls_, std::vector{1.0});
    EXPECT_FALSE(throttler->isWaiting());

    throttler->throttle();
    throttler.reset();
    runFor(10);
    EXPECT_EQ(calls_.size(), 1U) << "destroyed while waiting";
}

TEST_F(ThrottlerTest, UnderAnyLoadItFiresAtMostOnceAnIntervalAndAfterEachRequest) {
    const auto throttler = notingThrottler();
    std::mt19937 random(7);
    std::exponential_distribution<double> pause(2.0);
    std::vector<double> requests;

    while (requests.size() < 2000) {
        throttler->throttle();
        requests.push_back(time_.now().count());
        time_.runFor(Seconds(pause(random)));
    }
    time_.runFor(Seconds(1));

    ASSERT_FALSE(calls_.empty());
    for (std::size_t index = 1; index < calls_.size(); ++index) {
        ASSERT_GE(calls_[index] - calls_[index - 1], 1.0 - 1e-6);
    }
    auto call = calls_.begin();
    for (const double request : requests) {
        while (call != calls_.end() && *call < request) {
            ++call;
        }
        ASSERT_NE(call, calls_.end()) << "nothing follows the request at " << request;
        ASSERT_LE(*call - request, 1.0 + 1e-6);
    }
}

TEST_F(ThrottlerTest, AWaitingRequestCanGoAtOnce) {
    const auto throttler = notingThrottler();

    throttler->fireNow();
    EXPECT_TRUE(calls_.empty()) << "nothing waited";

    throttler->throttle();
    runFor(0.25);
    throttler->fireNow();
    EXPECT_EQ(calls_, std::vector{0.25});
    EXPECT_FALSE(throttler->isWaiting());

    runFor(0.25);
    throttler->throttle();
    runFor(10);
    EXPECT_EQ(calls_, (std::vector{0.25, 1.5})) << "a whole new wait, and none left of the first";
}

TEST_F(ThrottlerTest, ItsCallbackMayDestroyIt) {
    for (const bool atOnce : {false, true}) {
        std::unique_ptr<Throttler> throttler;
        const auto held = std::make_shared<int>(42);
        int seen = 0;
        throttler = throttlerWith([&throttler, &seen, held] {
            throttler->throttle();
            throttler.reset();
            seen += *held;  // what the callback holds is still there
        });

        throttler->throttle();
        if (atOnce) {
            throttler->fireNow();
        }
        runFor(10);

        EXPECT_EQ(seen, 42);
        EXPECT_EQ(held.use_count(), 1);
    }
}

TEST_F(ThrottlerTest, ItsCallbackMayThrowAndMayRequestTheNextCall) {
    std::unique_ptr<Throttler> throttler;
    throttler = notingThrottler([&] {
        if (calls_.size() < 3) {
            throttler->throttle();
            EXPECT_TRUE(throttler->isWaiting());
        }
        throw std::runtime_error("no luck");
    });
    throttler->throttle();
    runFor(10);
    EXPECT_EQ(calls_, (std::vector{1.0, 2.0, 3.0}));
    throttler->throttle();
    EXPECT_THROW(throttler->fireNow(), std::runtime_error);
    EXPECT_FALSE(throttler->isWaiting());
}

}  // namespace
