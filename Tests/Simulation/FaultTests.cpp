#include "Apps/Simulator/Runner.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <list>
#include <map>
#include <sstream>

namespace Simulator {

namespace {

using ReferenceHost::TraceEntry;

/// Two analysts who tag, retime and delete; `faults` happen as well.
Record runWith(const std::string& faults) {
    std::istringstream steps(
        "10 Ann tagNewCode\n10 Ben tag object=1\n16 Ann retime\n16 Ben retime object=1\n"
        "30 Ann addRow\n40 Ann deleteClip\n40 Ben deleteClip\n70 Ann addRow\n90 Ann note\n" +
        faults);
    std::multimap<double, std::string> lines;  // in the order of their times
    for (std::string line; std::getline(steps, line);) {
        lines.emplace(std::stod(line), line);
    }
    std::string text = "seed 1\nanalysts 2\n";
    for (const auto& [at, line] : lines) {
        text += line + '\n';
    }
    std::istringstream plan(text);
    Record record = run(readPlan(plan));
    EXPECT_FALSE(record.crash) << faults;
    record.trace.erase(record.trace.begin() + std::ptrdiff_t(record.settled), record.trace.end());
    return record;
}

/// A call of an analyst, from its beginning to its answer.
struct Call {
    [[nodiscard]] bool isAsUsual() const { return hasEffect && !answer.empty() && seconds < 1; }

