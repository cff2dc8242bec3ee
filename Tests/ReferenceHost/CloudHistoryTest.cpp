#include "ReferenceHost/Cloud/CloudMomentItem.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"
#include "ReferenceHost/Host.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace ReferenceHost;
using Instances = std::vector<std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>>;
constexpr const char* team = "team";
constexpr const char* video = "video";

/// What the session must hold after these calls, worked out call by call without any of the service's means.
std::vector<MomentRecord> fold(const std::vector<AcceptedCall>& calls, const std::string& session) {
    std::vector<MomentRecord> moments;
    std::uint64_t created = 0;
    for (const AcceptedCall& call : calls) {
        const bool creates = call.operation == CloudOperation::createMoments;
        for (std::size_t i = 0; i < call.drafts.size(); ++i) {
            const MomentDraft& draft = call.drafts[i];
            const std::string id = creates ? call.momentIds[i] : draft.externalId.value_or("");
            auto moment = std::ranges::find(moments, id, &MomentRecord::id);
            if (moment == moments.end() && creates) {
                moment = moments.emplace(moment);
                moment->originTimelineId = call.timelineId;
                moment->originInstanceId = draft.instanceId;
                moment->number = ++created;
            }
            if (moment != moments.end()) {
                *moment = {id,
                           *draft.code,
                           *draft.codeColor,
                           draft.start,
                           draft.end,
                           draft.notes,
                           moment->originTimelineId,
                           moment->originInstanceId,
                           {},
                           session,
                           moment->number};
            }
        }
        if (call.operation == CloudOperation::removeMoments) {
            std::erase_if(moments, [&](const auto& moment) {
                return std::ranges::count(call.momentIds, moment.id) != 0;
            });
        }
    }
    return moments;
}

/// One client of a session, who can write at random.
struct Client {
    Client(const std::string& name, VirtualTime& time, CloudService& cloud, Trace& trace)
        : execution(time, name, &trace), host(name, execution, cloud, trace) {}

