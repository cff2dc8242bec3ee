// Whole components, each with threads of its own: what the sanitizers look at.

#include "Components/RemoteCoding/Component/RemoteCodingComponent.hpp"
#include "ReferenceHost/Execution/RealExecution.hpp"
#include "ReferenceHost/Execution/RealScheduler.hpp"
#include "ReferenceHost/SeededRandom.hpp"
#include "Tests/Services/SynchroniserTest.hpp"

#include <array>
#include <atomic>
#include <thread>

namespace RemoteCoding {
namespace {

using ReferenceHost::SeededRandom;

constexpr Base::Seconds patience{240};
constexpr std::size_t staying = 3;  // the first of them hosts the session
constexpr std::size_t guests = 4;   // each goes in another way, in the middle of work

/// What the analysts' threads share.
struct Match {
    ReferenceHost::RealScheduler scheduler;
    ReferenceHost::Trace trace{[this] { return scheduler.now(); }};
    ReferenceHost::CloudService cloud{scheduler};
    std::atomic<std::size_t> arrived = 0;
    /// The session's last change when that analyst last had nothing to do and a timeline equal to the session; else -1.
    std::array<std::atomic<std::int64_t>, staying> equalAt{-1, -1, -1};
    std::atomic<bool> wereEqual = false, endEqual = false;
};

/// Those who stay meet what loses nothing: late answers, and reads that fail and are repeated.
ReferenceHost::Fault faultOf(const ReferenceHost::CloudCall& call, bool stays) {
    constexpr std::array kinds{Kind::failBeforeEffect, Kind::failAfterEffect, Kind::answerFalse,
                               Kind::answerShort};
    auto random = SeededRandom::stream(call.number, call.host);
    const bool mayFail =
        !stays || call.operation == Operation::fetchTaggingSessions || call.operation == Operation::subscribe;
    const Kind kind = mayFail && random.chance(0.2) ? kinds.at(random.below(stays ? 1 : 4)) : Kind::none;
    return ReferenceHost::Fault(kind, Base::Seconds(random.between(0, 0.01)));
}

ReferenceHost::EventFault eventFaultOf(const ReferenceHost::CloudEvent& event) {
    auto random = SeededRandom::stream(event.change->sequence, event.host);
    return ReferenceHost::EventFault(random.chance(0.02), random.chance(0.2) ? 2 : 0,
                                     Base::Seconds(random.between(0, 0.01)));
}

ReferenceHost::HostOptions options() {
    ReferenceHost::HostOptions options;
    options.userId = "user";
    options.network.leastLatency = Base::Seconds(0);
    options.network.mostLatency = Base::Seconds(0.002);
    options.network.shortDropLimit = patience;
    return options;
}

/// One analyst with an application of their own. Made, used and destroyed on that analyst's thread.
struct Desk {
    void waitUntil(const std::function<bool()>& condition) {
        EXPECT_TRUE(loop.runUntil(condition, patience));
    }
    void enter() {
        const char* const list = number == 0 ? "Feed to Share" : "Active Sessions";
        if (number == 0) {
            host.capture().setDevices({std::make_shared<ReferenceHost::CaptureDevice>("Camera")});
            timeline = host.startCapture("Derby");
            for (const char* row : {"Attack", "Defence", "Corner"}) {
                timeline->addRow(row, Base::Color(1, 2, 3));
            }
            component->openCreateSharingSessionWindow();
        } else {
            waitUntil([&] { return match.arrived > 0; });
            component->openJoinSharingSessionWindow();
        }
        auto window = host.person().window(host.person().windowTitles().front());
        waitUntil([&] { return !window.items("Team").empty() && !window.rows(list).empty(); });
        number == 0 ? window.clickCheckBox(list, 0) : window.selectRow(list, 0);
        window.pressReturn();
        waitUntil([&] {
            timeline = host.timelines().timelineInFront();
            return timeline && status() && status()->isSettled() && status()->receivesChanges;
        });
        ++match.arrived;
        waitUntil([&] { return match.arrived == staying + guests; });
    }
    void meetFaults() {
        client.setFaultPlan([this](const auto& call) { return faultOf(call, number < staying); });
        client.setEventFaultPlan(eventFaultOf);
    }
    /// Own clips come, change and go. Rows, everybody's, change colour and place.
    void edit(bool editsRows) {
        const auto clip = clips.empty() ? nullptr : clips.at(random.below(clips.size()));
        const auto row = timeline->rowAt(static_cast<std::int64_t>(random.below(3)));
        ++edits;
        if (!clip || random.chance(0.6)) {
            clips.push_back(timeline->addInstance(row->uniqueId(), edits, edits + 1));
        } else if (random.chance(0.6)) {
            timeline->retimeInstance(clip->uniqueId(), edits, edits + 2);
        } else if (editsRows) {
            timeline->recolorRow(row->uniqueId(), Base::Color(static_cast<std::uint8_t>(edits % 250), 0, 0));
            timeline->moveRow(row->uniqueId(), static_cast<std::int64_t>(random.below(3)));
        } else {
            timeline->removeInstance(number < staying ? clips.at(random.below(knownClips))->uniqueId()
                                                      : clip->uniqueId());
        }
    }
    void editUntil(const std::function<bool()>& condition, bool editsRows = false) {
        waitUntil([&] {
            edit(editsRows);
            return condition();
        });
    }
    void becomeEqual(std::atomic<bool>& areEqual) {
        const auto videoId = component->sessionDetails(timeline->uniqueId()).value().tevuVideoId;
        const auto sessionId = match.cloud.primarySessionOf(videoId).value();
        waitUntil([&] {
            const auto session = match.cloud.snapshot(sessionId).value();
            const auto last = static_cast<std::int64_t>(session.sequence);
            const bool isEqual = status()->isSettled() && pictureOf(*timeline) == pictureOf(session);
            match.equalAt.at(number) = isEqual ? last : -1;
            if (std::ranges::all_of(match.equalAt, [&](const auto& at) { return at == last; })) {
                areEqual = true;
            }
            return areEqual.load();
        });
    }
    void stay() {
        editUntil([&] { return edits == 300; }, true);
        becomeEqual(match.wereEqual);
        knownClips = clips.size();
        meetFaults();
        editUntil([&] { return isAtWork(); });
        number == 1 ? client.setLinkUp(false) : client.dropSubscriptions();
        editUntil([&] { return !status()->receivesChanges; });
        client.setLinkUp(true);
        becomeEqual(match.endEqual);
    }
    void visit() {
        meetFaults();
        editUntil([&] { return isAtWork(); });
    }
    void go() {
        switch (number) {
        case 0:
            component->endRemoteCodingSession(timeline->uniqueId());
            break;
        case staying:
            component.reset();
            break;
        case staying + 1:
            host.closeTimeline(timeline->uniqueId());
            break;
        case staying + 2:
            return host.stop();
        default:
            component->exitRemoteCodingSession(timeline->uniqueId());
        }
        waitUntil([&] { return host.unfinishedTasks() == 0; });
        host.stop();
    }
    [[nodiscard]] std::optional<SynchronisationStatus> status() const {
        return component->synchronisationStatus(timeline->uniqueId());
    }
    [[nodiscard]] bool isAtWork() const { return client.numberOfCallsUnderWay() > 0; }

