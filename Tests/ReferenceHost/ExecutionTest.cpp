// What the contract suite cannot ask: how virtual time passes, and how hosts that share a clock or threads get along.

#include "ReferenceHost/Execution/RealExecution.hpp"
#include "ReferenceHost/Execution/RealScheduler.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"
#include "ReferenceHost/Trace.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <map>
#include <memory>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace ReferenceHost;
using Base::Seconds;
using Log = std::vector<std::pair<int, double>>;

/// Work of two hosts and a service that post to each other, written down with its times as it runs.
Log runSomeWork(std::uint64_t seed) {
    VirtualTime time(seed);
    VirtualExecution ann(time, "Ann", nullptr, {.timersUseTolerance = true});
    VirtualExecution bob(time, "Bob");
    VirtualScheduler service(time);
    Log log;
    for (int i = 0; i < 20; ++i) {
        const auto note = [&, i] { log.emplace_back(i, time.now().count()); };
        ann.postToBackground([&, note] {
            EXPECT_FALSE(ann.isMainThread() || bob.isMainThread());
            bob.postToMain(note);
        });
        ann.postToMain([&] { EXPECT_TRUE(ann.isMainThread() && !bob.isMainThread()); });
        service.postAfter(Seconds(0.1), note);
        (void)ann.startTimer(Seconds(1), Seconds(0.5), note);
    }
    EXPECT_TRUE(time.runUntilIdle(Seconds(1.5))) << "No timer later than its tolerance.";
    return log;
}

TEST(VirtualTimeTest, RepeatsARunFromItsSeedAndVariesItWithTheSeed) {
    for (std::uint64_t seed = 0; seed < 5; ++seed) {
        EXPECT_EQ(runSomeWork(seed), runSomeWork(seed));
        EXPECT_NE(runSomeWork(seed), runSomeWork(seed + 1));
    }
}

TEST(VirtualTimeTest, LetsSeveralHostsWaitModallyWithinEachOther) {
    VirtualTime time(1);
    VirtualExecution ann(time);
    VirtualExecution bob(time);
    Log log;
    const auto wait = [&](VirtualExecution& host, int seconds) {
        Signal signal;
        host.sleep(std::chrono::seconds(seconds), [&](const auto&) { signal.give(); });
        EXPECT_TRUE(host.waitModally(signal, Seconds(60)));
        log.emplace_back(seconds, time.now().count());
    };
    bob.postToMainAfter(Seconds(1), [&] { wait(bob, 9); });
    ann.postToMain([&] { wait(ann, 5); });
    time.runFor(Seconds(2));
    EXPECT_EQ(log, (Log{{9, 10}, {5, 10}})) << "The innermost ends first, and no time comes again.";
    EXPECT_FALSE(ann.waitModally(Signal(), Seconds(60))) << "Nothing is left that could give the signal.";
}

TEST(VirtualTimeTest, LetsTimePassOnlyWhenNoWorkIsLeftAndStopsAtALimit) {
    VirtualTime time(1);
    VirtualExecution execution(time);
    std::vector<double> times;
    const auto note = [&] { times.push_back(time.now().count()); };
    execution.postToMainAfter(Seconds(3600), note);
    execution.postToBackground([&] {
        note();
        execution.postToMainAfter(Seconds(0.5), note);
    });

    time.runFor(Seconds(0.5));
    EXPECT_EQ(times, (std::vector<double>{0, 0.5})) << "what is due at the end included";
    EXPECT_FALSE(time.runUntilIdle(Seconds(1)));
    EXPECT_TRUE(time.runUntil([&] { return times.size() == 3; }, Seconds(7200)));
    EXPECT_EQ(time.now(), Seconds(3600));
}

TEST(VirtualTimeTest, MayGoBeforeAndAfterItsHostsWithJobsLeft) {
    auto owned = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = owned;
    auto time = std::make_unique<VirtualTime>(1);
    auto first = std::make_unique<VirtualExecution>(*time);
    VirtualExecution second(*time);
    for (VirtualExecution* host : {first.get(), &second}) {
        host->postToMainAfter(Seconds(1), [owned] {});
        // A job whose end posts another, at a time when its own host takes none any more.
        const std::shared_ptr<void> last(nullptr, [host, owned](void*) { host->postToMain([owned] {}); });
        host->postToBackground([last] {});
    }
    owned.reset();

    first.reset();
    time.reset();
    EXPECT_TRUE(watched.expired());
}

TEST(RealExecutionTest, StopsWhenItsRunningJobsHaveEndedWhileAnotherHostOfItsThreadsGoesOn) {
    RunLoop loop;
    WorkerPool pool(2);
    RealScheduler scheduler;
    RealExecution ann(loop, pool, scheduler, "Ann");
    RealExecution bob(loop, pool, scheduler, "Bob");
    std::atomic<bool> started{false};
    std::atomic<bool> ended{false};
    std::promise<void> goOn;
    ann.postToMain([&] {
        EXPECT_THROW(ann.stop(), std::logic_error) << "It would wait for this job.";
        ann.postToBackground([&, gate = goOn.get_future().share()] {
            started = true;
            gate.wait();
            ended = true;
        });
    });
    EXPECT_TRUE(loop.runUntil([&] { return started.load(); }, Seconds(60)));
    std::map<RealExecution*, int> jobs;
    for (RealExecution* execution : {&ann, &bob}) {
        const auto count = [&jobs, execution] { ++jobs[execution]; };
        execution->postToMain(count);
        execution->postToMainAfter(Seconds(0.005), count);
        (void)execution->startTimer(Seconds(0.005), Seconds(0), count);
    }

    const std::jthread releaser([&] { goOn.set_value(); });
    ann.stop();
    EXPECT_TRUE(ended);
    EXPECT_TRUE(loop.runUntil([&] { return jobs[&bob] == 3; }, Seconds(60)));
    EXPECT_EQ(jobs[&ann], 0);
}

TEST(TraceTest, WritesOneLineAnEntryWhateverTheValuesHold) {
    VirtualTime time(1);
    Trace trace([&] { return time.now(); });
    VirtualExecution execution(time, "Ann", &trace);
    time.runFor(Seconds(1.5));
    trace.record("Ann", "call", {{"name", "fetch \"it\""}, {"text", "two\nlines \\ end"}});
    EXPECT_EQ(trace.text(),
              "      1.500000 Ann call name=\"fetch \\\"it\\\"\" text=\"two\\nlines \\\\ end\"\n");

    execution.didCallOnWrongThread(Base::WrongThread{"File.cpp", "cancelSyncing()", 3, true});
    EXPECT_EQ(execution.wrongThreadCount(), 1U);
}

}  // namespace
