// What the program says at the end: differences and their explanation, what was lost, how long edits took.

#include "Apps/CodingDesk/Arrivals.hpp"
#include "Apps/CodingDesk/Explanation.hpp"
#include "Apps/CodingDesk/Fates.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace CodingDesk {
namespace {

using Lines = std::vector<std::string>;

TEST(ReportTests, NamesEachClipAndRowThatIsNotAsTheCloudHasIt) {
    const MatchState remote{{{"A", {200, 0, 0}}, {"B", {0, 0, 200}}, {"C", {200, 0, 0}}},
                            {{"m1", "A", 1, 9}, {"m2", "B", 7.5, 9}, {"m3", "C", 9, 9}, {"m4", "X", 1, 2}}};
    MatchState equal = remote;
    equal.rows.insert(equal.rows.begin() + 2, RowState{"X", {}});  // may stay while it holds clips
    const std::pair<void (*)(std::vector<RowState>&, std::vector<ClipState>&), Lines> cases[] = {
        {[](auto&, auto& c) { std::swap(c[0], c[2]); }, {}},
        {[](auto&, auto& c) { c.erase(c.begin()); }, {"the clip 0:01.0–0:09.0 on “A” is missing"}},
        {[](auto&, auto& c) { c.push_back({"m9", "B", 3, 4}); },
         {"the clip 0:03.0–0:04.0 on “B” is still there, though it was deleted"}},
        {[](auto&, auto& c) { c.push_back({{}, "B", 3, 4}); },
         {"the clip 0:03.0–0:04.0 on “B” was never sent"}},
        {[](auto&, auto& c) { c.push_back(c[0]); }, {"the clip 0:01.0–0:09.0 on “A” is there twice"}},
        {[](auto&, auto& c) { c[1].row = "C"; }, {"the clip 0:07.5–0:09.0 on “C” belongs on “B”"}},
        {[](auto&, auto& c) { c[1].end = 9.001; },
         {"the clip 0:07.5–0:09.0 on “B” should be 7.500–9.000 s and is 7.500–9.001 s"}},
        {[](auto& r, auto&) { r[1].color = r[0].color; }, {"the row “B” should be #0000C8 and is #C80000"}},
        {[](auto& r, auto&) { std::swap(r[1], r[3]); },
         {"the row in place 2 should be “B” and is “C”", "the row in place 3 should be “C” and is “B”"}},
        {[](auto& r, auto&) { r[1].name = "D"; },
         {"the empty row “D” is there, which the shared list does not have", "the row “B” is missing"}},
        {[](auto&, auto& c) { c.pop_back(); },
         {"the clip 0:01.0–0:02.0 on “X” is missing",
          "the empty row “X” is there, which the shared list does not have"}}};
    for (const auto& [change, expected] : cases) {
        MatchState timeline = equal;
        change(timeline.rows, timeline.clips);
        Lines reported;
        for (const Difference& difference : differences(timeline, remote)) {
            reported.push_back(difference.what);
        }
        EXPECT_EQ(reported, expected);
    }
    EXPECT_EQ(differences({remote.rows, {}}, remote).front().momentId, "m1");
}

TEST(ReportTests, ExplainsByTheLastOfTheClipAndTheLastTroubleAtThatAnalyst) {
    const std::vector<ReferenceHost::TraceEntry> trace{
        {Base::Seconds(1), "Ana", "delivery", {{"type", "momentsAdded"}, {"ids", "m1,m2"}}},
        {Base::Seconds(2), "Ana", "log.warn", {{"message", "Unable to update moments."}}},
        {Base::Seconds(3), "Ana", "call", {{"name", "updateMoments"}, {"ids", "m2"}}},
        {Base::Seconds(4), "Ana", "delivery", {{"type", "momentsDeleted"}, {"ids", "m12,m23"}}},
        {Base::Seconds(5), "Björn", "delivery", {{"type", "momentsDeleted"}, {"ids", "m1"}}}};
    const std::string trouble = "; the last trouble logged there, at 2.0 s: Unable to update moments.";
    EXPECT_EQ(explanation(trace, "Ana", {"", "m1"}), "it arrived there at 1.0 s" + trouble);
    EXPECT_EQ(explanation(trace, "Ana", {"", "m2"}), "a change of it was sent from there at 3.0 s" + trouble);
    EXPECT_EQ(explanation(trace, "Ana", {"", "m23"}), "its deletion arrived there at 4.0 s" + trouble);
    EXPECT_EQ(explanation(trace, "Ana", {"", "m3"}), "nothing about it ever reached Ana" + trouble);
    EXPECT_EQ(explanation(trace, "Björn", {"", std::nullopt}), "no trouble is logged there");
}

TEST(ReportTests, NamesWhatIsLostAndWhatCameBack) {
    const std::vector<Work> all{{"Ana", {{"a1", "Shot", 1, 2, false}, {"a2", "Goal", 3, 3, true}}, {}},
                                {"Femi", {{"f1", "Save", 61.5, 62, false}}, {"Femi: look again 1"}}};
    EXPECT_EQ(fates(all, {"a1", "f1"}, {"Shot"}),
              Lines{"Every clip that was tagged and not deleted is there: 2."});
    EXPECT_EQ(fates(all, {"a1", "a2"}, {"Shot", "Femi: look again 1"}),
              (Lines{"Of the clips that were tagged and not deleted 1 are there and 1 are lost.",
                     "  lost: Femi's 1:01.5–1:02.0 on “Save”",
                     "  deleted while they were being sent, and back: Ana's 0:03.0–0:03.0 on “Goal”",
                     "  removed while somebody else sent a list of rows, and back: “Femi: look again 1”"}));
}

TEST(ReportTests, MeasuresFromTheEditToTheFirstSightAtEachOfTheOthers) {
    Arrivals arrivals(3);
    for (int i = 1; i <= 100; ++i) {
        arrivals.edited(0, Sight::clip("Shot", i, i), 0);
        arrivals.seen(0, Sight::clip("Shot", i, i), 200);  // by its own editor
        arrivals.seen(2, Sight::clip("Shot", i, i), i);
        arrivals.seen(2, Sight::clip("Shot", i, i), 201);  // again
        arrivals.seen(2, Sight::clip("Goal", i, i), 202);  // what nobody edited
    }
    arrivals.edited(1, Sight::clipGone("Shot", 1, 1), 0);

    const ArrivalSummary summary = arrivals.summary();
    EXPECT_EQ(summary.arrivals, 100U);
    EXPECT_EQ(summary.missing, 102U);
    EXPECT_EQ(summary.median, 50) << "percentiles are nearest ranks";
    EXPECT_EQ(summary.percentile95, 95);
    EXPECT_EQ(summary.largest, 100);
    EXPECT_EQ(summary.largestBy, 0U);
    EXPECT_EQ(summary.largestAt, 2U);
    EXPECT_EQ(Arrivals(2).summary().median, 0);
}

}  // namespace
}  // namespace CodingDesk
