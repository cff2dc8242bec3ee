#include "Apps/CodingDesk/Comparison.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace CodingDesk {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const Base::Color red{200, 0, 0};
const Base::Color blue{0, 0, 200};

MatchState match() {
    return {{{"Attack", red}, {"Shot", blue}, {"Goal", red}},
            {{"m1", "Attack", 1, 9}, {"m2", "Shot", 7.5, 9}, {"m3", "Goal", 9, 9}}};
}

/// What is reported when a timeline that was equal has been changed like this.
std::vector<std::string> afterChange(const std::function<void(MatchState& timeline)>& change) {
    MatchState timeline = match();
    change(timeline);
    std::vector<std::string> result;
    for (const Difference& difference : differences(timeline, match())) {
        result.push_back(difference.what);
    }
    return result;
}

TEST(ComparisonTests, EqualTimelinesHaveNoDifferenceInWhateverOrderTheirClipsStand) {
    EXPECT_THAT(afterChange([](MatchState&) {}), IsEmpty());
    EXPECT_THAT(afterChange([](MatchState& timeline) { std::swap(timeline.clips[0], timeline.clips[2]); }),
                IsEmpty());
    EXPECT_THAT(differences({}, {}), IsEmpty());
}

TEST(ComparisonTests, NamesEachClipThatIsNotAsTheCloudHasIt) {
    EXPECT_THAT(afterChange([](MatchState& timeline) { timeline.clips.erase(timeline.clips.begin()); }),
                ElementsAre("the clip 0:01.0–0:09.0 on \"Attack\" is missing"));
    EXPECT_THAT(afterChange([](MatchState& timeline) { timeline.clips.push_back({"m9", "Shot", 3, 4}); }),
                ElementsAre("the clip 0:03.0–0:04.0 on \"Shot\" is still there, though it was deleted"));
    EXPECT_THAT(
        afterChange([](MatchState& timeline) { timeline.clips.push_back({std::nullopt, "Shot", 3, 4}); }),
        ElementsAre("the clip 0:03.0–0:04.0 on \"Shot\" was never sent"));
    EXPECT_THAT(afterChange([](MatchState& timeline) { timeline.clips.push_back(timeline.clips[0]); }),
                ElementsAre("the clip 0:01.0–0:09.0 on \"Attack\" is there twice"));
    EXPECT_THAT(afterChange([](MatchState& timeline) { timeline.clips[1].row = "Goal"; }),
                ElementsAre("the clip 0:07.5–0:09.0 on \"Goal\" belongs on \"Shot\""));
    EXPECT_THAT(afterChange([](MatchState& timeline) { timeline.clips[1].end = 9.001; }),
                ElementsAre(HasSubstr("should be 7.500–9.000 s and is 7.500–9.001 s")));
}

TEST(ComparisonTests, NamesTheClipForWhoeverLooksIntoTheLog) {
    MatchState timeline = match();
    timeline.clips[1].start = 7;
    const auto found = differences(timeline, match());
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].momentId, "m2");
}

TEST(ComparisonTests, ComparesTheRowsOfTheSharedListByOrderNameAndColor) {
    EXPECT_THAT(afterChange([](MatchState& timeline) { timeline.rows[1].color = red; }),
                ElementsAre("the row \"Shot\" should be #0000C8 and is #C80000"));
    EXPECT_THAT(afterChange([](MatchState& timeline) { std::swap(timeline.rows[1], timeline.rows[2]); }),
                ElementsAre("the row in place 2 should be \"Shot\" and is \"Goal\"",
                            "the row in place 3 should be \"Goal\" and is \"Shot\""));
    EXPECT_THAT(afterChange([](MatchState& timeline) { timeline.rows.pop_back(); }),
                ElementsAre("the row \"Goal\" is missing"));
    EXPECT_THAT(afterChange([](MatchState& timeline) { timeline.rows[1].name = "Shots"; }),
                ElementsAre(HasSubstr("the empty row \"Shots\" is there"), "the row \"Shot\" is missing"));
}

TEST(ComparisonTests, ARowBesidesTheSharedListMayStayWhileItHoldsClips) {
    MatchState remote = match();
    remote.clips.push_back({"m4", "Extra", 1, 2});
    MatchState timeline = remote;
    timeline.rows.insert(timeline.rows.begin() + 1, RowState{"Extra", blue});
    EXPECT_THAT(differences(timeline, remote), IsEmpty());

    timeline.clips.pop_back();
    EXPECT_EQ(differences(timeline, remote).size(), 2U) << "the missing clip and the row, which is empty now";
}

}  // namespace
}  // namespace CodingDesk
