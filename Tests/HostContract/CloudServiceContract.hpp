#pragma once

#include "Tests/HostContract/CloudFixture.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

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
    EXPECT_EQ(wait(second).value(), session);
    EXPECT_NE(wait(startCreateSession(ann, "another video")).value(), session);
    const Sessions sessions = wait(startFetch(ben)).value();
    ASSERT_EQ(sessions.size(), 1U);
    EXPECT_EQ(sessions.front().identifier, session);
}

TEST_P(CloudServiceContract, MakesOneMomentForEachClipInTheirOrder) {
    const std::string session = createSession(ann);
    const std::vector<Clip> clips = {Clip("Shot", 1.25, 2.5, "left foot"), Clip("Eckstoß ⚽", 3, 3, ""),
                                     Clip("Shot", 0.1, 90.333333333333329, ""),
                                     Clip("", -1, 4, "\"quoted\"\n")};
    std::vector<Instance> instances;
    for (const Clip& clip : clips) {
        instances.push_back(tag(ann, clip));
    }

    const Ids ids = create(ann, session, instances);
    EXPECT_EQ(fetchIds(ben), ids);
    EXPECT_EQ(fetchClips(ben), clips);
    EXPECT_EQ(fetchMoments(ben)[1]->code(), "Eckstoß ⚽");
}

TEST_P(CloudServiceContract, TakesARepeatedCreationForAnUpdateAndPassesOverWhatIsGone) {
    const std::string session = createSession(ann);
    const Instance clip = tag(ann, Clip("Shot", 1, 2, ""));
    const Instance other = tag(ann, Clip("Pass", 5, 6, ""));
    const std::string id = create(ann, session, {clip}).front();

    host().retime(timeline(ann), clip, 10, 20);
    const Ids again = create(ann, session, {other, clip});
    EXPECT_EQ(again[1], id);
    EXPECT_EQ(fetchClips(ben), (std::vector<Clip>{Clip("Shot", 10, 20, ""), Clip("Pass", 5, 6, "")}));
    const Ids elsewhere = wait(startCreate(ann, session, host().makeTimeline(), {clip})).value();
    EXPECT_NE(elsewhere.front(), id) << "The same instance id on another timeline is another clip.";

    EXPECT_TRUE(wait(startRemove(ben, session, {"no such moment", id, elsewhere.front()})).value());
    EXPECT_TRUE(wait(startRemove(ann, session, {id})).value());
    host().retime(timeline(ann), other, 7, 8);
    EXPECT_TRUE(wait(startUpdate(ann, session, {clip, tag(ann, Clip("Shot", 5, 6, "")), other})).value());
    EXPECT_EQ(fetchClips(ben), (std::vector<Clip>{Clip("Pass", 7, 8, "")}));
    EXPECT_NE(create(ann, session, {clip}).front(), id) << "A moment that is gone stays gone.";
}

TEST_P(CloudServiceContract, PutsAMomentOnItsRowWhichItMakesAndThenUpdatesItThere) {
    const std::string session = createSession(ann);
    host().addRow(timeline(ann), "Goal", Base::Color(0, 128, 0));
    const Ids ids =
        create(ann, session, {tag(ann, Clip("Goal", 1, 2, "left")), tag(ann, Clip("Goal", 3, 4, ""))});
    host().addRow(timeline(ben), "Shot", Base::Color(9, 9, 9));
    const auto moments = fetchMoments(ben);
    const Instance first = moments[0]->appendToTimeline(timeline(ben));
    const Instance second = moments[1]->appendToTimeline(timeline(ben));

    const auto rows = timeline(ben)->allRows();
    ASSERT_EQ(rows->size(), 2U);
    EXPECT_EQ(rows->back()->color(), Base::Color(0, 128, 0));
    EXPECT_TRUE(first->row() == rows->back() && second->row() == rows->back());
    EXPECT_EQ(host().clipOf(first), Clip("Goal", 1, 2, "left"));
    EXPECT_EQ((Ids{first->externalId().value(), second->externalId().value()}), ids);

    const auto update = [&](const std::string& clipId, const auto& row) {
        return moments[0]->updateOnTimeline(timeline(ben), clipId, row->uniqueId());
    };
    EXPECT_EQ(update(second->uniqueId(), rows->front()), nullptr) << "not its row";
    EXPECT_EQ(update("no such clip", rows->back()), nullptr);
    EXPECT_EQ(host().clipOf(second), Clip("Goal", 3, 4, ""));
    EXPECT_EQ(update(second->uniqueId(), rows->back()), second);
    EXPECT_EQ(host().clipOf(second), Clip("Goal", 1, 2, "left"));
    const std::int64_t count = timeline(ben)->modifyCount();
    EXPECT_EQ(update(second->uniqueId(), rows->back()), second);
    EXPECT_EQ(timeline(ben)->modifyCount(), count) << "An update that changes nothing is no change.";
}