    std::string operation;
    std::string asked;   ///< how many
    std::string answer;  ///< in words
    std::string firstId;
    bool hasEffect = false;
    double seconds = 0;
};

std::map<std::string, Call> callsIn(const Record& record) {
    std::map<std::string, Call> calls;
    for (const TraceEntry& entry : record.trace) {
        if (entry.field("call").empty() || entry.kind == SimulatedKind::fault) {
            continue;
        }
        Call& call = calls[entry.host + std::string(entry.field("call"))];
        if (entry.kind == ReferenceHost::TraceKind::call) {
            call = {std::string(entry.field("name")),
                    std::string(entry.field("count")),
                    {},
                    {},
                    false,
                    -entry.time.count()};
        } else if (entry.kind == "effect") {
            call.hasEffect = true;
        } else if (entry.kind == "answer") {
            const std::string ids(entry.field("ids"));
            call.firstId = ids.substr(0, ids.find(','));
            call.answer = !entry.field("error").empty()   ? "an error"
                          : !entry.field("count").empty() ? std::string(entry.field("count"))
                                                          : std::string(entry.field("answer"));
            call.answer = call.answer.empty() ? "done" : call.answer;
            call.seconds += entry.time.count();
        }
    }
    return calls;
}

TEST(Faults, MeetOneCallOfTheOperationAndDoToItWhatTheirNameSays) {
    struct Case {
        const char* fault;
        const char* operation;
        bool hasEffect;
        const char* answer;  ///< "*": whatever it would have been
    };
    std::vector<Case> cases{{"2 Ben answerFalse", "updateMoments", true, "false"},
                            {"2 Ben answerFalse object=1", "removeMoments", true, "false"},
                            {"2 Ben answerShort", "createMoments", true, "0"},
                            {"2 Ben answerNone object=1", "fetchTaggingSessions", true, "0"},
                            {"2 Ben answerOther object=1", "fetchTaggingSessions", true, "*"}};
    const char* const operations[] = {"createMoments",        "updateMoments",
                                      "savePresentationView", "removeMoments",
                                      "fetchTaggingSessions", "subscribeToTaggingSessionChanges",
                                      "createTaggingSession", "getVideo"};
    std::list<std::string> texts;
    for (std::size_t object = 0; object < std::size(operations); ++object) {
        if (object == 5) {
            continue;  // an opening has no answer; it is below
        }
        const std::string who = object == 6 ? "0 Ann " : "2 Ben ";
        const auto add = [&](const std::string& what, bool hasEffect, const char* answer) {
            const std::string chosen = object == 0 ? "" : " object=" + std::to_string(object);
            // The last one lets the player look for the video.
            texts.push_back(who + what + chosen + (what == "hang" ? " amount=9" : "") +
                            (object == 7 ? "\n50 Ben downloadPauses amount=8" : ""));
            cases.push_back({texts.back().c_str(), operations[object], hasEffect, answer});
        };
        add("failBefore", false, "an error");
        add("failAfter", true, "an error");
        add("hang", true, "*");
    }
    for (const auto& [fault, operation, hasEffect, answer] : cases) {
        SCOPED_TRACE(fault);
        const Record record = runWith(fault);
        const auto met = std::ranges::find_if(record.trace, [](const TraceEntry& entry) {
            return entry.kind == SimulatedKind::fault && !entry.field("call").empty();
        });
        ASSERT_NE(met, record.trace.end());
        std::size_t written = 0;  // a write that is answered false is not carried out
        for (const auto& [number, call] : callsIn(record)) {
            if (call.operation == "subscribeToTaggingSessionChanges") {
                continue;
            }
            const bool writes =
                call.operation.ends_with("Moments") || call.operation == "savePresentationView";
            written += writes && call.hasEffect && call.answer != "false" ? 1U : 0U;
            if (number != met->host + std::string(met->field("call"))) {
                EXPECT_TRUE(call.isAsUsual() && call.answer != "an error" && call.answer != "false")
                    << call.operation << " " << number << ": " << call.answer;
                continue;
            }
            EXPECT_EQ(call.operation, operation);
            EXPECT_EQ(call.hasEffect, hasEffect);
            EXPECT_EQ(call.seconds > 9, std::string(fault).find("hang") != std::string::npos);
            EXPECT_EQ(call.firstId != "session-1" && call.answer != "0" && !call.firstId.empty() &&
                          call.operation == "fetchTaggingSessions",
                      std::string(fault).find("Other") != std::string::npos);
            if (answer != std::string("*")) {
                EXPECT_EQ(call.answer, answer);
            }
        }
        EXPECT_EQ(record.sessions.at("session-1").log.size(), written);
    }
}

/// The number of entries of an analyst and kind with these fields, as words: "Ben subscription state=failed".
std::size_t count(const Record& record, const std::string& query) {
    std::istringstream words(query);
    std::string host;
    std::string kind;
    words >> host >> kind;
    std::vector<std::pair<std::string, std::string>> fields;
    for (std::string field; words >> field;) {
        fields.emplace_back(field.substr(0, field.find('=')), field.substr(field.find('=') + 1));
    }
    return static_cast<std::size_t>(std::ranges::count_if(record.trace, [&](const TraceEntry& entry) {
        return entry.host == host && entry.kind == kind &&
               std::ranges::all_of(fields, [&](const auto& field) {
                   const std::string_view value = entry.field(field.first);
                   return field.second.back() == '*'
                              ? value.starts_with(field.second.substr(0, field.second.size() - 1))
                              : value == field.second;
               });
    }));
}

TEST(Faults, OfTheWayTheHostAndTheStreamShowInWhatTheirAnalystMeets) {
    struct Case {
        const char* fault;
        const char* query;
        std::size_t with;
        std::size_t without;
    };
    const Case cases[] = {
        {"20 Ben dropSubscription", "Ben subscription state=failed", 1, 0},
        {"20 Ben dropSubscription", "Ann subscription state=failed", 0, 0},
        {"2 Ben failBefore object=5", "Ben subscription state=failed", 1, 0},
        {"20 Ben restartService amount=5", "Ann subscription state=failed", 1, 0},
        {"20 Ben restartService amount=5", "Ben subscription state=failed", 1, 0},
        {"20 Ben linkDown amount=9", "Ben subscription state=failed", 1, 0},
        {"20 Ben linkDown amount=9", "Ann subscription state=failed", 0, 0},
        {"20 Ben fetchesFail amount=9\n21 Ben dropSubscription",
         "Ben answer name=fetchTaggingSessions error=The*", 4, 0},
        {"20 Ben strangeEvents", "Ben delivery type=unknown", 1, 0},
        {"20 Ben strangeEvents other=2", "Ben delivery type=unknown", 3, 0},
        {"9 Ben rowsAreNotMade amount=9", "Ben call name=appendToTimeline how=unplaced", 1, 0},
        {"69 Ben withdrawCodingTarget amount=9", "Ben call name=insertRowWithName", 5, 6},
        {"9 Ann copiesLoseRows amount=9", "Ann log.error message=Trying*", 1, 0},
        {"20 Ben cancelSleeps amount=9", "Ben log.error message=Unable*", 1, 0},
        {"20 Ann streamBreaks amount=9", "Ann notification name=Notifications.streamStatusChanged status=2",
         1, 0},
        {"20 Ann streamBreaks amount=9", "Ann notification name=Notifications.streamStatusChanged status=1",
         2, 1},
        {"20 Ann streamBreaks amount=20", "Ben answer name=getVideo status=Error", 0, 0},
        {"20 Ann streamFails amount=20", "Ben answer name=getVideo status=Error", 1, 0},
        {"20 Ben downloadPauses amount=9", "Ben answer name=getVideo status=Live*", 1, 0},
        {"20 Ben downloadPausesFailing amount=3", "Ben log.error message=Fragment*", 1, 0},
        {"20 Ben downloadFails", "Ben log.error message=Fragment*", 1, 0},
        {"20 Ben statusFails", "Ben answer name=getVideo error=*", 1, 0}};
    const Record usual = runWith({});
    for (const auto& [fault, query, with, without] : cases) {
        EXPECT_EQ(count(runWith(fault), query), with) << fault << ": " << query;
        EXPECT_EQ(count(usual, query), without) << query;
    }
}

TEST(Faults, OfEventsRepeatOrDelayAsManyAsTheyAreSaidTo) {
    const auto changesIn = [](const std::string& fault) {
        std::map<std::string, int> times;
        std::map<std::string, double> left;
        std::size_t repeated = 0;
        std::size_t late = 0;
        const Record record = runWith(fault);
        for (const TraceEntry& entry : record.trace) {
            const std::string sequence(entry.field("sequence"));
            if (entry.kind == "effect" && entry.field("name") != "fetchTaggingSessions") {
                left.emplace(sequence, entry.time.count());
            } else if (entry.kind == "delivery" && entry.host == "Ben") {
                repeated += ++times[sequence] == 2 ? 1U : 0U;
                late += entry.time.count() - left[sequence] > 6 ? 1U : 0U;
            }
        }
        return std::pair(repeated, late);
    };
    EXPECT_EQ(changesIn({}), std::pair(0UL, 0UL));
    EXPECT_EQ(changesIn("20 Ben repeatEvents other=1"), std::pair(2UL, 0UL));
    EXPECT_EQ(changesIn("20 Ann repeatEvents other=1"), std::pair(0UL, 0UL));
    EXPECT_EQ(changesIn("60 Ben delayEvents amount=6"), std::pair(0UL, 1UL));
}

}  // namespace

}  // namespace Simulator
