#include "Components/RemoteCoding/Models/MomentCache.hpp"

#include "Components/RemoteCoding/Models/ErrorLog.hpp"
#include "ReferenceHost/LogManager.hpp"
#include "ReferenceHost/Timeline/Timeline.hpp"
#include "ReferenceHost/Trace.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using RemoteCoding::MomentCache;
using RemoteCoding::TimelineInstanceProtocol;
using testing::ElementsAre;
using testing::IsEmpty;
using Instances = std::vector<std::shared_ptr<TimelineInstanceProtocol>>;
using Rows = std::vector<std::shared_ptr<RemoteCoding::TimelineRowProtocol>>;

constexpr Base::Color red(200, 0, 0);
constexpr Base::Color blue(0, 0, 200);

/// A clip that belongs to a host gone wrong: it cannot be read, or has lost its row.
class BrokenInstance : public TimelineInstanceProtocol {
public:
    enum class Fault { uniqueIdThrows, rowThrows, noRow };

    explicit BrokenInstance(Fault fault) : fault_(fault) {}

    const std::string& uniqueId() const override {
        if (fault_ == Fault::uniqueIdThrows) {
            throw std::runtime_error("no id");
        }
        return id_;
    }
    std::optional<std::string> externalId() const override { return "broken moment"; }
    void setExternalId(std::optional<std::string> /*externalId*/) override {}
    std::shared_ptr<RemoteCoding::TimelineRowProtocol> row() const override {
        if (fault_ == Fault::rowThrows) {
            throw std::runtime_error("no row");
        }
        return fault_ == Fault::noRow ? nullptr : row_;
    }

    void setRow(std::shared_ptr<RemoteCoding::TimelineRowProtocol> row) { row_ = std::move(row); }

private:
    Fault fault_;
    std::string id_ = "broken";
    std::shared_ptr<RemoteCoding::TimelineRowProtocol> row_;
};

class MomentCacheTest : public testing::Test {
protected:
    std::shared_ptr<ReferenceHost::TimelineInstance> addClip(std::optional<std::string> externalId) {
        const auto clip = timeline_->addInstance(row_->uniqueId(), 1, 2);
        clip->setExternalId(std::move(externalId));
        return clip;
    }

    /// The messages of the error lines so far, each with its detail, if it has one.
    std::vector<std::string> errors() const {
        std::vector<std::string> messages;
        for (const auto& entry : trace_.entries("", ReferenceHost::TraceKind::logError)) {
            const std::string detail(entry.field("detail"));
            messages.push_back(std::string(entry.field("message")) + (detail.empty() ? "" : ": " + detail));
        }
        return messages;
    }

    ReferenceHost::Trace trace_{[] { return Base::Seconds(0); }};
    ReferenceHost::LogManager log_{"", &trace_};
    MomentCache cache_{log_};
    std::shared_ptr<ReferenceHost::Timeline> timeline_ = ReferenceHost::Timeline::make(
        {.uniqueId = "timeline",
         .title = "Match",
         .videoId = std::nullopt,
         .makeId = [count = 0]() mutable { return "id " + std::to_string(++count); },
         .didChange = {},
         .rules = nullptr,
         .recordCall = {},
         .runInsertionCallback = {}});
    std::shared_ptr<ReferenceHost::TimelineRow> row_ = timeline_->addRow("Pass", red);
};

