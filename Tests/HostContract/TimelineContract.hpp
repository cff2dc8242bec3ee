#pragma once

#include "Tests/HostContract/TimelineFixture.hpp"

#include <atomic>
#include <limits>
#include <set>
#include <thread>

/// The contract of `RemoteCoding::TimelineProtocol`, its rows and instances, as tests for any host. Include
/// this header in one source file of a test program, derive a `TimelineFixture`, and instantiate
/// `TimelineContract` with the hosts to test and `timelineCases()`.
namespace HostContract {

namespace TimelineCases {

using Ids = std::vector<std::string>;

// ---- counts ----

inline void everyEditRaisesTheCountAndIsThenAnnounced(TimelineFixture& host) {
    std::int64_t lastCount = host.timeline()->modifyCount();
    host.onAnnouncement = [&] {
        EXPECT_GT(host.timeline()->modifyCount(), lastCount) << "announced before it was complete";
        lastCount = host.timeline()->modifyCount();
    };
    const auto edit = [&](const char* name, const auto& run) {
        const ChangeWatch watch(host);
        run();
        watch.expectChange(name);
    };

    std::string row;
    std::string other;
    std::string clip;
    edit("adding a row", [&] { row = host.addRow("Shot", red); });
    edit("adding another row", [&] { other = host.addRow("Pass", red); });
    edit("renaming a row", [&] { host.renameRow(row, "Goal"); });
    edit("recolouring a row", [&] { host.recolorRow(row, green); });
    edit("moving a row", [&] { host.moveRow(row, 1); });
    edit("adding a clip", [&] { clip = host.addInstance(row, 1.0, 2.0); });
    edit("retiming a clip", [&] { host.retimeInstance(clip, 1.0, 3.0); });
    edit("removing a clip", [&] { host.removeInstance(clip); });
    edit("removing a row", [&] { host.removeRow(other); });
}

inline void anEditThatChangesNothingIsNoChange(TimelineFixture& host) {
    const auto row = host.addRow("Shot", red);
    (void)host.addRow("Pass", green);
    const auto clip = host.addInstance(row, 1.0, 2.0);
    const auto edit = [&](const char* name, const auto& run) {
        const ChangeWatch watch(host);
        run();
        watch.expectNoChange(name);
    };

    edit("renaming a row to its name", [&] { host.renameRow(row, "Shot"); });
    edit("recolouring a row in its colour", [&] { host.recolorRow(row, red); });
    edit("moving a row to its place", [&] { host.moveRow(row, 0); });
    edit("retiming a clip to its times", [&] { host.retimeInstance(clip, 1.0, 2.0); });
    edit("removing an unknown clip", [&] { host.removeInstance("nobody"); });
    edit("removing an unknown row", [&] { host.removeRow("nobody"); });
    edit("reading", [&] {
        (void)host.timeline()->timelineFromModifyCount(0, false);
        (void)host.timeline()->codingTarget();
    });
}

inline void writingAnExternalIdIsNoChange(TimelineFixture& host) {
    const auto rowId = host.addRow("Shot", red);
    const auto clip = instanceWithId(*host.timeline(), rowId, host.addInstance(rowId, 1.0, 2.0));
    EXPECT_EQ(clip->externalId(), std::nullopt);

    const ChangeWatch watch(host);
    clip->setExternalId("moment-1");
    EXPECT_EQ(clip->externalId(), "moment-1");
    clip->setExternalId("");
    EXPECT_EQ(clip->externalId(), "") << "the empty text is an id, not its absence";
    clip->setExternalId(std::nullopt);
    EXPECT_EQ(clip->externalId(), std::nullopt);
    watch.expectNoChange("writing an external id");
}

inline void anObserverMayEditInTurn(TimelineFixture& host) {
    const auto first = host.addRow("Shot", red);
    const auto second = host.addRow("Pass", red);
    const auto before = host.timeline()->modifyCount();
    bool hasEdited = false;
    host.onAnnouncement = [&] {
        if (!std::exchange(hasEdited, true)) {
            host.renameRow(second, "Long pass");
        }
    };

    host.renameRow(first, "Goal");

    EXPECT_EQ(idsOf(changesSince(host, before)->allRows()), (Ids{first, second}));
    EXPECT_EQ(rowWithId(*host.timeline(), first)->name(), "Goal");
    EXPECT_EQ(rowWithId(*host.timeline(), second)->name(), "Long pass");
}

// ---- partial timelines ----

inline void aPartialTimelineHoldsTheAskedCountAndHigher(TimelineFixture& host) {
    const auto row = host.addRow("Shot", red);
    const auto first = host.addInstance(row, 1.0, 2.0);
    const auto second = host.addInstance(row, 3.0, 4.0);
    const auto third = host.addInstance(row, 5.0, 6.0);
    const auto clipsSince = [&](std::int64_t count) {
        const auto rows = changesSince(host, count)->allRows();
        return rows->empty() ? Ids() : idsOf(rows->front()->allInstances());
    };

    const auto beforeFirst = host.timeline()->modifyCount();
    host.retimeInstance(first, 1.0, 2.5);
    const auto beforeSecond = host.timeline()->modifyCount();
    host.retimeInstance(second, 3.0, 4.5);

    EXPECT_EQ(clipsSince(0), (Ids{first, second, third}));
    EXPECT_EQ(clipsSince(std::numeric_limits<std::int64_t>::min()), (Ids{first, second, third}));
    EXPECT_EQ(clipsSince(beforeFirst), (Ids{first, second}));
    EXPECT_EQ(clipsSince(beforeSecond), (Ids{second}));
    host.retimeInstance(first, 1.0, 2.7);
    EXPECT_EQ(clipsSince(beforeSecond), (Ids{first, second})) << "only the latest change counts";
    EXPECT_EQ(clipsSince(host.timeline()->modifyCount()), (Ids{}));
}

inline void aPartialTimelineTellsUpToWhereItReaches(TimelineFixture& host) {
    const auto row = host.addRow("Shot", red);
    host.renameRow(row, "Goal");
    const auto count = host.timeline()->modifyCount();

    const auto changes = changesSince(host, 0);
    const auto nothing = changesSince(host, count + 5);
    (void)host.addInstance(row, 1.0, 2.0);

    EXPECT_EQ(changes->modifyCount(), count);
    EXPECT_EQ(nothing->modifyCount(), count);
    EXPECT_EQ(changes->uniqueId(), host.timeline()->uniqueId());
}

inline void aPartialRowHoldsItsChangedClipsOnly(TimelineFixture& host) {
    const auto untouched = host.addRow("Pass", red);
    const auto top = host.addRow("Shot", red);
    const auto bottom = host.addRow("Goal", green);
    (void)host.addInstance(untouched, 0.0, 1.0);
    (void)host.addInstance(top, 1.0, 2.0);
    const auto inTop = host.addInstance(top, 3.0, 4.0);
    const auto before = host.timeline()->modifyCount();

    const auto inBottom = host.addInstance(bottom, 7.0, 7.0);
    host.retimeInstance(inTop, 3.0, 5.0);

    const auto changes = changesSince(host, before);
    ASSERT_EQ(idsOf(changes->allRows()), (Ids{top, bottom})) << "from top to bottom";
    const auto topRow = changes->allRows()->front();
    EXPECT_EQ(idsOf(topRow->allInstances()), (Ids{inTop}));
    EXPECT_EQ(topRow->numberOfInstances(), 1);
    EXPECT_EQ(topRow->allInstances()->front()->row(), topRow);
    EXPECT_EQ(topRow->rowNum(), rowWithId(*host.timeline(), top)->rowNum());
    const auto bottomRow = changes->allRows()->back();
    EXPECT_EQ(idsOf(bottomRow->allInstances()), (Ids{inBottom})) << "a clip without length is one";
    EXPECT_EQ(bottomRow->name(), "Goal");
    EXPECT_EQ(bottomRow->color(), green);
}

inline void aChangedRowIsInThePartialTimelineWithoutUnchangedClips(TimelineFixture& host) {
    const auto first = host.addRow("Shot", red);
    const auto second = host.addRow("Pass", red);
    const auto third = host.addRow("Goal", red);
    (void)host.addInstance(first, 1.0, 2.0);
    const auto rowsChangedBy = [&](const auto& edit) {
        const auto before = host.timeline()->modifyCount();
        edit();
        const auto rows = changesSince(host, before)->allRows();
        for (const auto& row : *rows) {
            EXPECT_TRUE(row->allInstances()->empty());
            EXPECT_EQ(row->numberOfInstances(), 0);
        }
        return idsOf(rows);
    };

    EXPECT_EQ(rowsChangedBy([&] { host.renameRow(first, "Header"); }), (Ids{first}));
    EXPECT_EQ(rowsChangedBy([&] { host.recolorRow(first, green); }), (Ids{first}));
    EXPECT_EQ(rowsChangedBy([&] { host.moveRow(first, 1); }), (Ids{second, first}))
        << "the number of the other row shifts, so it says something else than before";
    EXPECT_EQ(rowsChangedBy([&] { host.removeRow(second); }), (Ids{first, third}));
}

inline void aPartialTimelineIsDetached(TimelineFixture& host) {
    const auto rowId = host.addRow("Shot", red);
    const auto clipId = host.addInstance(rowId, 1.0, 2.0);
    const auto liveClip = instanceWithId(*host.timeline(), rowId, clipId);
    liveClip->setExternalId("moment-1");

    const auto changes = changesSince(host, 0);
    const auto row = rowWithId(*changes, rowId);
    const auto clip = instanceWithId(*changes, rowId, clipId);
    ASSERT_TRUE(row && clip);
    EXPECT_EQ(clip->externalId(), "moment-1");
    clip->setExternalId(std::nullopt);
    EXPECT_EQ(liveClip->externalId(), "moment-1") << "writing a copy leaves the live clip alone";
    liveClip->setExternalId("moment-2");
    EXPECT_EQ(clip->externalId(), std::nullopt);

    host.renameRow(rowId, "Goal");
    host.recolorRow(rowId, green);
    (void)host.addInstance(rowId, 3.0, 4.0);
    host.removeInstance(clipId);
    EXPECT_EQ(row->name(), "Shot");
    EXPECT_EQ(row->color(), red);
    EXPECT_EQ(idsOf(row->allInstances()), (Ids{clipId}));
    host.removeRow(rowId);
    EXPECT_EQ(idsOf(changes->allRows()), (Ids{rowId}));
    EXPECT_TRUE(changes->deletedInstanceIds().empty());
    EXPECT_EQ(changes->codingTarget(), nullptr);
    EXPECT_NE(changes->timelineFromModifyCount(1, false), nullptr);
}

// ---- deletions ----

inline void deletionsAreListedFromTheirCountOn(TimelineFixture& host) {
    const auto row = host.addRow("Shot", red);
    const auto early = host.addInstance(row, 1.0, 2.0);
    const auto late = host.addInstance(row, 3.0, 4.0);
    const auto kept = host.addInstance(row, 5.0, 6.0);
    host.removeInstance(early);
    const auto between = host.timeline()->modifyCount();
    host.removeInstance(late);
    const auto end = host.timeline()->modifyCount();

    EXPECT_EQ(changesSince(host, 0)->deletedInstanceIds(), (Ids{early, late}));
    EXPECT_EQ(changesSince(host, between)->deletedInstanceIds(), (Ids{late}));
    EXPECT_EQ(changesSince(host, end)->deletedInstanceIds(), (Ids{}));
    EXPECT_EQ(changesSince(host, 0)->deletedRowIds(), (Ids{}));
    EXPECT_EQ(idsOf(rowWithId(*changesSince(host, 0), row)->allInstances()), (Ids{kept}));
    EXPECT_TRUE(changesSince(host, between)->allRows()->empty())
        << "a deletion does not change the row or the clips that stay";
}

inline void aDeletedRowListsItsClipsAsDeleted(TimelineFixture& host) {
    const auto row = host.addRow("Shot", red);
    const auto first = host.addInstance(row, 1.0, 2.0);
    const auto second = host.addInstance(row, 3.0, 4.0);
    const auto other = host.addRow("Pass", red);
    const auto before = host.timeline()->modifyCount();

    host.removeRow(row);

    const auto changes = changesSince(host, before);
    EXPECT_EQ(changes->deletedRowIds(), (Ids{row}));
    const auto deleted = changes->deletedInstanceIds();
    EXPECT_EQ(std::set<std::string>(deleted.begin(), deleted.end()), (std::set<std::string>{first, second}));
    EXPECT_EQ(deleted.size(), 2U);
    EXPECT_EQ(rowWithId(*changes, row), nullptr);
    EXPECT_EQ(rowIds(host), (Ids{other}));
}

inline void anUndoneDeletionIsNotListed(TimelineFixture& host) {
    const auto row = host.addRow("Shot", red);
    const auto other = host.addRow("Pass", red);
    const auto first = host.addInstance(row, 1.0, 2.0);
    const auto second = host.addInstance(row, 3.0, 4.0);
    const auto before = host.timeline()->modifyCount();

    host.removeInstance(first);
    const ChangeWatch undoOfClip(host);
    if (!host.restoreInstance(first)) {
        GTEST_SKIP() << "this host has no undo";
    }
    undoOfClip.expectChange("undoing a deletion");
    EXPECT_EQ(changesSince(host, before)->deletedInstanceIds(), (Ids{}));
    EXPECT_EQ(idsOf(rowWithId(*changesSince(host, before), row)->allInstances()), (Ids{first}));
    EXPECT_EQ(idsOf(rowWithId(*host.timeline(), row)->allInstances()), (Ids{first, second}))
        << "it is back in its place";

    host.removeInstance(second);
    host.removeRow(row);
    const ChangeWatch undoOfRow(host);
    ASSERT_TRUE(host.restoreRow(row));
    undoOfRow.expectChange("undoing the deletion of a row");
    const auto changes = changesSince(host, before);
    EXPECT_EQ(changes->deletedRowIds(), (Ids{}));
    EXPECT_EQ(changes->deletedInstanceIds(), (Ids{second})) << "deleted before its row, and still deleted";
    EXPECT_EQ(rowIds(host), (Ids{row, other}));
    EXPECT_EQ(idsOf(rowWithId(*changes, row)->allInstances()), (Ids{first}));
    EXPECT_EQ(rowWithId(*host.timeline(), row)->numberOfInstances(), 1);
}

// ---- reading ----

inline void listsAreSnapshots(TimelineFixture& host) {
    const auto noRows = host.timeline()->allRows();
    ASSERT_NE(noRows, nullptr);
    const auto first = host.addRow("Shot", red);
    const auto row = rowWithId(*host.timeline(), first);
    const auto noClips = row->allInstances();
    ASSERT_NE(noClips, nullptr);

    const auto second = host.addRow("Pass", red);
    const auto kept = host.addInstance(first, 1.0, 2.0);
    const auto removed = host.addInstance(first, 3.0, 4.0);
    const auto twoRows = host.timeline()->allRows();
    const auto twoClips = row->allInstances();
    host.moveRow(second, 0);
    host.removeInstance(removed);
    const auto added = host.addInstance(first, 5.0, 6.0);

    EXPECT_TRUE(noRows->empty());
    EXPECT_TRUE(noClips->empty());
    EXPECT_EQ(idsOf(twoRows), (Ids{first, second}));
    EXPECT_EQ(idsOf(twoClips), (Ids{kept, removed}));
    EXPECT_EQ(rowIds(host), (Ids{second, first}));
    EXPECT_EQ(idsOf(row->allInstances()), (Ids{kept, added}));
    EXPECT_EQ(row->numberOfInstances(), 2);
    EXPECT_EQ(rowWithId(*host.timeline(), first), row) << "an object stays the same one over edits";
}

inline void whatWasRemovedStaysReadable(TimelineFixture& host) {
    const auto rowId = host.addRow("Shot", red);
    const auto row = rowWithId(*host.timeline(), rowId);
    const auto gone = instanceWithId(*host.timeline(), rowId, host.addInstance(rowId, 1.0, 2.0));
    const auto clip = instanceWithId(*host.timeline(), rowId, host.addInstance(rowId, 3.0, 4.0));
    gone->setExternalId("moment-1");

    host.removeInstance(gone->uniqueId());
    host.removeRow(rowId);

    EXPECT_EQ(gone->externalId(), "moment-1");
    EXPECT_EQ(gone->row(), row);
    EXPECT_EQ(clip->row(), row);
    EXPECT_EQ(row->name(), "Shot");
    EXPECT_EQ(row->color(), red);
    EXPECT_EQ(idsOf(row->allInstances()), (Ids{clip->uniqueId()}));
    host.retimeInstance(clip->uniqueId(), 5.0, 6.0);
    EXPECT_EQ(host.timeline()->allRows()->size(), 0U);
}

inline void textsAreTakenAsTheyAre(TimelineFixture& host) {
    const std::vector<std::string> names = {"",
                                            " ",
                                            "Tor",
                                            "tor",
                                            "Tor",  // a second row of that name
                                            "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x92\xBB \xD7\xA9",
                                            std::string("nul\0inside", 10),
                                            "\"quotes\", commas\nand lines",
                                            std::string(100'000, 'x')};
    for (const auto& name : names) {
        (void)host.addRow(name, red);
    }

    std::vector<std::string> read;
    std::set<std::string> ids;
    const auto rows = host.timeline()->allRows();
    for (const auto& row : *rows) {
        read.push_back(row->name());
        ids.insert(row->uniqueId());
        EXPECT_EQ(row->rowNum(), std::ssize(read) - 1);
    }
    EXPECT_EQ(read, names);
    EXPECT_EQ(ids.size(), names.size()) << "ids are unique";
}

/// Finds races when it runs under the thread sanitizer, and torn states without it.
inline void readingIsSafeWhileTheMainThreadEdits(TimelineFixture& host) {
    const auto timeline = host.timeline();
    const auto steady = host.addRow("name 0", red);
    std::atomic<bool> isDone{false};
    std::atomic<int> passes{0};
    std::atomic<int> wrongReads{0};
    const auto read = [&] {
        std::int64_t lastCount = 0;
        do {
            const auto count = timeline->modifyCount();
            bool isRight = count >= lastCount;
            lastCount = count;
            const auto rows = timeline->allRows();
            for (const auto& row : *rows) {
                isRight = isRight && row->name().starts_with("name ") && row->rowNum() >= 0;
                const auto color = row->color();
                isRight = isRight && (color == red || color == green);
                isRight = isRight && row->numberOfInstances() >= 0;
                const auto instances = row->allInstances();
                for (const auto& clip : *instances) {
                    const auto externalId = clip->externalId();
                    isRight = isRight && clip->row() == row && !clip->uniqueId().empty();
                    isRight = isRight && (!externalId || externalId->starts_with("moment of "));
                }
            }
            wrongReads += isRight ? 0 : 1;
            ++passes;
        } while (!isDone);
    };
    std::vector<std::thread> readers;
    for (int i = 0; i < 3; ++i) {
        readers.emplace_back(read);
    }

    // Goes on until readers and editor have often been at it at the same time, however they are scheduled.
    for (int i = 1; i <= 150 || passes < 300; ++i) {
        const auto number = std::to_string(i);
        const auto passing = host.addRow("name of a row that goes again " + number, green);
        const auto clip = host.addInstance(steady, i, i + 1.0);
        (void)host.addInstance(passing, i, i + 1.0);
        instanceWithId(*timeline, steady, clip)->setExternalId("moment of a clip " + number);
        host.renameRow(steady, "name that is too long for the text itself " + number);
        host.recolorRow(steady, i % 2 == 0 ? red : green);
        host.moveRow(passing, 0);
        host.retimeInstance(clip, i, i + 2.0);
        (void)changesSince(host, timeline->modifyCount() - 3);
        if (i % 3 == 0) {
            host.removeInstance(clip);
            (void)host.restoreInstance(clip);
        }
        host.removeRow(passing);
        std::this_thread::yield();
    }
    isDone = true;
    for (auto& reader : readers) {
        reader.join();
    }
    EXPECT_EQ(wrongReads, 0);
}

}  // namespace TimelineCases

inline std::vector<TimelineCase> timelineCases() {
    using namespace TimelineCases;
    return {
        {"EveryEditRaisesTheCountAndIsThenAnnounced", everyEditRaisesTheCountAndIsThenAnnounced},
        {"AnEditThatChangesNothingIsNoChange", anEditThatChangesNothingIsNoChange},
        {"WritingAnExternalIdIsNoChange", writingAnExternalIdIsNoChange},
        {"AnObserverMayEditInTurn", anObserverMayEditInTurn},
        {"APartialTimelineHoldsTheAskedCountAndHigher", aPartialTimelineHoldsTheAskedCountAndHigher},
        {"APartialTimelineTellsUpToWhereItReaches", aPartialTimelineTellsUpToWhereItReaches},
        {"APartialRowHoldsItsChangedClipsOnly", aPartialRowHoldsItsChangedClipsOnly},
        {"AChangedRowIsInThePartialTimeline", aChangedRowIsInThePartialTimelineWithoutUnchangedClips},
        {"APartialTimelineIsDetached", aPartialTimelineIsDetached},
        {"DeletionsAreListedFromTheirCountOn", deletionsAreListedFromTheirCountOn},
        {"ADeletedRowListsItsClipsAsDeleted", aDeletedRowListsItsClipsAsDeleted},
        {"AnUndoneDeletionIsNotListed", anUndoneDeletionIsNotListed},
        {"ListsAreSnapshots", listsAreSnapshots},
        {"WhatWasRemovedStaysReadable", whatWasRemovedStaysReadable},
        {"TextsAreTakenAsTheyAre", textsAreTakenAsTheyAre},
        {"ReadingIsSafeWhileTheMainThreadEdits", readingIsSafeWhileTheMainThreadEdits},
    };
}

class TimelineContract : public testing::TestWithParam<HostAndCase> {};

TEST_P(TimelineContract, IsKept) {
    const auto host = std::get<TimelineHost>(GetParam()).make();
    std::get<TimelineCase>(GetParam()).run(*host);
}

}  // namespace HostContract
