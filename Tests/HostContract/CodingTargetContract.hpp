#pragma once

#include "Tests/HostContract/TimelineFixture.hpp"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

/// The contract of `RemoteCoding::CodingTarget` as tests for any host: more cases of `TimelineContract`. Include this
/// header beside that one, in the same source file.
namespace HostContract {

inline constexpr auto farPastTheEnd = std::numeric_limits<std::int64_t>::max();
inline constexpr auto farBeforeTheStart = std::numeric_limits<std::int64_t>::min();

const TimelineCase targetEdits("TheTargetRenamesRecoloursAndRemoves", [](TimelineFixture& host) {
    const auto first = host.addRow("Shot", red);
    const auto second = host.addRow("Pass", red);
    const auto clip = host.addInstance(first, 1.0, 2.0);
    const auto left = host.addInstance(first, 3.0, 4.0);
    const auto target = host.timeline()->codingTarget();
    const auto row = rowWithId(*host.timeline(), second);

    auto changes =
        expectChange(host, "renaming", [&] { target->setRowNameWithRowNum(row->rowNum(), "Goal"); });
    EXPECT_EQ(idsOf(changes->allRows()), (Ids{second}));
    expectChange(host, "recolouring", [&] { target->setRowColorWithRowId(second, green); });
    EXPECT_EQ(row->name(), "Goal");
    EXPECT_EQ(row->color(), green);
    host.moveRow(second, 0);
    target->setRowNameWithRowNum(row->rowNum(), "Save");
    EXPECT_EQ(row->name(), "Save") << "numbers are those of now";

    changes = expectChange(host, "removing a clip", [&] { target->removeInstanceWithRowId(first, clip); });
    EXPECT_EQ(changes->deletedInstanceIds(), (Ids{clip}));
    changes = expectChange(host, "removing a row", [&] { target->removeRowWithRowId(first); });
    EXPECT_EQ(changes->deletedRowIds(), (Ids{first}));
    EXPECT_EQ(changes->deletedInstanceIds(), (Ids{left}));
});

const TimelineCase targetInserts("TheTargetInsertsRowsAndReportsThem", [](TimelineFixture& host) {
    const auto target = host.timeline()->codingTarget();
    std::vector<std::shared_ptr<TimelineRowProtocol>> reported;
    const auto report = [&](auto row) { reported.push_back(std::move(row)); };
    const auto insert = [&](const char* name, std::int64_t at) {
        expectChange(host, name, [&] { target->insertRowWithName(name, green, at, report); });
    };
    insert("Eckstoß ⚽", 0);
    insert("", 0);
    insert("Eckstoß ⚽", farPastTheEnd);
    insert("second", 1);
    target->insertRowWithName("unreported", red, 4, nullptr);
    host.runMainJobs();

    Ids names;
    const auto rows = host.timeline()->allRows();
    for (const auto& row : *rows) {
        names.push_back(row->name());
        EXPECT_EQ(row->color(), row->name() == "unreported" ? red : green);
    }
    EXPECT_EQ(names, (Ids{"", "second", "Eckstoß ⚽", "Eckstoß ⚽", "unreported"}));
    EXPECT_EQ(reported,
              (RemoteCoding::RowList::element_type{rows->at(2), rows->at(0), rows->at(3), rows->at(1)}));
});

const TimelineCase targetMoves("TheTargetMovesRowsToAnIndex", [](TimelineFixture& host) {
    const auto a = host.addRow("a", red);
    const auto b = host.addRow("b", red);
    const auto c = host.addRow("c", red);
    const auto d = host.addRow("d", red);
    const auto move = [&](const std::vector<std::int64_t>& from, std::int64_t to) {
        const Ids before = rowIds(host);
        const auto changes = expectChange(
            host, "moving", [&] { host.timeline()->codingTarget()->rearrangeRowsFrom(from, to); });
        const Ids after = rowIds(host);
        for (std::size_t index = 0; index < after.size(); ++index) {
            EXPECT_EQ(rowWithId(*changes, after[index]) != nullptr, before[index] != after[index])
                << "changed";
        }
        return after;
    };

    EXPECT_EQ(move({2}, 0), (Ids{c, a, b, d})) << "upwards";
    EXPECT_EQ(move({0}, 3), (Ids{a, b, d, c})) << "downwards: the index is that of the result";
    EXPECT_EQ(move({0, 1}, farPastTheEnd), (Ids{d, c, a, b})) << "several keep their order";
});

const TimelineCase targetIgnores("TheTargetIgnoresWhatDoesNothing", [](TimelineFixture& host) {
    const auto row = host.addRow("Shot", red);
    const auto other = host.addRow("Pass", red);
    const auto clip = host.addInstance(row, 1.0, 2.0);
    const auto target = host.timeline()->codingTarget();

    expectNoChange(host, "none of these", [&] {
        target->setRowNameWithRowNum(rowWithId(*host.timeline(), row)->rowNum(), "Shot");
        target->setRowNameWithRowNum(farPastTheEnd, "Goal");
        target->setRowNameWithRowNum(farBeforeTheStart, "Goal");
        target->setRowColorWithRowId(row, red);
        target->setRowColorWithRowId("nobody", green);
        target->rearrangeRowsFrom({0}, 0);
        target->rearrangeRowsFrom({farBeforeTheStart, 2, farPastTheEnd}, 0);
        target->removeRowWithRowId("nobody");
        target->removeInstanceWithRowId(row, "nobody");
        target->removeInstanceWithRowId(other, clip);
    });
});

}  // namespace HostContract
