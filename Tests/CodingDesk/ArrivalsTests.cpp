#include "Apps/CodingDesk/Arrivals.hpp"

#include <gtest/gtest.h>

#include <string>

namespace CodingDesk {
namespace {

TEST(ArrivalsTests, MeasuresFromTheEditToTheFirstSightAtEachOfTheOthers) {
    Arrivals arrivals(3);
    arrivals.edited(0, Sight::clip("Shot", 1, 2), 10);
    arrivals.seen(0, Sight::clip("Shot", 1, 2), 10);  // by its own editor
    arrivals.seen(1, Sight::clip("Shot", 1, 2), 11);
    arrivals.seen(1, Sight::clip("Shot", 1, 2), 19);  // again
    arrivals.seen(1, Sight::clip("Goal", 1, 2), 12);  // what nobody edited
    arrivals.seen(2, Sight::clip("Shot", 1, 2), 13);
    arrivals.edited(1, Sight::clipGone("Shot", 1, 2), 20);
    arrivals.seen(0, Sight::clipGone("Shot", 1, 2), 22);

    const ArrivalSummary summary = arrivals.summary();

    EXPECT_EQ(summary.edits, 2U);
    EXPECT_EQ(summary.arrivals, 3U);
    EXPECT_EQ(summary.missing, 1U);
    EXPECT_DOUBLE_EQ(summary.largest, 3);
    EXPECT_EQ(summary.largestBy, 0U);
    EXPECT_EQ(summary.largestAt, 2U);
}

TEST(ArrivalsTests, PercentilesAreNearestRanks) {
    Arrivals arrivals(2);
    for (int i = 1; i <= 100; ++i) {
        arrivals.edited(0, std::to_string(i), 0);
        arrivals.seen(1, std::to_string(i), i);
    }
    const ArrivalSummary summary = arrivals.summary();
    EXPECT_DOUBLE_EQ(summary.median, 50);
    EXPECT_DOUBLE_EQ(summary.percentile95, 95);
    EXPECT_DOUBLE_EQ(summary.largest, 100);
    EXPECT_EQ(Arrivals(2).summary().arrivals, 0U);
}

}  // namespace
}  // namespace CodingDesk
