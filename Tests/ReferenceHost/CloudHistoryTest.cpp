#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"
#include "ReferenceHost/Host.hpp"
#include "ReferenceHost/SeededRandom.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace ReferenceHost {

namespace {

/// What the session must hold after these calls, worked out call by call without any of the service's means.
struct Model {
    std::vector<MomentRecord> moments;
    CodeList view;
    std::uint64_t sequence = 0;

    MomentRecord* find(const std::string& id) {
        const auto found =
            std::find_if(moments.begin(), moments.end(), [&](const auto& moment) { return moment.id == id; });
        return found == moments.end() ? nullptr : &*found;
    }

    static void write(MomentRecord& moment, const MomentDraft& draft) {
        moment.code = *draft.code;
        moment.codeColor = *draft.codeColor;
        moment.start = draft.start;
        moment.end = draft.end;
        moment.notes = draft.notes;
    }

    void apply(const AcceptedCall& call) {
        EXPECT_EQ(call.sequenceBefore, sequence) << "Between two calls nothing changes.";
        sequence = call.sequenceAfter;
        switch (call.operation) {
        case CloudOperation::createMoments:
            for (std::size_t i = 0; i < call.drafts.size(); ++i) {
                MomentRecord* moment = find(call.momentIds[i]);
                if (moment == nullptr) {
                    moment = &moments.emplace_back();
                    moment->id = call.momentIds[i];
                    moment->originTimelineId = call.timelineId;
                    moment->originInstanceId = call.drafts[i].instanceId;
                }
                EXPECT_EQ(moment->originInstanceId, call.drafts[i].instanceId);
                write(*moment, call.drafts[i]);
            }
            break;
        case CloudOperation::updateMoments:
            for (const MomentDraft& draft : call.drafts) {
                if (MomentRecord* moment = draft.externalId ? find(*draft.externalId) : nullptr) {
                    write(*moment, draft);
                }
            }
            break;
        case CloudOperation::removeMoments:
            for (const std::string& id : call.momentIds) {
                std::erase_if(moments, [&](const auto& moment) { return moment.id == id; });
            }
            break;
        case CloudOperation::savePresentationView:
            view = call.presentationView;
            break;
        default:
            ADD_FAILURE() << nameOf(call.operation) << " changes nothing.";
        }
    }
};

using Ids = std::vector<std::string>;
using Instances = std::vector<std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>>;
constexpr const char* team = "team";
constexpr const char* video = "video";

/// One client, who writes at random and renews a failed subscription at once, without fetching again: it is told
/// everything from its first change on.
struct Analyst {
    Analyst(const std::string& name, VirtualTime& time, CloudService& cloud, Trace& trace)
        : execution(time, name, &trace), host(name, execution, cloud, trace) {}

    void subscribe(const std::string& session) {
        if (handle) {
            handle->cancel();
        }
        told.clear();
        hasFailed = false;
        handle = host.cloudClient().graphQLClient()->subscribeToTaggingSessionChanges(
            session, timeline->uniqueId(),
            [this](auto type, const RemoteCoding::ChangedTaggingSession& change) {
                told.emplace_back(nameOf(type));
                for (std::size_t i = 0; change.moments && i < change.moments->size(); ++i) {
                    told.back() += " " + (*change.moments)[i]->identifier();
                }
            },
            [this](const auto&) { hasFailed = true; });
    }

    std::shared_ptr<TimelineInstance> tag(double start) {
        const auto row = timeline->findRowNamed("Shot");
        return timeline->addInstance((row ? row : timeline->addRow("Shot", {}))->uniqueId(), start, 3);
    }

    void act(SeededRandom& random, const std::string& session, const std::vector<MomentPointer>& moments) {
        const auto written = [](const auto&) {};
        const auto id = timeline->uniqueId();
        const auto known = moments.empty() ? "no such moment" : moments[random.below(moments.size())]->id;
        const auto clip = tag(random.unit());
        const auto all = clip->row()->allInstances();
        switch (random.below(8)) {
        case 0:
            return host.setLinkUp(false);
        case 1:
        case 2:
            return host.setLinkUp(true);
        case 3:
            return service->savePresentationView(team, video, session, id, "", timeline->allRows(), written);
        case 4:
            return service->removeMoments(team, video, session, id, Ids{known, "no such moment"}, written);
        case 5:
            clip->setExternalId(known);
            return service->updateMoments(team, video, session, id,
                                          std::make_shared<const Instances>(Instances{clip}), written);
        default:
            return service->createMoments(
                team, video, session, id,
                std::make_shared<const Instances>(Instances{clip, (*all)[random.below(all->size())]}),
                written);
        }
    }

