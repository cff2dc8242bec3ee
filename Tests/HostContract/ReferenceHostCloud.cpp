#include "ReferenceHost/Cloud/CloudClient.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Execution/RealExecution.hpp"
#include "ReferenceHost/Execution/RealScheduler.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"
#include "ReferenceHost/Timeline/Timeline.hpp"
#include "ReferenceHost/Trace.hpp"
#include "Tests/HostContract/CloudServiceContract.hpp"
#include "Tests/HostContract/SubscriptionContract.hpp"

#include <atomic>

namespace HostContract {

namespace {

using ReferenceHost::CloudClient;
using ReferenceHost::CloudClientSettings;

// The reference host's timelines and clients, on whichever clock.
class ReferenceCloudFixture : public CloudFixture {
public:
    RemoteCoding::TevuGraphQLClientProtocol& graphQLClient(std::size_t analyst) override {
        return *clients_[analyst]->graphQLClient();
    }
    RemoteCoding::SyncLibraryProtocol& syncLibrary(std::size_t analyst) override {
        return clients_[analyst]->syncLibrary();
    }
    Base::ExecutionProtocol& execution(std::size_t analyst) override { return *executions_[analyst]; }
    Timeline timeline(std::size_t analyst) override { return timelines_[analyst]; }

    Timeline makeTimeline() override {
        ReferenceHost::Timeline::Options options;
        options.uniqueId = makeId();
        options.makeId = [this] { return makeId(); };
        return ReferenceHost::Timeline::make(std::move(options));
    }

    Instance tag(const Timeline& timeline, const Clip& clip) override {
        auto& own = ownTimeline(timeline);
        const auto row = own.findRowNamed(clip.code);
        const auto target = row ? row : own.addRow(clip.code, Base::Color());
        return own.addInstance(target->uniqueId(), clip.start, clip.end, clip.notes);
    }
    void retime(const Timeline& timeline, const Instance& instance, double start, double end) override {
        ownTimeline(timeline).retimeInstance(instance->uniqueId(), start, end);
    }
    void remove(const Timeline& timeline, const Instance& instance) override {
        ownTimeline(timeline).removeInstance(instance->uniqueId());
    }
    void addRow(const Timeline& timeline, const std::string& name, Base::Color color) override {
        ownTimeline(timeline).addRow(name, color);
    }
    Clip clipOf(const Instance& instance) override {
        const auto& own = dynamic_cast<const ReferenceHost::TimelineInstance&>(*instance);
        return Clip(own.row() ? own.row()->name() : "no row", own.startTime(), own.endTime(), own.notes());
    }
    void setLinkUp(std::size_t analyst, bool up) override { clients_[analyst]->setLinkUp(up); }

protected:
    ReferenceCloudFixture(ReferenceHost::Scheduler& scheduler, std::function<Base::Seconds()> clock)
        : trace_(std::move(clock)), service_(scheduler) {}

    void addAnalyst(std::unique_ptr<ReferenceHost::ReportingExecution> execution,
                    const CloudClientSettings& settings) {
        executions_.push_back(std::move(execution));
        clients_.push_back(std::make_unique<CloudClient>(
            service_, *executions_.back(), trace_, "analyst " + std::to_string(clients_.size()), settings));
        timelines_.push_back(makeTimeline());
    }

    // Before what a derived fixture owns goes.
    void stop() {
        for (const auto& execution : executions_) {
            execution->stop();
        }
        clients_.clear();
        executions_.clear();
    }

    std::vector<std::unique_ptr<ReferenceHost::ReportingExecution>>& executions() { return executions_; }

private:
    std::string makeId() { return "id-" + std::to_string(++lastId_); }
    static ReferenceHost::Timeline& ownTimeline(const Timeline& timeline) {
        return dynamic_cast<ReferenceHost::Timeline&>(*timeline);
    }

    ReferenceHost::Trace trace_;
    ReferenceHost::CloudService service_;
    int lastId_ = 0;
    std::vector<std::unique_ptr<ReferenceHost::ReportingExecution>> executions_;
    std::vector<std::unique_ptr<CloudClient>> clients_;
    std::vector<Timeline> timelines_;
};

// Made before the base that refers to it.
struct VirtualClock {
    explicit VirtualClock(std::uint64_t seed) : time(seed) {}
    ReferenceHost::VirtualTime time;
    ReferenceHost::VirtualScheduler scheduler{time};
};

class VirtualCloud final : private VirtualClock, public ReferenceCloudFixture {
public:
    VirtualCloud(std::uint64_t seed, std::size_t analysts)
        : VirtualClock(seed), ReferenceCloudFixture(scheduler, [this] { return time.now(); }) {
        for (std::size_t i = 0; i < analysts; ++i) {
            CloudClientSettings settings;
            settings.seed = seed + i;
            settings.leastLatency = Base::Seconds(0.01);
            settings.mostLatency = Base::Seconds(0.5);
            addAnalyst(std::make_unique<ReferenceHost::VirtualExecution>(time), settings);
        }
    }
    ~VirtualCloud() override { stop(); }

    bool runUntil(const std::function<bool()>& predicate) override {
        return time.runUntil(predicate, Base::Seconds(60));
    }
    void settle() override { time.runFor(Base::Seconds(60)); }
};

struct RealClock {
    ReferenceHost::RunLoop loop;
    ReferenceHost::WorkerPool pool{3};
    ReferenceHost::RealScheduler scheduler;
};

class RealCloud final : private RealClock, public ReferenceCloudFixture {
public:
    explicit RealCloud(std::size_t analysts)
        : ReferenceCloudFixture(scheduler, [this] { return scheduler.now(); }) {
        CloudClientSettings settings;
        settings.leastLatency = Base::Seconds(0);
        settings.mostLatency = Base::Seconds(0.001);
        settings.detectionDelay = Base::Seconds(0.002);
        settings.retryInterval = Base::Seconds(0.002);
        settings.shortDropLimit = Base::Seconds(600);
        for (std::size_t i = 0; i < analysts; ++i) {
            settings.seed = i;
            addAnalyst(std::make_unique<ReferenceHost::RealExecution>(loop, pool, scheduler), settings);
        }
    }
    ~RealCloud() override { stop(); }

    bool runUntil(const std::function<bool()>& predicate) override {
        return loop.runUntil(predicate, Base::Seconds(60));
    }

    // Behind everything that is due by then, on the service's thread and on the main thread, for each way of a call.
    void settle() override {
        for (int way = 0; way < 4; ++way) {
            std::atomic<bool> arrived = false;
            scheduler.postAfter(Base::Seconds(0.005), [this, &arrived] {
                executions().front()->postToMain([&arrived] { arrived = true; });
            });
            EXPECT_TRUE(runUntil([&] { return arrived.load(); }));
        }
    }
};

CloudHost virtualHost(std::uint64_t seed) {
    return CloudHost("VirtualTimeSeed" + std::to_string(seed),
                     [seed](std::size_t analysts) { return std::make_unique<VirtualCloud>(seed, analysts); });
}

const auto hosts = testing::Values(
    virtualHost(1), virtualHost(2), virtualHost(3),
    CloudHost("RealTime", [](std::size_t analysts) { return std::make_unique<RealCloud>(analysts); }));

std::string nameOfHost(const testing::TestParamInfo<CloudHost>& info) { return info.param.name; }

}  // namespace

INSTANTIATE_TEST_SUITE_P(ReferenceHost, CloudServiceContract, hosts, nameOfHost);
INSTANTIATE_TEST_SUITE_P(ReferenceHost, SubscriptionContract, hosts, nameOfHost);

}  // namespace HostContract
