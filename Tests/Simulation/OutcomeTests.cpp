// What is planted into the record of a run must be noticed, and the known reasons must not excuse it.

#include "Apps/Simulator/Outcome/Reasons.hpp"
#include "Apps/Simulator/Runner.hpp"
#include "Apps/Simulator/Verdict.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <sstream>

namespace Simulator {

using ReferenceHost::ChangePointer;
using ReferenceHost::CodeRecord;
using ReferenceHost::MomentRecord;
using ReferenceHost::RemoteChange;
using RemoteCoding::TaggingSessionChangeType;

namespace {

/// Ann makes a row, tags two clips, changes one, deletes the other, renames a row and recolours one.
const std::string tidyPlan = R"(seed 1
analysts 2
2 Ann addRow
6 Ann tag
8 Ann tag object=1
10 Ann retime object=0
12 Ann note object=0
14 Ann deleteClip object=1
18 Ann renameRow object=2
20 Ann recolorRow object=3 other=5
)";

Record runOf(const std::string& text) {
    std::istringstream stream(text);
    return run(readPlan(stream));
}

SessionHistory& sessionOf(Record& record) { return record.sessions.begin()->second; }

/// The changes are constant: an edited one takes the place.
void replace(ChangePointer& change, const std::function<void(MomentRecord&)>& edit) {
    auto planted = std::make_shared<RemoteChange>(*change);
    for (auto& moment : planted->moments) {
        auto edited = std::make_shared<MomentRecord>(*moment);
        edit(*edited);
        moment = std::move(edited);
    }
    change = std::move(planted);
}

ChangePointer& lastChange(SessionHistory& session, TaggingSessionChangeType type) {
    const auto found = std::find_if(session.changes.rbegin(), session.changes.rend(),
                                    [&](const ChangePointer& change) { return change->type == type; });
    return *found;
}

std::set<std::string> rulesOf(const Record& record) {
    std::set<std::string> rules;
    for (const Finding& finding : judgeOutcome(record).findings) {
        rules.insert(finding.rule);
    }
    return rules;
}

/// What a difference is about, so that one that was there before can be told from one that was planted.
std::set<std::pair<std::size_t, std::string>> momentsThatDiffer(const Record& record) {
    std::set<std::pair<std::size_t, std::string>> moments;
    const History history(record);
    for (const Loss& loss : compareTimelines(history)) {
        moments.emplace(loss.stay, loss.moment);
    }
    return moments;
}

struct Count {
    std::size_t planted = 0;
    std::size_t excused = 0;
};

/// Plants the same into all clips of all timelines and counts those that were as they should be before.
Count plant(const Record& record, const std::function<void(std::vector<ClipPicture>&)>& change) {
    const auto before = momentsThatDiffer(record);
    Record planted = record;
    for (Stay& stay : planted.stays) {
        change(stay.picture.clips);
    }
    Count count;
    const History history(planted);
    for (const Loss& loss : compareTimelines(history)) {
        if (loss.kind <= LossKind::clipOnWrongRow &&
            !before.contains({loss.stay, std::string(loss.moment)})) {
            ++count.planted;
            count.excused += explain(history, loss) ? 1U : 0U;
        }
    }
    return count;
}

}  // namespace