TEST_P(CloudServiceContract, GivesBackTheClipThatAMomentOfThisTimelineStandsFor) {
    const std::string session = createSession(ann);
    const Instance clip = tag(ann, Clip("Shot", 1, 2, ""));
    const std::string id = create(ann, session, {clip}).front();
    const auto moment = fetchMoments(ann).front();
    host().retime(timeline(ann), clip, 1, 3);
    clip->setExternalId(std::nullopt);
    const std::int64_t count = timeline(ann)->modifyCount();

    EXPECT_EQ(moment->appendToTimeline(timeline(ann))->uniqueId(), clip->uniqueId());
    EXPECT_EQ(clip->externalId(), id);
    EXPECT_EQ(host().clipOf(clip), Clip("Shot", 1, 3, "")) << "The newer local edit stays.";
    EXPECT_EQ(timeline(ann)->modifyCount(), count);

    host().remove(timeline(ann), clip);
    const std::int64_t deleted = timeline(ann)->modifyCount();
    EXPECT_EQ(moment->appendToTimeline(timeline(ann))->uniqueId(), clip->uniqueId());
    EXPECT_EQ(timeline(ann)->allRows()->front()->numberOfInstances(), 0) << "It stays deleted.";
    EXPECT_EQ(timeline(ann)->modifyCount(), deleted) << "The component counts what it has applied.";
    host().settle();
    const auto changes = timeline(ann)->timelineFromModifyCount(deleted + 1, false);
    EXPECT_EQ(changes->deletedInstanceIds(), Ids{clip->uniqueId()}) << "The deletion can be sent.";
}

TEST_P(CloudServiceContract, GivesNoPlaceToAMomentWhoseClipStandsForALaterOne) {
    const std::string session = createSession(ann);
    const Instance clip = tag(ann, Clip("Shot", 1, 2, ""));
    const Ids first = create(ann, session, {clip});
    const auto late = fetchMoments(ann).front();
    EXPECT_TRUE(wait(startRemove(ann, session, first)).value());
    const std::string second = create(ann, session, {clip}).front();
    clip->setExternalId(second);
    const std::int64_t count = timeline(ann)->modifyCount();

    EXPECT_EQ(late->appendToTimeline(timeline(ann))->row(), nullptr);
    EXPECT_EQ(clip->externalId(), second);
    EXPECT_EQ(timeline(ann)->modifyCount(), count);
    EXPECT_EQ(fetchMoments(ann).front()->appendToTimeline(timeline(ann))->uniqueId(), clip->uniqueId());
}

