#include "Apps/CodingDesk/Comparison.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
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

std::vector<std::string> reported(const MatchState& timeline, const MatchState& remote) {
    std::vector<std::string> result;
    for (const Difference& difference : differences(timeline, remote)) {
        result.push_back(difference.what);
    }
    return result;
}

TEST(ComparisonTests, NamesEachClipAndRowThatIsNotAsTheCloudHasIt) {
    using Change = void (*)(MatchState& timeline);
    const std::pair<Change, std::vector<std::string>> table[] = {
        {[](auto&) {}, {}},
        {[](auto& timeline) { std::swap(timeline.clips[0], timeline.clips[2]); }, {}},
        {[](auto& timeline) { timeline.clips.erase(timeline.clips.begin()); },
         {"the clip 0:01.0–0:09.0 on \"Attack\" is missing"}},
        {[](auto& timeline) { timeline.clips.push_back({"m9", "Shot", 3, 4}); },
         {"the clip 0:03.0–0:04.0 on \"Shot\" is still there, though it was deleted"}},
        {[](auto& timeline) { timeline.clips.push_back({std::nullopt, "Shot", 3, 4}); },
         {"the clip 0:03.0–0:04.0 on \"Shot\" was never sent"}},
        {[](auto& timeline) { timeline.clips.push_back(timeline.clips[0]); },
         {"the clip 0:01.0–0:09.0 on \"Attack\" is there twice"}},
        {[](auto& timeline) { timeline.clips[1].row = "Goal"; },
         {"the clip 0:07.5–0:09.0 on \"Goal\" belongs on \"Shot\""}},
        {[](auto& timeline) { timeline.rows[1].color = red; },
         {"the row \"Shot\" should be #0000C8 and is #C80000"}},
        {[](auto& timeline) { std::swap(timeline.rows[1], timeline.rows[2]); },
         {"the row in place 2 should be \"Shot\" and is \"Goal\"",
          "the row in place 3 should be \"Goal\" and is \"Shot\""}},
        {[](auto& timeline) { timeline.rows.pop_back(); }, {"the row \"Goal\" is missing"}},
    };
    for (const auto& [change, expected] : table) {
        MatchState timeline = match();
        change(timeline);
        EXPECT_EQ(reported(timeline, match()), expected);
    }

    MatchState timeline = match();
    timeline.clips[1].end = 9.001;
    timeline.rows[1].name = "Shots";
    EXPECT_THAT(reported(timeline, match()),
                ElementsAre(HasSubstr("should be 7.500–9.000 s and is 7.500–9.001 s"),
                            HasSubstr("the empty row \"Shots\" is there"), "the row \"Shot\" is missing"));
    EXPECT_EQ(differences(timeline, match()).front().momentId, "m2");
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
