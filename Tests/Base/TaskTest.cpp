#include "Base/Await.hpp"
#include "Base/Error.hpp"
#include "Base/TaskScope.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualTime.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>

namespace {

using namespace Base;
using namespace std::chrono_literals;

Task<int> one() { co_return 1; }

Task<void> addUp(ExecutionProtocol* execution, std::shared_ptr<int> sum) {
    for (int i = 0; i < 1'000'000; ++i) {
        *sum += co_await one();
    }
    for (int i = 0; i < 10'000; ++i) {
        SleepCall sleeping(*execution, 5ns);
        const Result<void> slept = co_await sleeping;
        *sum += slept.succeeded() ? 1 : 0;
    }
}

/// Says on which thread it begins, what it is answered, and on which thread. A failure it passes on.
Task<void> awaitAnswer(ExecutionProtocol* execution, CompletionCall<int>::Start start,
                       std::shared_ptr<std::string> outcome) {
    *outcome = execution->isMainThread() ? "main " : "background ";
    CompletionCall<int> call(std::move(start));
    const Result<int> answer = co_await call;
    *outcome += answer.succeeded() ? std::to_string(answer.value()) : describe(answer.error());
    *outcome += execution->isMainThread() ? " main" : " background";
    if (!answer.succeeded()) {
        std::rethrow_exception(answer.error());
    }
}

class TaskTest : public testing::Test {
protected:
    void startAndSettle(Home home, CompletionCall<int>::Start call) {
        scope.start(execution, home, awaitAnswer(&execution, std::move(call), outcome),
                    [this](const std::exception_ptr& error) { failure = describe(error); });
        EXPECT_TRUE(time.runUntilIdle(1min));
    }

    ReferenceHost::VirtualTime time{7};
    ReferenceHost::VirtualExecution execution{time};
    std::string failure;
    std::shared_ptr<std::string> outcome = std::make_shared<std::string>();
    TaskScope scope;
};

TEST_F(TaskTest, StartingNeverRunsInsideTheCallAndAMillionAwaitsDoNotGrowTheStack) {
    const auto sum = std::make_shared<int>(0);
    scope.start(execution, Home::mainThread, addUp(&execution, sum), [](const auto&) {});
    EXPECT_EQ(*sum, 0);
    EXPECT_TRUE(time.runUntilIdle(1min));
    EXPECT_EQ(*sum, 1'010'000);
}

TEST_F(TaskTest, ComesHomeWithTheFirstAnswerWhicheverThreadGivesItOrWithAFailure) {
    const std::pair<CompletionCall<int>::Start, std::string> table[] = {
        {[this](Completion<int> done) { execution.postToMain([done] { done(1); }); }, "1"},
        {[this](Completion<int> done) { execution.postToBackground([done] { done(1); }); }, "1"},
        {[this](Completion<int> done) {
             execution.postToMainAfter(1s, [done] { done(3); });  // late: the task is gone
             done(1);
             done(2);
             throw std::runtime_error("thrown after the answer");
         },
         "1"},
        {[](const Completion<int>&) { throw std::runtime_error("refused"); }, "refused"},
        {[](const Completion<int>&) {}, "The call was dropped without an answer"},
    };
    for (const auto& [call, answer] : table) {
        for (const Home home : {Home::mainThread, Home::background}) {
            const std::string thread = home == Home::mainThread ? "main" : "background";
            failure = "";
            startAndSettle(home, call);
            EXPECT_EQ(*outcome, thread + " " + answer + " " + thread);
            EXPECT_EQ(failure, answer == "1" ? "" : answer);
            EXPECT_EQ(scope.count(), 0U);
        }
    }
}

TEST_F(TaskTest, DroppingDestroysWaitingTasksAndLateAnswersFindNothing) {
    Completion<int> kept;
    startAndSettle(Home::mainThread, [&](const Completion<int>& done) { kept = done; });
    bool told = false;
    const auto owner = std::make_shared<int>();
    scope.whenDropped(owner, [&] { told = true; });
    scope.drop();
    EXPECT_EQ(outcome.use_count(), 1);
    EXPECT_TRUE(told);
    kept(1);
    startAndSettle(Home::mainThread, [](const Completion<int>& done) { done(1); });
    EXPECT_EQ(*outcome, "main ") << "nothing after the drop";
}

}  // namespace
