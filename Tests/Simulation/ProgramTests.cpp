#include "Apps/Simulator/Campaign.hpp"
#include "Apps/Simulator/Drawing/TraceText.hpp"
#include "Apps/Simulator/Shrinker.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace Simulator {
namespace {

using testing::HasSubstr;

std::string textOf(const Plan& plan) {
    std::ostringstream stream;
    write(stream, plan);
    return stream.str();
}

void expectRefused(const auto& read, const std::string& text, const char* message) {
    std::istringstream stream(text);
    EXPECT_THAT([&] { (void)read(stream); }, testing::ThrowsMessage<std::runtime_error>(HasSubstr(message)));
}

TEST(ProgramTests, APlanIsReadBackAsItWasWritten) {
    Plan plan{18446744073709551615U, 8, {"senderIsTold", "everyChangeCounts"}, {}};
    for (const Action action : allActions()) {
        plan.steps.push_back({Base::Seconds(1.0 / 3), plan.steps.size(), action, 4294967295U, 1, 1e-300 / 3});
    }
    std::istringstream text("# by hand\n\n" + textOf(plan));
    EXPECT_EQ(readPlan(text), plan);
    const std::string header = "seed 1\nanalysts 2 # a comment\n";
    const std::pair<std::string, const char*> refused[] = {
        {"", "line 1: the plan ends without \"seed\""},
        {"break politeness\n", "line 1: there is no rule \"politeness\""},
        {header + "1 Ann tag\nseed 2\n", "line 4: \"seed\" belongs before the first step"},
        {header + "2 Ann tag\n1 Ben tag\n", "line 4: the time is before that of the step"},
        {header + "1 Zoe tag\n", "line 3: there is no analyst \"Zoe\""},
        {header + "1 Ann tag other=1 object=1\n", "line 3: unexpected \"object=1\""}};
    for (const auto& [lines, message] : refused) {
        expectRefused(readPlan, lines, message);
    }
}

TEST(ProgramTests, ShorteningLeavesTheTwoStepsThatMatterAndTriesNoMoreThanAllowed) {
    Plan plan = makePlan(3, {});
    plan.steps[40].action = Action::linkDown;
    plan.steps[160].action = Action::hang;
    std::size_t tries = 0;
    const auto fails = [&](const Plan& candidate) {
        ++tries;
        const std::string text = textOf(candidate);
        return text.find("hang", text.find("linkDown")) != std::string::npos;
    };
    EXPECT_EQ(textOf(shrink(plan, fails, 2000)), "seed 3\nanalysts 2\n0 Ann linkDown\n0 Ann hang\n");
    tries = 0;
    EXPECT_TRUE(fails(shrink(plan, fails, 10)) && tries == 11);
}

TEST(ProgramTests, ATraceIsReadBackAndDrawn) {
    double now = 1;
    ReferenceHost::Trace trace([&] { return Base::Seconds(now); });
    trace.record("Ann", "edit", {{"notes", "\"a\\b\"\r\nc = d"}, {"clip", "c1"}, {"moment", "m1"}});
    trace.record("Ann", "block.start", {{"timelineId", "t"}, {"number", "7"}, {"kind", "upload"}});
    trace.record("Ann", "call", {{"name", "updateMoments"}, {"call", "3"}, {"ids", "m1,m2"}});
    now = 2.5;
    trace.record("Ben", "call", {{"name", "fetchTaggingSessions"}, {"call", "1"}});
    trace.record("Ann", "answer", {{"name", "updateMoments"}, {"call", "3"}, {"error", "lost"}});
    trace.record("Ann", "block.end", {{"timelineId", "t"}, {"number", "7"}});
    std::istringstream written(trace.text());
    const TraceEntries entries = readTrace(written);
    EXPECT_EQ(entries, trace.entries());
    for (const std::string line : {"1.000000 Ann", "x A b", "1.000000 A b c=\"a", "1.000000 A b c=\"\\t\""}) {
        expectRefused(readTrace, "1.000000 - stage\n" + line + '\n', "line 2: expected");
    }
    DrawingOptions options;
    const auto drawing = [&] {
        std::ostringstream stream;
        draw(stream, entries, options);
        return stream.str();
    };
    for (const char* part :
         {"┏ block 7 upload", "┃ → 3 updateMoments: m1 m2", "┃ ✗ 3 updateMoments 1.500 s: lost",
          "┗ end of block 7", "→ 1 fetchTaggingSessions (never answered)"}) {
        EXPECT_THAT(drawing(), HasSubstr(part));
    }
    options.about = "c1";
    EXPECT_THAT(drawing(), HasSubstr("✗ 3 updateMoments"));
    EXPECT_THAT(drawing(), testing::Not(HasSubstr("fetch")));
}

TEST(ProgramTests, AFailingSeedIsShortenedAndSaysHowToRunItAgain) {
    const std::string folder = testing::TempDir() + "Simulator plans";
    const Options options = parseOptions(
        {"--first-seed=5", "--operations=20", "--no-faults", "--failures=1", "--jobs=2", "--plans", folder});
    std::ostringstream out, progress;
    const auto tagsAreForbidden = [](const Record& record) {
        Verdict verdict;
        for (std::size_t at = 0; at < record.trace.size(); ++at) {
            if (record.trace[at].field("action") == "tag") {
                verdict.findings.emplace_back("noTags", record.trace[at].host + " tags", at);
            }
        }
        return verdict;
    };
    EXPECT_FALSE(Campaign(options, out, progress, tagsAreForbidden).run());
    const std::string planFile = folder + "/seed-5-noTags.plan";
    EXPECT_THAT(out.str(), testing::ContainsRegex("noTags: .* tags\n    trace line [0-9]+: .*\"tag\""));
    EXPECT_THAT(out.str(), HasSubstr(" --first-seed 5 --seeds 1 --operations 20 --no-faults\n"));
    EXPECT_THAT(out.str(), HasSubstr("tools/simulate --plan '" + planFile + "'\n"));
    std::ifstream stream(planFile);
    EXPECT_THAT(textOf(readPlan(stream)), testing::MatchesRegex("seed 5\nanalysts 2\n[^\n]* Ann tag\n"));
    std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace Simulator
