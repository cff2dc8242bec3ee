#include "ReferenceHost/Execution/VirtualTime.hpp"

#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace ReferenceHost {

namespace {

using Base::Seconds;

/// Work of two hosts and a service that post to each other, written down with its times as it runs.
std::vector<std::string> runSomeWork(std::uint64_t seed) {
    VirtualTime time(seed);
    VirtualExecution ann(time, "Ann", nullptr, {.timersUseTolerance = true});
    VirtualExecution bob(time, "Bob");
    VirtualScheduler service(time);
    std::vector<std::string> log;
    const auto note = [&](const std::string& what) {
        log.push_back(what + " at " + std::to_string(time.now().count()));
    };
    for (int i = 0; i < 20; ++i) {
        const std::string number = std::to_string(i);
        ann.postToBackground([&, number] {
            note("Ann works " + number);
            bob.postToMain([&, number] { note("Bob hears " + number); });
        });
        ann.postToMain([&, number] { note("Ann " + number); });
        service.postAfter(Seconds(0.1), [&, number] { note("service " + number); });
        (void)ann.startTimer(Seconds(1), Seconds(0.5), [&, number] { note("timer " + number); });
    }
    EXPECT_TRUE(time.runUntilIdle(Seconds(10)));
    return log;
}

TEST(VirtualTimeTest, RepeatsARunFromItsSeedAndVariesItWithTheSeed) {
    const auto first = runSomeWork(7);

    EXPECT_EQ(first, runSomeWork(7));
    std::set<std::vector<std::string>> different;
    for (std::uint64_t seed = 0; seed < 10; ++seed) {
        different.insert(runSomeWork(seed));
    }
    EXPECT_EQ(different.size(), 10U);
}

TEST(VirtualTimeTest, LetsTimePassOnlyWhenNoWorkIsLeftForTheMoment) {
    VirtualTime time(1);
    VirtualExecution execution(time);
    std::vector<double> times;
    const auto note = [&] { times.push_back(time.now().count()); };

    execution.postToMainAfter(Seconds(3600), note);
    execution.postToMain([&] {
        note();
        execution.postToBackground([&] {
            note();
            execution.postToMainAfter(Seconds(0.5), note);
        });
    });

    EXPECT_TRUE(time.runUntilIdle(Seconds(7200)));
    EXPECT_EQ(times, (std::vector<double>{0, 0, 0.5, 3600}));
    EXPECT_FALSE(time.runOne());
}

TEST(VirtualTimeTest, StopsAtALimitAndGoesOnFromThere) {
    VirtualTime time(1);
    VirtualExecution execution(time);
    int ran = 0;
    for (const double delay : {1.0, 2.0, 3.0}) {
        execution.postToMainAfter(Seconds(delay), [&] { ++ran; });
    }

    time.runFor(Seconds(1));
    EXPECT_EQ(ran, 1) << "What is due at the end belongs to the time that passes.";
    EXPECT_FALSE(time.runUntilIdle(Seconds(0.5)));
    EXPECT_EQ(time.now(), Seconds(1.5));
    EXPECT_TRUE(time.runUntil([&] { return ran == 2; }, Seconds(10)));
    EXPECT_EQ(time.now(), Seconds(2));
    EXPECT_FALSE(time.runUntil([&] { return ran == 99; }, Seconds(0.5)));
    EXPECT_EQ(time.now(), Seconds(2.5));
    EXPECT_FALSE(time.runUntil([&] { return ran == 99; }, Seconds(100)));
    EXPECT_EQ(time.now(), Seconds(3)) << "Nothing is left to wait for.";
    time.runFor(Seconds(2));
    EXPECT_EQ(time.now(), Seconds(5));
}

TEST(VirtualTimeTest, HandsOutWhatAJobThrowsAndKeepsTheOthers) {
    VirtualTime time(1);
    VirtualExecution execution(time);
    bool ran = false;
    execution.postToMain([] { throw std::runtime_error("A job failed"); });
    execution.postToMain([&] { ran = true; });

    EXPECT_THROW((void)time.runUntilIdle(Seconds(1)), std::runtime_error);
    EXPECT_TRUE(execution.isMainThread());
    EXPECT_TRUE(time.runUntilIdle(Seconds(1)));
    EXPECT_TRUE(ran);
}

TEST(VirtualTimeTest, RefusesToRunInsideAJobAndToLoopForever) {
    VirtualTime time(1);
    VirtualExecution execution(time);
    execution.postToMain([] {});
    execution.postToMain([&] { (void)time.runOne(); });
    execution.postToMain([] {});
    EXPECT_THROW((void)time.runUntilIdle(Seconds(1)), std::logic_error);

    std::function<void()> again = [&] { execution.postToMain(again); };
    execution.postToMain(again);
    time.setMaximumJobsPerInstant(1000);
    EXPECT_THROW((void)time.runUntilIdle(Seconds(1)), std::runtime_error);
}

TEST(VirtualTimeTest, GivesEachHostItsOwnIdeaOfTheMainThread) {
    VirtualTime time(1);
    VirtualExecution ann(time);
    VirtualExecution bob(time);
    VirtualScheduler service(time);
    std::vector<bool> annIsMain;
    const auto note = [&] { annIsMain.push_back(ann.isMainThread()); };

    ann.postToMain(note);
    EXPECT_TRUE(time.runUntilIdle(Seconds(1)));
    bob.postToMain(note);
    EXPECT_TRUE(time.runUntilIdle(Seconds(1)));
    ann.postToBackground(note);
    EXPECT_TRUE(time.runUntilIdle(Seconds(1)));
    service.postAfter(Seconds(0), note);
    ann.sleep(std::chrono::seconds(1), [&](const Base::Result<void>&) { note(); });
    EXPECT_TRUE(time.runUntilIdle(Seconds(1)));

    EXPECT_EQ(annIsMain, (std::vector<bool>{true, false, false, false, false}));
}

TEST(VirtualTimeTest, DoesNotWaitForInvalidatedTimers) {
    VirtualTime time(1);
    VirtualExecution execution(time);
    bool fired = false;

    execution.startTimer(Seconds(15), Seconds(1), [&] { fired = true; })->invalidate();
    // Due, so that it stands in the main thread's queue when it is invalidated.
    const auto due = execution.startTimer(Seconds(0), Seconds(0), [&] { fired = true; });
    due->invalidate();

    EXPECT_TRUE(time.runUntilIdle(Seconds(60)));
    EXPECT_FALSE(fired);
    EXPECT_EQ(time.now(), Seconds(0));
}

TEST(VirtualTimeTest, FiresTimersAnywhereWithinTheirToleranceOnDemand) {
    VirtualTime time(1);
    VirtualExecution exact(time, "exact");
    VirtualExecution varied(time, "varied", nullptr, {.timersUseTolerance = true});
    std::set<double> exactTimes;
    std::set<double> variedTimes;
    for (int i = 0; i < 10; ++i) {
        (void)exact.startTimer(Seconds(15), Seconds(1), [&] { exactTimes.insert(time.now().count()); });
        (void)varied.startTimer(Seconds(15), Seconds(1), [&] { variedTimes.insert(time.now().count()); });
    }

    EXPECT_TRUE(time.runUntilIdle(Seconds(60)));

    EXPECT_EQ(exactTimes, std::set<double>{15});
    EXPECT_EQ(variedTimes.size(), 10U);
    EXPECT_GE(*variedTimes.begin(), 15);
    EXPECT_LE(*variedTimes.rbegin(), 16);
}

TEST(VirtualTimeTest, FailsSleepsOnDemand) {
    VirtualTime time(1);
    VirtualExecution execution(time);
    bool failed = false;
    execution.setSleepsAreCancelled(true);

    execution.sleep(std::chrono::seconds(2),
                    [&](const Base::Result<void>& result) { failed = !result.succeeded(); });
    EXPECT_FALSE(failed);
    EXPECT_TRUE(time.runUntilIdle(Seconds(60)));

    EXPECT_TRUE(failed);
    EXPECT_EQ(time.now(), Seconds(0));
}

TEST(VirtualTimeTest, MayGoBeforeAndAfterItsHostsWithJobsLeft) {
    auto owned = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = owned;
    auto time = std::make_unique<VirtualTime>(1);
    auto first = std::make_unique<VirtualExecution>(*time);
    VirtualExecution second(*time);
    for (VirtualExecution* execution : {first.get(), &second}) {
        execution->postToMain([owned] {});
        execution->postToMainAfter(Seconds(1), [owned] {});
        execution->sleep(std::chrono::seconds(1), [owned](const Base::Result<void>&) {});
        // A job whose end posts another, at a time when its own host takes none any more.
        execution->postToBackground([owned, last = std::shared_ptr<void>(nullptr, [execution, owned](void*) {
                                                execution->postToMain([owned] {});
                                            })] {});
    }
    owned.reset();

    first.reset();
    EXPECT_FALSE(watched.expired());
    time.reset();
    EXPECT_TRUE(watched.expired());
    second.postToMain([] {});
    EXPECT_TRUE(second.isMainThread());
}

}  // namespace

}  // namespace ReferenceHost
