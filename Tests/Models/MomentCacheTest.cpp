#include "Components/RemoteCoding/Models/MomentCache.hpp"

#include "Components/RemoteCoding/Models/ErrorLog.hpp"
#include "ReferenceHost/LogManager.hpp"
#include "ReferenceHost/SeededRandom.hpp"
#include "ReferenceHost/Timeline/Timeline.hpp"
#include "ReferenceHost/Trace.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using RemoteCoding::MomentCache;
using RemoteCoding::TimelineInstanceProtocol;
using testing::ElementsAre;
using testing::IsEmpty;
using Instances = std::vector<std::shared_ptr<TimelineInstanceProtocol>>;

constexpr Base::Color red(200, 0, 0);
constexpr Base::Color blue(0, 0, 200);

/// A clip that belongs to a host gone wrong: it cannot be read, or has lost its row.
struct BrokenInstance : TimelineInstanceProtocol {
    explicit BrokenInstance(std::string fault_) : fault(std::move(fault_)) {}

    const std::string& uniqueId() const override { return fault == "no id" ? fail() : fault; }
    std::optional<std::string> externalId() const override { return "broken moment"; }
    void setExternalId(std::optional<std::string> /*externalId*/) override {}
    std::shared_ptr<RemoteCoding::TimelineRowProtocol> row() const override {
        static_cast<void>(fault == "no row" ? fail() : fault);
        return fault == "no id"
                   ? std::make_shared<ReferenceHost::TimelineRow>("row", "Pass", Base::Color(), 0,
                                                                  std::weak_ptr<ReferenceHost::Timeline>())
                   : nullptr;
    }
    const std::string& fail() const { throw std::runtime_error(fault); }

    const std::string fault;
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
    std::shared_ptr<ReferenceHost::Timeline> makeTimeline() {
        ReferenceHost::Timeline::Options options;
        options.uniqueId = "timeline";
        options.title = "Match";
        options.makeId = [this] { return std::to_string(++ids_); };
        return ReferenceHost::Timeline::make(std::move(options));
    }

    ReferenceHost::Trace trace_{[] { return Base::Seconds(0); }};
    ReferenceHost::LogManager log_{"", &trace_};
    MomentCache cache_{log_};
    int ids_ = 0;
    std::shared_ptr<ReferenceHost::Timeline> timeline_ = makeTimeline();
    std::shared_ptr<ReferenceHost::TimelineRow> row_ = timeline_->addRow("Pass", red);
};

TEST_F(MomentCacheTest, TheLatestRecordOfAMomentAndOfAnInstanceWins) {
    const auto first = addClip("moment");
    const auto second = addClip("moment");

    cache_.cacheInstances(Instances{first, second});
    EXPECT_EQ(cache_.instanceId("moment"), second->uniqueId());
    EXPECT_EQ(cache_.rowId("moment"), row_->uniqueId());
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
    const auto rowless = std::make_shared<BrokenInstance>("rowless");
    const auto idless = std::make_shared<BrokenInstance>("no id");
    const auto unreadable = std::make_shared<BrokenInstance>("no row");

    cache_.cacheInstances(Instances{neverUploaded, rowless, nullptr, idless, unreadable, empty, last});

    const std::string message = "Unable to find all required fields on instance";
    EXPECT_THAT(errors(), ElementsAre(message, message, message, message + ": no id", message + ": no row"));
    EXPECT_FALSE(cache_.momentId(neverUploaded->uniqueId()));
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
    EXPECT_FALSE(cache_.instanceId("moment") || cache_.rowId("moment"));
    EXPECT_EQ(cache_.momentId(other->uniqueId()), "other moment");
    EXPECT_FALSE(cache_.hasDeletedMoment(other->uniqueId()));

    clip->setExternalId("moment after");
    cache_.cacheInstances(clip);
    EXPECT_FALSE(cache_.hasDeletedMoment(clip->uniqueId()));
    EXPECT_EQ(cache_.momentId(clip->uniqueId()), "moment after");
}

TEST_F(MomentCacheTest, AnyOrderOfRecordsAndDeletionsIsRememberedAsByThreeMaps) {
    std::map<std::string, std::string> instanceOf;  // of each moment
    std::map<std::string, std::string> momentOf;    // of each instance
    std::set<std::string> withDeletedMoment;
    Instances clips;
    for (int count = 0; count < 5; ++count) {
        clips.push_back(addClip(std::nullopt));
    }
    const auto in = [](const auto& map, const std::string& key) {
        const auto found = map.find(key);
        return found != map.end() ? std::optional(found->second) : std::nullopt;
    };
    ReferenceHost::SeededRandom random(11);
    for (int turn = 0; turn < 5'000; ++turn) {
        // One that has room beside its clip's, and one that has not.
        const std::string moment = std::string(turn % 2 == 0 ? 8 : 80, 'm') + std::to_string(random.below(6));
        if (random.chance(0.6)) {
            const auto& clip = clips[random.below(clips.size())];
            clip->setExternalId(moment);
            cache_.cacheInstances(clip);
            instanceOf[moment] = clip->uniqueId();
            momentOf[clip->uniqueId()] = moment;
            withDeletedMoment.erase(clip->uniqueId());
        } else {
            cache_.deleteMoments(moment);
            if (const auto instance = in(instanceOf, moment)) {
                instanceOf.erase(moment);
                momentOf.erase(*instance);
                withDeletedMoment.insert(*instance);
            }
        }
        ASSERT_EQ(cache_.instanceId(moment), in(instanceOf, moment)) << "turn " << turn;
        for (const auto& clip : clips) {
            const std::string& id = clip->uniqueId();
            ASSERT_EQ(cache_.momentId(id), in(momentOf, id)) << "turn " << turn;
            ASSERT_EQ(cache_.hasDeletedMoment(id), withDeletedMoment.contains(id)) << "turn " << turn;
        }
    }
}

TEST_F(MomentCacheTest, RowsAreRememberedAsTheyWereWhenCached) {
    const auto other = timeline_->addRow("Shot", blue);
    cache_.cacheRows(timeline_->allRows());
    timeline_->renameRow(row_->uniqueId(), "Long pass");
    timeline_->recolorRow(row_->uniqueId(), blue);
    timeline_->moveRow(row_->uniqueId(), 1);

    auto cached = cache_.uploadedRow(row_->uniqueId());
    ASSERT_TRUE(cached);
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

TEST(SourceName, IsTheFilesPathInTheRepositoryUpToItsFirstDot) {
    const std::pair<const char*, const char*> table[] = {
        {"Components/RemoteCoding/Models/MomentCache.cpp", "Components/RemoteCoding/Models/MomentCache"},
        {"/home/a.b/Components/RemoteCoding/Services/A.Upload.cpp", "Components/RemoteCoding/Services/A"},
        {"/x/Components/RemoteCoding/old/Components/RemoteCoding/Models/A.hpp",
         "Components/RemoteCoding/Models/A"},
        {"./Base/v1.2/Error.cpp", "./Base/v1.2/Error"},
        {"main", "main"},
        {"", ""},
    };
    for (const auto& [path, name] : table) {
        EXPECT_EQ(RemoteCoding::sourceName(path), name);
    }
}

}  // namespace