    VirtualExecution execution;
    Host host;
    std::shared_ptr<Timeline> timeline = host.openTimeline("Match");
    std::shared_ptr<RemoteCoding::TaggingSessionServiceProtocol> service =
        host.cloudClient().syncLibrary().makeTaggingSessionService();
    std::shared_ptr<RemoteCoding::SubscriptionHandle> handle;
    std::vector<std::string> told;
    bool hasFailed = false;
};

TEST(CloudHistory, FollowsFromTheAcceptedCallsAndReachesEverySubscriber) {
    int renewals = 0;
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        SeededRandom random(seed);
        VirtualTime time(seed);
        VirtualScheduler scheduler(time);
        Trace trace([&] { return time.now(); });
        CloudService cloud(scheduler);
        const std::string session = cloud.createTaggingSession(team, video, "Ann");
        std::vector<std::unique_ptr<Analyst>> analysts;
        for (const char* name : {"Ann", "Ben", "Cleo"}) {
            analysts.push_back(std::make_unique<Analyst>(name, time, cloud, trace));
            auto& client = analysts.back()->host.cloudClient();
            client.graphQLClient()->fetchTaggingSessions(team, video, std::nullopt, [](const auto&) {});
            client.setFaultPlan([&random](const CloudCall& call) {
                const auto kinds = {Fault::Kind::failBeforeEffect, Fault::Kind::failAfterEffect,
                                    Fault::Kind::none};
                return isWrite(call.operation) && random.chance(0.2)
                           ? Fault(std::data(kinds)[random.below(3)], Base::Seconds(random.between(0, 3)))
                           : Fault();
            });
        }
        time.runFor(Base::Seconds(1));
        const auto subscribeAll = [&](bool first) {
            for (const auto& analyst : analysts) {
                if (first || analyst->hasFailed) {
                    analyst->subscribe(session);
                    renewals += first ? 0 : 1;
                }
            }
        };
        subscribeAll(true);
        for (int step = 0; step < 200; ++step) {
            subscribeAll(false);
            analysts[random.below(3)]->act(random, session, cloud.snapshot(session)->moments);
            time.runFor(Base::Seconds(random.between(0, 0.6)));
        }
        for (const auto& analyst : analysts) {
            analyst->host.setLinkUp(true);
        }
        time.runFor(Base::Seconds(60));
        subscribeAll(false);
        time.runFor(Base::Seconds(60));

        Model model;
        for (const AcceptedCall& call : cloud.log(session)) {
            model.apply(call);
        }
        const auto record = *cloud.snapshot(session);
        EXPECT_GT(record.moments.size(), 5U);
        EXPECT_TRUE(std::ranges::equal(record.moments, model.moments, {}, [](const auto& m) { return *m; }));
        EXPECT_EQ(record.presentationView, model.view);
        EXPECT_EQ(record.sequence, model.sequence);
        std::vector<std::string> changes;
        for (const ChangePointer& change : cloud.changes(session)) {
            changes.emplace_back(nameOf(change->type));
            for (const MomentPointer& moment : change->moments) {
                changes.back() += " " + moment->id;
            }
        }
        for (const auto& analyst : analysts) {
            EXPECT_EQ(analyst->told, changes) << "Every change exactly once and in order.";
        }
    }
    EXPECT_GT(renewals, 20) << "The links hardly dropped: the test has lost its point.";
}

/// What each fault leaves in the cloud, and what the caller hears of it.
TEST(CloudFaults, HaveTheirEffectAndAnswer) {
    struct Case {
        Fault::Kind kind;
        std::size_t moments;
        std::string answer;
    };
    const std::vector<Case> cases = {{Fault::Kind::none, 2, "2"},
                                     {Fault::Kind::failBeforeEffect, 0, "error"},
                                     {Fault::Kind::failAfterEffect, 2, "error"},
                                     {Fault::Kind::answerShort, 2, "1"},
                                     {Fault::Kind::neverAnswer, 2, ""}};
    for (const auto& [kind, moments, expected] : cases) {
        VirtualTime time(1);
        VirtualScheduler scheduler(time);
        Trace trace([&] { return time.now(); });
        CloudService cloud(scheduler);
        const std::string session = cloud.createTaggingSession(team, video, "Ann");
        Analyst ann("Ann", time, cloud, trace);
        ann.host.cloudClient().faultNext(CloudOperation::createMoments, Fault(kind, Base::Seconds(5)));
        std::string answer;
        ann.service->createMoments(
            team, video, session, ann.timeline->uniqueId(),
            std::make_shared<const Instances>(Instances{ann.tag(1), ann.tag(2)}), [&](const auto& ids) {
                answer += ids.succeeded() ? std::to_string(ids.value().size()) : "error";
            });
        time.runFor(Base::Seconds(4));
        EXPECT_EQ(cloud.snapshot(session)->moments.size(), moments);
        EXPECT_EQ(answer, "") << "It is held back.";
        time.runFor(Base::Seconds(60));
        EXPECT_EQ(answer, expected);
    }
}

}  // namespace

}  // namespace ReferenceHost
