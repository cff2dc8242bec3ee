// Each known class of loss has a plan in the folder "Losses" that shows it.

#include "Apps/Simulator/Outcome/Outcome.hpp"
#include "Apps/Simulator/Runner.hpp"
#include "Apps/Simulator/Verdict.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <vector>

namespace Simulator {

namespace {

std::string fileNameOf(std::string lossClass) {
    std::ranges::replace(lossClass, ' ', '-');
    return lossClass + ".plan";
}

Plan readPlanFile(const std::filesystem::path& path) {
    std::ifstream file(path);
    return readPlan(file);
}

std::set<std::string> classesIn(const Verdict& verdict) {
    std::set<std::string> classes;
    for (const ExplainedLoss& loss : verdict.outcome.explained) {
        classes.insert(loss.lossClass);
    }
    return classes;
}

std::string textOf(const Findings& findings) {
    std::string text;
    for (const Finding& finding : findings) {
        text += finding.rule + ": " + finding.what + '\n';
    }
    return text;
}

}  // namespace

TEST(Losses, EachClassIsShownByItsPlanAndNothingStaysUnexplained) {
    std::set<std::string> files;
    for (const auto& file : std::filesystem::directory_iterator(LOSSES_FOLDER)) {
        files.insert(file.path().filename().string());
    }
    for (const std::string& lossClass : lossClasses()) {
        SCOPED_TRACE(lossClass);
        ASSERT_EQ(files.erase(fileNameOf(lossClass)), 1U) << "No plan shows it.";
        const Trial trial(readPlanFile(std::filesystem::path(LOSSES_FOLDER) / fileNameOf(lossClass)));
        EXPECT_EQ(textOf(failuresOf(trial.verdict, {})), "");
        EXPECT_TRUE(classesIn(trial.verdict).contains(lossClass));
    }
    EXPECT_EQ(files, std::set<std::string>()) << "Plans of classes that are no more.";
}

TEST(Losses, EachClassIsInTheDocumentAndNoOther) {
    std::ifstream document(GUARANTEES_FILE);
    std::set<std::string> described;
    const std::regex row(R"(^\| ([a-z ]+) \| .* \| [0-9]+ \|$)");
    std::smatch found;
    for (std::string line; std::getline(document, line);) {
        if (std::regex_match(line, found, row)) {
            described.insert(found[1]);
        }
    }
    const std::vector<std::string> classes = lossClasses();
    EXPECT_EQ(described, std::set<std::string>(classes.begin(), classes.end()));
}

TEST(Losses, ALossIsNotExcusedByWhatHappenedToAnother) {
    // A refused deletion explains the clip that it was of. The same trace with another clip gone is not explained by it.
    Trial trial(readPlanFile(std::filesystem::path(LOSSES_FOLDER) / "refused-by-the-cloud.plan"));
    ASSERT_TRUE(trial.verdict.outcome.findings.empty());
    for (Stay& stay : trial.record.stays) {
        stay.picture.rows.clear();
        stay.picture.clips.clear();
    }
    const Outcome outcome = judgeOutcome(trial.record);
    EXPECT_TRUE(hasRule(outcome.findings, "rowMissing"));
    EXPECT_FALSE(hasRule(outcome.findings, "deletionLost"));
}

namespace {

using Strings = std::vector<std::string>;

/// What comes of these steps, after a first clip of Ann's, when the record of them is changed like that: classes, then rules.
template <typename Change>
Strings judged(const std::string& steps, const Change& change) {
    std::istringstream text("seed 1\nanalysts 2\n8 Ann tag object=0\n" + steps);
    Record record = run(readPlan(text));
    change(record);
    const Outcome outcome = judgeOutcome(record);
    Strings found;
    for (const ExplainedLoss& loss : outcome.explained) {
        found.push_back(loss.lossClass);
    }
    for (const Finding& finding : outcome.findings) {
        found.push_back(finding.rule);
    }
    return found;
}

void asItIs(Record& /*record*/) {}

}  // namespace

TEST(Losses, AClipIsOnAWrongRowForWhatBefellThatRow) {
    // Ben's row could not follow the new name, he tags on it, and it follows late.
    const std::string missed = "12 Ben withdrawCodingTarget amount=3\n13 Ann renameRow object=0\n"
                               "17 Ben tag object=0\n20 Ann retime object=0\n";
    EXPECT_EQ(judged(missed, asItIs), Strings{"the timeline could not be edited"});
    const auto withoutTheFault = [](Record& record) {
        for (auto& entry : record.trace) {
            entry.kind = entry.kind == SimulatedKind::fault ? SimulatedKind::stage : entry.kind;
        }
    };
    EXPECT_EQ(judged(missed, withoutTheFault), Strings{"clipOnWrongRow"});

    // Ben's row goes by the name of his clip, which was tagged while Ann renamed the row, when he tags the next one on it.
    const std::string another = "12 Ann renameRow object=0\n12 Ben tag object=0\n15 Ben retime object=1\n"
                                "18 Ben tag object=0\n21 Ann retime object=0\n";
    EXPECT_EQ(judged(another, asItIs), (Strings{"row renamed meanwhile", "row renamed meanwhile"}));
    const auto elsewhere = [](Record& record) {
        auto& clips = record.stays.back().picture.clips;
        const auto clip = std::ranges::find(clips, "session-1.moment-2", &ClipPicture::momentId);
        ASSERT_NE(clip, clips.end());
        clip->rowId = "another";
    };
    EXPECT_EQ(judged(another, elsewhere), (Strings{"clipOnWrongRow", "clipOnWrongRow"}));
}

TEST(Losses, WhatWaitsForARowsNewNameIsExplainedByWhatKeepsThatBack) {
    const std::string passedOver = "passed over";
    const std::string refused = "refused by the cloud";

    // Ben colours a row that has got the former name of one whose new name was not sent.
    const std::string recolored =
        "12 Ben failBefore object=1\n14 Ann retime object=0\n14.5 Ben renameRow object=0\n"
        "14.5 Ann addRow\n15.5 Ben recolorRow object=1 other=1\n";
    EXPECT_EQ(judged(recolored, asItIs), (Strings{passedOver, passedOver, passedOver}));
    const auto withoutTheClip = [](Record& record) { record.stays.back().picture.clips.clear(); };
    const Strings unexplained = judged(recolored, withoutTheClip);
    EXPECT_EQ(std::ranges::count(unexplained, "recolorLost"), 1);

    // Ann's row goes by the new name, which the list does not have: what has the old one was made for a clip, or brought by the list.
    const std::string renamed =
        "10 Ann tag object=0\n12 Ben answerFalse object=0\n13 Ben renameRow object=0\n"
        "16 Ben retime object=0\n19 Ben tag object=0\n";
    EXPECT_EQ(judged(renamed, asItIs), (Strings{refused, refused, refused}));
    const auto atTheEnd = [](const char* name) {
        return [name](Record& record) {
            auto& rows = record.stays.front().picture.rows;
            const auto row = std::ranges::find(rows, name, &RowPicture::name);
            ASSERT_NE(row, rows.end());
            std::rotate(row, row + 1, rows.end());
        };
    };
    EXPECT_EQ(judged(renamed, atTheEnd("Attack")), (Strings{refused, refused, refused, refused}));
    EXPECT_EQ(judged(renamed, atTheEnd("Shot")), (Strings{refused, refused, refused, "rowOrder"}));
}

TEST(Losses, WhatDiffersOnATimelineIsNamed) {
    std::istringstream text("seed 1\nanalysts 2\n2 Ann tag\n4 Ann tag\n8 Ben tag object=1\n");
    Trial trial(readPlan(text));
    ASSERT_EQ(textOf(failuresOf(trial.verdict, {})), "");
    ASSERT_EQ(trial.verdict.outcome.explained.size(), 0U);
    const auto rulesAfter = [&](const auto& change) {
        Record record = trial.record;
        change(record.stays.back().picture);
        std::set<std::string> rules;
        for (const Finding& finding : judgeOutcome(record).findings) {
            rules.insert(finding.rule);
        }
        return rules;
    };
    using Rules = std::set<std::string>;
    EXPECT_EQ(rulesAfter([](TimelinePicture& picture) { picture.clips.pop_back(); }), Rules{"clipMissing"});
    EXPECT_EQ(rulesAfter([](TimelinePicture& picture) { picture.clips.push_back(picture.clips.front()); }),
              Rules{"clipTwice"});
    EXPECT_EQ(rulesAfter([](TimelinePicture& picture) { picture.clips.front().momentId.reset(); }),
              (Rules{"clipMissing", "clipUnsent"}));
    EXPECT_EQ(rulesAfter([](TimelinePicture& picture) { picture.clips.front().momentId = "gone"; }),
              (Rules{"clipExtra", "clipMissing"}));
    EXPECT_EQ(rulesAfter([](TimelinePicture& picture) { picture.clips.front().start += 1; }),
              Rules{"clipValues"});
    EXPECT_EQ(rulesAfter([](TimelinePicture& picture) { picture.clips.front().notes = "other"; }),
              Rules{"clipValues"});
    EXPECT_EQ(rulesAfter([](TimelinePicture& picture) { picture.clips.front().row = "Other"; }),
              Rules{"clipOnWrongRow"});
    EXPECT_EQ(rulesAfter([](TimelinePicture& picture) { std::swap(picture.rows[0], picture.rows[1]); }),
              Rules{"rowOrder"});
    EXPECT_EQ(rulesAfter([](TimelinePicture& picture) { picture.rows.back().color = Base::Color(1, 2, 3); }),
              Rules{"rowColor"});
    EXPECT_EQ(rulesAfter([](TimelinePicture& picture) { picture.rows.push_back(picture.rows.back()); }),
              Rules{"rowTwice"});
    EXPECT_EQ(rulesAfter([](TimelinePicture& picture) { picture.rows.back().name = "Other"; }),
              (Rules{"rowExtra", "rowMissing"}));
}

}  // namespace Simulator
