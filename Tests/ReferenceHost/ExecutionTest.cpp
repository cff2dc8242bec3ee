// What the contract suite cannot ask: how virtual time passes, and how hosts that share a clock or threads get along.

#include "ReferenceHost/Execution/RealExecution.hpp"
#include "ReferenceHost/Execution/RealScheduler.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"
#include "ReferenceHost/Trace.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace ReferenceHost {

namespace {

using Base::Seconds;
using Log = std::vector<std::string>;

/// Work of two hosts and a service that post to each other, written down with its times as it runs.
Log runSomeWork(std::uint64_t seed) {
    VirtualTime time(seed);
    VirtualExecution ann(time, "Ann", nullptr, {.timersUseTolerance = true});
    VirtualExecution bob(time, "Bob");
    VirtualScheduler service(time);
    Log log;
    int annsJobs = 0;
    for (int i = 0; i < 20; ++i) {
        const auto note = [&, number = std::to_string(i)](const std::string& what) {
            log.push_back(what + number + " at " + std::to_string(time.now().count()));
        };
        ann.postToBackground([&, note] {
            EXPECT_FALSE(ann.isMainThread() || bob.isMainThread());
            note("Ann works ");
            bob.postToMain([&, note] {
                EXPECT_TRUE(bob.isMainThread() && !ann.isMainThread());
                note("Bob hears ");
            });
        });
        ann.postToMain([&, i] { EXPECT_EQ(annsJobs++, i) << "The main lane is first in, first out."; });
        service.postAfter(Seconds(0.1), [note] { note("service "); });
        (void)ann.startTimer(Seconds(1), Seconds(0.5), [note] { note("timer "); });
    }
    EXPECT_TRUE(time.runUntilIdle(Seconds(1.5))) << "No timer later than its tolerance.";
    return log;
}

TEST(VirtualTimeTest, RepeatsARunFromItsSeedAndVariesItWithTheSeed) {
    EXPECT_EQ(runSomeWork(7), runSomeWork(7));
    std::set<Log> different;
    for (std::uint64_t seed = 0; seed < 10; ++seed) {
        different.insert(runSomeWork(seed));
    }
    EXPECT_EQ(different.size(), 10U);
}

TEST(VirtualTimeTest, LetsTimePassOnlyWhenNoWorkIsLeftAndStopsAtALimit) {
    VirtualTime time(1);
    VirtualExecution execution(time);
    std::vector<double> times;
    const auto note = [&] { times.push_back(time.now().count()); };
    execution.postToMainAfter(Seconds(3600), note);
    execution.startTimer(Seconds(1), Seconds(0), note)->invalidate();
    execution.postToMain([&] {
        execution.postToBackground([&] {
            note();
            execution.postToMainAfter(Seconds(0.5), note);
        });
    });

    time.runFor(Seconds(0.5));
    EXPECT_EQ(times, (std::vector<double>{0, 0.5}))
        << "What is due at the end belongs to the time that passes.";
    EXPECT_FALSE(time.runUntilIdle(Seconds(1)));
    EXPECT_FALSE(time.runUntil([&] { return times.size() == 3; }, Seconds(1)));
    EXPECT_EQ(time.now(), Seconds(2.5));
    EXPECT_TRUE(time.runUntil([&] { return times.size() == 3; }, Seconds(7200)));
    EXPECT_EQ(time.now(), Seconds(3600));
    EXPECT_FALSE(time.runOne());
}

TEST(VirtualTimeTest, HandsOutWhatAJobThrowsAndMayGoBeforeAndAfterItsHosts) {
    auto owned = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = owned;
    auto time = std::make_unique<VirtualTime>(1);
    auto first = std::make_unique<VirtualExecution>(*time);
    VirtualExecution second(*time);
    first->postToMain([] { throw std::runtime_error("A job failed"); });
    EXPECT_THROW((void)time->runUntilIdle(Seconds(1)), std::runtime_error);
    for (VirtualExecution* execution : {first.get(), &second}) {
        execution->postToMainAfter(Seconds(1), [owned] {});
        // A job whose end posts another, at a time when its own host takes none any more.
        execution->postToBackground([last = std::shared_ptr<void>(nullptr, [execution, owned](void*) {
                                         execution->postToMain([owned] {});
                                     })] {});
    }
    owned.reset();

    first.reset();
    EXPECT_FALSE(watched.expired());
    time.reset();
    EXPECT_TRUE(watched.expired());
    second.postToMain([] {});
}

/// Two hosts on one loop, one pool and one scheduler.
class RealExecutionTest : public testing::Test {
protected:
    void runUntil(const std::function<bool()>& predicate) {
        ASSERT_TRUE(loop.runUntil(predicate, Seconds(60)));
    }

    RunLoop loop;
    WorkerPool pool{2};
    RealScheduler scheduler;
    RealExecution ann{loop, pool, scheduler, "Ann"};
    RealExecution bob{loop, pool, scheduler, "Bob"};
};

TEST_F(RealExecutionTest, StopsOneHostWhileTheOtherGoesOn) {
    std::atomic<int> annsJobs{0};
    std::atomic<int> bobsJobs{0};
    const auto postTo = [&](RealExecution& execution, std::atomic<int>& jobs) {
        execution.postToMain([&] { ++jobs; });
        execution.postToMainAfter(Seconds(0.005), [&] { ++jobs; });
        execution.sleep(std::chrono::milliseconds(5),
                        [&](const Base::Result<void>&) { execution.postToMain([&] { ++jobs; }); });
        (void)execution.startTimer(Seconds(0.005), Seconds(0), [&] { ++jobs; });
    };
    postTo(ann, annsJobs);
    postTo(bob, bobsJobs);

    ann.stop();
    runUntil([&] { return bobsJobs == 4; });

    EXPECT_EQ(annsJobs, 0);
}

TEST_F(RealExecutionTest, StopsOutsideItsJobsOnlyAndWaitsForThoseThatRun) {
    bool refused = false;
    ann.postToMain([&] {
        EXPECT_THROW(ann.stop(), std::logic_error);
        refused = true;
    });
    std::atomic<bool> started{false};
    std::atomic<bool> goOn{false};
    std::atomic<bool> ended{false};
    ann.postToBackground([&] {
        started = true;
        goOn.wait(false);
        ended = true;
    });
    runUntil([&] { return refused && started; });

    std::thread releaser([&] {
        goOn = true;
        goOn.notify_all();
    });
    ann.stop();
    EXPECT_TRUE(ended);
    releaser.join();
}

TEST(TraceTest, WritesOneLineAnEntryWhateverTheValuesHold) {
    VirtualTime time(1);
    Trace trace([&] { return time.now(); });
    VirtualExecution execution(time, "Ann", &trace);
    trace.record("Ann", "call", {{"name", "fetch \"it\""}, {"text", "two\nlines \\ end"}});
    time.runFor(Seconds(1.5));
    trace.record("", "link");
    trace.setRecording(false);
    trace.record("Ann", "call");
    EXPECT_EQ(trace.text(),
              "      0.000000 Ann call name=\"fetch \\\"it\\\"\" text=\"two\\nlines \\\\ end\"\n"
              "      1.500000 - link\n");

    execution.didCallOnWrongThread(
        Base::WrongThread{"Components/RemoteCoding/X", "cancelSyncing()", 3, true});
    EXPECT_EQ(execution.wrongThreadCount(), 1U);
}

}  // namespace

}  // namespace ReferenceHost
