#include "ReferenceHost/SeededRandom.hpp"
#include "Tests/ReferenceHost/CloudWorld.hpp"

#include <algorithm>
#include <map>

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

std::vector<MomentRecord> valuesOf(const std::vector<MomentPointer>& moments) {
    std::vector<MomentRecord> values;
    values.reserve(moments.size());
    for (const MomentPointer& moment : moments) {
        values.push_back(*moment);
    }
    return values;
}

/// Everybody writes at random over links that drop and calls that fail, and renews a failed subscription at once, without
/// fetching again: it is told everything from its first change on.
struct RandomRun {
    explicit RandomRun(std::uint64_t seed) : world(seed), random(seed) {
        for (auto& analyst : world.analysts) {
            (void)world.fetch(*analyst);
            analyst->client->setFaultPlan([this](const CloudCall& call) {
                if (!isWrite(call.operation) || !random.chance(0.2)) {
                    return Fault();
                }
                const std::vector<Fault::Kind> kinds = {Fault::Kind::failBeforeEffect,
                                                        Fault::Kind::failAfterEffect, Fault::Kind::none};
                return Fault(kinds[random.below(kinds.size())], Base::Seconds(random.between(0, 3)));
            });
        }
        world.wait(1);
        for (auto& analyst : world.analysts) {
            subscribers.push_back(world.subscribe(*analyst));
        }
        for (int step = 0; step < 200; ++step) {
            act(random.below(world.analysts.size()));
            world.wait(random.between(0, 0.6));
        }
        for (auto& analyst : world.analysts) {
            analyst->client->setFaultPlan(nullptr);
            analyst->client->setLinkUp(true);
        }
        world.wait();
        renewFailedSubscriptions();
        world.wait();
    }

    void act(std::size_t index) {
        auto& analyst = *world.analysts[index];
        renewFailedSubscriptions();
        switch (random.below(8)) {
        case 0:
            analyst.client->setLinkUp(false);
            break;
        case 1:
        case 2:
            analyst.client->setLinkUp(true);
            break;
        case 3:
            (void)world.saveRows(analyst);
            break;
        case 4:
            if (const auto id = anyMoment()) {
                (void)world.remove(analyst, {*id, "no such moment"});
            }
            break;
        case 5:
            if (const auto id = anyMoment()) {
                const auto clip = analyst.tag("Pass", random.unit(), 2);
                clip->setExternalId(id);
                (void)world.update(analyst, {clip});
            }
            break;
        default: {
            std::vector<std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>> clips = {
                analyst.tag("Shot", random.unit(), 3)};
            if (const auto old = analyst.timeline->findRowNamed("Shot"); old && random.chance(0.5)) {
                const auto all = old->allInstances();
                clips.push_back((*all)[random.below(all->size())]);
            }
            (void)world.create(analyst, clips);
        }
        }
    }

    std::optional<std::string> anyMoment() {
        const auto moments = world.service.snapshot(world.session)->moments;
        return moments.empty() ? std::nullopt : std::optional(moments[random.below(moments.size())]->id);
    }

    void renewFailedSubscriptions() {
        for (std::size_t i = 0; i < subscribers.size(); ++i) {
            if (subscribers[i]->errors != 0) {
                subscribers[i]->handle->cancel();
                subscribers[i] = world.subscribe(*world.analysts[i]);
                ++renewals;
            }
        }
    }

    CloudWorld world;
    SeededRandom random;
    std::vector<std::shared_ptr<CloudWorld::Subscriber>> subscribers;
    int renewals = 0;
};

TEST(CloudHistory, FollowsFromTheAcceptedCallsAndReachesEverySubscriber) {
    int renewals = 0;
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomRun run(seed);
        renewals += run.renewals;
        const auto record = *run.world.service.snapshot(run.world.session);

        Model model;
        for (const AcceptedCall& call : run.world.service.log(run.world.session)) {
            model.apply(call);
        }
        EXPECT_GT(record.moments.size(), 5U);
        EXPECT_EQ(valuesOf(record.moments), model.moments);
        EXPECT_EQ(record.presentationView, model.view);
        EXPECT_EQ(record.sequence, model.sequence);

        // Each client's last subscription has told every change exactly once and in order, since its only fetch was before.
        std::vector<std::string> changes;
        for (const ChangePointer& change : run.world.service.changes(run.world.session)) {
            std::string text = nameOf(change->type);
            for (const MomentPointer& moment : change->moments) {
                text += " " + moment->id;
            }
            changes.push_back(text);
        }
        for (const auto& subscriber : run.subscribers) {
            EXPECT_EQ(subscriber->events, changes);
        }
    }
    EXPECT_GT(renewals, 20) << "The links hardly dropped: the test has lost its point.";
}

TEST(CloudHistory, FollowsFromItsSeedToTheLetter) {
    const auto traceOf = [](std::uint64_t seed) {
        RandomRun run(seed);
        return run.world.trace.text();
    };

    const std::string trace = traceOf(5);

    EXPECT_EQ(traceOf(5), trace);
    EXPECT_NE(traceOf(6), trace);
}

TEST(CloudHistory, TheTraceTellsCallEffectAnswerAndDelivery) {
    CloudWorld world;
    const auto subscriber = world.subscribe(world.ben());
    world.wait(1);
    const auto clip = world.ann().tag("Shot", 1, 2);
    const auto creation = world.create(world.ann(), {clip});
    world.wait(1);
    const std::string id = (*creation)->value().front();

    const auto calls = world.trace.entries("Ann", TraceKind::call);
    const auto effects = world.trace.entries("Ann", "effect");
    const auto answers = world.trace.entries("Ann", TraceKind::answer);
    const auto deliveries = world.trace.entries("Ben", "delivery");

    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].field("name"), "createMoments");
    EXPECT_EQ(calls[0].field("taggingSessionId"), world.session);
    EXPECT_EQ(calls[0].field("count"), "1");
    EXPECT_EQ(calls[0].field("ids"), clip->uniqueId());
    ASSERT_EQ(effects.size(), 1U);
    EXPECT_EQ(effects[0].field("sequence"), "1");
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_EQ(answers[0].field("call"), calls[0].field("call"));
    EXPECT_EQ(answers[0].field("ids"), id);
    ASSERT_EQ(deliveries.size(), 1U);
    EXPECT_EQ(deliveries[0].field("sequence"), "1");
    EXPECT_EQ(deliveries[0].field("type"), "momentsAdded");
    EXPECT_EQ(deliveries[0].field("ids"), id);
}

}  // namespace

}  // namespace ReferenceHost
