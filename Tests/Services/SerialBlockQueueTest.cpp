#include "Components/RemoteCoding/Services/SerialBlockQueue.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace RemoteCoding {
namespace {

class SerialBlockQueueTest : public testing::Test {
protected:
    void submit(SerialBlockQueue::Block block) {
        queue.runBlockSerially(std::move(block), SynchronisationBlock::event);
    }
    /// A block that writes its name and stays open.
    void submitOpen(const std::string& name) {
        submit([this, name] { order += name; });
    }
    /// A block that writes its name and ends.
    void submitBrief(const std::string& name) {
        submit([this, name] {
            order += name;
            queue.runNextBlock();
        });
    }

    std::string order;
    int failures = 0;
    SerialBlockQueue queue{"timeline", nullptr, [this](const std::exception_ptr&) { ++failures; }};
};

TEST_F(SerialBlockQueueTest, RunsAnIdleQueuesBlockAtOnceAndTheOthersInTheirOrder) {
    submitOpen("1");
    submitOpen("A");
    submitBrief("B");
    submitOpen("C");
    EXPECT_EQ(order, "1");
    queue.runNextBlock();
    EXPECT_EQ(order, "1A");
    queue.runNextBlock();  // B ends by itself
    EXPECT_EQ(order, "1ABC");
    EXPECT_TRUE(queue.isRunningSerialBlockOperation());
    queue.runNextBlock();
    queue.runNextBlock();  // harmless
    EXPECT_FALSE(queue.isRunningSerialBlockOperation());
    submitBrief("D");
    EXPECT_EQ(order, "1ABCD");
}

TEST_F(SerialBlockQueueTest, ABlockWhoseSubjectIsGoneCountsAsEnded) {
    auto gone = std::make_shared<int>(0);
    const auto kept = std::make_shared<int>(0);
    submitOpen("1");
    queue.runBlockSerially(gone, [this] { order += "gone"; }, SynchronisationBlock::upload);
    queue.runBlockSerially(kept, [this] { order += "K"; }, SynchronisationBlock::upload);
    gone.reset();
    queue.runNextBlock();
    EXPECT_EQ(order, "1K");
    EXPECT_TRUE(queue.isRunningSerialBlockOperation());
}

TEST_F(SerialBlockQueueTest, ABlockSubmittedByARunningOneWaitsBehindThoseThatWaited) {
    submit([this] {
        order += "1";
        submitBrief("B");
        submitBrief("C");
    });
    submitBrief("D");
    queue.runNextBlock();
    EXPECT_EQ(order, "1BCD");

    // A block that has ended in its own code and goes on to submit finds the queue idle: the new block runs at once.
    submit([this] {
        queue.runNextBlock();
        submitBrief("2");
        order += "3";
    });
    EXPECT_EQ(order, "1BCD23");
    EXPECT_FALSE(queue.isRunningSerialBlockOperation());
}

TEST_F(SerialBlockQueueTest, ABlockThatThrowsCountsAsEndedOnce) {
    submit([this] {
        submitBrief("A");
        throw std::runtime_error("before it has ended");
    });
    submit([this] {
        submitOpen("B");
        submitBrief("C");
        queue.runNextBlock();
        throw std::runtime_error("after it has ended");
    });
    EXPECT_EQ(order, "AB");
    EXPECT_EQ(failures, 2);
    queue.runNextBlock();
    EXPECT_EQ(order, "ABC");
    EXPECT_FALSE(queue.isRunningSerialBlockOperation());
}

}  // namespace
}  // namespace RemoteCoding