    Match& match;
    const std::size_t number;
    const std::string name = "analyst " + std::to_string(number);
    SeededRandom random{number};
    ReferenceHost::RunLoop loop{};
    ReferenceHost::WorkerPool pool{2};
    ReferenceHost::RealExecution execution{loop, pool, match.scheduler, name, &match.trace};
    ReferenceHost::Host host{name, execution, match.cloud, match.trace, options()};
    ReferenceHost::CloudClient& client = host.cloudClient();
    std::shared_ptr<RemoteCodingComponent> component = RemoteCodingComponent::make(host.environment());
    std::shared_ptr<ReferenceHost::Timeline> timeline{};
    std::vector<std::shared_ptr<ReferenceHost::TimelineInstance>> clips{};
    /// The first ones, which the cloud has: one that is deleted while it is being created there may be left at some.
    std::size_t knownClips = 0;
    int edits = 0;
};

void takePart(Match& match, std::size_t number) {
    std::weak_ptr<ReferenceHost::Timeline> timeline;
    {
        Desk desk{match, number};
        desk.host.setRemoteCodingComponent(desk.component);
        desk.enter();
        number < staying ? desk.stay() : desk.visit();
        desk.go();
        const std::weak_ptr component = std::exchange(desk.component, nullptr);
        EXPECT_TRUE(component.expired());
        EXPECT_EQ(desk.client.numberOfUncancelledSubscriptions(), 0U);
        timeline = desk.timeline;
    }
    EXPECT_TRUE(timeline.expired());
}

// First without faults; then under faults that lose nothing for those who stay, and anything for those who go.
TEST(StressTest, WhoeverStaysHasTheSameAsTheCloudAndOfWhoeverGoesNothingIsLeft) {
    Match match;
    match.cloud.teams().add({.id = "reds", .name = "Reds", .members = {"user"}});
    std::vector<std::thread> threads;
    threads.reserve(staying + guests);
    for (std::size_t number = 0; number < staying + guests; ++number) {
        threads.emplace_back([&match, number] { takePart(match, number); });
    }
    std::ranges::for_each(threads, &std::thread::join);
    checkConformance(match.trace);
}

}  // namespace
}  // namespace RemoteCoding
