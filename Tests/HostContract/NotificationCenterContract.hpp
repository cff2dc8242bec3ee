#pragma once

#include "Components/RemoteCoding/HostInterfaces/NotificationCenterProtocol.hpp"
#include "Tests/HostContract/NamedHost.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <any>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

/// The contract of `RemoteCoding::NotificationCenterProtocol` as tests, for any host. Include this header in one source
/// file of a test program and instantiate `NotificationCenterContract` with the hosts to test.
namespace HostContract {

/// Makes a new centre for each test, used on the test's thread.
using NotificationCenterHost = NamedHost<RemoteCoding::NotificationCenterProtocol>;

class NotificationCenterContract : public testing::TestWithParam<NotificationCenterHost> {
protected:
    using Notification = RemoteCoding::Notification;
    using ObserverId = RemoteCoding::NotificationCenterProtocol::ObserverId;

    /// Writes `mark` into `told` when the notification comes.
    ObserverId observe(const std::string& name, const std::string& mark,
                       std::shared_ptr<RemoteCoding::HostObject> object = nullptr) {
        return center->addObserver(name, std::move(object),
                                   [this, mark](const Notification&) { told.push_back(mark); });
    }

    std::shared_ptr<RemoteCoding::NotificationCenterProtocol> center = GetParam().make();
    std::vector<std::string> told;
};

TEST_P(NotificationCenterContract, TellsThoseWhoAskedForTheNameAndTheObjectInTheOrderOfTheirAdding) {
    class Subject final : public RemoteCoding::HostObject {};
    const auto timeline = std::make_shared<Subject>();
    (void)observe("a", "about the timeline", timeline);
    (void)observe("b", "other name");
    (void)center->addObserver("a", nullptr, [&](const Notification& notification) {
        told.push_back(std::any_cast<std::string>(notification.userInfo.at("id")));
        EXPECT_EQ(notification.object == timeline, told.back() == "t2");
    });

    center->post(Notification("a", std::make_shared<Subject>(), {{"id", std::string("t1")}}));
    center->post(Notification("a", timeline, {{"id", std::string("t2")}}));
    EXPECT_EQ(told, (std::vector<std::string>{"t1", "about the timeline", "t2"}));
}

TEST_P(NotificationCenterContract, AllowsRemovalAdditionAndPostingWhileItTellsAndOutlastsWhatThrows) {
    ObserverId second = 0;
    ObserverId self = 0;
    self = center->addObserver("a", nullptr, [&](const Notification&) {
        center->removeObserver(self);
        center->removeObserver(second);
        (void)observe("a", "added");
        center->post(Notification("b"));
        throw std::runtime_error("An observer failed");
    });
    second = observe("a", "second");
    (void)observe("a", "third");
    (void)observe("b", "within");

    EXPECT_NO_THROW(center->post(Notification("a")));
    center->post(Notification("a"));
    EXPECT_EQ(told, (std::vector<std::string>{"within", "third", "third", "added"}));
}

TEST_P(NotificationCenterContract, LetsGoOfObserversOnRemovalOnAnotherThreadWhileItTells) {
    auto calls = std::make_shared<int>(0);
    std::vector<ObserverId> ids(200);
    std::ranges::generate(
        ids, [&] { return center->addObserver("a", nullptr, [calls](const auto&) { ++*calls; }); });
    std::thread remover([&] { std::ranges::for_each(ids, [&](auto id) { center->removeObserver(id); }); });
    center->post(Notification("a"));
    remover.join();
    EXPECT_EQ(calls.use_count(), 1);
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(NotificationCenterContract);

}  // namespace HostContract
