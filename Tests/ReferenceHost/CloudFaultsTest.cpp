#include "Tests/ReferenceHost/CloudWorld.hpp"

namespace ReferenceHost {

namespace {

using Kind = Fault::Kind;

TEST(CloudFaults, WritesMeetTheirFaultBeforeOrAfterTheirEffect) {
    CloudWorld world;
    auto& ann = world.ann();
    const auto first = ann.tag("Shot", 1, 2);

    ann.client->faultNext(CloudOperation::createMoments, Fault(Kind::failBeforeEffect));
    ann.client->faultNext(CloudOperation::createMoments, Fault(Kind::failAfterEffect));
    const auto before = world.create(ann, {first});
    world.wait();
    EXPECT_FALSE((*before)->succeeded());
    EXPECT_EQ(world.momentCount(), 0U);
    const auto after = world.create(ann, {first});
    world.wait();
    EXPECT_FALSE((*after)->succeeded());
    EXPECT_EQ(world.momentCount(), 1U);

    ann.client->faultNext(CloudOperation::createMoments, Fault(Kind::answerShort, Base::Seconds(0), 2));
    const auto tooFew = world.create(ann, {first, ann.tag("Shot", 3, 4), ann.tag("Shot", 5, 6)});
    world.wait();
    EXPECT_EQ((*tooFew)->value().size(), 1U);
    EXPECT_EQ(world.momentCount(), 3U);

    ann.client->faultNext(CloudOperation::removeMoments, Fault(Kind::answerFalse));
    const auto refused = world.remove(ann, (*tooFew)->value());
    world.wait();
    EXPECT_FALSE((*refused)->value());
    EXPECT_EQ(world.momentCount(), 3U);

    const auto done = world.remove(ann, (*tooFew)->value());
    world.wait();
    EXPECT_TRUE((*done)->value());
    EXPECT_EQ(world.momentCount(), 2U);
}

TEST(CloudFaults, AnswersAreHeldBackOrNeverCome) {
    CloudWorld world;
    auto& ann = world.ann();
    const auto clip = ann.tag("Shot", 1, 2);

    ann.client->faultNext(CloudOperation::createMoments, Fault(Kind::none, Base::Seconds(30)));
    const auto late = world.create(ann, {clip});
    world.wait(29);
    EXPECT_FALSE(late->has_value());
    EXPECT_EQ(world.momentCount(), 1U) << "It took effect long before.";
    world.wait(2);
    ASSERT_TRUE(late->has_value());
    EXPECT_TRUE((*late)->succeeded());

    ann.client->faultNext(CloudOperation::removeMoments, Fault(Kind::neverAnswer));
    const auto never = world.remove(ann, (*late)->value());
    world.wait(10);
    ann.client->setLinkUp(false);
    world.wait(3600);
    EXPECT_FALSE(never->has_value());
    EXPECT_EQ(world.momentCount(), 0U);
    EXPECT_EQ(ann.client->numberOfCallsUnderWay(), 1U);

    // A fetch that hangs is lost with the link.
    ann.client->setLinkUp(true);
    ann.client->faultNext(CloudOperation::fetchTaggingSessions, Fault(Kind::none, Base::Seconds(100)));
    const auto fetch = world.fetch(ann);
    world.wait(5);
    ann.client->setLinkUp(false);
    world.wait(5);
    ASSERT_TRUE(fetch->has_value());
    EXPECT_FALSE((*fetch)->succeeded());
}

TEST(CloudFaults, ThePlanSeesEachCallOnceAndYieldsToSingleFaults) {
    CloudWorld world;
    auto& ann = world.ann();
    const auto clip = ann.tag("Shot", 1, 2);
    std::vector<CloudCall> seen;
    ann.client->setFaultPlan([&](const CloudCall& call) {
        seen.push_back(call);
        return Fault(Kind::failBeforeEffect);
    });

    ann.client->faultNext(CloudOperation::createMoments, Fault());
    const auto spared = world.create(ann, {clip});
    const auto planned = world.create(ann, {clip});
    world.wait(1);
    ann.client->setLinkUp(false);
    const auto fetch = world.fetch(ann);
    const auto removal = world.remove(ann, {"a", "b"});
    world.wait(5);
    ann.client->setLinkUp(true);
    world.wait();

    EXPECT_TRUE((*spared)->succeeded());
    EXPECT_FALSE((*planned)->succeeded());
    EXPECT_FALSE((*removal)->succeeded());
    ASSERT_EQ(seen.size(), 3U) << "A repetition is no call of its own.";
    EXPECT_EQ(seen[0].operation, CloudOperation::createMoments);
    EXPECT_EQ(seen[0].ids, std::vector<std::string>{clip->uniqueId()});
    EXPECT_EQ(seen[0].timelineId, ann.timeline->uniqueId());
    EXPECT_EQ(seen[2].operation, CloudOperation::removeMoments);
    EXPECT_EQ(seen[2].sessionId, world.session);
    EXPECT_EQ(seen[2].count, 2U);
    EXPECT_EQ(seen[2].number, 4U);
}

TEST(CloudFaults, WritesGiveUpAfterAShortDropAndNotBefore) {
    CloudWorld world;
    auto& ann = world.ann();
    ann.client->setLinkUp(false);
    const auto lost = world.create(ann, {ann.tag("Shot", 1, 2)});
    world.wait(11.5);
    EXPECT_FALSE(lost->has_value());
    world.wait(1.5);
    ASSERT_TRUE(lost->has_value());
    EXPECT_FALSE((*lost)->succeeded());

    const auto rescued = world.create(ann, {ann.tag("Shot", 3, 4)});
    world.wait(11.5);
    ann.client->setLinkUp(true);
    world.wait(1.5);
    ASSERT_TRUE(rescued->has_value());
    EXPECT_TRUE((*rescued)->succeeded());
    EXPECT_EQ(world.momentCount(), 1U);
}

TEST(CloudFaults, AWriteWhoseAnswerWasLostIsRepeatedWithoutHarm) {
    CloudWorld world;
    auto& ann = world.ann();
    const auto subscriber = world.subscribe(world.ben());
    world.wait(1);
    ann.client->faultNext(CloudOperation::createMoments, Fault(Kind::none, Base::Seconds(5)));
    const auto creation = world.create(ann, {ann.tag("Shot", 1, 2)});
    world.wait(1);
    ASSERT_EQ(world.momentCount(), 1U);
    ann.client->setLinkUp(false);
    ann.client->setLinkUp(true);
    world.wait();

    const std::string id = (*creation)->value().front();
    EXPECT_EQ(world.momentCount(), 1U);
    EXPECT_EQ(subscriber->events, (std::vector<std::string>{"momentsAdded " + id, "momentsUpdated " + id}));
}

TEST(CloudFaults, EventsAreDroppedRepeatedAndDelayed) {
    CloudWorld world;
    auto& ann = world.ann();
    auto& ben = world.ben();
    const auto subscriber = world.subscribe(ben);
    world.wait(1);

    ben.client->setEventFaultPlan([](const CloudEvent& event) {
        return event.change->sequence == 1 ? EventFault(false, 2, Base::Seconds(20)) : EventFault();
    });
    const auto first = world.create(ann, {ann.tag("Shot", 1, 2)});
    world.wait(1);
    const auto second = world.create(ann, {ann.tag("Shot", 3, 4)});
    world.wait(15);
    EXPECT_TRUE(subscriber->events.empty()) << "The second waits behind the first.";
    world.wait(10);
    const std::string added = "momentsAdded " + (*first)->value().front();
    EXPECT_EQ(subscriber->events,
              (std::vector<std::string>{added, added, added, "momentsAdded " + (*second)->value().front()}));

    ben.client->setEventFaultPlan([](const CloudEvent&) { return EventFault(true); });
    world.create(ann, {ann.tag("Shot", 5, 6)});
    world.create(ann, {ann.tag("Shot", 7, 8)});
    world.wait();
    EXPECT_EQ(subscriber->events.size(), 4U);
    EXPECT_EQ(subscriber->errors, 1);
    EXPECT_EQ(world.service.numberOfSubscribers(world.session), 0U);
    EXPECT_EQ(ben.client->numberOfUncancelledSubscriptions(), 1U) << "Its handle is still to be cancelled.";
    subscriber->handle->cancel();
    EXPECT_EQ(ben.client->numberOfUncancelledSubscriptions(), 0U);

    ben.client->setEventFaultPlan(nullptr);
    const auto next = world.subscribe(ben);
    ben.client->faultNext(CloudOperation::subscribe, Fault(Kind::failBeforeEffect));
    const auto refused = world.subscribe(ben);
    world.wait(1);
    EXPECT_EQ(refused->errors, 1);
    EXPECT_EQ(next->errors, 0);
    ben.client->dropSubscriptions();
    world.wait(1);
    EXPECT_EQ(next->errors, 1);
    EXPECT_EQ(refused->errors, 1) << "A subscription fails once.";
}

TEST(CloudFaults, AFetchWhoseAnswerWasLostIsNoFetch) {
    CloudWorld world;
    auto& ann = world.ann();
    auto& ben = world.ben();
    (void)world.fetch(ben);
    world.wait(1);
    const auto creation = world.create(ann, {ann.tag("Shot", 1, 2)});
    world.wait(1);

    ben.client->faultNext(CloudOperation::fetchTaggingSessions, Fault(Kind::failAfterEffect));
    (void)world.fetch(ben);
    world.wait(1);
    ben.client->faultNext(CloudOperation::fetchTaggingSessions, Fault(Kind::none, Base::Seconds(9)));
    (void)world.fetch(ben);
    world.wait(1);
    ben.client->setLinkUp(false);
    world.wait(1);
    ben.client->setLinkUp(true);
    const auto subscriber = world.subscribe(ben);
    world.wait();

    EXPECT_EQ(subscriber->events, std::vector<std::string>{"momentsAdded " + (*creation)->value().front()});
}

TEST(CloudFaults, WhatTheLibraryCannotReadIsLeftOutOrRefused) {
    CloudWorld world;
    auto& ann = world.ann();
    const auto clip = ann.tag("Shot", 1, 2);
    const auto ids = world.create(ann, {clip, ann.tag("Shot", 3, 4)});
    world.wait();
    const auto fetch = world.fetch(ann);
    world.wait();
    const auto moments = *(*fetch)->value().front().moments;
    auto& library = ann.client->syncLibrary();

    ann.client->setUnreadable({(*ids)->value().front()});
    EXPECT_EQ(library.momentItem(*moments[0]), nullptr);
    EXPECT_NE(library.momentItem(*moments[1]), nullptr);
    class ForeignMoment final : public RemoteCoding::Moment {};
    EXPECT_EQ(library.momentItem(ForeignMoment()), nullptr);
    class ForeignView final : public RemoteCoding::PresentationView {};
    EXPECT_EQ(library.presentationViewItem(ForeignView()), std::nullopt);

    // A partial timeline stands here for a timeline that is not of the library's kind.
    const auto foreign = ann.timeline->timelineFromModifyCount(0, false);
    const auto item = library.momentItem(*moments[1]);
    const auto unplaced = item->appendToTimeline(foreign);
    ASSERT_NE(unplaced, nullptr);
    EXPECT_EQ(unplaced->row(), nullptr);
    EXPECT_EQ(item->appendToTimeline(nullptr)->row(), nullptr);
    EXPECT_EQ(item->updateOnTimeline(foreign, clip->uniqueId(), clip->row()->uniqueId()), nullptr);
    EXPECT_FALSE((*world.create(ann, {clip, nullptr}))->succeeded());
    EXPECT_FALSE((*world.update(ann, {nullptr}))->succeeded());
}

TEST(CloudFaults, AClosedClientDropsWhatIsUnderWayAndAnswersWithErrors) {
    CloudWorld world;
    auto& ann = world.ann();
    const auto subscriber = world.subscribe(ann);
    world.wait(1);
    const auto graphQL = ann.client->graphQLClient();
    const auto creation = world.create(world.ben(), {world.ben().tag("Shot", 1, 2)});
    const auto fetch = world.fetch(ann);
    world.wait(0.03);

    ann.client.reset();
    world.wait();

    EXPECT_TRUE((*creation)->succeeded());
    EXPECT_FALSE(fetch->has_value());
    EXPECT_EQ(fetch.use_count(), 1) << "Its completion was let go of.";
    EXPECT_TRUE(subscriber->events.empty());
    EXPECT_EQ(world.service.numberOfSubscribers(world.session), 0U);
    const auto refused = world.create(ann, {ann.tag("Shot", 1, 2)});
    ASSERT_TRUE(refused->has_value());
    EXPECT_FALSE((*refused)->succeeded());
    graphQL->subscribeToTaggingSessionChanges(world.session, "timeline", {}, {})->cancel();
    subscriber->handle->cancel();
}

}  // namespace

}  // namespace ReferenceHost
