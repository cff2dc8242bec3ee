#include "Apps/Simulator/Runner.hpp"
#include "ReferenceHost/SeededRandom.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <iterator>
#include <set>
#include <tuple>

namespace Simulator {

namespace {

using Clip = std::tuple<std::string, std::string, double, double, std::string>;

void expectEqual(const TimelinePicture& timeline, const ReferenceHost::TaggingSessionRecord& session) {
    std::vector<ReferenceHost::CodeRecord> rows;
    std::ranges::transform(timeline.rows, std::back_inserter(rows), [](const RowPicture& row) {
        return ReferenceHost::CodeRecord{row.name, row.color};
    });
    EXPECT_EQ(rows, *session.presentationView);
    std::multiset<Clip> clips;
    for (const ClipPicture& clip : timeline.clips) {
        clips.emplace(clip.momentId.value_or("none"), clip.row, clip.start, clip.end, clip.notes);
    }
    std::multiset<Clip> moments;
    for (const auto& moment : session.moments) {
        moments.emplace(moment->id, moment->code, moment->start, moment->end, moment->notes);
    }
    EXPECT_TRUE(clips == moments);
}

void expectWhole(const Record& record) {
    EXPECT_FALSE(record.crash) << *record.crash;
    EXPECT_TRUE(record.neverSettled.empty()) << record.plan.seed << ": " << record.neverSettled.front();
    EXPECT_TRUE(record.leftovers.empty()) << record.plan.seed << ": " << record.leftovers.front();
}

TEST(Engine, GivesTheSameTraceForTheSamePlanAlsoBesideOtherRuns) {
    for (std::uint64_t seed = 1; seed <= 8; ++seed) {
        auto beside = std::async(std::launch::async, [seed] { return run(makePlan(seed, {})); });
        const Record record = run(makePlan(seed, {}));
        EXPECT_TRUE(record.trace == beside.get().trace) << seed;
        expectWhole(record);
    }
}

TEST(Engine, TakesEveryPartOfAPlanAsAPlan) {
    for (std::uint64_t seed = 11; seed <= 18; ++seed) {
        Plan plan = makePlan(seed, {});
        auto random = ReferenceHost::SeededRandom::stream(seed, "parts");
        std::erase_if(plan.steps, [&](const Step&) { return random.chance(0.7); });
        plan.analysts = 2 + seed % 7;
        expectWhole(run(plan));
    }
}

TEST(Engine, EndsEqualWhereNobodyIsInAnybodysWay) {
    for (std::uint64_t seed = 21; seed <= 26; ++seed) {
        Plan plan = makePlan(seed, {});
        std::erase_if(plan.steps, [](const Step& step) {
            return step.action > Action::removeRow || step.action == Action::renameRowToCommon;
        });
        for (std::size_t index = 0; index < plan.steps.size(); ++index) {
            plan.steps[index].at = Base::Seconds(10 + 6.0 * static_cast<double>(index));
        }
        const Record record = run(plan);
        expectWhole(record);
        ASSERT_EQ(record.stays.size(), plan.analysts);
        for (const Stay& stay : record.stays) {
            expectEqual(stay.picture, record.sessions.at(stay.sessionId).session);
        }
    }
}

}  // namespace

}  // namespace Simulator
