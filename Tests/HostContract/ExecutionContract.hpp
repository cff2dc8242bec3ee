#pragma once

#include "Base/ExecutionProtocol.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <ostream>
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

struct ExecutionHost {
    ExecutionHost(std::string name_, std::function<std::unique_ptr<ExecutionFixture>()> make_)
        : name(std::move(name_)), make(std::move(make_)) {}
    std::string name;
    std::function<std::unique_ptr<ExecutionFixture>()> make;

    friend void PrintTo(const ExecutionHost& host, std::ostream* stream) { *stream << host.name; }
};

template <typename Host>
std::string nameOf(const testing::TestParamInfo<Host>& info) {
    return info.param.name;
}

class ExecutionContract : public testing::TestWithParam<ExecutionHost> {
protected:
    ExecutionContract() : fixture_(GetParam().make()) {}

    Base::ExecutionProtocol& execution() { return fixture_->execution(); }
    Base::Seconds now() { return fixture_->now(); }
    void stop() { fixture_->stop(); }

    void runUntil(const std::function<bool()>& predicate) {
        ASSERT_TRUE(fixture_->runUntil(predicate)) << "The host did not get there.";
    }

    /// Until everything that was posted to the main thread before has run.
    void runMainJobs() {
        bool ran = false;
        execution().postToMain([&] { ran = true; });
        runUntil([&] { return ran; });
    }

private:
    std::unique_ptr<ExecutionFixture> fixture_;
};

/// Clocks and delays are doubles: a nanosecond is no earlier.
inline bool isNoEarlier(Base::Seconds actual, Base::Seconds expected) {
    return actual.count() >= expected.count() - 1e-9;
}

TEST_P(ExecutionContract, RunsMainJobsInTheOrderOfPostingAndNeverInsideThePost) {
    std::vector<int> order;
    bool insideAJob = false;
    bool overlapped = false;
    const auto job = [&](int number, const std::function<void()>& body = nullptr) {
        return [&, number, body] {
            overlapped = overlapped || insideAJob;
            insideAJob = true;
            order.push_back(number);
            if (body) {
                body();
            }
            insideAJob = false;
        };
    };

    execution().postToMain(job(1, [&] { execution().postToMain(job(4)); }));
    execution().postToMain(job(2));
    execution().postToMainAfter(Base::Seconds(0), job(3));
    EXPECT_TRUE(order.empty());
    runUntil([&] { return order.size() == 4; });

    EXPECT_EQ(order, (std::vector<int>{1, 2, 3, 4}));
    EXPECT_FALSE(overlapped);
}

TEST_P(ExecutionContract, TellsTheMainThreadFromTheBackground) {
    bool mainInMainJob = false;
    std::atomic<int> backgroundJobs{0};
    std::atomic<int> backgroundJobsOnMain{0};

    EXPECT_TRUE(execution().isMainThread());
    execution().postToMain([&] { mainInMainJob = execution().isMainThread(); });
    for (int i = 0; i < 20; ++i) {
        execution().postToBackground([&] {
            backgroundJobsOnMain += execution().isMainThread() ? 1 : 0;
            ++backgroundJobs;
        });
    }
    runMainJobs();
    runUntil([&] { return backgroundJobs == 20; });

    EXPECT_TRUE(mainInMainJob);
    EXPECT_EQ(backgroundJobsOnMain, 0);
    EXPECT_TRUE(execution().isMainThread());
}

TEST_P(ExecutionContract, KeepsTheOrderOfEachPosterAndRunsMainJobsOneAtATime) {
    constexpr int posters = 6;
    constexpr int jobsEach = 200;
    std::vector<std::vector<int>> received(posters);
    int total = 0;  // no lock: the main thread's alone, which the thread sanitizer checks

    for (int poster = 0; poster < posters; ++poster) {
        execution().postToBackground([&, poster] {
            for (int number = 0; number < jobsEach; ++number) {
                execution().postToMain([&, poster, number] {
                    received[static_cast<std::size_t>(poster)].push_back(number);
                    ++total;
                });
            }
        });
    }
    runUntil([&] { return total == posters * jobsEach; });

    for (const auto& numbers : received) {
        EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
        EXPECT_EQ(numbers.size(), static_cast<std::size_t>(jobsEach));
    }
}

TEST_P(ExecutionContract, RunsDelayedMainJobsNoEarlierAndInTheOrderOfTheirTimes) {
    const Base::Seconds start = now();
    std::vector<std::pair<double, Base::Seconds>> ran;
    const auto postAfter = [&](double delay) {
        execution().postToMainAfter(Base::Seconds(delay), [&, delay] { ran.emplace_back(delay, now()); });
    };

    postAfter(0.03);
    postAfter(0.01);
    postAfter(0.02);
    runUntil([&] { return ran.size() == 3; });

    ASSERT_EQ(ran.size(), 3U);
    for (std::size_t i = 0; i < ran.size(); ++i) {
        EXPECT_EQ(ran[i].first, 0.01 * static_cast<double>(i + 1));
        EXPECT_TRUE(isNoEarlier(ran[i].second, start + Base::Seconds(ran[i].first)));
    }
}

