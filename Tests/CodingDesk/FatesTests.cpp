#include "Apps/CodingDesk/Fates.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace CodingDesk {
namespace {

using testing::ElementsAre;

std::vector<Work> everybodysWork() {
    Work ana{"Ana", {{"a1", "Shot", 1, 2, false}, {"a2", "Goal", 3, 3, true}}, {}};
    Work femi{"Femi", {{"f1", "Save", 61.5, 62, false}}, {"Femi: look again 1"}};
    return {ana, femi};
}

TEST(FatesTests, OneLineSaysThatEverybodyGotWhatTheyMeant) {
    EXPECT_THAT(fates(everybodysWork(), {"a1", "f1"}, {"Shot"}),
                ElementsAre("Every clip that was tagged and not deleted is there: 2."));
}

TEST(FatesTests, NamesWhatIsLostAndWhatCameBack) {
    EXPECT_THAT(
        fates(everybodysWork(), {"a1", "a2"}, {"Shot", "Femi: look again 1"}),
        ElementsAre("Of the clips that were tagged and not deleted 1 are there and 1 are lost.",
                    "  lost: Femi's 1:01.5–1:02.0 on \"Save\"",
                    "  deleted while they were being sent, and back: Ana's 0:03.0–0:03.0 on \"Goal\"",
                    "  removed while somebody else sent a list of rows, and back: \"Femi: look again 1\""));
}

}  // namespace
}  // namespace CodingDesk