TEST(Outcome, NamesEachEditThatTheCloudDoesNotHave) {
    const Record record = runOf(tidyPlan);
    ASSERT_EQ(rulesOf(record), std::set<std::string>());
    const auto rulesAfter = [&](const std::function<void(SessionHistory&)>& change) {
        Record planted = record;
        change(sessionOf(planted));
        return rulesOf(planted);
    };
    using Type = TaggingSessionChangeType;
    using Rules = std::set<std::string>;

    EXPECT_EQ(rulesAfter([](SessionHistory& session) {
                  auto gone = std::make_shared<RemoteChange>(*session.changes.back());
                  gone->type = Type::momentsDeleted;
                  gone->presentationView = nullptr;
                  gone->moments = lastChange(session, Type::momentsUpdated)->moments;
                  session.changes.push_back(gone);
              }),
              Rules{"tagLost"});
    EXPECT_EQ(rulesAfter([](SessionHistory& session) {
                  std::erase(session.changes, ChangePointer(lastChange(session, Type::momentsDeleted)));
              }),
              Rules{"deletionLost"});
    EXPECT_EQ(rulesAfter([](SessionHistory& session) {
                  replace(lastChange(session, Type::momentsUpdated),
                          [](MomentRecord& moment) { ++moment.end; });
              }),
              Rules{"retimeLost"});
    EXPECT_EQ(rulesAfter([](SessionHistory& session) {
                  replace(lastChange(session, Type::momentsUpdated),
                          [](MomentRecord& moment) { moment.notes = "other"; });
              }),
              Rules{"noteLost"});
    EXPECT_EQ(rulesAfter([](SessionHistory& session) {
                  session.changes.push_back(lastChange(session, Type::momentsAdded));
                  session.changes.push_back(lastChange(session, Type::momentsUpdated));
                  session.changes.back() = std::make_shared<RemoteChange>(*session.changes.back());
                  replace(session.changes.back(), [](MomentRecord& moment) { moment.id = "twin"; });
              }),
              (Rules{"clipDoubled", "deletionLost"}));

    const auto rulesAfterList = [&](const std::function<void(std::vector<CodeRecord>&)>& change) {
        return rulesAfter([&](SessionHistory& session) {
            auto codes = std::make_shared<std::vector<CodeRecord>>(*session.session.presentationView);
            change(*codes);
            session.session.presentationView = std::move(codes);
        });
    };
    const auto names = [&](const char* what, std::string_view field) {
        for (const auto& entry : record.trace) {
            if (entry.kind == SimulatedKind::edit && entry.field("what") == what) {
                return std::string(entry.field(field));
            }
        }
        return std::string();
    };
    EXPECT_TRUE(rulesAfterList([&](auto& codes) {
                    std::erase_if(codes,
                                  [&](const auto& code) { return code.name == names("addRow", "name"); });
                }).contains("newRowLost"));
    EXPECT_TRUE(rulesAfterList([&](auto& codes) {
                    for (CodeRecord& code : codes) {
                        if (code.name == names("renameRow", "name")) {
                            code.name = names("renameRow", "oldName");
                        }
                    }
                }).contains("renameLost"));
    EXPECT_TRUE(rulesAfterList([&](auto& codes) {
                    for (CodeRecord& code : codes) {
                        if (code.name == names("recolorRow", "name")) {
                            code.color = Base::Color(1, 2, 3);
                        }
                    }
                }).contains("recolorLost"));
}

TEST(Outcome, KnownReasonsExcuseHardlyAnyDifferenceThatNobodyMade) {
    // Faults and races of all sorts, but they happened to other clips.
    Count gone;
    Count onOtherRow;
    Count changed;
    const auto add = [](Count& sum, const Count& count) {
        sum.planted += count.planted;
        sum.excused += count.excused;
    };
    for (std::uint64_t seed = 1; seed <= 15; ++seed) {
        const Record record = run(makePlan(seed, PlanOptions()));
        ASSERT_TRUE(record.neverSettled.empty() && !record.crash) << seed;
        add(gone, plant(record, [](auto& clips) { clips.clear(); }));
        add(onOtherRow, plant(record, [](auto& clips) {
                for (ClipPicture& clip : clips) {
                    clip.row += " and other";
                }
            }));
        add(changed, plant(record, [](auto& clips) {
                for (ClipPicture& clip : clips) {
                    ++clip.end;
                }
            }));
    }
    for (const Count& count : {gone, onOtherRow, changed}) {
        EXPECT_GT(count.planted, 500U);
        EXPECT_LT(count.excused * 20, count.planted) << count.excused << " of " << count.planted;
    }
}

}  // namespace Simulator
