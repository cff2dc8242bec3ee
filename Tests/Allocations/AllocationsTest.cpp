// How much the synchroniser takes from the heap. These are the numbers that it needs now; a change that needs more says why.

#include "Benchmarks/Support/Allocations.hpp"

#include "Benchmarks/Support/Desk.hpp"

#include <gtest/gtest.h>

#include <functional>

namespace Benchmarks {
namespace {

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
        bare.appendAll(firstMoments(clips));
    }

    /// Of one event with one moment, beyond what the same edits take of a timeline without a synchroniser: what the table of
    /// tools/bench calls the component's own.
    double own(Type type, const Moments& moments, const std::function<void(std::size_t)>& edit) {
        std::vector<RemoteCoding::ChangedTaggingSession> changes;
        for (const auto& moment : moments) {
            changes.emplace_back(Moments{moment}, std::nullopt);
        }
        const auto count = std::ssize(moments);
        const double all = allocationsOf(count, [&] {
            for (const auto& change : changes) {
                desk.synchroniser().receive(type, change);
            }
        });
        return all - allocationsOf(count, [&] {
                   for (std::size_t index = 0; index < moments.size(); ++index) {
                       edit(index);
                   }
               });
    }

    Desk desk;
    Desk bare;  // without a synchroniser
    Moments some{firstMoments(clips).begin(), firstMoments(clips).begin() + events};
};

TEST_F(AllocationsTest, IdleWorkTakesNothing) {
    ReferenceHost::Timeline::Options options;
    options.uniqueId = "5d2c1b0a-9f8e-4d7c-8b6a-5e4d3c2b1a09";
    const auto another = ReferenceHost::Timeline::make(std::move(options));
    for (const auto& timeline : {another, desk.timelinePointer()}) {
        const RemoteCoding::Notification notification(
            RemoteCoding::TimelineNotifications::timelineDidAnyChange, timeline);
        desk.notifications().post(notification);  // the first one of ours starts the interval
        EXPECT_EQ(allocationsOf(1, [&] { desk.notifications().post(notification); }), 0);
    }
    EXPECT_EQ(allocationsOf(1, [&] { desk.synchroniser().upload(); }), 0);
    desk.synchroniser().uploadInABlock();
    EXPECT_EQ(allocationsOf(1,
                            [&] {
                                for (int turn = 0; turn < 1'000; ++turn) {
                                    desk.synchroniser().uploadInABlock();
                                }
                            }),
              0);
}

TEST_F(AllocationsTest, AnEventTakesWhatItsBlockAndItsTextsNeed) {
    const Moments added = makeMoments(clips, events);
    const auto places = bare.placesOf(some);
    constexpr double nowAndThen = 0.05;  // room for several in what grows
    // The block and its list; the list of those that are new; the text that the clip gives of its moment.
    EXPECT_LE(own(Type::momentsAdded, added, [&](std::size_t index) { (void)bare.append(*added[index]); }),
              4 + nowAndThen);
    // The block and its list.
    EXPECT_LE(
        own(Type::momentsUpdated, some, [&](std::size_t index) { bare.update(*some[index], places[index]); }),
        2 + nowAndThen);
    // As above, and the list of the moments' ids with one text.
    EXPECT_LE(own(Type::momentsDeleted, some, [&](std::size_t index) { bare.remove(places[index]); }),
              4 + nowAndThen);
}

TEST_F(AllocationsTest, AMomentIsHeldInLessThan200Bytes) {
    EXPECT_LT(-bytesGained([&] { desk.dropSynchroniser(); }), 200 * clips);
}

}  // namespace
}  // namespace Benchmarks
