// The scenarios: what the analysts see in them, and that something wrong in one is noticed.

#include "Apps/CodingDesk/Performance.hpp"
#include "Apps/CodingDesk/Program.hpp"
#include "Apps/CodingDesk/Scenarios/Play.hpp"
#include "Apps/CodingDesk/Text.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <sstream>

namespace CodingDesk {
namespace {

using testing::HasSubstr;

TEST(ScenarioTests, EachGoesAsItShouldTellsWhatTheAnalystsSeeAndRepeatsToTheLetter) {
    const std::map<std::string_view, std::vector<std::string>> tales{
        {"no-capture",
         {"| Capture Not Started\n", "[ Open Capture Window ]  [ Cancel ]",
          "beeps; the field now reads “Cup semi", "one session at a time."}},
        {"guest-leaves",
         {"Handball Under 19  < Handball Women >", "> Cup semi-final, live  May ",
          "Björn has joined “Cup semi-final, live”.", "> Cup semi-final, live  16 mai 2026 à 1",
          "Chloé presses “Annuler”.", "Chloé presses “Quitter la session”.",
          "Chloé has left “Cup semi-final, live”.", "Ana has Björn's new shot and not Chloé's;"}},
        {"host-ends",
         {"the stream of “Cup semi-final, live” is over;", "everybody has both shots.",
          "no longer be able to share data. You can", "Ana presses “End Session”.",
          "for her the session is over.", "Chloé closes the window"}},
        {"failing-stream",
         {"so Björn is told nothing.", "is interrupted.", "| Unable to Load Session\n",
          "Björn presses “Quit Session”."}},
        {"sign-in-expires",
         {"Nobody is signed in on Björn's computer.", "[ Sign In ]  [ Cancel ]", "Björn cancels the sign-in.",
          "Björn's window closes.", "Björn signs in as “bjorn@club.example”.", "Ana has his shot."}},
        {"network-down",
         {"| Unable to Fetch Teams List\n", "( Create Session )", "| Unable to Create Session\n",
          "Ana presses “Retry”.", "There is no session.", "made no session for",
          "error “Unable to create tagging session”", "unsent.", "tries to reconnect, attempt",
          "Björn has Ana's shot."}}};
    for (const auto& [name, about, play] : scenarios()) {
        SCOPED_TRACE(name);
        std::ostringstream out, again, errors;
        EXPECT_EQ(runProgram({"--scenario", std::string(name), "--seed=5"}, out, errors), 0);
        EXPECT_EQ(runProgram({"--scenario", std::string(name), "--seed=5"}, again, errors), 0);
        EXPECT_EQ(errors.str(), "");
        EXPECT_EQ(out.str(), again.str());
        std::string rest = out.str();
        for (const std::string& sentence : tales.at(name)) {
            ASSERT_THAT(rest, HasSubstr(sentence)) << "or not in this order";
            rest.erase(0, rest.find(sentence) + sentence.size());
        }
        std::istringstream lines(out.str());
        for (std::string line; std::getline(lines, line);) {
            EXPECT_LE(columnsOf(line), 80U) << line;
        }
    }
}

TEST(ScenarioTests, WhateverIsNotAsItShouldBeEndsTheScenarioAndIsNamed) {
    using namespace Scenarios;
    const std::pair<void (*)(Stage&), std::string> cases[] = {
        {[](Stage& stage) { stage.expect(false, "two and two is five"); }, "expected: two and two is five"},
        {[](Stage& stage) { stage.expectEqual("the sum", "4", "5"); }, "the sum: expected “5”, got “4”"},
        {[](Stage& stage) { host(stage, stage.enter()); }, "of Ana's work, but there is: 1 session"},
        {[](Stage& stage) { SessionWindows::openNewSession(stage.enter()); },
         "unexpected alert “Capture Not Started”"},
        {[](Stage& stage) {
             stage.enter().at([](Workplace& place) { place.person().willAnswer("Goal!", "OK"); });
         },
         "no alert “Goal!”, though it was expected"},
        {[](Stage& stage) { stage.expectErrorLine(stage.enter(), "Lost"); }, "the error “Lost” in Ana's log"},
        {[](Stage& stage) {
             stage.enter().at([](Workplace& place) { place.component().endRemoteCodingSession("?"); });
         },
         "got “Tried to end live streaming session when session does not exist”"},
        {[](Stage& stage) { SessionWindows::createSession(stage.enter(false)); }, "waited in vain until"},
        {[](Stage& stage) {
             VirtualSeat& ana = stage.enter();
             const std::string session = host(stage, ana);
             ana.workplace().setLinkUp(false);
             tag(stage, ana, 1);
             stage.expectEqualTimelines({&ana}, session);
         },
         "Ana waited in vain until everything was sent"}};
    for (const auto& [play, expected] : cases) {
        std::ostringstream out;
        Console console(out, {});
        EXPECT_FALSE(perform({"wrong", "something is wrong", play}, 1, console, nullptr));
        EXPECT_THAT(out.str(), testing::ContainsRegex("NOT as it should be: [^\n]*\n$"));
        EXPECT_THAT(out.str(), HasSubstr(expected));
    }
}

}  // namespace
}  // namespace CodingDesk