    void subscribe(const std::string& session) {
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

    void act(SeededRandom& random, const std::string& session, const std::string& known) {
        const auto written = [](const auto&) {};
        const auto id = timeline->uniqueId();
        const auto found = timeline->findRowNamed("Shot");
        const auto row = found ? found : timeline->addRow("Shot", {});
        const auto clips =
            std::make_shared<Instances>(1, timeline->addInstance(row->uniqueId(), random.unit(), 3));
        const auto all = row->allInstances();
        switch (random.below(5)) {
        case 1:
            return service->savePresentationView(team, video, session, id, "", timeline->allRows(), written);
        case 2:
            return service->removeMoments(team, video, session, id, {known, "no such moment"}, written);
        case 3:
            clips->front()->setExternalId(known);
            return service->updateMoments(team, video, session, id, clips, written);
        default:
            clips->push_back((*all)[random.below(all->size())]);
            return service->createMoments(team, video, session, id, clips, written);
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

/// Links drop and calls fail. A failed subscription is renewed at once, without fetching again: it goes on where the
/// one before it ended.
TEST(CloudHistory, FollowsFromTheAcceptedCallsAndReachesEverySubscriber) {
    int renewals = 0;
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        SeededRandom random(seed);
        VirtualTime time(seed);
        VirtualScheduler scheduler(time);
        Trace trace([&] { return time.now(); });
        CloudService cloud(scheduler);
        CloudRules rules;
        rules.onlyEditsAreWritten = false;  // each call says everything
        cloud.setRules(rules);
        const std::string session = cloud.createTaggingSession(team, video, "Ann");
        Client ann("Ann", time, cloud, trace);
        Client ben("Ben", time, cloud, trace);
        const std::vector<Client*> clients = {&ann, &ben};
        for (Client* client : clients) {
            CloudClient& network = client->host.cloudClient();
            network.graphQLClient()->fetchTaggingSessions(team, video, {}, [](const auto&) {});
            network.setFaultPlan([&random](const CloudCall& call) {
                const auto kind =
                    random.chance(0.5) ? Fault::Kind::failBeforeEffect : Fault::Kind::failAfterEffect;
                const Fault fault(kind, Base::Seconds(random.between(0, 3)));
                return isWrite(call.operation) && random.chance(0.2) ? fault : Fault();
            });
            time.runFor(Base::Seconds(1));
            client->subscribe(session);
        }
        for (int step = 0; step < 200; ++step) {
            for (Client* client : clients) {
                if (client->hasFailed) {
                    client->handle->cancel();
                    client->subscribe(session);
                    ++renewals;
                }
                client->host.setLinkUp(step >= 150 || random.chance(0.9));
            }
            const auto moments = cloud.snapshot(session)->moments;
            const auto known = moments.empty() ? "" : moments[random.below(moments.size())]->id;
            clients[random.below(2)]->act(random, session, known);
            time.runFor(Base::Seconds(random.between(0, 0.6)));
        }
        time.runFor(Base::Seconds(60));

        const auto record = *cloud.snapshot(session);
        const auto expected = fold(cloud.log(session), session);
        EXPECT_GT(expected.size(), 5U);
        EXPECT_TRUE(
            std::ranges::equal(record.moments, expected, {}, [](const auto& moment) { return *moment; }));
        std::vector<std::string> changes;
        for (const ChangePointer& change : cloud.changes(session)) {
            changes.emplace_back(nameOf(change->type));
            for (const MomentPointer& moment : change->moments) {
                changes.back() += " " + moment->id;
            }
        }
        EXPECT_EQ((std::vector{ann.told, ben.told}), (std::vector{changes, changes})) << "once and in order";
    }
    EXPECT_GT(renewals, 20) << "The links hardly dropped: the test has lost its point.";
}

/// One client alone with the cloud.
struct OneClientTest : testing::Test {
    VirtualTime time{1};
    VirtualScheduler scheduler{time};
    Trace trace{[this] { return time.now(); }};
    CloudService cloud{scheduler};
    Client ann{"Ann", time, cloud, trace};
};

TEST_F(OneClientTest, WhatATimelineWasNamesAndSavesNothingOnceItIsPublishedAnewOrClosed) {
    const auto create = [&](const char* videoId, const std::string& session, const Instances& clips) {
        auto ids = std::make_shared<std::vector<std::string>>();
        ann.service->createMoments(team, videoId, session, ann.timeline->uniqueId(),
                                   std::make_shared<Instances>(clips),
                                   [ids](const auto& answer) { *ids = answer.value(); });
        return ids;
    };
    const std::string former = cloud.createTaggingSession(team, video, "Ann");
    const Instances clips{ann.timeline->addInstance(ann.timeline->addRow("Shot", {})->uniqueId(), 1, 2)};
    const auto late = create(video, former, clips);
    ann.timeline->beginPublishing(ann.host.cloudClient().lastWriter());
    time.runFor(Base::Seconds(10));
    EXPECT_EQ(cloud.snapshot(former)->moments.size(), 1U);
    EXPECT_TRUE(late->empty());
    ann.service = ann.host.cloudClient().syncLibrary().makeTaggingSessionService();
    const std::string session = cloud.createTaggingSession(team, "another video", "Ann");
    const auto ids = create("another video", session, clips);
    const auto id = ann.timeline->uniqueId();
    const auto save = [&](RemoteCoding::RowList rows) {
        ann.service->savePresentationView(team, "another video", session, id, "", std::move(rows),
                                          [](const auto&) {});
        time.runFor(Base::Seconds(10));
        return cloud.snapshot(session)->presentationView->size();
    };
    EXPECT_EQ(save(ann.timeline->allRows()), 1U);
    EXPECT_EQ(ids->size(), 1U);

    ann.timeline->addRow("Pass", {});
    const auto rows = ann.timeline->allRows();
    ann.host.closeTimeline(id);
    ann.timeline.reset();
    EXPECT_EQ(save(rows), 1U)
        << "Others may have changed the list, and the closed timeline knows of no edit.";
}

TEST_F(OneClientTest, ARowsNewNameWaitsForNoClipThatHasItInTheCloudOrThatNobodyElseHas) {
    const std::string session = cloud.createTaggingSession(team, video, "Ann");
    const auto row = ann.timeline->addRow("Shot", {});
    const auto id = ann.timeline->uniqueId();
    const auto listed = [&] {
        ann.service->savePresentationView(team, video, session, id, "", ann.timeline->allRows(),
                                          [](const auto&) {});
        time.runFor(Base::Seconds(10));
        return cloud.snapshot(session)->presentationView->front().name;
    };
    EXPECT_EQ(listed(), "Shot");
    const auto clip = ann.timeline->addInstance(row->uniqueId(), 1, 2);
    const auto captured = ann.timeline->timelineFromModifyCount(1, false);
    ann.timeline->renameRow(row->uniqueId(), "Goal");
    ann.service->createMoments(team, video, session, id, captured->allRows()->front()->allInstances(),
                               [&](const auto& ids) { clip->setExternalId(ids.value().front()); });
    time.runFor(Base::Seconds(10));
    EXPECT_EQ(listed(), "Goal") << "The clip was renamed before it was written, and after it was captured.";

    ann.timeline->renameRow(row->uniqueId(), "Point");
    ann.host.cloudClient().faultNext(CloudOperation::updateMoments, Fault(Fault::Kind::failAfterEffect));
    ann.service->updateMoments(team, video, session, id, row->allInstances(), [](const auto&) {});
    time.runFor(Base::Seconds(10));
    EXPECT_EQ(listed(), "Goal");
    const CloudMomentItem moment(cloud.snapshot(session)->moments.front(), cloud.rules());
    EXPECT_NE(moment.updateOnTimeline(ann.timeline, clip->uniqueId(), row->uniqueId()), nullptr);
    EXPECT_EQ(listed(), "Point") << "The answer was lost, and the moment says so.";

    ann.timeline->removeInstance(clip->uniqueId());
    ann.service->removeMoments(team, video, session, id, {*clip->externalId()}, [](const auto&) {});
    time.runFor(Base::Seconds(10));
    ann.timeline->renameRow(row->uniqueId(), "Score");
    EXPECT_EQ(moment.updateOnTimeline(ann.timeline, clip->uniqueId(), row->uniqueId()), nullptr);
    ann.timeline->codingTarget()->setRowNameWithRowNum(0, moment.code());
    EXPECT_EQ(row->name(), "Score") << "News of a deleted clip is no newer than those of another.";
    ann.timeline->restoreInstance(clip->uniqueId());
    EXPECT_EQ(listed(), "Score");
}

}  // namespace