TEST_F(MomentCacheTest, KnowsTheMomentsOfTheInstancesThatItHasSeen) {
    const auto clip = addClip("moment");
    EXPECT_FALSE(cache_.instanceId("moment"));
    EXPECT_FALSE(cache_.rowId("moment"));
    EXPECT_FALSE(cache_.momentId(clip->uniqueId()));
    EXPECT_FALSE(cache_.hasDeletedMoment(clip->uniqueId()));

    cache_.cacheInstances(clip);

    EXPECT_EQ(cache_.instanceId("moment"), clip->uniqueId());
    EXPECT_EQ(cache_.rowId("moment"), row_->uniqueId());
    EXPECT_EQ(cache_.momentId(clip->uniqueId()), "moment");
    EXPECT_FALSE(cache_.hasDeletedMoment(clip->uniqueId()));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(MomentCacheTest, TheLatestRecordOfAMomentAndOfAnInstanceWins) {
    const auto first = addClip("moment");
    const auto second = addClip("moment");

    cache_.cacheInstances(Instances{first, second});
    EXPECT_EQ(cache_.instanceId("moment"), second->uniqueId());
    EXPECT_EQ(cache_.momentId(first->uniqueId()), "moment");
    EXPECT_EQ(cache_.momentId(second->uniqueId()), "moment");

    first->setExternalId("new moment");
    cache_.cacheInstances(first);
    EXPECT_EQ(cache_.momentId(first->uniqueId()), "new moment");
    EXPECT_EQ(cache_.instanceId("new moment"), first->uniqueId());
    EXPECT_EQ(cache_.instanceId("moment"), second->uniqueId()) << "the old moment stays until it is deleted";
}

TEST_F(MomentCacheTest, AnInstanceThatCannotBeCachedIsLoggedAndLosesNoOther) {
    const auto neverUploaded = addClip(std::nullopt);
    const auto empty = addClip("");
    const auto last = addClip("last moment");
    const auto rowless = std::make_shared<BrokenInstance>(BrokenInstance::Fault::noRow);
    const auto idless = std::make_shared<BrokenInstance>(BrokenInstance::Fault::uniqueIdThrows);
    idless->setRow(row_);
    const auto unreadable = std::make_shared<BrokenInstance>(BrokenInstance::Fault::rowThrows);

    cache_.cacheInstances(Instances{neverUploaded, rowless, nullptr, idless, unreadable, empty, last});

    const std::string message = "Unable to find all required fields on instance";
    EXPECT_THAT(errors(), ElementsAre(message, message, message, message + ": no id", message + ": no row"));
    EXPECT_FALSE(cache_.momentId(neverUploaded->uniqueId()));
    EXPECT_FALSE(cache_.momentId("broken"));
    EXPECT_FALSE(cache_.instanceId("broken moment"));
    EXPECT_EQ(cache_.momentId(empty->uniqueId()), "") << "empty is not absent";
    EXPECT_EQ(cache_.momentId(last->uniqueId()), "last moment");

    const auto entry = trace_.entries("", ReferenceHost::TraceKind::logError).front();
    EXPECT_EQ(entry.field("file"), "Components/RemoteCoding/Models/MomentCache");
    EXPECT_EQ(entry.field("function"), "cacheInstances(instances:)");
    EXPECT_NE(entry.field("line"), "0");
}

TEST_F(MomentCacheTest, ADeletedMomentIsRememberedUntilItsInstanceIsCachedAgain) {
    const auto clip = addClip("moment");
    const auto other = addClip("other moment");
    cache_.cacheInstances(Instances{clip, other});

    cache_.deleteMoments(std::vector<std::string>{"unknown", "moment", "moment"});

    EXPECT_THAT(errors(),
                ElementsAre("No uploaded moment found to delete", "No uploaded moment found to delete"));
    EXPECT_EQ(trace_.entries().back().field("function"), "deleteMoments(momentIds:)");
    EXPECT_TRUE(cache_.hasDeletedMoment(clip->uniqueId()));
    EXPECT_FALSE(cache_.momentId(clip->uniqueId()));
    EXPECT_FALSE(cache_.instanceId("moment"));
    EXPECT_FALSE(cache_.rowId("moment"));
    EXPECT_EQ(cache_.momentId(other->uniqueId()), "other moment");
    EXPECT_FALSE(cache_.hasDeletedMoment(other->uniqueId()));

    clip->setExternalId("moment after");
    cache_.cacheInstances(clip);
    EXPECT_FALSE(cache_.hasDeletedMoment(clip->uniqueId()));
    EXPECT_EQ(cache_.momentId(clip->uniqueId()), "moment after");
}

TEST_F(MomentCacheTest, RowsAreRememberedAsTheyWereWhenCached) {
    const auto other = timeline_->addRow("Shot", blue);
    cache_.cacheRows(timeline_->allRows());
    timeline_->renameRow(row_->uniqueId(), "Long pass");
    timeline_->recolorRow(row_->uniqueId(), blue);
    timeline_->moveRow(row_->uniqueId(), 1);

    auto cached = cache_.uploadedRow(row_->uniqueId());
    ASSERT_TRUE(cached);
    EXPECT_EQ(cached->rowId, row_->uniqueId());
    EXPECT_EQ(cached->name, "Pass");
    EXPECT_EQ(cached->color, red);
    EXPECT_NE(cached->rowNum, row_->rowNum());

    cache_.cacheRows(row_);
    cached = cache_.uploadedRow(row_->uniqueId());
    EXPECT_EQ(cached->name, "Long pass");
    EXPECT_EQ(cached->color, blue);
    EXPECT_EQ(cached->rowNum, row_->rowNum());

    cache_.removeUploadedRow(row_->uniqueId());
    cache_.removeUploadedRow("unknown");
    EXPECT_FALSE(cache_.uploadedRow(row_->uniqueId()));
    EXPECT_EQ(cache_.uploadedRow(other->uniqueId())->name, "Shot");
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(MomentCacheTest, EmptyListsChangeAndLogNothing) {
    cache_.cacheInstances(Instances());
    cache_.cacheInstances(row_->allInstances());
    cache_.cacheRows(Rows());
    cache_.deleteMoments(std::vector<std::string>());
    EXPECT_THAT(errors(), IsEmpty());
}

/// A log that asks the cache, as a host's log window may do indirectly by waiting for a thread that does.
class AskingLog : public RemoteCoding::LogManagerProtocol {
public:
    void logInfo(std::string_view /*message*/) override {}
    void logWarn(std::string_view /*message*/) override {}
    void logError(std::string_view /*message*/, std::string_view /*detail*/, std::string_view /*file*/,
                  std::string_view /*function*/, std::uint_least32_t /*line*/) override {
        std::thread([this] { answers.push_back(cache.hasDeletedMoment("id")); }).join();
    }
    void logUsage(std::string_view /*functionName*/, RemoteCoding::LogOpName /*operation*/,
                  const RemoteCoding::UsageAttributes& /*attributes*/) override {}

    MomentCache cache{*this};
    std::vector<bool> answers;
};

TEST_F(MomentCacheTest, LogsOnlyAfterItHasLetGoOfItsLock) {
    AskingLog log;
    log.cache.deleteMoments("unknown");
    log.cache.cacheInstances(addClip(std::nullopt));
    EXPECT_EQ(log.answers.size(), 2U);
}

TEST_F(MomentCacheTest, ServesSeveralThreadsAtATime) {
    constexpr int rounds = 500;
    std::vector<Instances> clips(2);
    for (auto& list : clips) {
        for (int number = 0; number < 20; ++number) {
            list.push_back(addClip("moment " + std::to_string(number) + (&list == clips.data() ? "a" : "b")));
        }
    }
    std::atomic<bool> done{false};
    std::thread reader([&] {
        while (!done) {
            // One step for each operation: what is both uploaded and deleted, or half an entry, is never seen.
            const auto id = clips[0].front()->uniqueId();
            const auto momentId = cache_.momentId(id);
            EXPECT_TRUE(!momentId || *momentId == "moment 0a");
            (void)cache_.uploadedRow(row_->uniqueId());
        }
    });
    std::vector<std::thread> writers;
    for (const auto& list : clips) {
        writers.emplace_back([&] {
            for (int round = 0; round < rounds; ++round) {
                cache_.cacheInstances(list);
                cache_.cacheRows(row_);
                for (const auto& clip : list) {
                    cache_.deleteMoments(*clip->externalId());
                }
            }
            cache_.cacheInstances(list);
        });
    }
    for (auto& writer : writers) {
        writer.join();
    }
    done = true;
    reader.join();

    for (const auto& list : clips) {
        for (const auto& clip : list) {
            EXPECT_EQ(cache_.momentId(clip->uniqueId()), clip->externalId());
            EXPECT_FALSE(cache_.hasDeletedMoment(clip->uniqueId()));
        }
    }
    EXPECT_THAT(errors(), IsEmpty());
}

TEST(SourceName, IsTheFilesPathInTheRepositoryUpToItsFirstDot) {
    using RemoteCoding::sourceName;
    EXPECT_EQ(sourceName("Components/RemoteCoding/Models/MomentCache.cpp"),
              "Components/RemoteCoding/Models/MomentCache");
    EXPECT_EQ(sourceName("/home/a.b/Components/RemoteCoding/Services/TimelineUploadService.Upload.cpp"),
              "Components/RemoteCoding/Services/TimelineUploadService");
    EXPECT_EQ(sourceName("/x/Components/RemoteCoding/old/Components/RemoteCoding/Models/A.hpp"),
              "Components/RemoteCoding/Models/A");
    EXPECT_EQ(sourceName("./Base/v1.2/Error.cpp"), "./Base/v1.2/Error");
    EXPECT_EQ(sourceName("main"), "main");
    EXPECT_EQ(sourceName(""), "");
}

}  // namespace
