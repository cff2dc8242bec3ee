#include "Components/RemoteCoding/Services/SerialBlockQueue.hpp"

#include <gtest/gtest.h>

#include <algorithm>
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
    SerialBlockQueue::Block open(const std::string& name) {
        return [this, name] { order += name; };
    }

    /// A block that writes its name and ends.
    SerialBlockQueue::Block brief(const std::string& name) {
        return [this, name] {
            order += name;
            queue.runNextBlock();
        };
    }

    std::string order;
    int failures = 0;
    SerialBlockQueue queue{"timeline", nullptr, [this](const std::exception_ptr&) { ++failures; }};
};

TEST_F(SerialBlockQueueTest, RunsAnIdleQueuesBlockAtOnceAndTheOthersInTheirOrder) {
    submit(open("1"));
    EXPECT_EQ(order, "1");
    submit(open("A"));
    submit(brief("B"));
    submit(open("C"));
    EXPECT_EQ(order, "1");
    queue.runNextBlock();
    EXPECT_EQ(order, "1A");
    queue.runNextBlock();  // B ends by itself
    EXPECT_EQ(order, "1ABC");
    EXPECT_TRUE(queue.isRunningSerialBlockOperation());
    queue.runNextBlock();
    EXPECT_FALSE(queue.isRunningSerialBlockOperation());
    queue.runNextBlock();
    EXPECT_FALSE(queue.isRunningSerialBlockOperation());
    submit(brief("D"));
    EXPECT_EQ(order, "1ABCD");
}

TEST_F(SerialBlockQueueTest, ABlockSubmittedByARunningOneWaitsBehindThoseThatWaited) {
    submit([this] {
        order += "1";
        submit(brief("B"));
        submit(brief("C"));
    });
    submit(brief("D"));
    queue.runNextBlock();
    EXPECT_EQ(order, "1BCD");

    // A block that has ended in its own code and goes on to submit finds the queue idle: the new block runs at once.
    order.clear();
    submit([this] {
        order += "1";
        queue.runNextBlock();
        submit(brief("2"));
        order += "3";
    });
    EXPECT_EQ(order, "123");
    EXPECT_FALSE(queue.isRunningSerialBlockOperation());
}

TEST_F(SerialBlockQueueTest, ABlockThatThrowsCountsAsEndedOnce) {
    submit([this] {
        submit(brief("A"));
        throw std::runtime_error("before it has ended");
    });
    EXPECT_EQ(order, "A");
    submit([this] {
        submit(open("B"));
        submit(brief("C"));
        queue.runNextBlock();
        throw std::runtime_error("after it has ended");
    });
    EXPECT_EQ(order, "AB");
    EXPECT_EQ(failures, 2);
    queue.runNextBlock();
    EXPECT_EQ(order, "ABC");
    EXPECT_FALSE(queue.isRunningSerialBlockOperation());
}

TEST_F(SerialBlockQueueTest, AHundredThousandBlocksBehindASlowOneRunInOrderOnOneStack) {
    submit(open(""));
    constexpr int count = 100'000;
    int next = 0;
    bool inOrder = true;
    const char* lowest = nullptr;
    const char* highest = nullptr;
    for (int i = 0; i < count; ++i) {
        submit([&, i] {
            const char here = 0;
            const char* const address = &here;
            lowest = lowest == nullptr ? address : std::min(lowest, address);
            highest = std::max(highest, address);
            inOrder = inOrder && next++ == i;
            queue.runNextBlock();
        });
    }
    queue.runNextBlock();
    EXPECT_TRUE(inOrder);
    EXPECT_EQ(next, count);
    EXPECT_LT(highest - lowest, 64 * 1024);
}

}  // namespace
}  // namespace RemoteCoding
