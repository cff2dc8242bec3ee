// How much the synchroniser takes from the heap. These are the numbers that it needs now; a change that needs more says why.

#include "Benchmarks/Support/Allocations.hpp"

#include "Benchmarks/Support/Desk.hpp"

#include <gtest/gtest.h>

#include <functional>

namespace Benchmarks {
namespace {

using RemoteCoding::SynchronisationBlock;
using Type = RemoteCoding::TaggingSessionChangeType;

constexpr std::int64_t clips = 2'000;
constexpr std::int64_t events = 200;

double allocationsOf(std::int64_t operations, const std::function<void()>& work) {
    const auto before = allocationsSoFar();
    work();
    return static_cast<double>(allocationsSoFar() - before) / static_cast<double>(operations);
}

class AllocationsTest : public testing::Test {
protected:
    void SetUp() override {
        desk.join(makeSession(firstMoments(clips)));
        desk.upload();
        bare.appendDirectly(firstMoments(clips));
    }

    /// Of one event with one moment, beyond what `edit` takes for the moment on a timeline by itself.
    double beyondTheHost(Type type, const Moments& moments,
                         const std::function<void(const RemoteCoding::MomentItem&)>& edit) {
        std::vector<RemoteCoding::ChangedTaggingSession> changes;
        for (const auto& moment : moments) {
            changes.emplace_back(Moments{moment}, std::nullopt);
        }
        const auto count = std::ssize(moments);
        return allocationsOf(count,
                             [&] {
                                 for (const auto& change : changes) {
                                     desk.service().handleTaggingSessionUpdate(type, change);
                                 }
                             }) -
               allocationsOf(count, [&] {
                   for (const auto& moment : moments) {
                       edit(*moment);
                   }
               });
    }

    std::shared_ptr<RemoteCoding::TimelineInstanceProtocol> bareClip(const RemoteCoding::MomentItem& moment) {
        return bare.timeline().findInstance(bare.table().find(moment.identifier())->second);
    }

    Desk desk;
    Desk bare;  // without a synchroniser
    Moments some{firstMoments(clips).begin(), firstMoments(clips).begin() + events};
};

TEST_F(AllocationsTest, IdleWorkTakesNothing) {
    ReferenceHost::Timeline::Options options;
    options.uniqueId = "5d2c1b0a-9f8e-4d7c-8b6a-5e4d3c2b1a09";
    const auto another = ReferenceHost::Timeline::make(std::move(options));
    auto& service = desk.service();
    for (const auto& timeline : {another, desk.timelinePointer()}) {
        const RemoteCoding::Notification notification(
            RemoteCoding::TimelineNotifications::timelineDidAnyChange, timeline);
        desk.notifications().post(notification);  // the first one of ours starts the interval
        EXPECT_EQ(allocationsOf(1, [&] { desk.notifications().post(notification); }), 0);
    }
    EXPECT_EQ(allocationsOf(1, [&] { service.updateTaggingSession({}); }), 0);
    const auto block = [&service] {
        service.updateTaggingSession([&service](bool) { service.runNextBlock(); });
    };
    // Now and then the queue takes a piece of memory for several blocks.
    EXPECT_LE(allocationsOf(100,
                            [&] {
                                for (int turn = 0; turn < 100; ++turn) {
                                    service.runBlockSerially(block, SynchronisationBlock::upload);
                                }
                            }),
              0.2);
}

TEST_F(AllocationsTest, AnEventTakesWhatItsBlockAndItsTextsNeed) {
    // The block and its list; the list of those that are new; the text that the clip gives of its moment; now and then room in
    // the cache for several.
    EXPECT_LE(
        beyondTheHost(Type::momentsAdded, makeMoments(clips, events),
                      [&](const auto& moment) { (void)moment.appendToTimeline(bare.timelinePointer()); }),
        4.1);
    // The block and its list.
    EXPECT_LE(beyondTheHost(Type::momentsUpdated, some,
                            [&](const auto& moment) {
                                const auto clip = bareClip(moment);
                                (void)moment.updateOnTimeline(bare.timelinePointer(), clip->uniqueId(),
                                                              clip->row()->uniqueId());
                                clip->setExternalId(moment.identifier());
                            }),
              2.1);
    // As above, and the list of the moments' ids with one text.
    EXPECT_LE(beyondTheHost(Type::momentsDeleted, some,
                            [&](const auto& moment) {
                                const auto clip = bareClip(moment);
                                bare.timeline().codingTarget()->removeInstanceWithRowId(
                                    clip->row()->uniqueId(), clip->uniqueId());
                            }),
              4.1);
}

TEST_F(AllocationsTest, AMomentIsHeldInLessThan200Bytes) {
    EXPECT_LT(-bytesGained([&] { desk.dropService(); }), 200 * clips);
}

}  // namespace
}  // namespace Benchmarks