TEST_P(CloudServiceContract, GivesBackTheClipThatHasTheMomentsIdAndBringsItUpToDate) {
    const std::string session = createSession(ann);
    const Instances clips{tag(ann, Clip("Shot", 1, 2, "")), tag(ann, Clip("Pass", 3, 4, ""))};
    (void)create(ann, session, clips);
    const auto append = [&] { return fetchMoments(ben).front()->appendToTimeline(timeline(ben)); };
    const Instance clip = append();
    EXPECT_EQ(append()->uniqueId(), clip->uniqueId());

    host().retime(timeline(ann), clips[0], 5, 6);
    EXPECT_TRUE(wait(startUpdate(ann, session, clips)).value());
    EXPECT_EQ(append()->uniqueId(), clip->uniqueId());
    EXPECT_EQ(host().clipOf(clip), Clip("Shot", 5, 6, ""));

    // As after a rename, which the others' timeline has not been told of.
    host().renameRow(timeline(ann), "Shot", "Goal");
    EXPECT_TRUE(wait(startUpdate(ann, session, clips)).value());
    EXPECT_EQ(host().clipOf(append()), Clip("Goal", 5, 6, ""));
    EXPECT_EQ(timeline(ben)->allRows()->front()->numberOfInstances(), 0) << "It is not on both rows.";
}

TEST_P(CloudServiceContract, WritesWhatItsUserHasChangedAndEachEditOnce) {
    const std::string session = createSession(ann);
    const Instance clip = tag(ann, Clip("Shot", 1, 2, "first"));
    (void)create(ann, session, {clip});
    const auto received = fetchMoments(ben).front();
    const Instance bens = received->appendToTimeline(timeline(ben));
    const auto update = [&](std::size_t analyst, const Instance& instance) {
        EXPECT_TRUE(wait(startUpdate(analyst, session, {instance})).value());
        return fetchClips(cleo).front();
    };

    host().retime(timeline(ann), clip, 5, 6);
    const auto partial = timeline(ann)->timelineFromModifyCount(timeline(ann)->modifyCount(), false);
    const Instance captured = partial->allRows()->front()->allInstances()->front();
    host().retime(timeline(ann), clip, 7, 8);
    EXPECT_EQ(update(ann, clip), Clip("Shot", 7, 8, "first"));
    EXPECT_EQ(update(ann, captured), Clip("Shot", 7, 8, "first")) << "An older edit comes too late.";
    EXPECT_EQ(update(ben, bens), Clip("Shot", 7, 8, "first")) << "Ben has changed nothing.";

    host().retime(timeline(ben), bens, 9, 10);
    const auto now = fetchMoments(ben).front();
    (void)now->updateOnTimeline(timeline(ben), bens->uniqueId(), bens->row()->uniqueId());
    EXPECT_EQ(host().clipOf(bens), Clip("Shot", 9, 10, "first")) << "What was not sent yet stays.";
    EXPECT_EQ(update(ben, bens), Clip("Shot", 9, 10, "first"));
}

TEST_P(CloudServiceContract, WritesARowsNewNameWithTheClipsThatWereOnItThenAndKeepsItUntilItIsWritten) {
    const std::string session = createSession(ann);
    const auto update = [&](std::size_t analyst, const Instances& clips) {
        EXPECT_TRUE(wait(startUpdate(analyst, session, clips)).value());
        return fetchClips(cleo);
    };
    const Instance clip = tag(ann, Clip("Shot", 1, 2, ""));
    (void)create(ann, session, {clip});
    const Instance bens = fetchMoments(ben).front()->appendToTimeline(timeline(ben));
    host().renameRow(timeline(ben), "Shot", "Goal");
    const Instance later = tag(ann, Clip("Goal", 3, 4, ""));
    (void)create(ann, session, {later});
    const Instance bensLater = fetchMoments(ben).back()->appendToTimeline(timeline(ben));
    host().renameRow(timeline(ann), "Goal", "Score");
    (void)update(ann, {later});
    host().retime(timeline(ben), bensLater, 5, 6);
    EXPECT_EQ(update(ben, {bens, bensLater}),
              (std::vector<Clip>{Clip("Goal", 1, 2, ""), Clip("Score", 5, 6, "")}));

    const auto receive = [&](const std::string& name) {
        (void)fetchMoments(ben).front()->updateOnTimeline(timeline(ben), bens->uniqueId(),
                                                          bens->row()->uniqueId());
        timeline(ben)->codingTarget()->setRowNameWithRowNum(0, name);
        return bens->row()->name();
    };
    host().renameRow(timeline(ben), "Goal", "Attempt");
    EXPECT_EQ(receive("Goal"), "Attempt") << "The user's name is newer.";
    (void)update(ben, {bens});
    host().renameRow(timeline(ann), "Shot", "Header");
    (void)update(ann, {clip});
    EXPECT_EQ(receive("Header"), "Header") << "The user's name was written before this one.";
}

