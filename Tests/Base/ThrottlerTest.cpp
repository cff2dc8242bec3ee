#include "Base/Throttler.hpp"

#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualTime.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <stdexcept>
#include <vector>

namespace {

using Base::Seconds;
using Base::Throttler;

/// A throttler of one second, which notes when its callback runs.
class ThrottlerTest : public testing::Test {
protected:
    void runFor(double seconds) { time.runFor(Seconds(seconds)); }

    ReferenceHost::VirtualTime time{1};
    ReferenceHost::VirtualExecution execution{time};
    std::vector<double> calls;
    std::function<void()> more = [] {};
    std::unique_ptr<Throttler> throttler = std::make_unique<Throttler>(execution, Seconds(1), [this] {
        EXPECT_TRUE(execution.isMainThread());
        calls.push_back(time.now().count());
        more();
    });
};

TEST_F(ThrottlerTest, ABurstEndsInOneCallWhenTheIntervalIsOver) {
    for (int i = 0; i < 3; ++i) {
        throttler->throttle();
        EXPECT_TRUE(throttler->isWaiting());
        runFor(0.25);
    }
    runFor(10);
    EXPECT_EQ(calls, std::vector{1.0});
    EXPECT_FALSE(throttler->isWaiting());

    throttler->throttle();
    throttler.reset();
    runFor(10);
    EXPECT_EQ(calls.size(), 1U) << "destroyed while waiting";
}

TEST_F(ThrottlerTest, UnderAnyLoadItFiresAtMostOnceAnIntervalAndAfterEachRequest) {
    std::mt19937 random(7);
    std::exponential_distribution<double> pause(2.0);
    std::vector<double> requests;
    while (requests.size() < 2000) {
        throttler->throttle();
        requests.push_back(time.now().count());
        runFor(pause(random));
    }
    runFor(1);

    for (std::size_t index = 1; index < calls.size(); ++index) {
        ASSERT_GE(calls[index] - calls[index - 1], 1.0 - 1e-6);
    }
    for (const double request : requests) {
        const auto call = std::ranges::lower_bound(calls, request);
        ASSERT_NE(call, calls.end()) << "nothing follows the request at " << request;
        ASSERT_LE(*call - request, 1.0 + 1e-6);
    }
}

TEST_F(ThrottlerTest, AWaitingRequestCanGoAtOnce) {
    throttler->fireNow();
    EXPECT_TRUE(calls.empty()) << "nothing waited";
    throttler->throttle();
    runFor(0.25);
    throttler->fireNow();
    EXPECT_FALSE(throttler->isWaiting());
    runFor(0.25);
    throttler->throttle();
    runFor(10);
    EXPECT_EQ(calls, (std::vector{0.25, 1.5})) << "a whole new wait, and none left of the first";
}

TEST_F(ThrottlerTest, ItsCallbackMayDestroyIt) {
    for (const bool atOnce : {false, true}) {
        const auto held = std::make_shared<int>(0);
        throttler = std::make_unique<Throttler>(execution, Seconds(1), [this, held] {
            throttler->throttle();
            throttler.reset();
            ++*held;  // what the callback holds is still there
        });
        throttler->throttle();
        if (atOnce) {
            throttler->fireNow();
        }
        runFor(10);
        EXPECT_EQ(*held, 1);
        EXPECT_EQ(held.use_count(), 1);
    }
}

TEST_F(ThrottlerTest, ItsCallbackMayThrowAndMayRequestTheNextCall) {
    more = [this] {
        if (calls.size() < 3) {
            throttler->throttle();
        }
        throw std::runtime_error("no luck");
    };
    throttler->throttle();
    runFor(10);
    EXPECT_EQ(calls, (std::vector{1.0, 2.0, 3.0}));
    throttler->throttle();
    EXPECT_THROW(throttler->fireNow(), std::runtime_error);
    EXPECT_FALSE(throttler->isWaiting());
}

}  // namespace
