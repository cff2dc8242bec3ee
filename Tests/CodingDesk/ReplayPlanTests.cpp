#include "Apps/CodingDesk/ReplayPlan.hpp"

#include "Apps/CodingDesk/BuiltInMatch.hpp"
#include "Apps/CodingDesk/EventFile.hpp"
#include "Apps/CodingDesk/Palette.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace CodingDesk {
namespace {

std::vector<CodedEvent> manyEvents(std::size_t count) {
    std::vector<CodedEvent> events;
    for (std::size_t i = 0; i < count; ++i) {
        const auto start = static_cast<double>(i) * 10;
        events.push_back({"code " + std::to_string(i % 14), start, start + 12});
    }
    return events;
}

/// What must hold for every plan, whatever the match.
void expectSound(const ReplayPlan& plan, const std::vector<CodedEvent>& events, std::size_t analysts) {
    std::vector<CodedEvent> tagged;
    std::set<ClipKey> clips;
    std::set<RowKey> rows;
    std::set<std::string> seen;  // names and colours: no two alike
    for (const PlannedRow& row : plan.rows) {
        EXPECT_TRUE(seen.insert(row.name).second && seen.insert(hexOf(row.color)).second) << row.name;
    }
    double now = 0;
    for (const Step& step : plan.steps) {
        EXPECT_LT(step.analyst, analysts);
        EXPECT_LE(now, step.at) << "steps out of order";
        now = step.at;
        if (const auto* tag = std::get_if<TagClip>(&step.edit)) {
            const PlannedClip& clip = plan.clips[tag->clip];
            EXPECT_EQ(clip.maker, step.analyst);
            EXPECT_TRUE(clips.insert(tag->clip).second) << "tagged twice";
            EXPECT_TRUE(clip.row < plan.codes || rows.contains(clip.row)) << "the row is not there yet";
            if (clip.row < plan.codes) {
                tagged.push_back({plan.rows[clip.row].name, clip.start, clip.end});
            }
        } else if (const auto* retime = std::get_if<RetimeClip>(&step.edit)) {
            EXPECT_TRUE(clips.contains(retime->clip)) << "retimed before it was tagged";
            EXPECT_TRUE(retime->start >= 0 && retime->start <= retime->end);
        } else if (const auto* deletion = std::get_if<DeleteClip>(&step.edit)) {
            EXPECT_TRUE(clips.contains(deletion->clip)) << "deleted before it was tagged";
            EXPECT_EQ(plan.clips[deletion->clip].maker, step.analyst) << "deleted by somebody else";
        } else if (const auto* addition = std::get_if<AddRow>(&step.edit)) {
            EXPECT_TRUE(addition->row >= plan.codes && rows.insert(addition->row).second);
        } else if (const auto* removal = std::get_if<RemoveRow>(&step.edit)) {
            EXPECT_EQ(rows.erase(removal->row), 1U) << "removed twice, or before it was there";
        } else if (const auto* recolor = std::get_if<RecolorRow>(&step.edit)) {
            EXPECT_TRUE(seen.insert(hexOf(recolor->color)).second) << "a colour that was there before";
        } else if (const auto* move = std::get_if<MoveRow>(&step.edit)) {
            EXPECT_TRUE(seen.insert(hexOf(move->color)).second) << "a colour that was there before";
        } else if (const auto* rename = std::get_if<RenameRow>(&step.edit)) {
            EXPECT_TRUE(seen.insert(rename->name).second) << rename->name << " was there before";
        }
    }
    EXPECT_THAT(tagged, testing::UnorderedElementsAreArray(events));
}

TEST(ReplayPlanTests, EverybodyOnlyDoesWhatIsPossibleAndEveryClipIsTaggedOnce) {
    const std::vector<CodedEvent> strange{{"A", 0, 0},
                                          {"A (checked)", 0, 1e15},
                                          {"A", 0, 0},
                                          {"A (final)", 1e15, 1e15},
                                          {"Ana: look again 1", 3, 4}};
    for (std::uint64_t seed = 0; seed < 40; ++seed) {
        for (const auto& events : {parseEvents(builtInMatch()), manyEvents(454), {{"A", 5, 5}}, strange}) {
            const std::size_t analysts = 2 + seed % 7;
            SCOPED_TRACE("seed " + std::to_string(seed) + ", events " + std::to_string(events.size()));
            expectSound(makeReplayPlan(events, {analysts, seed, std::nullopt, seed % 2}), events, analysts);
        }
    }
}

TEST(ReplayPlanTests, EveryReplayShowsEveryKindOfEditAndDealsCodesToAllAndOnlyTheSeedDecides) {
    const auto events = parseEvents(builtInMatch());
    std::set<std::vector<double>> allTimes;
    for (std::uint64_t seed = 0; seed < 80; ++seed) {  // each twice
        SCOPED_TRACE(seed / 2);
        const ReplayPlan plan = makeReplayPlan(events, {3, seed / 2, std::nullopt, 1});
        std::set<std::size_t> kinds;
        std::set<AnalystIndex> makers;
        std::vector<double> times;
        for (const Step& step : plan.steps) {
            kinds.insert(step.edit.index());
            makers.insert(step.analyst);
            times.push_back(step.at);
        }
        EXPECT_EQ(kinds.size(), std::variant_size_v<Edit>);
        EXPECT_EQ(makers.size(), 3U);
        EXPECT_EQ(allTimes.insert(times).second, seed % 2 == 0);
    }
}

TEST(ReplayPlanTests, TheLinkDropsBetweenThePausesAndComesBack) {
    for (const auto& dropLink : {std::optional<AnalystIndex>(2), {}}) {
        std::string order;
        for (const Step& step : makeReplayPlan(manyEvents(454), {4, 7, std::nullopt, dropLink}).steps) {
            if (std::holds_alternative<RenameRow>(step.edit)) {
                order += 'P';
            } else if (const auto* link = std::get_if<SwitchLink>(&step.edit)) {
                EXPECT_EQ(step.analyst, 2U);
                order += link->up ? 'U' : 'D';
            }
        }
        EXPECT_EQ(order, dropLink ? "PDUP" : "PP");
    }
}

}  // namespace
}  // namespace CodingDesk