TEST_P(ExecutionContract, FiresATimerOnceOnTheMainThreadNoEarlierAlsoWithoutItsHandle) {
    const Base::Seconds start = now();
    int fired = 0;
    bool onMain = false;
    Base::Seconds firedAt{0};

    (void)execution().startTimer(Base::Seconds(0.02), Base::Seconds(0.01), [&] {
        ++fired;
        onMain = execution().isMainThread();
        firedAt = now();
    });
    EXPECT_EQ(fired, 0);
    runUntil([&] { return fired > 0; });
    bool later = false;
    execution().postToMainAfter(Base::Seconds(0.05), [&] { later = true; });
    runUntil([&] { return later; });

    EXPECT_EQ(fired, 1);
    EXPECT_TRUE(onMain);
    EXPECT_TRUE(isNoEarlier(firedAt, start + Base::Seconds(0.02)));
}

TEST_P(ExecutionContract, DestroysATimersJobWhenItIsInvalidated) {
    bool fired = false;
    auto owned = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = owned;
    const auto timer = execution().startTimer(Base::Seconds(0.01), Base::Seconds(0),
                                              [&fired, owned = std::move(owned)] { fired = true; });

    timer->invalidate();
    EXPECT_TRUE(watched.expired());
    timer->invalidate();
    bool later = false;
    execution().postToMainAfter(Base::Seconds(0.03), [&] { later = true; });
    runUntil([&] { return later; });

    EXPECT_FALSE(fired);
}

TEST_P(ExecutionContract, LetsATimerBeInvalidatedWithinAndAfterItsJob) {
    std::shared_ptr<Base::TimerProtocol> timer;
    auto owned = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = owned;
    bool fired = false;
    bool aliveAfterInvalidating = false;
    timer = execution().startTimer(Base::Seconds(0.005), Base::Seconds(0), [&, owned = std::move(owned)] {
        timer->invalidate();
        aliveAfterInvalidating = ++*owned == 1;
        fired = true;
    });

    runUntil([&] { return fired; });
    runMainJobs();

    EXPECT_TRUE(aliveAfterInvalidating);
    EXPECT_TRUE(watched.expired());
    timer->invalidate();
}

TEST_P(ExecutionContract, CompletesASleepOnceNoEarlier) {
    const Base::Seconds start = now();
    std::atomic<int> completions{0};
    std::atomic<bool> succeeded{false};
    std::atomic<double> completedAt{0};

    execution().sleep(std::chrono::nanoseconds(20'000'001), [&](const Base::Result<void>& result) {
        succeeded = result.succeeded();
        completedAt = now().count();
        ++completions;
    });
    EXPECT_EQ(completions, 0);
    runUntil([&] { return completions > 0; });

    EXPECT_TRUE(succeeded);
    EXPECT_TRUE(isNoEarlier(Base::Seconds(completedAt), start + Base::Seconds(0.020000001)));
    EXPECT_EQ(completions, 1);
}

TEST_P(ExecutionContract, SleepsWithoutOccupyingTheBackground) {
    std::atomic<bool> ran{false};
    const auto completion = [](const Base::Result<void>&) {};

    for (int i = 0; i < 64; ++i) {
        execution().sleep(std::chrono::hours(1), completion);
    }
    execution().postToBackground([&] { ran = true; });
    const Base::Seconds start = now();
    runUntil([&] { return ran.load(); });

    EXPECT_LT(now() - start, std::chrono::hours(1));
}

TEST_P(ExecutionContract, DestroysAJobOnceItHasRun) {
    auto owned = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = owned;

    execution().postToMain([owned] {});
    execution().postToMainAfter(Base::Seconds(0.001), [owned] {});
    execution().postToBackground([owned] {});
    execution().sleep(std::chrono::milliseconds(1), [owned](const Base::Result<void>&) {});
    owned.reset();
    runUntil([&] { return watched.expired(); });

    EXPECT_TRUE(watched.expired());
}

/// Posts once more to the execution when it is destroyed, as an object may that cleans up after itself.
class PostsWhenDestroyed {
public:
    PostsWhenDestroyed(Base::ExecutionProtocol& execution, bool& ran) : execution_(execution), ran_(ran) {}
    ~PostsWhenDestroyed() {
        execution_.postToMain([&ran = ran_] { ran = true; });
        execution_.postToBackground([&ran = ran_] { ran = true; });
    }
    PostsWhenDestroyed(const PostsWhenDestroyed&) = delete;
    PostsWhenDestroyed& operator=(const PostsWhenDestroyed&) = delete;

private:
    Base::ExecutionProtocol& execution_;
    bool& ran_;
};

TEST_P(ExecutionContract, RunsNothingAfterItStoppedAndDestroysWhatIsLeft) {
    bool ran = false;
    auto owned = std::make_shared<PostsWhenDestroyed>(execution(), ran);
    const std::weak_ptr<PostsWhenDestroyed> watched = owned;
    execution().postToMain([&ran, owned] { ran = true; });
    execution().postToMainAfter(Base::Seconds(3600), [&ran, owned] { ran = true; });
    execution().sleep(std::chrono::hours(1), [&ran, owned](const Base::Result<void>&) { ran = true; });
    const auto timer =
        execution().startTimer(Base::Seconds(3600), Base::Seconds(0), [&ran, owned] { ran = true; });
    owned.reset();

    stop();
    EXPECT_TRUE(watched.expired());
    execution().postToMain([&ran] { ran = true; });
    timer->invalidate();

    EXPECT_FALSE(ran);
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ExecutionContract);

}  // namespace HostContract
