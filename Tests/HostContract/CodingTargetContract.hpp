#pragma once

#include "Tests/HostContract/TimelineFixture.hpp"

#include <limits>

/// The contract of `RemoteCoding::CodingTarget` as tests for any host. Include this header in one source file
/// of a test program, derive a `TimelineFixture`, and instantiate `CodingTargetContract` with the hosts to
/// test and `codingTargetCases()`.
namespace HostContract {

namespace CodingTargetCases {

using Ids = std::vector<std::string>;
using Indexes = std::vector<std::int64_t>;
constexpr std::int64_t farPastTheEnd = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t farBeforeTheStart = std::numeric_limits<std::int64_t>::min();

inline void renamesTheRowWithANumber(TimelineFixture& host) {
    const auto first = host.addRow("Shot", red);
    const auto second = host.addRow("Pass", red);
    const auto target = host.timeline()->codingTarget();
    ASSERT_NE(target, nullptr);

    const ChangeWatch watch(host);
    target->setRowNameWithRowNum(rowWithId(*host.timeline(), second)->rowNum(), "Goal");
    watch.expectChange("renaming");
    EXPECT_EQ(rowWithId(*host.timeline(), second)->name(), "Goal");
    EXPECT_EQ(rowWithId(*host.timeline(), first)->name(), "Shot");
    EXPECT_EQ(idsOf(changesSince(host, watch.countBefore())->allRows()), (Ids{second}));

    host.moveRow(second, 0);
    target->setRowNameWithRowNum(rowWithId(*host.timeline(), second)->rowNum(), "Save");
    EXPECT_EQ(rowWithId(*host.timeline(), second)->name(), "Save") << "numbers are those of now";
}

inline void recoloursARow(TimelineFixture& host) {
    const auto first = host.addRow("Shot", red);
    const auto second = host.addRow("Pass", red);

    const ChangeWatch watch(host);
    host.timeline()->codingTarget()->setRowColorWithRowId(second, green);
    watch.expectChange("recolouring");
    EXPECT_EQ(rowWithId(*host.timeline(), second)->color(), green);
    EXPECT_EQ(rowWithId(*host.timeline(), first)->color(), red);
}

inline void insertsARowAtAnIndexAndReportsIt(TimelineFixture& host) {
    const auto target = host.timeline()->codingTarget();
    std::vector<std::shared_ptr<TimelineRowProtocol>> reported;
    const auto report = [&](std::shared_ptr<TimelineRowProtocol> row) { reported.push_back(std::move(row)); };
    const auto insert = [&](const char* name, std::int64_t at) {
        const ChangeWatch watch(host);
        target->insertRowWithName(name, green, at, report);
        watch.expectChange(name);
    };
    insert("middle", 0);
    insert("top", 0);
    insert("bottom", 2);
    insert("past the end", farPastTheEnd);
    insert("second", 1);
    target->insertRowWithName("unreported", red, 6, nullptr);
    host.runMainJobs();

    std::vector<std::string> names;
    const auto rows = host.timeline()->allRows();
    for (const auto& row : *rows) {
        names.push_back(row->name());
        EXPECT_EQ(row->color(), row->name() == "unreported" ? red : green);
        EXPECT_EQ(row->numberOfInstances(), 0);
    }
    EXPECT_EQ(names, (Ids{"top", "second", "middle", "bottom", "past the end", "unreported"}));
    ASSERT_EQ(reported.size(), 5U) << "each once";
    EXPECT_EQ(reported[2], host.timeline()->allRows()->at(3)) << "the row itself, in the order of insertion";
    EXPECT_EQ(reported[2]->name(), "bottom");
}

inline void movesRowsToAnIndex(TimelineFixture& host) {
    const auto a = host.addRow("a", red);
    const auto b = host.addRow("b", red);
    const auto c = host.addRow("c", red);
    const auto d = host.addRow("d", red);
    const auto target = host.timeline()->codingTarget();
    const auto move = [&](const Indexes& from, std::int64_t to) {
        const ChangeWatch watch(host);
        target->rearrangeRowsFrom(from, to);
        watch.expectChange("moving");
        const auto rows = host.timeline()->allRows();
        for (std::size_t index = 0; index < rows->size(); ++index) {
            EXPECT_EQ((*rows)[index]->rowNum() - rows->front()->rowNum(), static_cast<std::int64_t>(index));
        }
        return idsOf(rows);
    };

    EXPECT_EQ(move({2}, 0), (Ids{c, a, b, d})) << "upwards";
    EXPECT_EQ(move({0}, 3), (Ids{a, b, d, c})) << "downwards: the index is that of the result";
    EXPECT_EQ(move({1}, 2), (Ids{a, d, b, c}));
    EXPECT_EQ(move({1, 3}, 0), (Ids{d, c, a, b})) << "several keep their order";
    EXPECT_EQ(move({0, 1}, farPastTheEnd), (Ids{a, b, d, c})) << "past the end is the end";
    EXPECT_EQ(move({3, 99}, 1), (Ids{a, c, b, d})) << "an index that is none is passed over";
}

inline void aMovedRowIsAmongTheChanges(TimelineFixture& host) {
    (void)host.addRow("a", red);
    (void)host.addRow("b", red);
    const auto moved = host.addRow("c", red);
    const auto before = host.timeline()->modifyCount();

    host.timeline()->codingTarget()->rearrangeRowsFrom({2}, 0);

    const auto changes = changesSince(host, before);
    const auto row = rowWithId(*changes, moved);
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->rowNum(), rowWithId(*host.timeline(), moved)->rowNum());
    const auto rows = host.timeline()->allRows();
    for (const auto& live : *rows) {
        EXPECT_NE(rowWithId(*changes, live->uniqueId()), nullptr) << "every number is another one now";
    }
}

inline void removesRowsAndClips(TimelineFixture& host) {
    const auto row = host.addRow("Shot", red);
    const auto other = host.addRow("Pass", red);
    const auto clip = host.addInstance(row, 1.0, 2.0);
    const auto left = host.addInstance(row, 3.0, 4.0);
    const auto target = host.timeline()->codingTarget();

    const ChangeWatch removalOfClip(host);
    target->removeInstanceWithRowId(row, clip);
    removalOfClip.expectChange("removing a clip");
    EXPECT_EQ(idsOf(rowWithId(*host.timeline(), row)->allInstances()), (Ids{left}));
    EXPECT_EQ(changesSince(host, removalOfClip.countBefore())->deletedInstanceIds(), (Ids{clip}));

    const ChangeWatch removalOfRow(host);
    target->removeRowWithRowId(row);
    removalOfRow.expectChange("removing a row");
    EXPECT_EQ(rowIds(host), (Ids{other}));
    EXPECT_EQ(changesSince(host, removalOfRow.countBefore())->deletedRowIds(), (Ids{row}));
    EXPECT_EQ(changesSince(host, removalOfRow.countBefore())->deletedInstanceIds(), (Ids{left}));
}

inline void whatChangesNothingOrDoesNotExistIsIgnored(TimelineFixture& host) {
    const auto row = host.addRow("Shot", red);
    const auto other = host.addRow("Pass", red);
    const auto clip = host.addInstance(row, 1.0, 2.0);
    const auto target = host.timeline()->codingTarget();
    const auto numberOfRow = rowWithId(*host.timeline(), row)->rowNum();

    const ChangeWatch watch(host);
    target->setRowNameWithRowNum(numberOfRow, "Shot");
    target->setRowNameWithRowNum(farPastTheEnd, "Goal");
    target->setRowNameWithRowNum(farBeforeTheStart, "Goal");
    target->setRowColorWithRowId(row, red);
    target->setRowColorWithRowId("nobody", green);
    target->rearrangeRowsFrom({0}, 0);
    target->rearrangeRowsFrom({1}, farPastTheEnd);
    target->rearrangeRowsFrom({}, 0);
    target->rearrangeRowsFrom({farBeforeTheStart, 2, farPastTheEnd}, 0);
    target->removeRowWithRowId("");
    target->removeInstanceWithRowId(row, "nobody");
    target->removeInstanceWithRowId(other, clip);
    target->removeInstanceWithRowId("nobody", clip);
    watch.expectNoChange("none of these");
    EXPECT_EQ(rowIds(host), (Ids{row, other}));
    EXPECT_NE(instanceWithId(*host.timeline(), row, clip), nullptr);
}

inline void aLockedTimelineHasNoTarget(TimelineFixture& host) {
    const auto row = host.addRow("Shot", red);
    const auto target = host.timeline()->codingTarget();
    if (!host.lockTimeline()) {
        GTEST_SKIP() << "this host's timelines can always be edited";
    }
    EXPECT_EQ(host.timeline()->codingTarget(), nullptr);
    const ChangeWatch watch(host);
    target->removeRowWithRowId(row);
    watch.expectNoChange("an edit of a locked timeline through a target from before");
}

}  // namespace CodingTargetCases

inline std::vector<TimelineCase> codingTargetCases() {
    using namespace CodingTargetCases;
    return {
        {"RenamesTheRowWithANumber", renamesTheRowWithANumber},
        {"RecoloursARow", recoloursARow},
        {"InsertsARowAtAnIndexAndReportsIt", insertsARowAtAnIndexAndReportsIt},
        {"MovesRowsToAnIndex", movesRowsToAnIndex},
        {"AMovedRowIsAmongTheChanges", aMovedRowIsAmongTheChanges},
        {"RemovesRowsAndClips", removesRowsAndClips},
        {"WhatChangesNothingOrDoesNotExistIsIgnored", whatChangesNothingOrDoesNotExistIsIgnored},
        {"ALockedTimelineHasNoTarget", aLockedTimelineHasNoTarget},
    };
}

class CodingTargetContract : public testing::TestWithParam<HostAndCase> {};

TEST_P(CodingTargetContract, IsKept) {
    const auto host = std::get<TimelineHost>(GetParam()).make();
    std::get<TimelineCase>(GetParam()).run(*host);
}

}  // namespace HostContract
