#include "ReferenceHost/Execution/RealExecution.hpp"

#include "ReferenceHost/Execution/RealScheduler.hpp"
#include "ReferenceHost/Execution/RunLoop.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace ReferenceHost {

namespace {

using Base::Seconds;

constexpr Seconds patience{60};

TEST(RunLoopTest, TakesTheThreadThatRunsItForTheMainThread) {
    RunLoop loop;
    bool mainHere = false;
    EXPECT_TRUE(loop.isLoopThread());

    loop.post([&] {
        mainHere = loop.isLoopThread();
        loop.stop();
    });
    std::thread main([&] { loop.run(); });
    main.join();

    EXPECT_TRUE(mainHere);
    EXPECT_FALSE(loop.isLoopThread());
}

TEST(RunLoopTest, HandsOutWhatAJobThrowsAndKeepsTheOthers) {
    RunLoop loop;
    bool ran = false;
    loop.post([] { throw std::runtime_error("A job failed"); });
    loop.post([&] { ran = true; });

    EXPECT_THROW(loop.run(), std::runtime_error);
    EXPECT_TRUE(loop.runUntil([&] { return ran; }, patience));
    EXPECT_THROW(loop.post([&] { loop.run(); }); loop.run(), std::logic_error);
}

TEST(RunLoopTest, StopsForALimitAndForAStop) {
    RunLoop loop;
    loop.postAfter(Seconds(0.001), [&] { loop.stop(); });
    EXPECT_FALSE(loop.runUntil([] { return false; }, patience));
    EXPECT_FALSE(loop.runUntil([] { return false; }, Seconds(0.002)));

    std::function<void()> again = [&] { loop.post(again); };
    loop.post(again);
    EXPECT_FALSE(loop.runUntil([] { return false; }, Seconds(0.002))) << "Jobs without end hold up no limit.";
}

TEST(RealSchedulerTest, RunsOneJobAtATimeInTheOrderOfTheirTimes) {
    RunLoop loop;
    RealScheduler scheduler;
    std::vector<int> order;  // no lock: one job at a time
    std::atomic<bool> done{false};

    scheduler.postAfter(Seconds(0.02), [&] { order.push_back(3); });
    scheduler.postAfter(Seconds(0.01), [&] { order.push_back(2); });
    scheduler.postAfter(Seconds(0), [&] {
        order.push_back(1);
        scheduler.postAfter(Seconds(0.03), [&] { done = true; });
    });
    EXPECT_TRUE(loop.runUntil([&] { return done.load(); }, patience));

    EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TEST(RealSchedulerTest, DestroysWhatHasNotRun) {
    auto owned = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = owned;
    {
        RealScheduler scheduler;
        scheduler.postAfter(Seconds(3600), [owned = std::move(owned)] {});
    }
    EXPECT_TRUE(watched.expired());
}

/// Two hosts on one loop, one pool and one scheduler.
class SharedLoopTest : public testing::Test {
protected:
    RunLoop loop;
    WorkerPool pool{2};
    RealScheduler scheduler;
    RealExecution ann{loop, pool, scheduler, "Ann"};
    RealExecution bob{loop, pool, scheduler, "Bob"};
};

TEST_F(SharedLoopTest, StopsOneHostWhileTheOtherGoesOn) {
    std::atomic<int> annsJobs{0};
    std::atomic<int> bobsJobs{0};
    auto owned = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = owned;
    const auto postTo = [&](RealExecution& execution, std::atomic<int>& jobs) {
        execution.postToMain([&jobs, owned] { ++jobs; });
        execution.postToMainAfter(Seconds(0.005), [&jobs, owned] { ++jobs; });
        execution.sleep(std::chrono::milliseconds(5), [&jobs, owned](const Base::Result<void>&) { ++jobs; });
        (void)execution.startTimer(Seconds(0.005), Seconds(0), [&jobs, owned] { ++jobs; });
    };
    postTo(ann, annsJobs);
    postTo(bob, bobsJobs);
    owned.reset();

    ann.stop();
    EXPECT_TRUE(loop.runUntil([&] { return bobsJobs == 4; }, patience));

    EXPECT_EQ(annsJobs, 0);
    EXPECT_TRUE(loop.runUntil([&] { return watched.expired(); }, patience));
}

TEST_F(SharedLoopTest, WaitsForTheJobsThatRunBeforeItHasStopped) {
    std::atomic<bool> started{false};
    std::atomic<bool> goOn{false};
    std::atomic<bool> ended{false};
    ann.postToBackground([&] {
        started = true;
        while (!goOn) {
            std::this_thread::yield();
        }
        ended = true;
    });
    ASSERT_TRUE(loop.runUntil([&] { return started.load(); }, patience));

    std::thread releaser([&] { goOn = true; });
    ann.stop();
    EXPECT_TRUE(ended);
    releaser.join();
}

TEST_F(SharedLoopTest, RefusesToStopInsideAJob) {
    bool refused = false;
    ann.postToMain([&] {
        try {
            ann.stop();
        } catch (const std::logic_error&) {
            refused = true;
        }
    });
    EXPECT_TRUE(loop.runUntil([&] { return refused; }, patience));
}

}  // namespace

}  // namespace ReferenceHost
