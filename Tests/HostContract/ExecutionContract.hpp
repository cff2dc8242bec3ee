#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "Tests/HostContract/NamedHost.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// The contract of `Base::ExecutionProtocol` as tests, for any host. Include this header in one source file of a test
/// program, derive a fixture, and instantiate:
///
///     INSTANTIATE_TEST_SUITE_P(MyHost, ExecutionContract, testing::Values(HostContract::ExecutionHost(
///         "MyHost", [] { return std::make_unique<MyFixture>(); })), HostContract::nameOf<HostContract::ExecutionHost>);
///
/// The suite asks for "not before" and for order, never for "not later than": it passes on a slow machine.
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
    Base::ExecutionProtocol& execution() { return fixture_->execution(); }
    Base::Seconds now() { return fixture_->now(); }
    void stop() { fixture_->stop(); }

    void runUntil(const std::function<bool()>& predicate) {
        ASSERT_TRUE(fixture_->runUntil(predicate)) << "The host did not get there.";
    }

    /// Everything that is posted to the main thread before runs, and what is due there within so many seconds.
    void runMainJobs(double seconds = 0) {
        bool ran = false;
        execution().postToMainAfter(Base::Seconds(seconds), [&] { ran = true; });
        runUntil([&] { return ran; });
    }

    /// Times are sums of binary fractions: a nanosecond is no earlier.
    void expectNoEarlier(double expected, Base::Seconds start) {
        EXPECT_GE(now().count(), start.count() + expected - 1e-9);
    }

private:
    std::shared_ptr<ExecutionFixture> fixture_ = GetParam().make();
};

TEST_P(ExecutionContract, RunsMainJobsInTheOrderOfPostingAndNeverInsideThePost) {
    std::vector<int> order;
    execution().postToMain([&] {
        execution().postToMain([&] { order.push_back(4); });
        EXPECT_TRUE(order.empty()) << "Nothing runs inside the posting.";
        order.push_back(1);
    });
    execution().postToMain([&] { order.push_back(2); });
    execution().postToMainAfter(Base::Seconds(0), [&] { order.push_back(3); });
    EXPECT_TRUE(order.empty());
    runUntil([&] { return order.size() == 4; });

    EXPECT_EQ(order, (std::vector<int>{1, 2, 3, 4}));
}

TEST_P(ExecutionContract, KeepsTheOrderOfEachPosterAndKeepsTheMainThreadApart) {
    constexpr int posters = 6;
    constexpr int jobsEach = 200;
    std::vector<std::vector<int>> received(posters);
    int total = 0;  // no lock: the main thread's alone, which the thread sanitizer checks
    std::atomic<int> onWrongThread{0};
    for (std::size_t poster = 0; poster < posters; ++poster) {
        execution().postToBackground([&, poster] {
            onWrongThread += execution().isMainThread() ? 1 : 0;
            for (int number = 0; number < jobsEach; ++number) {
                execution().postToMain([&, poster, number] {
                    onWrongThread += execution().isMainThread() ? 0 : 1;
                    received[poster].push_back(number);
                    ++total;
                });
            }
        });
    }
    runUntil([&] { return total == posters * jobsEach; });

    for (const auto& numbers : received) {
        EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
    }
    EXPECT_EQ(onWrongThread, 0);
    EXPECT_TRUE(execution().isMainThread());
}

TEST_P(ExecutionContract, RunsDelayedMainJobsNoEarlierAndInTheOrderOfTheirTimes) {
    const Base::Seconds start = now();
    std::vector<double> ran;
    for (const double delay : {3600.0, 0.01, 0.02, 0.03}) {
        execution().postToMainAfter(Base::Seconds(delay), [this, &ran, delay, start] {
            expectNoEarlier(delay, start);
            ran.push_back(delay);
        });
    }
    runUntil([&] { return ran.size() == 3; });

    EXPECT_EQ(ran, (std::vector<double>{0.01, 0.02, 0.03}));
    stop();  // before what the last job refers to goes
}

