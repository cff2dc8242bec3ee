#include "Apps/CodingDesk/ReplayPlan.hpp"

#include "Apps/CodingDesk/BuiltInMatch.hpp"
#include "Apps/CodingDesk/EventFile.hpp"
#include "Apps/CodingDesk/Palette.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace CodingDesk {
namespace {

using Events = std::vector<CodedEvent>;

/// Checks what must hold for every plan, whatever the match; tells when its steps are.
std::vector<double> checked(const ReplayPlan& plan, const Events& events, const PlanSettings& settings) {
    Events tagged;
    std::set<ClipKey> clips;
    std::set<RowKey> rows;
    std::set<std::string> seen;  // names and colours: no two alike
    for (const PlannedRow& row : plan.rows) {
        EXPECT_TRUE(seen.insert(row.name).second && seen.insert(hexOf(row.color)).second) << row.name;
    }
    std::set<std::size_t> kinds;
    std::set<AnalystIndex> analysts;
    std::string pausesAndLink;
    std::vector<double> times{0};
    for (const Step& step : plan.steps) {
        kinds.insert(step.edit.index());
        analysts.insert(step.analyst);
        EXPECT_TRUE(step.analyst < settings.analysts && step.at >= times.back());
        times.push_back(step.at);
        if (const auto* tag = std::get_if<TagClip>(&step.edit)) {
            const PlannedClip& clip = plan.clips[tag->clip];
            EXPECT_TRUE(clips.insert(tag->clip).second && clip.maker == step.analyst);
            EXPECT_TRUE(clip.row < plan.codes || rows.contains(clip.row)) << "the row is not there yet";
            if (clip.row < plan.codes) {
                tagged.push_back({plan.rows[clip.row].name, clip.start, clip.end});
            }
        } else if (const auto* retime = std::get_if<RetimeClip>(&step.edit)) {
            EXPECT_TRUE(clips.contains(retime->clip) && retime->start >= 0 && retime->start <= retime->end);
        } else if (const auto* deletion = std::get_if<DeleteClip>(&step.edit)) {
            EXPECT_TRUE(clips.contains(deletion->clip) && plan.clips[deletion->clip].maker == step.analyst);
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
            pausesAndLink += 'P';
        } else if (const auto* link = std::get_if<SwitchLink>(&step.edit)) {
            EXPECT_EQ(step.analyst, settings.dropLink);
            pausesAndLink += link->up ? 'U' : 'D';
        }
    }
    EXPECT_THAT(tagged, testing::UnorderedElementsAreArray(events));
    EXPECT_EQ(pausesAndLink, settings.dropLink ? "PDUP" : "PP");
    EXPECT_TRUE(events.size() < 100 || analysts.size() == settings.analysts) << "somebody does nothing";
    EXPECT_TRUE(events.size() < 100 || kinds.size() + !settings.dropLink == std::variant_size_v<Edit>);
    return times;
}

TEST(ReplayPlanTests, EverybodyOnlyDoesWhatIsPossibleAndTakesPartAndTheSeedAloneDecides) {
    const Events built = parseEvents(builtInMatch());
    const Events strange{{"A", 0, 0}, {"A (checked)", 0, 1e15}, {"A", 0, 0}, {"A (final)", 1e15, 1e15}};
    Events many;
    for (int i = 0; i < 454; ++i) {
        many.push_back({"code " + std::to_string(i % 14), i * 10., i * 10. + 12});
    }
    std::set<std::vector<double>> plans;
    for (std::uint64_t seed = 0; seed < 40; ++seed) {
        const auto dropLink = seed % 3 == 0 ? std::nullopt : std::optional<AnalystIndex>(seed % 2);
        const PlanSettings settings{2 + seed % 7, seed, std::nullopt, dropLink};
        for (const auto& events : {built, many, strange, Events{{"Ana: look again 1", 5, 5}}}) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", events " << events.size());
            EXPECT_TRUE(plans.insert(checked(makeReplayPlan(events, settings), events, settings)).second);
            EXPECT_FALSE(plans.insert(checked(makeReplayPlan(events, settings), events, settings)).second);
        }
    }
}

}  // namespace
}  // namespace CodingDesk
