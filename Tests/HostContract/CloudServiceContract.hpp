#pragma once

#include "Tests/HostContract/CloudFixture.hpp"

/// The contract of the tagging-session service, the sync library and the fetches of the GraphQL client as tests, for any
/// host. Include this header in one source file of a test program, derive a `CloudFixture`, and instantiate
/// `CloudServiceContract` with it.
namespace HostContract {

class CloudServiceContract : public CloudContractTest {};

TEST_P(CloudServiceContract, GivesAVideoOneSessionHoweverManyAskForIt) {
    EXPECT_TRUE(wait(startFetch(ann)).value().empty());

    const auto first = startCreateSession(ann);
    const auto second = startCreateSession(ben);
    const std::string session = wait(first).value();

    EXPECT_FALSE(session.empty());
    EXPECT_EQ(wait(second).value(), session);
    EXPECT_EQ(createSession(cleo), session);
    EXPECT_NE(wait(startCreateSession(ann, "another video")).value(), session);
    const Sessions sessions = wait(startFetch(ben)).value();
    ASSERT_EQ(sessions.size(), 1U);
    EXPECT_EQ(sessions.front().identifier, session);
}

TEST_P(CloudServiceContract, MakesOneMomentForEachClipInTheirOrder) {
    const std::string session = createSession(ann);
    const std::vector<Clip> clips = {Clip("Shot", 1.25, 2.5, "left foot"), Clip("Eckstoß ⚽", 3, 3),
                                     Clip("Shot", 0.1, 90.333333333333329), Clip("", -1, 4, "\"quoted\"\n")};
    std::vector<Instance> instances;
    instances.reserve(clips.size());
    for (const Clip& clip : clips) {
        instances.push_back(tag(ann, clip));
    }

    const Ids ids = create(ann, session, instances);

    ASSERT_EQ(ids.size(), clips.size());
    EXPECT_EQ(fetchIds(ben), ids);
    EXPECT_EQ(fetchClips(ben), clips);
    std::vector<std::string> codes;
    for (const auto& item : fetchMoments(ben)) {
        codes.push_back(item->code());
    }
    EXPECT_EQ(codes, (std::vector<std::string>{"Shot", "Eckstoß ⚽", "Shot", ""}));
    EXPECT_TRUE(wait(startCreate(ann, session, timeline(ann), {})).value().empty());
}

TEST_P(CloudServiceContract, TakesARepeatedCreationForAnUpdateWhileTheMomentLives) {
    const std::string session = createSession(ann);
    const Instance clip = tag(ann, Clip("Shot", 1, 2));
    const Instance other = tag(ann, Clip("Pass", 5, 6));
    const std::string id = create(ann, session, {clip}).front();

    host().retime(timeline(ann), clip, 10, 20);
    const Ids again = create(ann, session, {other, clip});
    ASSERT_EQ(again.size(), 2U);
    EXPECT_EQ(again[1], id);
    EXPECT_NE(again[0], id);
    EXPECT_EQ(fetchClips(ben), (std::vector<Clip>{Clip("Shot", 10, 20), Clip("Pass", 5, 6)}));

    // The same instance id on another timeline is another clip.
    const Timeline elsewhere = host().makeTimeline();
    const Ids foreign = wait(startCreate(ann, session, elsewhere, {clip})).value();
    EXPECT_NE(foreign.front(), id);

    EXPECT_TRUE(wait(startRemove(ann, session, {id})).value());
    const Ids reborn = create(ann, session, {clip});
    EXPECT_NE(reborn.front(), id);
    EXPECT_EQ(fetchIds(ben).size(), 3U);
}

TEST_P(CloudServiceContract, PassesOverMomentsThatAreGone) {
    const std::string session = createSession(ann);
    const Instance kept = tag(ann, Clip("Shot", 1, 2));
    const Instance gone = tag(ann, Clip("Shot", 3, 4));
    const Instance neverSent = tag(ann, Clip("Shot", 5, 6));
    const Ids ids = create(ann, session, {kept, gone});

    EXPECT_TRUE(wait(startRemove(ben, session, {ids[1], "no such moment"})).value());
    EXPECT_TRUE(wait(startRemove(ann, session, {ids[1]})).value());
    host().retime(timeline(ann), kept, 7, 8);
    EXPECT_TRUE(wait(startUpdate(ann, session, {gone, neverSent, kept})).value());

    EXPECT_EQ(fetchIds(ben), Ids{ids[0]});
    EXPECT_EQ(fetchClips(ben), std::vector<Clip>{Clip("Shot", 7, 8)});
}

TEST_P(CloudServiceContract, WritesClipsAsTheyWereWhenItWasCalled) {
    const std::string session = createSession(ann);
    const Instance clip = tag(ann, Clip("Shot", 1, 2));

    const auto creation = startCreate(ann, session, timeline(ann), {clip});
    runUntil([&] { return creation->hasReturned(); });
    host().retime(timeline(ann), clip, 10, 20);
    clip->setExternalId(wait(creation).value().front());
    EXPECT_EQ(fetchClips(ben), std::vector<Clip>{Clip("Shot", 1, 2)});

    const auto update = startUpdate(ann, session, {clip});
    runUntil([&] { return update->hasReturned(); });
    host().remove(timeline(ann), clip);
    EXPECT_TRUE(wait(update).value());
    EXPECT_EQ(fetchClips(ben), std::vector<Clip>{Clip("Shot", 10, 20)});
}

TEST_P(CloudServiceContract, KeepsTheRowsOfThePresentationViewInOrderAndColour) {
    const std::string session = createSession(ann);
    const auto fetchRows = [&] {
        std::vector<std::pair<std::string, Base::Color>> rows;
        const Sessions sessions = wait(startFetch(ben)).value();
        for (const auto& view : *sessions.front().presentationViews) {
            const auto item = host().syncLibrary(ben).presentationViewItem(*view);
            for (const auto& row : item->subViews) {
                rows.emplace_back(row.name, row.color());
            }
        }
        return rows;
    };
    EXPECT_TRUE(fetchRows().empty());

    const Base::Color red(255, 0, 0);
    const Base::Color faint(1, 2, 3, 4);
    host().addRow(timeline(ann), "Shot", red);
    host().addRow(timeline(ann), "", faint);
    host().addRow(timeline(ann), "Shot", faint);
    ASSERT_TRUE(wait(startSaveRows(ann, session)).succeeded());
    EXPECT_EQ(fetchRows(), (std::vector<std::pair<std::string, Base::Color>>{
                               {"Shot", red}, {"", faint}, {"Shot", faint}}));

    ASSERT_TRUE(wait(startSaveRows(ben, session)).succeeded());
    EXPECT_TRUE(fetchRows().empty()) << "The last save replaces the whole view.";
}

TEST_P(CloudServiceContract, PutsAMomentOnItsRowAndMakesTheRowInItsColour) {
    const std::string session = createSession(ann);
    const Base::Color green(0, 128, 0);
    host().addRow(timeline(ann), "Goal", green);
    const Ids ids =
        create(ann, session, {tag(ann, Clip("Goal", 1, 2, "header")), tag(ann, Clip("Goal", 3, 4))});
    host().addRow(timeline(ben), "Shot", Base::Color(9, 9, 9));

    std::vector<Instance> instances;
    for (const auto& item : fetchMoments(ben)) {
        instances.push_back(item->appendToTimeline(timeline(ben)));
    }

    ASSERT_EQ(instances.size(), 2U);
    ASSERT_TRUE(instances[0]->row() && instances[1]->row());
    EXPECT_EQ(host().clipOf(instances[0]), Clip("Goal", 1, 2, "header"));
    EXPECT_EQ(instances[0]->externalId(), ids[0]);
    EXPECT_EQ(instances[1]->externalId(), ids[1]);
    const auto rows = timeline(ben)->allRows();
    ASSERT_EQ(rows->size(), 2U);
    EXPECT_EQ(rows->back()->color(), green);
    EXPECT_EQ(rows->back()->numberOfInstances(), 2);
    EXPECT_EQ(instances[1]->row(), rows->back());
}

TEST_P(CloudServiceContract, GivesBackTheClipThatAMomentOfThisTimelineStandsFor) {
    const std::string session = createSession(ann);
    const Instance clip = tag(ann, Clip("Shot", 1, 2));
    const std::string id = create(ann, session, {clip}).front();
    const auto moment = fetchMoments(ann).front();
    host().retime(timeline(ann), clip, 1, 3);
    clip->setExternalId(std::nullopt);
    const std::int64_t count = timeline(ann)->modifyCount();

    const Instance found = moment->appendToTimeline(timeline(ann));

    EXPECT_EQ(found->uniqueId(), clip->uniqueId());
    EXPECT_EQ(clip->externalId(), id);
    EXPECT_EQ(host().clipOf(clip), Clip("Shot", 1, 3)) << "The newer local edit stays.";
    EXPECT_EQ(timeline(ann)->modifyCount(), count);

    host().remove(timeline(ann), clip);
    const Instance fresh = moment->appendToTimeline(timeline(ann));
    EXPECT_NE(fresh->uniqueId(), clip->uniqueId());
    EXPECT_EQ(host().clipOf(fresh), Clip("Shot", 1, 2));
}

TEST_P(CloudServiceContract, UpdatesAClipOnlyWhereItIs) {
    const std::string session = createSession(ann);
    create(ann, session, {tag(ann, Clip("Shot", 1, 2, "note"))});
    const auto moment = fetchMoments(ben).front();
    const Instance clip = tag(ben, Clip("Shot", 5, 6));
    host().addRow(timeline(ben), "Pass", Base::Color());
    const std::string rowId = clip->row()->uniqueId();
    const std::string otherRowId = timeline(ben)->allRows()->back()->uniqueId();

    EXPECT_EQ(moment->updateOnTimeline(timeline(ben), clip->uniqueId(), otherRowId), nullptr);
    EXPECT_EQ(moment->updateOnTimeline(timeline(ben), "no such clip", rowId), nullptr);
    EXPECT_EQ(moment->updateOnTimeline(host().makeTimeline(), clip->uniqueId(), rowId), nullptr);
    EXPECT_EQ(host().clipOf(clip), Clip("Shot", 5, 6));

    EXPECT_EQ(moment->updateOnTimeline(timeline(ben), clip->uniqueId(), rowId), clip);
    EXPECT_EQ(host().clipOf(clip), Clip("Shot", 1, 2, "note"));
    const std::int64_t count = timeline(ben)->modifyCount();
    EXPECT_EQ(moment->updateOnTimeline(timeline(ben), clip->uniqueId(), rowId), clip);
    EXPECT_EQ(timeline(ben)->modifyCount(), count) << "An update that changes nothing is no change.";
}

TEST_P(CloudServiceContract, FailsForASessionThatDoesNotExist) {
    const Instance clip = tag(ann, Clip("Shot", 1, 2));
    clip->setExternalId("moment");

    EXPECT_FALSE(wait(startCreate(ann, "nowhere", timeline(ann), {clip})).succeeded());
    EXPECT_FALSE(wait(startUpdate(ann, "nowhere", {clip})).succeeded());
    EXPECT_FALSE(wait(startRemove(ann, "nowhere", {"moment"})).succeeded());
    EXPECT_FALSE(wait(startSaveRows(ann, "nowhere")).succeeded());
}

TEST_P(CloudServiceContract, RepeatsWritesOverADropAndFetchesNever) {
    const std::string session = createSession(ann);
    const Instance clip = tag(ann, Clip("Shot", 1, 2));
    const auto overtaken = startFetch(ann);
    const auto underWay = startCreate(ann, session, timeline(ann), {clip});
    runUntil([&] { return underWay->hasReturned(); });

    host().setLinkUp(ann, false);
    const auto fetch = startFetch(ann);
    const auto later = startCreate(ann, session, timeline(ann), {tag(ann, Clip("Pass", 3, 4))});
    const auto again = startCreateSession(ann);
    EXPECT_FALSE(wait(fetch).succeeded());
    EXPECT_FALSE(later->isDone());
    EXPECT_FALSE(again->isDone());
    host().setLinkUp(ann, true);

    EXPECT_EQ(wait(underWay).value().size(), 1U);
    EXPECT_EQ(wait(later).value().size(), 1U);
    EXPECT_EQ(wait(again).value(), session);
    runUntil([&] { return overtaken->isDone(); });
    host().settle();
    EXPECT_EQ(fetchIds(ben).size(), 2U) << "However often a creation was sent, its moment is there once.";
    EXPECT_EQ(underWay->answers() + later->answers() + again->answers() + fetch->answers(), 4);
    EXPECT_TRUE(wait(startFetch(ann)).succeeded());
}

}  // namespace HostContract
