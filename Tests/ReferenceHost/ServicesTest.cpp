#include "Components/RemoteCoding/HostInterfaces/RemoteCodingSessionDetails.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/LogManager.hpp"
#include "ReferenceHost/NotificationCenter.hpp"
#include "ReferenceHost/Trace.hpp"
#include "ReferenceHost/UUIDSource.hpp"
#include "ReferenceHost/UserDefaults.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace ReferenceHost {

namespace {

TEST(TraceTest, WritesOneLineAnEntryWhateverTheValuesHold) {
    VirtualTime time(1);
    Trace trace([&] { return time.now(); });
    trace.record("Ann", "call", {{"name", "fetch \"it\""}, {"text", "two\nlines \\ end"}});
    time.runFor(Base::Seconds(1.5));
    trace.record("", "link");
    trace.setRecording(false);
    trace.record("Ann", "call");

    EXPECT_EQ(trace.text(),
              "      0.000000 Ann call name=\"fetch \\\"it\\\"\" text=\"two\\nlines \\\\ end\"\n"
              "      1.500000 - link\n");
}

TEST(TraceTest, FindsEntriesByHostKindAndPosition) {
    Trace trace([] { return Base::Seconds(0); });
    trace.record("Ann", "call", {{"name", "a"}});
    trace.record("Bob", "call", {{"name", "b"}});
    trace.record("Ann", "answer", {{"name", "c"}});

    EXPECT_EQ(trace.entries("Ann", "call").size(), 1U);
    EXPECT_EQ(trace.entries("", "call").size(), 2U);
    ASSERT_EQ(trace.entries(2).size(), 1U);
    EXPECT_EQ(trace.entries(2).front().field("name"), "c");
    EXPECT_EQ(trace.entries(2).front().field("missing"), "");
    EXPECT_TRUE(trace.entries(99).empty());
    trace.clear();
    EXPECT_EQ(trace.size(), 0U);
}

TEST(LogManagerTest, WritesEachLineToTheTraceAndToTheSink) {
    Trace trace([] { return Base::Seconds(0); });
    std::vector<std::pair<LogLevel, std::string>> lines;
    LogManager log("Ann", &trace,
                   [&](LogLevel level, std::string_view line) { lines.emplace_back(level, line); });

    log.logInfo("Something happened");
    log.logError("It failed", "", "Components/RemoteCoding/Models/MomentCache", "update(_:)", 12);
    log.logUsage("SessionEnded", RemoteCoding::LogOpName::remoteCoding,
                 {{"isHost", true}, {"reason", std::string("left")}});

    ASSERT_EQ(trace.size(), 3U);
    const TraceEntry error = trace.entries("Ann", TraceKind::logError).at(0);
    EXPECT_EQ(error.field("message"), "It failed");
    EXPECT_EQ(error.field("function"), "update(_:)");
    EXPECT_EQ(error.field("line"), "12");
    EXPECT_EQ(trace.entries("Ann", TraceKind::logUsage).at(0).field("isHost"), "true");
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0].second, "Something happened");
    EXPECT_EQ(lines[1].first, LogLevel::error);
    EXPECT_EQ(lines[1].second.find("It failed ["), 0U);
    EXPECT_NE(lines[2].second.find("reason left"), std::string::npos);
}

TEST(LogManagerTest, SurvivesASinkThatThrows) {
    Trace trace([] { return Base::Seconds(0); });
    LogManager log("Ann", &trace, [](LogLevel, std::string_view) { throw std::runtime_error("Disk full"); });

    EXPECT_NO_THROW(log.logWarn("Careful"));
    EXPECT_EQ(trace.entries("Ann", TraceKind::logWarn).size(), 1U);
}

TEST(UUIDSourceTest, GivesVersionFourIdentifiersThatFollowFromTheSeed) {
    const auto isVersionFour =
        testing::MatchesRegex("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}");
    UUIDSource source(5);
    UUIDSource same(5);
    UUIDSource other(6);
    std::set<std::string> made;
    for (int i = 0; i < 1000; ++i) {
        const std::string uuid = source.makeUUID();
        EXPECT_THAT(uuid, isVersionFour);
        EXPECT_EQ(uuid, same.makeUUID());
        made.insert(uuid);
        made.insert(other.makeUUID());
    }
    EXPECT_EQ(made.size(), 2000U);
}

TEST(UserDefaultsTest, TellsAMissingValueFromFalse) {
    UserDefaults defaults;
    EXPECT_EQ(defaults.boolForKey("a"), std::nullopt);
    defaults.setBool("a", false);
    EXPECT_EQ(defaults.boolForKey("a"), false);
    defaults.setBool("a", true);
    EXPECT_EQ(defaults.boolForKey("a"), true);
    defaults.setBool("a", std::nullopt);
    EXPECT_EQ(defaults.boolForKey("a"), std::nullopt);
}

TEST(NotificationCenterTest, WritesNotificationsAndFailedObserversIntoTheTrace) {
    Trace trace([] { return Base::Seconds(0); });
    NotificationCenter center("Ann", &trace);
    (void)center.addObserver("b", nullptr,
                             [](const RemoteCoding::Notification&) { throw std::runtime_error("It broke"); });

    center.post(RemoteCoding::Notification(
        "a", nullptr,
        {{"sessionDetails",
          RemoteCoding::RemoteCodingSessionDetails("Final", RemoteCoding::RemoteCodingSessionStatus::live, {},
                                                   true, "t1", "v1")}}));
    center.post(RemoteCoding::Notification("b"));

    const auto entries = trace.entries("Ann", TraceKind::notification);
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].field("timelineId"), "t1");
    EXPECT_EQ(entries[0].field("status"), "1");
    EXPECT_EQ(trace.entries("Ann", TraceKind::observerFailed).at(0).field("error"), "It broke");
}

TEST(NotificationCenterTest, KeepsNoObjectAlive) {
    class Subject final : public RemoteCoding::HostObject {};
    NotificationCenter center;
    auto subject = std::make_shared<Subject>();
    const std::weak_ptr<Subject> watched = subject;
    int told = 0;
    (void)center.addObserver("a", subject, [&](const RemoteCoding::Notification&) { ++told; });
    center.post(RemoteCoding::Notification("a", std::move(subject)));

    EXPECT_TRUE(watched.expired());
    center.post(RemoteCoding::Notification("a", std::make_shared<Subject>()));
    EXPECT_EQ(told, 1) << "Another object, perhaps at the same address, is another subject.";
}

TEST(ReportingExecutionTest, CountsAndTracesCallersOnTheWrongThread) {
    VirtualTime time(1);
    Trace trace([&] { return time.now(); });
    VirtualExecution execution(time, "Ann", &trace);

    execution.didCallOnWrongThread(
        Base::WrongThread{"Components/RemoteCoding/X", "cancelSyncing()", 3, true});

    EXPECT_EQ(execution.wrongThreadCount(), 1U);
    const auto entries = trace.entries("Ann", TraceKind::wrongThread);
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].field("function"), "cancelSyncing()");
    EXPECT_EQ(entries[0].field("expected"), "main");
}

}  // namespace

}  // namespace ReferenceHost
