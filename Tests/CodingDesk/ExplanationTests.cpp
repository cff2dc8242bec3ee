#include "Apps/CodingDesk/Explanation.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace CodingDesk {
namespace {

using ReferenceHost::TraceEntry;

TEST(ExplanationTests, TellsTheLastOfTheClipAndTheLastTroubleAtThatAnalyst) {
    const std::vector<TraceEntry> trace{
        {Base::Seconds(1), "Ana", "delivery", {{"type", "momentsAdded"}, {"ids", "m1,m2"}}},
        {Base::Seconds(2), "Ana", "log.warn", {{"message", "Unable to update moments."}}},
        {Base::Seconds(3), "Ana", "call", {{"name", "updateMoments"}, {"ids", "m2"}}},
        {Base::Seconds(4), "Ana", "delivery", {{"type", "momentsDeleted"}, {"ids", "m12,m23"}}},
        {Base::Seconds(5), "Björn", "delivery", {{"type", "momentsDeleted"}, {"ids", "m1"}}},
    };

    const std::string trouble = "; the last trouble logged there, at 2.0 s: Unable to update moments.";
    EXPECT_EQ(explanation(trace, "Ana", {"", "m1"}), "it arrived there at 1.0 s" + trouble);
    EXPECT_EQ(explanation(trace, "Ana", {"", "m2"}), "a change of it was sent from there at 3.0 s" + trouble);
    EXPECT_EQ(explanation(trace, "Ana", {"", "m23"}), "its deletion arrived there at 4.0 s" + trouble);
    EXPECT_EQ(explanation(trace, "Ana", {"", "m3"}), "nothing about it ever reached Ana" + trouble);
    EXPECT_EQ(explanation(trace, "Björn", {"", "m1"}),
              "its deletion arrived there at 5.0 s; no trouble is logged there");
    EXPECT_EQ(explanation(trace, "Björn", {"", std::nullopt}), "no trouble is logged there");
}

}  // namespace
}  // namespace CodingDesk
