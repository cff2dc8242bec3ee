#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "Tests/HostContract/NamedHost.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

/// The contract of `Base::ExecutionProtocol` as tests, for any host. Include this header in one source file of a test
/// program, derive a fixture, and instantiate `ExecutionContract` with it. The suite asks for "not before" and for order,
/// never for "not later than": it passes on a slow machine.
namespace HostContract {

/// One host's execution under test. Made, used and destroyed on the test's thread, which counts as the main thread.
class ExecutionFixture {
public:
    virtual ~ExecutionFixture() = default;

    [[nodiscard]] virtual Base::ExecutionProtocol& execution() = 0;

    /// The host's clock, from some fixed moment on.
    [[nodiscard]] virtual Base::Seconds now() = 0;

    /// Runs the main loop on this thread until the predicate holds. False when the host gives up (after long).
    [[nodiscard]] virtual bool runUntil(const std::function<bool()>& predicate) = 0;

    /// Shuts the execution down: afterwards no job runs, and those that have not run are destroyed.
    virtual void stop() = 0;
};

using ExecutionHost = NamedHost<ExecutionFixture>;

class ExecutionContract : public testing::TestWithParam<ExecutionHost> {
protected:
    using Seconds = Base::Seconds;

    Base::ExecutionProtocol& execution() { return fixture_->execution(); }
    Seconds now() { return fixture_->now(); }
    void stop() { fixture_->stop(); }

    void runUntil(const std::function<bool()>& predicate) {
        ASSERT_TRUE(fixture_->runUntil(predicate)) << "The host did not get there.";
    }

    /// What is due on the main thread within so many seconds.
    void runMainJobs(double seconds) {
        bool ran = false;
        execution().postToMainAfter(Seconds(seconds), [&] { ran = true; });
        runUntil([&] { return ran; });
    }

    /// Times are sums of binary fractions: a nanosecond is no earlier.
    void expectNoEarlier(double expected, Seconds start) {
        EXPECT_GE(now().count(), start.count() + expected - 1e-9);
    }

private:
    std::shared_ptr<ExecutionFixture> fixture_ = GetParam().make();
};

TEST_P(ExecutionContract, RunsMainJobsInTheirOrderNeverInsideThePostNorBeforeTheirTime) {
    std::vector<double> order;
    const auto job = [&order](double number) { return [&order, number] { order.push_back(number); }; };
    execution().postToMain([&] {
        execution().postToMain(job(4));
        EXPECT_TRUE(order.empty()) << "Nothing runs inside the posting.";
    });
    execution().postToMain(job(1));
    execution().postToMain(job(2));
    execution().postToMainAfter(Seconds(0), job(3));
    EXPECT_TRUE(order.empty());
    runUntil([&] { return order.size() == 4; });

    const Seconds start = now();
    for (const double delay : {3600.0, 0.01, 0.02, 0.03}) {
        execution().postToMainAfter(Seconds(delay), [this, &order, delay, start] {
            expectNoEarlier(delay, start);
            order.push_back(delay);
        });
    }
    runUntil([&] { return order.size() == 7; });
    EXPECT_EQ(order, (std::vector<double>{1, 2, 3, 4, 0.01, 0.02, 0.03}));
    stop();  // before what the last job refers to goes
}

TEST_P(ExecutionContract, KeepsTheOrderOfEachPosterAndKeepsTheMainThreadApart) {
    std::vector<std::vector<int>> received(6);
    int total = 0;  // no lock: the main thread's alone, which the thread sanitizer checks
    for (auto& numbers : received) {
        execution().postToBackground([&, this] {
            EXPECT_FALSE(execution().isMainThread());
            for (int number = 0; number < 200; ++number) {
                execution().postToMain([&, this, number] {
                    EXPECT_TRUE(execution().isMainThread());
                    numbers.push_back(number);
                    ++total;
                });
            }
        });
    }
    runUntil([&] { return total == 6 * 200; });

    for (const auto& numbers : received) {
        EXPECT_TRUE(std::ranges::is_sorted(numbers));
    }
}

TEST_P(ExecutionContract, FiresATimerOnceOnTheMainThreadNoEarlierUnlessItIsInvalidated) {
    auto owned = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = owned;
    const auto never = execution().startTimer(Seconds(0.01), Seconds(0), [owned] { ADD_FAILURE(); });
    owned.reset();
    never->invalidate();
    EXPECT_TRUE(watched.expired()) << "Its job is destroyed at once.";
    never->invalidate();

    const Seconds start = now();
    std::shared_ptr<Base::TimerProtocol> timer;
    int fired = 0;
    owned = std::make_shared<int>(0);
    const std::weak_ptr<int> within = owned;
    timer = execution().startTimer(Seconds(0.02), Seconds(0), [&, owned = std::move(owned)] {
        timer->invalidate();
        fired += ++*owned;  // which is still there
    });
    (void)execution().startTimer(Seconds(0.02), Seconds(0.01), [&] {
        ++fired;
        EXPECT_TRUE(execution().isMainThread());
        expectNoEarlier(0.02, start);
    });
    runUntil([&] { return fired >= 2; });
    runMainJobs(0.05);

    EXPECT_EQ(fired, 2);
    EXPECT_TRUE(within.expired());
}

TEST_P(ExecutionContract, CompletesASleepOnceNoEarlierAndOccupiesNoThreadMeanwhile) {
    const Seconds start = now();
    std::atomic<int> completions{0};
    for (int i = 0; i < 64; ++i) {
        execution().sleep(std::chrono::hours(1), [](const Base::Result<void>&) {});
    }
    execution().sleep(std::chrono::nanoseconds(20'000'001), [&](const Base::Result<void>& result) {
        EXPECT_TRUE(result.succeeded());
        expectNoEarlier(0.020000001, start);
        execution().postToBackground([&] { ++completions; });
    });
    runUntil([&] { return completions > 0; });
    runMainJobs(0.03);
    EXPECT_EQ(completions, 1);
    EXPECT_LT(now() - start, std::chrono::hours(1));
}

TEST_P(ExecutionContract, DestroysAJobOnceItHasRunAndWhatIsLeftWhenItStops) {
    auto owned = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = owned;
    execution().postToMain([owned] {});
    execution().postToMainAfter(Seconds(0.001), [owned] {});
    execution().postToBackground([owned] {});
    execution().sleep(std::chrono::milliseconds(1), [owned](const Base::Result<void>&) {});
    owned.reset();
    runUntil([&] { return watched.expired(); });

    const auto fail = [] { ADD_FAILURE() << "ran after the stop"; };
    // Posts once more when it is destroyed, as an object may that cleans up after itself.
    std::shared_ptr<void> cleansUp(nullptr, [this, fail](void*) { execution().postToMain(fail); });
    const std::weak_ptr<void> left = cleansUp;
    Base::Job job = [fail, cleansUp = std::move(cleansUp)] { fail(); };
    execution().postToMain(job);
    execution().postToMainAfter(Seconds(3600), job);
    execution().sleep(std::chrono::hours(1), [job](const Base::Result<void>&) { job(); });
    const auto timer = execution().startTimer(Seconds(3600), Seconds(0), job);
    job = nullptr;
    stop();
    EXPECT_TRUE(left.expired());
    timer->invalidate();
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ExecutionContract);

}  // namespace HostContract
