#include "ReferenceHost/Execution/RealExecution.hpp"
#include "ReferenceHost/Execution/RealScheduler.hpp"
#include "ReferenceHost/SeededRandom.hpp"
#include "Tests/Services/SynchroniserTest.hpp"

#include <array>
#include <atomic>
#include <future>
#include <latch>
#include <thread>

namespace RemoteCoding {
namespace {

constexpr int analysts = 2;
constexpr int edits = 300;
constexpr Base::Seconds patience{120};

/// What the analysts' threads share.
struct Match {
    ReferenceHost::RealScheduler scheduler;
    ReferenceHost::Trace trace{[this] { return scheduler.now(); }};
    ReferenceHost::CloudService cloud{scheduler};
    ReferenceHost::WorkerPool pool{3};
    std::promise<std::string> session;
    std::shared_future<std::string> sessionId = session.get_future().share();
    std::latch everybodyIsThere{analysts};
    /// The session's last change when that analyst last had nothing to do and a timeline equal to the session; else -1.
    std::array<std::atomic<std::int64_t>, analysts> equalAt{-1, -1};
};

ReferenceHost::HostOptions almostNoLatency() {
    ReferenceHost::HostOptions options;
    options.network.leastLatency = Base::Seconds(0);
    options.network.mostLatency = Base::Seconds(0.002);
    return options;
}

/// One analyst, whose main thread is the one that makes and uses this object.
class ThreadedAnalyst {
public:
    ThreadedAnalyst(Match& match, std::size_t number)
        : match_(match),
          number_(number),
          random_(number + 1),
          execution_(loop_, match.pool, match.scheduler, "analyst " + std::to_string(number), &match.trace),
          host_("analyst " + std::to_string(number), execution_, match.cloud, match.trace, almostNoLatency()),
          timeline_(host_.openTimeline("match")) {}
    ~ThreadedAnalyst() {
        host_.stop();
        service_.reset();
    }
    ThreadedAnalyst(const ThreadedAnalyst&) = delete;
    ThreadedAnalyst& operator=(const ThreadedAnalyst&) = delete;

    void start(std::optional<std::string> sessionId) {
        auto& environment = host_.environment();
        service_ = TimelineUploadService::make(
            environment, timeline_->uniqueId(), "team", "user", "video", std::move(sessionId),
            environment.syncLibrary.makeTaggingSessionService(), environment.graphQLClient);
        EXPECT_TRUE(loop_.runUntil(
            [&] { return service_->status().receivesChanges && service_->status().isSettled(); }, patience));
    }

    void addRows() {
        for (const char* name : {"Attack", "Defence", "Corner"}) {
            timeline_->addRow(name, Base::Color(1, 2, 3));
        }
    }

    void code() {
        for (int i = 0; i < edits; ++i) {
            loop_.postAfter(Base::Seconds(0.004 * i), [this, i] { edit(i); });
        }
        EXPECT_TRUE(loop_.runUntil([&] { return edited_ == edits && isEqualEverywhere(); }, patience));
    }

    void leave() {
        service_->cancelSyncing();
        EXPECT_TRUE(loop_.runUntil([&] { return host_.unfinishedTasks() == 0; }, patience));
        EXPECT_EQ(execution_.wrongThreadCount(), 0U);
    }

private:
    /// Tags, retimes and deletes own clips; recolours and moves any row.
    void edit(int number) {
        ++edited_;
        const auto row = timeline_->rowAt(static_cast<std::int64_t>(random_.below(3)));
        const auto clip = clips_.empty() ? nullptr : clips_.at(random_.below(clips_.size()));
        if (!clip || random_.chance(0.6)) {
            clips_.push_back(timeline_->addInstance(row->uniqueId(), number, number + 1));
        } else if (random_.chance(0.6)) {
            timeline_->retimeInstance(clip->uniqueId(), number, number + 2);
        } else if (random_.chance(0.5)) {
            timeline_->removeInstance(clip->uniqueId());
        } else {
            timeline_->recolorRow(row->uniqueId(),
                                  Base::Color(static_cast<std::uint8_t>(number % 250), 0, 0));
            timeline_->moveRow(row->uniqueId(), static_cast<std::int64_t>(random_.below(3)));
        }
    }

    bool isEqualEverywhere() {
        const std::string& session = match_.sessionId.get();
        const auto last = static_cast<std::int64_t>(match_.cloud.lastSequence(session));
        const bool isEqual = service_->status().isSettled() &&
                             pictureOf(*timeline_) == pictureOf(*match_.cloud.snapshot(session));
        match_.equalAt.at(number_) = isEqual ? last : -1;
        return std::ranges::all_of(match_.equalAt, [&](const auto& sequence) { return sequence == last; });
    }

    Match& match_;
    std::size_t number_;
    ReferenceHost::SeededRandom random_;
    ReferenceHost::RunLoop loop_;
    ReferenceHost::RealExecution execution_;
    ReferenceHost::Host host_;
    std::shared_ptr<ReferenceHost::Timeline> timeline_;
    std::shared_ptr<TimelineUploadService> service_;
    std::vector<std::shared_ptr<ReferenceHost::TimelineInstance>> clips_;
    int edited_ = 0;
};

// The same on real threads, each analyst on a main thread of their own: what the thread sanitizer looks at.
TEST(ThreadsTest, AnalystsOnThreadsOfTheirOwnEndEqual) {
    Match match;
    std::thread first([&] {
        ThreadedAnalyst ann(match, 0);
        ann.addRows();
        ann.start(std::nullopt);
        match.session.set_value(match.cloud.primarySessionOf("video").value());
        match.everybodyIsThere.arrive_and_wait();
        ann.code();
        ann.leave();
    });
    std::thread second([&] {
        ThreadedAnalyst ben(match, 1);
        ben.start(match.sessionId.get());
        match.everybodyIsThere.arrive_and_wait();
        ben.code();
        ben.leave();
    });
    first.join();
    second.join();
    checkConformance(match.trace);
    EXPECT_GT(match.cloud.snapshot(match.sessionId.get())->moments.size(), 100U);
}

}  // namespace
}  // namespace RemoteCoding
