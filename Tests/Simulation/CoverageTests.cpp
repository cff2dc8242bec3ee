#include "Apps/Simulator/Coverage/Coverage.hpp"

#include "Apps/Simulator/Coverage/FailureRows.hpp"
#include "Tests/Simulation/WrittenTrace.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

namespace Simulator {

namespace {

/// The failures that are met, each as often as it is.
std::vector<std::string> failures(const std::string& trace) {
    std::vector<std::string> met;
    const Record record = recordOf(trace);
    const Rows rows = failuresIn(record);
    for (const auto& [name, count] : rows.counts()) {
        for (std::uint64_t one = 0; one < count; ++one) {
            met.emplace_back(name);
        }
    }
    return met;
}

/// What makes failures out of the guest's stay: the failures, a piece of the stay, and what stands there instead.
const std::string failuresOfAStay = R"(
an upload with nothing to send | 5 notification | 4.5 block.start T number=5 kind=upload; 4.5 block.end T number=5; 5 notification
a clip that was deleted before it was sent | 3 notification | 3 edit T what=deleteClip count=1 clip=e; 3 notification
a row that was removed before it was sent | 4 block.start | 4 edit T what=removeRow count=3 row=r clips=; 4 block.start
a created clip that was deleted before its identifier came | 4.1 answer name=createMoments | 4.1 edit T what=deleteClip count=3 clip=c moment=m; 4.1 answer name=createMoments
fewer identifiers than created clips | call=3 T taggingSessionId=s count=1 | call=3 T taggingSessionId=s count=2
a step that fails after clips were created | upload.end T number=1 succeeded=true | upload.end T number=1 succeeded=false
an upload after which the count falls back | 4.2 count T old=0 new=2 | 4.2 count T old=3 new=2
two uploads at the same time | 4.1 call name=savePresentationView | 4.1 upload.start T number=9 first=1 last=2; 4.1 upload.end T number=9 succeeded=true; 4.1 call name=savePresentationView
an added moment that is there already | 4.3 delivery subscription=1 sequence=1 type=momentsAdded | 4.3 delivery subscription=1 sequence=1 count=1 type=momentsAdded
an updated moment that is not known | sequence=1 type=momentsAdded | sequence=1 count=1 type=momentsUpdated
a deleted moment that is not known | sequence=1 type=momentsAdded | sequence=1 count=1 type=momentsDeleted
an updated moment whose clip is gone | 4.3 count | 4.3 call name=updateOnTimeline T found=false; 4.3 count
a deletion without a coding target + a list of rows without a coding target + a pull without a coding target | 4.3 delivery subscription=1 sequence=1 type=momentsAdded | 4 fault what=withdrawCodingTarget state=begins T; 4.3 delivery subscription=1 sequence=1 type=momentsDeleted
a pull without a coding target | 9.4 count | 9 fault what=withdrawCodingTarget state=begins T; 9.4 count
a row whose insertion is told later | 4.3 count | 4 fault what=insertionsComeLater state=begins; 4.3 call name=insertRowWithName T; 4.3 count
a change that is handled after the end of the session + a change that is handled after the end of the session + a pull that is answered after the end of the session + a pull that is answered after the end of the session | 4.3 block.end T number=3 | 4.3 log.usage message=SessionEnded TimelineId=t; 4.3 block.end T number=3
a first pull that fails | call=1 count=1 ids=s | call=1 error=down
a first pull that finds no session | call=1 count=1 ids=s | call=1 count=0 ids=
a first pull that finds another primary session | call=1 count=1 ids=s | call=1 count=2 ids=o,s
an attempt to reconnect that finds no session | call=9 count=1 ids=s | call=9 count=0 ids=
an attempt to reconnect that finds another primary session | call=9 count=1 ids=s | call=9 count=1 ids=o
an attempt to reconnect whose upload fails | upload.end T number=3 succeeded=true | upload.end T number=3 succeeded=false
an attempt to reconnect that the end of the session cuts off | 9.4 count | 9.4 log.usage message=SessionEnded TimelineId=t; 9.4 count
a pull that is answered after the end of the session + an attempt to reconnect that the end of the session cuts off | 9.4 answer | 9.4 log.usage message=SessionEnded TimelineId=t; 9.4 answer
a pull that meets unsent edits | 1.2 count | 1.2 upload.start T number=9 first=1 last=1; 1.2 upload.end T number=9 succeeded=true; 1.2 count
moments that cannot be read + moments that cannot be read | 1.2 answer | 1.1 fault what=hideMoments state=begins; 1.2 answer
a subscription that is refused | subscription=1 state=open after=0 | subscription=1 state=failed error=no
publishing while nobody is signed in | 5 notification | 5 step action=hostSignedOut; 5 notification
a join whose timeline does not appear in time | 5 notification | 5 step action=joinLate; 5 notification
a notification that tells nothing | 5 notification | 5 notification name=TimelineNotifications.timelineDidRemove; 5 notification
a change of a timeline that is in no session | 5 notification | 5 notification name=TimelineNotifications.timelineDidAnyChange timelineId=u; 5 notification)";

TEST(CoverageTest, CountsTheFailuresOfATraceAndNothingThatIsNone) {
    const auto before = failures(guestsStay);
    const std::vector<std::string> met{"a session without a list of rows",
                                       "a session without a list of rows",
                                       "a subscription that breaks off",
                                       "a subscription that fails",
                                       "an attempt to reconnect whose pull fails",
                                       "an upload that fails",
                                       "removals that fail"};
    EXPECT_EQ(before, met);
    for (const std::string& line : split(failuresOfAStay, "\n")) {
        const std::vector<std::string> parts = split(line, " \\| ");
        std::string trace = guestsStay;
        ASSERT_NE(trace.find(parts.at(1)), std::string::npos) << line;
        trace.replace(trace.find(parts[1]), parts[1].size(), parts.at(2));
        const auto after = failures(trace);
        std::vector<std::string> more;
        std::ranges::set_difference(after, before, std::back_inserter(more));
        EXPECT_EQ(more, split(parts[0], " \\+ ")) << line;
    }
}

std::string rowsOf(const Coverage& coverage) {
    std::ostringstream stream;
    coverage.write(stream);
    return stream.str();
}

TEST(CoverageTest, CountsStepsThatDoSomethingAndFaultsThatMeetSomething) {
    const std::string trace =
        "1 step number=0 action=tag; 1 step number=1 action=tag skipped=nothing; 1 step number=2 "
        "action=leave\n"
        "2 fault what=hang state=begins operation=createMoments; 3 fault what=hang state=begins "
        "operation=createMoments\n"
        "4 fault what=hang state=ends operation=createMoments call=7; 5 fault what=hang state=ends "
        "operation=createMoments\n"
        "6 fault what=linkDown state=begins seconds=5; 7 fault what=linkDown state=ends\n"
        "8 fault what=repeatEvents state=begins events=2; 8 fault what=repeatEvents state=meets sequence=1\n"
        "9 fault what=repeatEvents state=ends sequence=2; 9 step number=3 action=repeatEvents";
    Coverage twice;
    Record record = recordOf(trace);
    record.stays.front().lasts = true;
    twice.add(record, {});
    twice.add(record, Outcome{{}, {{lossClasses().front(), "lost"}}});
    Coverage all;
    all.add(twice);
    all.add(twice);
    std::vector<std::string> counted;
    for (const std::string& line : split(rowsOf(all), "\n")) {
        std::istringstream words(line);
        std::uint64_t count = 0;
        std::string name;
        if (words >> count >> std::ws && std::getline(words, name) && count > 0) {
            counted.push_back(std::to_string(count) + " " + name);
        }
    }
    const std::string loss = "2 " + lossClasses().front();
    const std::vector<std::string> expected{"4 tag",
                                            "4 leave",
                                            "4 stays of guests for the first time",
                                            "4 stays that last to the end",
                                            "4 hang createMoments",
                                            "4 linkDown",
                                            "8 repeatEvents",
                                            loss};
    EXPECT_EQ(counted, expected);
    const auto never = all.neverTaken();
    EXPECT_EQ(std::ranges::count(never, "edit: tag"), 0);
    EXPECT_EQ(std::ranges::count(never, "fault: hang updateMoments"), 1);
}

}  // namespace

}  // namespace Simulator
