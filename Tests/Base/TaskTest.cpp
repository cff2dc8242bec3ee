#include "Base/Await.hpp"
#include "Base/Error.hpp"
#include "Base/TaskScope.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualTime.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

using namespace Base;
using namespace std::chrono_literals;

class TaskTest : public testing::Test {
protected:
    void start(Home home, Task<void> task) {
        scope.start(execution, home, std::move(task),
                    [this](const std::exception_ptr& error) { failures += describe(error); });
    }

    ReferenceHost::VirtualTime time{7};
    ReferenceHost::VirtualExecution execution{time};
    std::string failures;
    TaskScope scope;
};

Task<int> one() { co_return 1; }

Task<int> oneLater(ExecutionProtocol* execution) {
    SleepCall sleeping(*execution, 5ns);
    const Result<void> slept = co_await sleeping;
    co_return slept.succeeded() ? 1 : 0;
}

Task<void> addUp(ExecutionProtocol* execution, int soon, int later, std::shared_ptr<int> sum) {
    for (int i = 0; i < soon; ++i) {
        *sum += co_await one();
    }
    for (int i = 0; i < later; ++i) {
        *sum += co_await oneLater(execution);
    }
}

Task<void> recordHome(ExecutionProtocol* execution, std::shared_ptr<std::vector<bool>> isMain,
                      CompletionCall<int>::Start start) {
    isMain->push_back(execution->isMainThread());
    CompletionCall<int> call(std::move(start));
    const Result<int> answer = co_await call;
    isMain->push_back(execution->isMainThread());
    if (!answer.succeeded()) {
        std::rethrow_exception(answer.error());
    }
}

Task<void> awaitAnswer(CompletionCall<int>::Start start, std::shared_ptr<std::string> outcome) {
    CompletionCall<int> call(std::move(start));
    const Result<int> answer = co_await call;
    *outcome += answer.succeeded() ? std::to_string(answer.value()) : describe(answer.error());
}

TEST_F(TaskTest, StartingNeverRunsInsideTheCallAndAMillionAwaitsDoNotGrowTheStack) {
    const auto sum = std::make_shared<int>(0);
    start(Home::mainThread, addUp(&execution, 1'000'000, 10'000, sum));
    EXPECT_EQ(*sum, 0);
    EXPECT_TRUE(time.runUntilIdle(1min));
    EXPECT_EQ(*sum, 1'010'000);
    EXPECT_EQ(scope.count(), 0U);
}

TEST_F(TaskTest, ComesHomeWhicheverThreadAnswers) {
    const CompletionCall<int>::Start answers[] = {
        [this](Completion<int> done) { execution.postToMain([done] { done(1); }); },
        [this](Completion<int> done) { execution.postToBackground([done] { done(1); }); },
        [](Completion<int> done) { done(1); },
    };
    for (const auto& answer : answers) {
        const auto onMain = std::make_shared<std::vector<bool>>();
        start(Home::mainThread, recordHome(&execution, onMain, answer));
        const auto inBackground = std::make_shared<std::vector<bool>>();
        start(Home::background, recordHome(&execution, inBackground, answer));
        EXPECT_TRUE(time.runUntilIdle(1s));
        EXPECT_EQ(*onMain, std::vector<bool>({true, true}));
        EXPECT_EQ(*inBackground, std::vector<bool>({false, false}));
    }
}

TEST_F(TaskTest, TheFirstAnswerCountsAndAThrownOrDroppedOneIsAFailure) {
    const auto outcome = std::make_shared<std::string>();
    Completion<int> kept;
    start(Home::mainThread, awaitAnswer(
                                [&](Completion<int> done) {
                                    kept = done;
                                    done(1);
                                    done(2);
                                    throw std::runtime_error("thrown after the answer");
                                },
                                outcome));
    EXPECT_TRUE(time.runUntilIdle(1s));
    kept(3);  // late: the task is gone
    EXPECT_TRUE(time.runUntilIdle(1s));
    EXPECT_EQ(*outcome, "1");

    const std::pair<CompletionCall<int>::Start, const char*> calls[] = {
        {[](const Completion<int>&) { throw std::runtime_error("refused"); }, "refused"},
        {[](const Completion<int>&) {}, "The call was dropped without an answer"},
    };
    for (const auto& [call, description] : calls) {
        outcome->clear();
        start(Home::background, awaitAnswer(call, outcome));
        EXPECT_TRUE(time.runUntilIdle(1s));
        EXPECT_EQ(*outcome, description);
    }

    // What the task itself throws reaches its failure handler.
    start(Home::background, recordHome(&execution, std::make_shared<std::vector<bool>>(),
                                       [](const Completion<int>&) { throw std::runtime_error("none"); }));
    EXPECT_TRUE(time.runUntilIdle(1s));
    EXPECT_EQ(failures, "none");
    EXPECT_EQ(scope.count(), 0U);
}

TEST_F(TaskTest, DroppingDestroysWaitingTasksAndLateAnswersFindNothing) {
    const auto outcome = std::make_shared<std::string>();
    Completion<int> kept;
    start(Home::mainThread, awaitAnswer([&](Completion<int> done) { kept = std::move(done); }, outcome));
    EXPECT_TRUE(time.runUntilIdle(1s));
    EXPECT_EQ(scope.count(), 1U);
    bool told = false;
    const auto owner = std::make_shared<int>();
    scope.whenDropped(owner, [&] { told = true; });
    scope.drop();
    EXPECT_EQ(outcome.use_count(), 1);
    EXPECT_TRUE(told);
    kept(1);
    start(Home::mainThread, awaitAnswer([](Completion<int> done) { done(1); }, outcome));
    EXPECT_TRUE(time.runUntilIdle(1s));
    EXPECT_EQ(*outcome, "");
}

}  // namespace
