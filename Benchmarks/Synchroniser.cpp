// What synchronising costs the main thread and the background, for growing numbers of clips, against a floor that makes the same
// edits on the same timelines without the component. Virtual time: network and delays cost nothing here.

#include "Components/RemoteCoding/Services/SerialBlockQueue.hpp"
#include "Components/RemoteCoding/Services/TimelineUploadService.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"
#include "ReferenceHost/Execution/VirtualTime.hpp"
#include "ReferenceHost/Host.hpp"

#include <benchmark/benchmark.h>

#include <memory>
#include <optional>
#include <string>

namespace {

using RemoteCoding::TimelineUploadService;

/// One host with one timeline of ten rows, and its synchroniser once started.
class Desk {
public:
    Desk(const std::string& name, ReferenceHost::VirtualTime& time, ReferenceHost::CloudService& cloud,
         ReferenceHost::Trace& trace)
        : execution_(time), host_(name, execution_, cloud, trace), timeline(host_.openTimeline(name)) {}

    ~Desk() {
        if (service) {
            service->cancelSyncing();
        }
        host_.stop();
    }

    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    void start(std::optional<std::string> sessionId) {
        auto& environment = host_.environment();
        service = TimelineUploadService::make(
            environment, timeline->uniqueId(), "team", "user", "video", std::move(sessionId),
            environment.syncLibrary.makeTaggingSessionService(), environment.graphQLClient);
    }

    void addRows() {
        for (int row = 0; row < 10; ++row) {
            timeline->addRow("Row " + std::to_string(row), Base::Color(1, 2, 3));
        }
    }

    void addClips(std::int64_t count) {
        for (std::int64_t clip = 0; clip < count; ++clip) {
            const auto start = static_cast<double>(clip);
            timeline->addInstance(timeline->rowAt(clip % 10)->uniqueId(), start, start + 1);
        }
    }

private:
    ReferenceHost::VirtualExecution execution_;
    ReferenceHost::Host host_;

public:
    std::shared_ptr<ReferenceHost::Timeline> timeline;
    std::shared_ptr<TimelineUploadService> service;
};

struct World {
    World() { trace.setRecording(false); }

    void settle(const Desk& desk) {
        (void)time.runUntil([&] { return desk.service->status().isSettled(); }, Base::Seconds(3600));
    }

    ReferenceHost::VirtualTime time{1};
    ReferenceHost::VirtualScheduler scheduler{time};
    ReferenceHost::Trace trace{[this] { return time.now(); }};
    ReferenceHost::CloudService cloud{scheduler};
};

void finish(benchmark::State& state) { state.SetItemsProcessed(state.iterations() * state.range(0)); }

/// The floor of the two below: the clips are made, and nobody looks.
void tagClips(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        World world;
        auto desk = std::make_unique<Desk>("Ann", world.time, world.cloud, world.trace);
        desk->addRows();
        state.ResumeTiming();
        desk->addClips(state.range(0));
        state.PauseTiming();
        desk.reset();
        state.ResumeTiming();
    }
    finish(state);
}

/// From tagged clips to clips that all carry their moment's id: detection, upload, write-back, own echo.
void uploadNewClips(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        World world;
        auto desk = std::make_unique<Desk>("Ann", world.time, world.cloud, world.trace);
        desk->addRows();
        desk->start(std::nullopt);
        world.settle(*desk);
        desk->addClips(state.range(0));
        state.ResumeTiming();
        world.settle(*desk);
        state.PauseTiming();
        desk.reset();
        state.ResumeTiming();
    }
    finish(state);
}

/// A second analyst's first pull of a session with that many clips.
void pullSession(benchmark::State& state) {
    World world;
    Desk ann("Ann", world.time, world.cloud, world.trace);
    ann.addRows();
    ann.addClips(state.range(0));
    ann.start(std::nullopt);
    world.settle(ann);
    const auto sessionId = world.cloud.primarySessionOf("video");
    for (auto _ : state) {
        state.PauseTiming();
        auto ben = std::make_unique<Desk>("Ben", world.time, world.cloud, world.trace);
        state.ResumeTiming();
        ben->start(sessionId);
        world.settle(*ben);
        state.PauseTiming();
        ben.reset();
        state.ResumeTiming();
    }
    finish(state);
}

/// A row with that many clips is renamed, and all its moments are sent again.
void renameRow(benchmark::State& state) {
    World world;
    Desk ann("Ann", world.time, world.cloud, world.trace);
    ann.addRows();
    const auto row = ann.timeline->rowAt(0);
    for (std::int64_t clip = 0; clip < state.range(0); ++clip) {
        ann.timeline->addInstance(row->uniqueId(), 0, 1);
    }
    ann.start(std::nullopt);
    world.settle(ann);
    std::uint64_t turn = 0;
    for (auto _ : state) {
        ann.timeline->renameRow(row->uniqueId(), "Name " + std::to_string(++turn));
        world.settle(ann);
    }
    finish(state);
}

/// Blocks that wait behind a slow one and then run.
void runQueuedBlocks(benchmark::State& state) {
    for (auto _ : state) {
        RemoteCoding::SerialBlockQueue queue("timeline", nullptr, {});
        queue.runBlockSerially([] {}, RemoteCoding::SynchronisationBlock::pull);
        for (std::int64_t block = 0; block < state.range(0); ++block) {
            queue.runBlockSerially([&queue] { queue.runNextBlock(); },
                                   RemoteCoding::SynchronisationBlock::event);
        }
        queue.runNextBlock();
        benchmark::DoNotOptimize(queue.isRunningSerialBlockOperation());
    }
    finish(state);
}

BENCHMARK(tagClips)->RangeMultiplier(10)->Range(1000, 100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(uploadNewClips)->RangeMultiplier(10)->Range(1000, 100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(pullSession)->RangeMultiplier(10)->Range(1000, 100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(renameRow)->RangeMultiplier(10)->Range(1000, 100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(runQueuedBlocks)->RangeMultiplier(10)->Range(1000, 1'000'000)->Unit(benchmark::kMillisecond);

}  // namespace
