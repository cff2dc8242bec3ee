#pragma once

#include "Tests/HostContract/TimelineFixture.hpp"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <limits>
#include <string>
#include <thread>
#include <vector>

/// The contract of `RemoteCoding::TimelineProtocol`, its rows and instances, as tests for any host. Include
/// this header in one source file of a test program, derive a `TimelineFixture`, and instantiate
/// `TimelineContract` with the hosts to test and `TimelineCase::all()`.
namespace HostContract {

TEST_P(TimelineContract, IsKept) { std::get<1>(GetParam())->run(*std::get<0>(GetParam()).make()); }

const TimelineCase editsCount("EveryEditRaisesTheCountAndIsThenAnnounced", [](TimelineFixture& host) {
    std::string row;
    std::string other;
    std::string clip;
    expectChange(host, "adding a row", [&] { row = host.addRow("Shot", red); });
    expectChange(host, "adding another row", [&] { other = host.addRow("Pass", red); });
    expectChange(host, "renaming a row", [&] { host.renameRow(row, "Goal"); });
    expectChange(host, "recolouring a row", [&] { host.recolorRow(row, green); });
    expectChange(host, "moving a row", [&] { host.moveRow(row, 1); });
    expectChange(host, "adding a clip", [&] { clip = host.addInstance(row, 1.0, 2.0); });
    expectChange(host, "retiming a clip", [&] { host.retimeInstance(clip, 1.0, 3.0); });
    expectChange(host, "removing a clip", [&] { host.removeInstance(clip); });
    expectChange(host, "removing a row", [&] { host.removeRow(other); });
});

const TimelineCase rowNames("ARowCannotGetTheNameOfAnotherOne", [](TimelineFixture& host) {
    const auto first = host.addRow("Shot", red);
    const auto second = host.addRow("Pass", red);
    const auto count = host.timeline()->modifyCount();
    host.renameRow(second, "Shot");
    EXPECT_EQ(rowWithId(*host.timeline(), second)->name(), "Pass");
    EXPECT_EQ(host.addRow("Shot", red), "");
    EXPECT_EQ(rowIds(host), (Ids{first, second}));
    EXPECT_EQ(host.timeline()->modifyCount(), count);

    host.removeRow(first);
    host.renameRow(second, "Shot");
    EXPECT_FALSE(host.restoreRow(first)) << "There is one of that name by now.";
    EXPECT_EQ(rowIds(host), Ids{second});
});

const TimelineCase emptyEditsDoNotCount("AnEmptyEditAndAnExternalIdAreNoChange", [](TimelineFixture& host) {
    const auto row = host.addRow("Shot", red);
    (void)host.addRow("Pass", green);
    const auto clip = host.addInstance(row, 1.0, 2.0);
    expectNoChange(host, "editing to the same values, what is unknown, an external id", [&] {
        host.renameRow(row, "Shot");
        host.recolorRow(row, red);
        host.moveRow(row, 0);
        host.retimeInstance(clip, 1.0, 2.0);
        host.removeInstance("nobody");
        host.removeRow("nobody");
        instanceWithId(*host.timeline(), row, clip)->setExternalId("moment-1");
    });
    EXPECT_EQ(instanceWithId(*host.timeline(), row, clip)->externalId(), "moment-1");
});

const TimelineCase partialFromCount("APartialTimelineHoldsTheAskedCountAndHigher", [](TimelineFixture& host) {
    const auto row = host.addRow("Shot", red);
    const auto first = host.addInstance(row, 1.0, 2.0);
    const auto second = host.addInstance(row, 3.0, 4.0);
    const auto clipsSince = [&](std::int64_t count) {
        const auto changes = changesSince(host, count);
        EXPECT_EQ(changes->modifyCount(), host.timeline()->modifyCount()) << "up to where it reaches";
        EXPECT_EQ(changes->uniqueId(), host.timeline()->uniqueId());
        const auto rows = changes->allRows();
        return rows->empty() ? Ids() : idsOf(rows->front()->allInstances());
    };

    const auto beforeFirst = host.timeline()->modifyCount();
    host.retimeInstance(first, 1.0, 2.5);
    const auto beforeSecond = host.timeline()->modifyCount();
    host.retimeInstance(second, 3.0, 4.5);

    EXPECT_EQ(clipsSince(std::numeric_limits<std::int64_t>::min()), (Ids{first, second}));
    EXPECT_EQ(clipsSince(beforeFirst), (Ids{first, second}));
    EXPECT_EQ(clipsSince(beforeSecond), (Ids{second}));
    host.retimeInstance(first, 1.0, 2.7);
    EXPECT_EQ(clipsSince(beforeSecond), (Ids{first, second})) << "only the latest change counts";
    EXPECT_EQ(clipsSince(host.timeline()->modifyCount() + 5), (Ids{}));
});

const TimelineCase partialRows("APartialTimelineHoldsChangedRowsAndClipsOnly", [](TimelineFixture& host) {
    const auto top = host.addRow("Shot", red);
    const auto middle = host.addRow("Pass", red);
    const auto bottom = host.addRow("Goal", green);
    (void)host.addInstance(top, 1.0, 2.0);
    const auto inTop = host.addInstance(top, 3.0, 4.0);
    const auto before = host.timeline()->modifyCount();
    const auto inBottom = host.addInstance(bottom, 7.0, 7.0);
    host.retimeInstance(inTop, 3.0, 5.0);

    const auto rows = changesSince(host, before)->allRows();
    ASSERT_EQ(idsOf(rows), (Ids{top, bottom})) << "from top to bottom";
    ASSERT_EQ(idsOf(rows->front()->allInstances()), (Ids{inTop}));
    EXPECT_EQ(rows->front()->allInstances()->front()->row(), rows->front());
    EXPECT_EQ(idsOf(rows->back()->allInstances()), (Ids{inBottom})) << "a clip without length is one";
    EXPECT_TRUE(rows->back()->name() == "Goal" && rows->back()->color() == green);
    EXPECT_EQ(rows->back()->rowNum(), rowWithId(*host.timeline(), bottom)->rowNum());

    const auto rowsChangedBy = [&](const char* name, const auto& edit) {
        const auto changed = expectChange(host, name, edit)->allRows();
        for (const auto& row : *changed) {
            EXPECT_EQ(row->numberOfInstances(), 0) << "its clips have not changed";
        }
        return idsOf(changed);
    };
    EXPECT_EQ(rowsChangedBy("renaming", [&] { host.renameRow(top, "Header"); }), (Ids{top}));
    EXPECT_EQ(rowsChangedBy("moving", [&] { host.moveRow(top, 1); }), (Ids{middle, top}))
        << "the other's number, too";
    EXPECT_EQ(rowsChangedBy("removing", [&] { host.removeRow(middle); }), (Ids{top, bottom}));
});

const TimelineCase deletions("DeletionsAreListedFromTheirCountOnUnlessUndone", [](TimelineFixture& host) {
    const auto row = host.addRow("Shot", red);
    const auto other = host.addRow("Pass", red);
    const auto early = host.addInstance(row, 1.0, 2.0);
    const auto late = host.addInstance(row, 3.0, 4.0);
    const auto last = host.addInstance(row, 5.0, 6.0);
    host.removeInstance(early);
    const auto between = host.timeline()->modifyCount();
    host.removeInstance(late);

    EXPECT_EQ(changesSince(host, 0)->deletedInstanceIds(), (Ids{early, late}));
    EXPECT_EQ(changesSince(host, between)->deletedInstanceIds(), (Ids{late}));
    EXPECT_EQ(idsOf(changesSince(host, between)->allRows()), (Ids{})) << "the rest stays";
    host.removeRow(row);
    EXPECT_EQ(changesSince(host, between)->deletedRowIds(), (Ids{row}));
    EXPECT_EQ(changesSince(host, between)->deletedInstanceIds(), (Ids{late, last})) << "its clips";

    if (!host.restoreRow(row)) {
        GTEST_SKIP() << "this host has no undo";
    }
    EXPECT_EQ(rowIds(host), (Ids{row, other})) << "in its place";
    EXPECT_EQ(changesSince(host, between)->deletedRowIds(), (Ids{}));
    EXPECT_EQ(changesSince(host, between)->deletedInstanceIds(), (Ids{late})) << "deleted before its row";
    EXPECT_EQ(clipsOf(*changesSince(host, between), row), (Ids{last}));
    expectChange(host, "undo", [&] { EXPECT_TRUE(host.restoreInstance(late)); });
    EXPECT_EQ(changesSince(host, between)->deletedInstanceIds(), (Ids{}));
    EXPECT_EQ(clipsOf(*host.timeline(), row), (Ids{late, last})) << "in its place";
});

const TimelineCase reading("WhatWasReadStaysAsItWasAndReadable", [](TimelineFixture& host) {
    const auto rowId = host.addRow("Shot", red);
    const auto other = host.addRow("Pass", red);
    const auto clipId = host.addInstance(rowId, 1.0, 2.0);
    const auto rows = host.timeline()->allRows();
    const auto row = rows->front();
    const auto clips = row->allInstances();
    const auto partial = changesSince(host, 0);
    const auto partialRow = rowWithId(*partial, rowId);
    ASSERT_EQ(clipsOf(*partial, rowId), (Ids{clipId}));
    const auto count = host.timeline()->modifyCount();

    partialRow->allInstances()->front()->setExternalId("moment-1");
    host.renameRow(rowId, "Goal");
    host.recolorRow(rowId, green);
    host.moveRow(other, 0);
    const auto added = host.addInstance(rowId, 3.0, 4.0);
    host.removeInstance(clipId);
    EXPECT_EQ(rowWithId(*host.timeline(), rowId), row) << "an object stays the same one over edits";
    host.removeRow(rowId);

    EXPECT_EQ(clips->front()->externalId(), std::nullopt) << "writing a copy leaves the live clip alone";
    EXPECT_EQ(clips->front()->row(), row);
    EXPECT_EQ(idsOf(row->allInstances()), (Ids{added}));
    EXPECT_EQ(idsOf(rows), (Ids{rowId, other}));
    EXPECT_EQ(idsOf(partial->allRows()), (Ids{rowId, other}));
    EXPECT_EQ(idsOf(clips), (Ids{clipId}));
    EXPECT_EQ(idsOf(partialRow->allInstances()), (Ids{clipId}));
    EXPECT_TRUE(partialRow->name() == "Shot" && partialRow->color() == red);
    EXPECT_EQ(partial->modifyCount(), count);
});

/// For the thread sanitizer: without it, few races show.
const TimelineCase threads("ReadingIsSafeWhileTheMainThreadEdits", [](TimelineFixture& host) {
    const auto timeline = host.timeline();
    const auto steady = host.addRow("name 0", red);
    std::atomic<bool> isDone{false};
    std::atomic<int> passes{0};
    std::atomic<int> wrongReads{0};
    const auto read = [&] {
        while (!isDone) {
            const auto rows = timeline->allRows();
            bool isRight = timeline->modifyCount() > 0;
            for (const auto& row : *rows) {
                const auto color = row->color();
                isRight = isRight && row->name().starts_with("name ") && (color == red || color == green) &&
                          row->rowNum() >= 0 && row->numberOfInstances() >= 0;
                const auto clips = row->allInstances();
                for (const auto& clip : *clips) {
                    isRight = isRight && clip->row() == row &&
                              clip->externalId().value_or("moment of ").starts_with("moment of ");
                }
            }
            wrongReads += isRight ? 0 : 1;
            ++passes;
        }
    };
    std::vector<std::jthread> readers(3);
    std::ranges::generate(readers, [&] { return std::jthread(read); });

    // Goes on until readers and editor have often been at it at the same time, however they are scheduled. What a round
    // adds goes again, so that no round takes longer than another.
    for (int i = 1; i <= 150 || passes < 300; ++i) {
        const auto number = std::to_string(i);
        const auto passing = host.addRow("name of a row that goes again " + number, green);
        const auto clip = host.addInstance(steady, i, i + 1.0);
        instanceWithId(*timeline, steady, clip)->setExternalId("moment of a clip " + number);
        host.renameRow(steady, "name that is too long for the text itself " + number);
        host.recolorRow(steady, i % 2 == 0 ? red : green);
        host.moveRow(passing, 0);
        host.retimeInstance(clip, i, i + 2.0);
        (void)changesSince(host, timeline->modifyCount() - 3);
        host.removeInstance(clip);
        (void)host.restoreInstance(clip);
        host.removeInstance(clip);
        host.removeRow(passing);
    }
    isDone = true;
    readers.clear();  // joins them
    EXPECT_EQ(wrongReads, 0);
});

}  // namespace HostContract