TEST_P(ExecutionContract, FiresATimerOnceOnTheMainThreadNoEarlierAlsoWithoutItsHandle) {
    const Base::Seconds start = now();
    int fired = 0;
    (void)execution().startTimer(Base::Seconds(0.02), Base::Seconds(0.01), [&] {
        ++fired;
        EXPECT_TRUE(execution().isMainThread());
        expectNoEarlier(0.02, start);
    });
    EXPECT_EQ(fired, 0);
    runUntil([&] { return fired > 0; });
    runMainJobs(0.05);

    EXPECT_EQ(fired, 1);
}

TEST_P(ExecutionContract, DestroysATimersJobWhenItIsInvalidatedBeforeItOrWithinIt) {
    auto owned = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = owned;
    const auto never = execution().startTimer(Base::Seconds(0.01), Base::Seconds(0), [owned] { ++*owned; });
    owned.reset();
    never->invalidate();
    EXPECT_TRUE(watched.expired());
    never->invalidate();
    runMainJobs(0.03);

    owned = std::make_shared<int>(0);
    const std::weak_ptr<int> second = owned;
    std::shared_ptr<Base::TimerProtocol> timer;
    bool fired = false;
    timer = execution().startTimer(Base::Seconds(0.005), Base::Seconds(0), [&, owned = std::move(owned)] {
        timer->invalidate();
        fired = ++*owned == 1;
    });
    runUntil([&] { return fired; });
    runMainJobs();
    EXPECT_TRUE(second.expired());
    timer->invalidate();
}

TEST_P(ExecutionContract, CompletesASleepOnceNoEarlierAndOccupiesNoThreadMeanwhile) {
    const Base::Seconds start = now();
    std::atomic<int> completions{0};
    for (int i = 0; i < 64; ++i) {
        execution().sleep(std::chrono::hours(1), [](const Base::Result<void>&) {});
    }
    execution().sleep(std::chrono::nanoseconds(20'000'001), [&](const Base::Result<void>& result) {
        EXPECT_TRUE(result.succeeded());
        expectNoEarlier(0.020000001, start);
        execution().postToBackground([&] { ++completions; });
    });
    EXPECT_EQ(completions, 0);
    runUntil([&] { return completions > 0; });
    runMainJobs(0.03);

    EXPECT_EQ(completions, 1);
    EXPECT_LT(now() - start, std::chrono::hours(1));
}

/// Posts once more to the execution when it is destroyed, as an object may that cleans up after itself.
class PostsWhenDestroyed {
public:
    explicit PostsWhenDestroyed(Base::ExecutionProtocol& execution) : execution_(execution) {}
    ~PostsWhenDestroyed() {
        execution_.postToMain([] { ADD_FAILURE() << "ran after the stop"; });
        execution_.postToBackground([] { ADD_FAILURE() << "ran after the stop"; });
    }
    PostsWhenDestroyed(const PostsWhenDestroyed&) = delete;
    PostsWhenDestroyed& operator=(const PostsWhenDestroyed&) = delete;

private:
    Base::ExecutionProtocol& execution_;
};

TEST_P(ExecutionContract, DestroysAJobOnceItHasRunAndWhatIsLeftWhenItStops) {
    auto owned = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = owned;
    execution().postToMain([owned] {});
    execution().postToMainAfter(Base::Seconds(0.001), [owned] {});
    execution().postToBackground([owned] {});
    execution().sleep(std::chrono::milliseconds(1), [owned](const Base::Result<void>&) {});
    owned.reset();
    runUntil([&] { return watched.expired(); });

    bool ran = false;
    auto cleansUp = std::make_shared<PostsWhenDestroyed>(execution());
    const std::weak_ptr<PostsWhenDestroyed> left = cleansUp;
    Base::Job job = [&ran, cleansUp = std::move(cleansUp)] { ran = true; };
    execution().postToMain(job);
    execution().postToMainAfter(Base::Seconds(3600), job);
    execution().sleep(std::chrono::hours(1), [job](const Base::Result<void>&) { job(); });
    const auto timer = execution().startTimer(Base::Seconds(3600), Base::Seconds(0), job);
    job = nullptr;
    stop();
    EXPECT_TRUE(left.expired());
    execution().postToMain([&ran] { ran = true; });
    timer->invalidate();

    EXPECT_FALSE(ran);
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ExecutionContract);

}  // namespace HostContract
