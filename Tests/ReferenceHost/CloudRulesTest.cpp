// What it looks like when the cloud breaks one of its promises; that it keeps them is the contract suites' subject.

#include "Tests/ReferenceHost/CloudWorld.hpp"

namespace ReferenceHost {

namespace {

class CloudRulesTest : public testing::Test {
protected:
    void breakRule(bool CloudRules::* rule) {
        CloudRules rules;
        rules.*rule = false;
        world.service.setRules(rules);
    }

    std::vector<std::shared_ptr<const RemoteCoding::MomentItem>> fetchMoments(CloudWorld::Analyst& analyst) {
        const auto fetch = world.fetch(analyst);
        world.wait(1);
        std::vector<std::shared_ptr<const RemoteCoding::MomentItem>> items;
        for (const auto& moment : *(*fetch)->value().front().moments) {
            items.push_back(analyst.client->syncLibrary().momentItem(*moment));
        }
        return items;
    }

    std::string createOne(CloudWorld::Analyst& analyst,
                          const std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>& clip) {
        const auto creation = world.create(analyst, {clip});
        world.wait(1);
        return (*creation)->value().front();
    }

    CloudWorld world;
    CloudWorld::Analyst& ann = world.ann();
    CloudWorld::Analyst& ben = world.ben();
};

TEST_F(CloudRulesTest, TheSenderCanBeLeftOutLiveAndInWhatItMissed) {
    breakRule(&CloudRules::senderIsTold);
    (void)world.fetch(ann);
    world.wait(1);
    createOne(ann, ann.tag("Shot", 1, 2));

    const auto sender = world.subscribe(ann);
    const auto other = world.subscribe(ben);
    world.wait(1);
    createOne(ann, ann.tag("Shot", 3, 4));

    EXPECT_TRUE(sender->events.empty());
    EXPECT_EQ(other->events.size(), 1U);
}

TEST_F(CloudRulesTest, EventsThatAreUnderWayTogetherCanBeTurnedRound) {
    const auto subscriber = world.subscribe(ben);
    world.wait(1);
    breakRule(&CloudRules::deliveredInOrder);
    ben.client->setEventFaultPlan([](const CloudEvent&) { return EventFault(false, 0, Base::Seconds(5)); });

    const std::string first = createOne(ann, ann.tag("Shot", 1, 2));
    const std::string second = createOne(ann, ann.tag("Shot", 3, 4));
    world.wait();

    EXPECT_EQ(subscriber->events,
              (std::vector<std::string>{"momentsAdded " + second, "momentsAdded " + first}));
}

TEST_F(CloudRulesTest, ASubscriptionCanForgetTheLastFetch) {
    breakRule(&CloudRules::subscriptionStartsAtLastFetch);
    (void)world.fetch(ben);
    world.wait(1);
    createOne(ann, ann.tag("Shot", 1, 2));

    const auto subscriber = world.subscribe(ben);
    world.wait();

    EXPECT_TRUE(subscriber->events.empty());
}

TEST_F(CloudRulesTest, ARepeatedCreationCanMakeATwin) {
    breakRule(&CloudRules::createIsIdempotent);
    const auto clip = ann.tag("Shot", 1, 2);

    EXPECT_NE(createOne(ann, clip), createOne(ann, clip));

    EXPECT_EQ(world.momentCount(), 2U);
}

TEST_F(CloudRulesTest, AVideoCanGetASecondSessionBehindItsPrimaryOne) {
    breakRule(&CloudRules::createSessionGivesPrimary);

    EXPECT_NE(world.service.createTaggingSession("team", "video", "Ben"), world.session);

    EXPECT_EQ(world.service.primarySessionOf("video"), world.session);
    EXPECT_EQ(world.service.fetchTaggingSessions("team", "video").size(), 2U);
    EXPECT_EQ(world.service.fetchTaggingSessions("team", "video", "Ben").size(), 1U);
}

TEST_F(CloudRulesTest, UnknownIdsCanMakeTheAnswerFalse) {
    breakRule(&CloudRules::unknownIdsAreIgnored);
    const std::string id = createOne(ann, ann.tag("Shot", 1, 2));

    const auto removal = world.remove(ann, {"no such moment", id});
    const auto update = world.update(ann, {ann.tag("Shot", 3, 4)});
    world.wait(1);

    EXPECT_FALSE((*removal)->value());
    EXPECT_FALSE((*update)->value());
    EXPECT_EQ(world.momentCount(), 0U);
}

TEST_F(CloudRulesTest, OwnMomentsCanComeBackAsNewClips) {
    breakRule(&CloudRules::ownMomentsRecognised);
    const auto clip = ann.tag("Shot", 1, 2);
    createOne(ann, clip);

    const auto appended = fetchMoments(ann).front()->appendToTimeline(ann.timeline);

    EXPECT_NE(appended, clip);
    EXPECT_EQ(clip->row()->numberOfInstances(), 2);
}

TEST_F(CloudRulesTest, AMomentWithoutItsRowCanBePlacedNowhere) {
    breakRule(&CloudRules::missingRowIsMade);
    createOne(ann, ann.tag("Shot", 1, 2));

    const auto moment = fetchMoments(ben).front();
    EXPECT_EQ(moment->appendToTimeline(ben.timeline)->row(), nullptr);
    EXPECT_EQ(ben.timeline->numberOfRows(), 0U);

    const auto row = ben.timeline->addRow("Shot", Base::Color());
    EXPECT_EQ(moment->appendToTimeline(ben.timeline)->row(), row);
}

TEST_F(CloudRulesTest, WritesCanFailWithTheFirstDrop) {
    breakRule(&CloudRules::writesAreRepeatedOverShortDrops);
    ann.client->setLinkUp(false);

    const auto creation = world.create(ann, {ann.tag("Shot", 1, 2)});
    world.wait(1);

    ASSERT_TRUE(creation->has_value());
    EXPECT_FALSE((*creation)->succeeded());
}

}  // namespace

}  // namespace ReferenceHost
