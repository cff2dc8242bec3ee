#include "ReferenceHost/Cloud/CloudClient.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Timeline/Timeline.hpp"
#include "ReferenceHost/Trace.hpp"
#include "Tests/HostContract/CloudServiceContract.hpp"
#include "Tests/HostContract/ReferenceHostClocks.hpp"
#include "Tests/HostContract/SubscriptionContract.hpp"
#include "Tests/HostContract/VideosContract.hpp"

namespace HostContract {

namespace {

template <typename Clock>
class ReferenceCloudFixture final : public CloudFixture {
public:
    ReferenceCloudFixture(std::uint64_t seed, std::size_t analysts) : clock_(seed) {
        ReferenceHost::CloudClientSettings settings;
        settings.leastLatency = Base::Seconds(0);  // as fast as it goes: on threads it is the test that waits
        settings.mostLatency = Base::Seconds(0.001);
        settings.detectionDelay = settings.retryInterval = Base::Seconds(0.002);
        settings.shortDropLimit = Base::Seconds(600);
        for (std::size_t i = 0; i < analysts; ++i) {
            settings.seed = seed + i;
            executions_.push_back(clock_.makeExecution());
            clients_.push_back(std::make_unique<ReferenceHost::CloudClient>(
                service_, *executions_[i], trace_, "analyst " + std::to_string(i), settings));
            timelines_.push_back(makeTimeline());
        }
    }
    ~ReferenceCloudFixture() override {
        for (const auto& execution : executions_) {
            execution->stop();
        }
    }

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
        options.makeId = [this] { return "id-" + std::to_string(++lastId_); };
        options.uniqueId = options.makeId();
        options.runLater = [this](Base::Job job) { executions_.front()->postToMain(std::move(job)); };
        return ReferenceHost::Timeline::make(std::move(options));
    }

    Instance tag(const Timeline& timeline, const Clip& clip) override {
        const auto& [code, start, end, notes] = clip;
        const auto row = own(timeline).findRowNamed(code);
        const auto target = row ? row : own(timeline).addRow(code, Base::Color());
        return own(timeline).addInstance(target->uniqueId(), start, end, notes);
    }
    void retime(const Timeline& timeline, const Instance& instance, double start, double end) override {
        own(timeline).retimeInstance(instance->uniqueId(), start, end);
    }
    void remove(const Timeline& timeline, const Instance& instance) override {
        own(timeline).removeInstance(instance->uniqueId());
    }
    void addRow(const Timeline& timeline, const std::string& name, Base::Color color) override {
        own(timeline).addRow(name, color);
    }
    void renameRow(const Timeline& timeline, const std::string& name, const std::string& newName) override {
        own(timeline).renameRow(own(timeline).findRowNamed(name)->uniqueId(), newName);
    }
    Clip clipOf(const Instance& instance) override {
        const auto& clip = dynamic_cast<const ReferenceHost::TimelineInstance&>(*instance);
        return Clip(clip.row() ? clip.row()->name() : "no row", clip.startTime(), clip.endTime(),
                    clip.notes());
    }
    RemoteCoding::TevuTeamServiceProtocol& teamService(std::size_t analyst) override {
        return *clients_[analyst]->teamService();
    }
    void setSignedIn(std::size_t analyst, bool signedIn) override {
        const std::string user = std::to_string(analyst);
        signedIn ? clients_[analyst]->signIn(user) : service_.teams().expireSignIn(user);
    }
    void addTeam(const std::string& teamId, std::size_t member,
                 const std::vector<RemoteCoding::TevuFeaturePrivilege>& privileges) override {
        service_.teams().add({.id = teamId,
                              .members = {std::to_string(member)},
                              .privileges = {privileges.begin(), privileges.end()}});
    }
    void setLinkUp(std::size_t analyst, bool up) override { clients_[analyst]->setLinkUp(up); }
    bool runUntil(const std::function<bool()>& predicate) override { return clock_.runUntil(predicate); }
    void settle() override { clock_.settle(); }

private:
    static ReferenceHost::Timeline& own(const Timeline& timeline) {
        return dynamic_cast<ReferenceHost::Timeline&>(*timeline);
    }

    Clock clock_;
    ReferenceHost::Trace trace_{[this] { return clock_.scheduler.now(); }};
    ReferenceHost::CloudService service_{clock_.scheduler};
    int lastId_ = 0;
    std::vector<std::unique_ptr<ReferenceHost::ReportingExecution>> executions_;
    std::vector<std::unique_ptr<ReferenceHost::CloudClient>> clients_;
    std::vector<Timeline> timelines_;
};

const auto hosts = hostsOnEachClock<CloudHost, ReferenceCloudFixture>();

}  // namespace

INSTANTIATE_TEST_SUITE_P(ReferenceHost, CloudServiceContract, hosts, nameOf<CloudHost>);
INSTANTIATE_TEST_SUITE_P(ReferenceHost, VideosContract, hosts, nameOf<CloudHost>);
INSTANTIATE_TEST_SUITE_P(ReferenceHost, SubscriptionContract, hosts, nameOf<CloudHost>);

}  // namespace HostContract
