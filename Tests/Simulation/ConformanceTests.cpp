#include "Apps/Simulator/Conformance/Conformance.hpp"

#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"
#include "Tests/Simulation/WrittenTrace.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <set>

namespace Simulator {

namespace {

/// What breaks a rule: its name, a piece of the text above, and what stands there instead; || ends each.
const std::string breakages = R"(
blockOverlap | 1.2 block.end T number=1 | 1.2 nothing || blockOrder | number=2 kind=upload | number=9 kind=upload
blockEnd | 4.3 block.end T number=3 | 4.3 block.end T number=2 || blockUnfinished | 9.4 block.end T number=7 | 9.4 nothing
eventBlock | 4.3 block.start T number=3 kind=event | 4.3 nothing || eventOrder | ChangeType=momentsAdded | ChangeType=momentsDeleted
eventApplied | 4.3 count T old=2 new=2 reason=applied | 4.3 nothing || eventComplaint | type=momentsAdded ids=m | type=momentsAdded
eventWaits | 4.3 block.end T number=3 | 4.4 block.end T number=3
uploadBeforeApply | 4.3 delivery | 4.3 notification name=TimelineNotifications.timelineDidAnyChange T modifyCount=3; 4.3 delivery
applyBlock | 5 notification | 5 call name=removeRowWithRowId T; 5 notification
applyKind | ChangeType=momentsAdded" | ChangeType=momentsAdded"; 4.3 call name=removeRowWithRowId T
applyOrder | 9.4 count | 9.4 call name=removeRowWithRowId T; 9.4 call name=updateOnTimeline T; 9.4 count
appendedTwice | 4.3 count | 4.3 call name=appendToTimeline T momentId=m instanceId=d; 4.3 count
uploadBlock | 4.3 delivery | 4.3 upload.start T number=2 first=3 last=3; 4.3 delivery || uploadRange | from=1 modifyCount=2 | from=0 modifyCount=2
uploadAwaited | 4.2 upload.end T number=1 | 4.2 block.end T number=2; 4.2 upload.end T number=1 || uploadEnd | number=2 succeeded=false | number=2 succeeded=true
stepOrder | name=savePresentationView call=4 | name=updateMoments call=4 || stepAwaited | 4.1 answer name=createMoments call=3 count=1 ids=m | 4.1 nothing
stepAfterFailure | 6.1 upload.end | 6.1 call name=savePresentationView call=20 T; 6.1 upload.end || changesSent | modifyCount=2 instances=c | modifyCount=2 instances=c,d
saveAfterRemoval | name=savePresentationView call=7 | name=getVideo call=7
createdTwice | 6 call name=removeMoments call=5 T taggingSessionId=s ids=m | 6 call name=createMoments call=5 T taggingSessionId=s ids=c
removedTwice | 9.3 call | 9.3 upload.start T number=4 first=4 last=4; 9.3 call name=removeMoments call=30 T ids=m; 9.3 call
countAfterUpload | 4.2 count T old=0 new=2 | 4.2 count T old=0 new=1 || countAfterApply | 9.4 count T old=3 new=3 | 9.4 count T old=3 new=4
countReason | 9.4 count T old=3 new=3 reason=applied | 9.4 count T old=3 new=3 reason=whim || countOld | 4.3 count T old=2 | 4.3 count T old=1
editsPassedOver | 4.3 count T old=2 | 4.3 edit T count=2; 4.3 edit T what=tag count=3; 4.3 count T new=3 old=2 || throttle | 4 block.start T number=2 | 3.5 block.start T number=2
throttleLate | 6 block.start T number=5 | 6.05 block.start T number=5
lastChanges | 141 subscription | 140.5 notification name=TimelineNotifications.timelineDidAnyChange T modifyCount=4; 141 subscription
pullBlock | 5 notification | 5 call name=fetchTaggingSessions call=20; 5 notification
pullAwaited | 1.2 answer name=fetchTaggingSessions call=1 | 1.2 effect name=fetchTaggingSessions call=1 || pullOutcome | 1.2 count T old=0 new=0 reason=applied | 1.2 nothing
subscribeReason | 5 notification | 5 call name=subscribeToTaggingSessionChanges call=20 subscription=7 T; 5 notification
subscribeLine | 1 log.info message="Subscribing | 1 log.info message="Opening || subscribeAfterEnd | 141 subscription subscription=2 state=cancelled | 141 nothing
oneSubscription | 7 subscription subscription=1 state=cancelled | 7 nothing
isSubscribed | 9.5 subscription subscription=2 state=open after=2 | 9.5 subscription subscription=2 state=failed
afterCancel | 20 stage | 20 delivery subscription=1 sequence=3 type=momentsAdded ids=m; 20 stage || deliveryOrder | sequence=2 type | sequence=4 type
disconnection | 7 subscription subscription=1 state=cancelled | 7 nothing || attemptOrder | Attempt=2 | Attempt=3 || attemptPause | 9.3 log.info | 9.2 log.info
attemptLimit | 9.3 log.info message="Attempting to reconnect to the remote tagging session. Attempt=2" | 9.3 log.error message="Hit maximum reconnection attempts"
attemptSteps | 7.2 upload.end T number=3 | 7.2 call name=fetchTaggingSessions call=21; 7.2 upload.end T number=3
attemptAfterEnd | 9.3 block.start | 9.3 log.usage message=SessionEnded TimelineId=t; 9.3 block.start
answerOfCall | 4.2 answer name=savePresentationView call=4 | 4.2 answer name=savePresentationView call=40
answerOnce | 20 stage | 20 answer name=fetchTaggingSessions call=9; 20 stage || answerMissing | 20 stage | 20 call name=createTaggingSession call=20; 20 stage
knownLine | Updating Tevu presentation view. | All is well. || lineOfFailure | Error=lost. | Error=gone.
unexpectedFailure | 20 stage | 20 log.error message="The host failed unexpectedly"; 20 stage || wrongThread | 20 stage | 20 wrongThread function=f; 20 stage
observerFailed | 20 stage | 20 observerFailed name=f; 20 stage || idle | 140 stage | 30 call name=fetchTaggingSessions call=20; 140 stage)";

std::set<std::string> rulesBrokenIn(const Record& record) {
    std::set<std::string> rules;
    for (const Finding& finding : checkConformance(record)) {
        rules.insert(finding.rule);
    }
    return rules;
}

TEST(Conformance, AcceptsAStayThatIsRightAndNoticesEachBreakage) {
    EXPECT_EQ(rulesBrokenIn(recordOf(guestsStay)), std::set<std::string>());
    std::set<std::string> shown{"cloudFold", "cloudChanges"};  // below
    for (const std::string& breakage : split(breakages, " \\|\\| |\n")) {
        const std::vector<std::string> parts = split(breakage, " \\| ");
        std::string broken = guestsStay;
        ASSERT_NE(broken.find(parts.at(1)), std::string::npos) << breakage;
        broken.replace(broken.find(parts[1]), parts[1].size(), parts.at(2));
        EXPECT_TRUE(rulesBrokenIn(recordOf(broken)).contains(parts[0])) << breakage;
        shown.insert(parts[0]);
    }
    for (const ConformanceRule& rule : conformanceRules()) {
        EXPECT_TRUE(shown.contains(rule.name)) << rule.name;
    }
}

TEST(Conformance, FollowsWhatTheCloudHasAccepted) {
    using ReferenceHost::MomentDraft;
    ReferenceHost::VirtualTime time(1);
    ReferenceHost::VirtualScheduler scheduler(time);
    ReferenceHost::CloudService cloud(scheduler);
    const std::string id = cloud.createTaggingSession("team", "video", "Ben");
    const auto draft = [](const char* clip, std::optional<std::string> moment, double start) {
        return MomentDraft{clip, std::move(moment), "Shot", Base::Color(1, 2, 3), start, start + 1, {}};
    };
    const std::vector clips{draft("a", {}, 1), draft("b", {}, 2), draft("c", {}, 3)};
    const auto ids = cloud.createMoments(1, "video", id, "t", clips).value();
    (void)cloud.createMoments(1, "video", id, "t", {draft("a", {}, 4), draft("d", {}, 5)});
    (void)cloud.updateMoments(2, "video", id, "u", {draft("x", ids[1], 6), draft("y", "no moment", 7)});
    (void)cloud.removeMoments(2, "video", id, "u", {ids[2], "no moment"});
    using Codes = std::vector<ReferenceHost::CodeRecord>;
    (void)cloud.savePresentationView(2, "video", id, "u", std::make_shared<Codes>(1));
    Record record;
    SessionHistory& history = record.sessions[id];
    const auto restore = [&] { history = {*cloud.snapshot(id), cloud.log(id), cloud.changes(id)}; };
    restore();
    EXPECT_EQ(rulesBrokenIn(record), std::set<std::string>());
    const std::vector<std::pair<const char*, std::function<void()>>> faults{
        {"cloudFold", [&] { history.session.moments.pop_back(); }},
        {"cloudFold", [&] { history.session.presentationView = nullptr; }},
        {"cloudFold", [&] { history.log[1].momentIds[0] = "another"; }},
        {"cloudChanges", [&] { history.changes.erase(history.changes.begin() + 1); }},
        {"cloudChanges", [&] { history.log.erase(history.log.begin() + 3); }},
        {"cloudChanges", [&] { history.log[2].drafts[0].start = 8; }}};
    for (const auto& [rule, fault] : faults) {
        fault();
        EXPECT_TRUE(rulesBrokenIn(record).contains(rule)) << rule;
        restore();
    }
}

}  // namespace

}  // namespace Simulator