TEST_P(CloudServiceContract, SavesOfAListWhatItsUserHasChanged) {
    const std::string session = createSession(ann);
    const auto rows = [&](std::size_t analyst) {
        std::vector<std::string> names;
        const Sessions sessions = wait(startFetch(analyst)).value();
        const auto list =
            host().syncLibrary(analyst).presentationViewItem(*sessions.front().presentationViews->front());
        for (const auto& row : list->subViews) {
            names.push_back(row.name);
        }
        return names;
    };
    const auto save = [&](std::size_t analyst) {
        EXPECT_TRUE(wait(startSaveRows(analyst, session)).succeeded());
        return rows(cleo);
    };
    const Base::Color color(0, 128, 0);
    host().addRow(timeline(ann), "Shot", color);
    host().addRow(timeline(ann), "Pass", color);
    EXPECT_EQ(save(ann), (Ids{"Shot", "Pass"}));
    for (const char* name : {"Pass", "Shot"}) {
        timeline(ben)->codingTarget()->insertRowWithName(name, color, 0, {});
    }

    host().addRow(timeline(ann), "Goal", color);
    host().renameRow(timeline(ann), "Shot", "Attempt");
    EXPECT_EQ(save(ann), (Ids{"Attempt", "Pass", "Goal"}));
    host().addRow(timeline(ben), "Corner", color);
    EXPECT_EQ(save(ben), (Ids{"Attempt", "Pass", "Corner", "Goal"})) << "He has heard of neither.";
    EXPECT_EQ(save(ben), (Ids{"Attempt", "Pass", "Corner", "Goal"}));

    // Whoever is told of a new name first takes the row for a new one.
    const Instance clip = tag(ann, Clip("Goal", 1, 2, ""));
    (void)create(ann, session, {clip});
    host().renameRow(timeline(ann), "Goal", "Score");
    EXPECT_EQ(save(ann).back(), "Goal") << "The clip's code comes first.";
    EXPECT_TRUE(wait(startUpdate(ann, session, {clip})).value());
    EXPECT_EQ(save(ann).back(), "Score");
}

TEST_P(CloudServiceContract, RepeatsWritesOverADropAndFetchesNever) {
    const std::string session = createSession(ann);
    const auto overtaken = startFetch(ann);
    const auto underWay = startCreate(ann, session, timeline(ann), {tag(ann, Clip("Shot", 1, 2, ""))});
    runUntil([&] { return underWay->hasReturned.load(); });

    host().setLinkUp(ann, false);
    const auto fetch = startFetch(ann);
    const auto later = startCreate(ann, session, timeline(ann), {tag(ann, Clip("Pass", 3, 4, ""))});
    const auto again = startCreateSession(ann);
    EXPECT_FALSE(wait(fetch).succeeded());
    EXPECT_EQ(later->answers + again->answers, 0);
    host().setLinkUp(ann, true);

    EXPECT_EQ(wait(underWay).value().size(), 1U);
    EXPECT_EQ(wait(later).value().size(), 1U);
    EXPECT_EQ(wait(again).value(), session);
    runUntil([&] { return overtaken->answers != 0; });
    host().settle();
    EXPECT_EQ(fetchIds(ben).size(), 2U) << "However often a creation was sent, its moment is there once.";
    EXPECT_EQ(underWay->answers + later->answers + again->answers + fetch->answers, 4);
}

}  // namespace HostContract
