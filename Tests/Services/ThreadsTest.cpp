#include "ReferenceHost/Execution/RealExecution.hpp"
#include "ReferenceHost/Execution/RealScheduler.hpp"
#include "ReferenceHost/SeededRandom.hpp"
#include "Tests/Services/SynchroniserTest.hpp"

#include <array>
#include <atomic>
#include <thread>

namespace RemoteCoding {
namespace {

constexpr Base::Seconds patience{120};

/// What the analysts' threads share.
struct Match {
    ReferenceHost::RealScheduler scheduler;
    ReferenceHost::Trace trace{[this] { return scheduler.now(); }};
    ReferenceHost::CloudService cloud{scheduler};
    ReferenceHost::WorkerPool pool{3};
    const std::string session = cloud.createTaggingSession("team", "video", "user");
    /// The session's last change when that analyst last had nothing to do and a timeline equal to the session; else -1.
    std::array<std::atomic<std::int64_t>, 2> equalAt{-1, -1};
};

/// One analyst's whole match, on a main thread of their own: own clips come, change and go; rows are recoloured and moved.
void takePart(Match& match, std::size_t number) {
    const std::string name = "analyst " + std::to_string(number);
    ReferenceHost::SeededRandom random(number + 1);
    ReferenceHost::RunLoop loop;
    ReferenceHost::RealExecution execution(loop, match.pool, match.scheduler, name, &match.trace);
    ReferenceHost::HostOptions options;
    options.network.leastLatency = Base::Seconds(0);
    options.network.mostLatency = Base::Seconds(0.002);
    ReferenceHost::Host host(name, execution, match.cloud, match.trace, options);
    const auto timeline = host.openTimeline("match");
    for (const char* row : {"Attack", "Defence", "Corner"}) {
        timeline->addRow(row, Base::Color(1, 2, 3));
    }
    auto& environment = host.environment();
    auto service = TimelineUploadService::make(environment, timeline->uniqueId(), "team", "user", "video",
                                               number == 0 ? std::nullopt : std::optional(match.session),
                                               environment.syncLibrary.makeTaggingSessionService(),
                                               environment.graphQLClient);
    std::vector<std::shared_ptr<ReferenceHost::TimelineInstance>> clips;
    int edits = 0;
    const auto edit = [&] {
        const auto row = timeline->rowAt(static_cast<std::int64_t>(random.below(3)));
        const auto clip = clips.empty() ? nullptr : clips.at(random.below(clips.size()));
        ++edits;
        if (!clip || random.chance(0.6)) {
            clips.push_back(timeline->addInstance(row->uniqueId(), edits, edits + 1));
        } else if (random.chance(0.6)) {
            timeline->retimeInstance(clip->uniqueId(), edits, edits + 2);
        } else if (random.chance(0.5)) {
            timeline->removeInstance(clip->uniqueId());
        } else {
            timeline->recolorRow(row->uniqueId(), Base::Color(static_cast<std::uint8_t>(edits % 250), 0, 0));
            timeline->moveRow(row->uniqueId(), static_cast<std::int64_t>(random.below(3)));
        }
    };
    const auto isSettled = [&] { return service->status().receivesChanges && service->status().isSettled(); };
    EXPECT_TRUE(loop.runUntil(isSettled, patience));
    for (int i = 0; i < 300; ++i) {
        loop.postAfter(Base::Seconds(0.004 * i), edit);
    }
    const auto isEqualEverywhere = [&] {
        const auto last = static_cast<std::int64_t>(match.cloud.lastSequence(match.session));
        const auto session = match.cloud.snapshot(match.session);
        const bool isEqual = edits == 300 && isSettled() && pictureOf(*timeline) == pictureOf(*session);
        match.equalAt.at(number) = isEqual ? last : -1;
        return std::ranges::all_of(match.equalAt, [&](const auto& sequence) { return sequence == last; });
    };
    EXPECT_TRUE(loop.runUntil(isEqualEverywhere, patience));
    service->cancelSyncing();
    EXPECT_TRUE(loop.runUntil([&] { return host.unfinishedTasks() == 0; }, patience));
    host.stop();
    service.reset();
}

// The same on real threads: what the thread sanitizer looks at.
TEST(ThreadsTest, AnalystsOnThreadsOfTheirOwnEndEqual) {
    Match match;
    std::thread first([&] { takePart(match, 0); });
    std::thread second([&] { takePart(match, 1); });
    first.join();
    second.join();
    checkConformance(match.trace);
    EXPECT_GT(match.cloud.snapshot(match.session)->moments.size(), 100U);
}

}  // namespace
}  // namespace RemoteCoding
