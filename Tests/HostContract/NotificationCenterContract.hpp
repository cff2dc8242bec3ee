#pragma once

#include "Components/RemoteCoding/HostInterfaces/NotificationCenterProtocol.hpp"

#include <gtest/gtest.h>

#include <any>
#include <functional>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

/// The contract of `RemoteCoding::NotificationCenterProtocol` as tests, for any host. Include this header in one source
/// file of a test program and instantiate `NotificationCenterContract` with the hosts to test.
namespace HostContract {

struct NotificationCenterHost {
    using Center = RemoteCoding::NotificationCenterProtocol;

    NotificationCenterHost(std::string name_, std::function<std::shared_ptr<Center>()> make_)
        : name(std::move(name_)), make(std::move(make_)) {}
    std::string name;
    std::function<std::shared_ptr<Center>()> make;  ///< a new centre for each test, used on the test's thread

    friend void PrintTo(const NotificationCenterHost& host, std::ostream* stream) { *stream << host.name; }
};

class NotificationCenterContract : public testing::TestWithParam<NotificationCenterHost> {
protected:
    class Subject final : public RemoteCoding::HostObject {};
    using Notification = RemoteCoding::Notification;
    using ObserverId = RemoteCoding::NotificationCenterProtocol::ObserverId;

    NotificationCenterContract() : center_(GetParam().make()) {}

    RemoteCoding::NotificationCenterProtocol& center() { return *center_; }

    /// Writes `mark` into `told` when the notification comes.
    ObserverId observe(const std::string& name, const std::string& mark,
                       std::shared_ptr<RemoteCoding::HostObject> object = nullptr) {
        return center().addObserver(name, std::move(object),
                                    [this, mark](const Notification&) { told.push_back(mark); });
    }

    std::vector<std::string> told;

private:
    std::shared_ptr<RemoteCoding::NotificationCenterProtocol> center_;
};

TEST_P(NotificationCenterContract, TellsTheObserversOfANameInTheOrderOfTheirAdding) {
    (void)observe("a", "first");
    (void)observe("b", "other name");
    (void)observe("a", "second");
    (void)observe("a", "third");

    center().post(Notification("a"));
    EXPECT_EQ(told, (std::vector<std::string>{"first", "second", "third"}));
    center().post(Notification("nobody observes this"));
    EXPECT_EQ(told.size(), 3U);
}

TEST_P(NotificationCenterContract, TellsThoseWhoAskedForTheObjectAndThoseWhoAskedForAll) {
    const auto timeline = std::make_shared<Subject>();
    const auto another = std::make_shared<Subject>();
    (void)observe("a", "about the timeline", timeline);
    (void)observe("a", "about all");

    center().post(Notification("a", another));
    center().post(Notification("a"));
    EXPECT_EQ(told, (std::vector<std::string>{"about all", "about all"}));
    told.clear();
    center().post(Notification("a", timeline));
    EXPECT_EQ(told, (std::vector<std::string>{"about the timeline", "about all"}));
}

TEST_P(NotificationCenterContract, HandsOverTheObjectAndTheUserInfo) {
    const auto subject = std::make_shared<Subject>();
    std::shared_ptr<RemoteCoding::HostObject> object;
    std::string value;
    (void)center().addObserver("a", nullptr, [&](const Notification& notification) {
        object = notification.object;
        value = std::any_cast<std::string>(notification.userInfo.at("timelineId"));
    });

    center().post(Notification("a", subject, {{"timelineId", std::string("t1")}}));

    EXPECT_EQ(object, subject);
    EXPECT_EQ(value, "t1");
}

TEST_P(NotificationCenterContract, ForgetsAnObserverThatIsRemovedWhileItTells) {
    ObserverId second = 0;
    ObserverId self = 0;
    self = center().addObserver("a", nullptr, [&](const Notification&) {
        told.emplace_back("first");
        center().removeObserver(self);
        center().removeObserver(second);
    });
    second = observe("a", "second");
    (void)observe("a", "third");

    center().post(Notification("a"));
    center().post(Notification("a"));

    EXPECT_EQ(told, (std::vector<std::string>{"first", "third", "third"}));
}

TEST_P(NotificationCenterContract, TellsAnObserverAddedMeanwhileFromTheNextNotificationOn) {
    (void)center().addObserver("a", nullptr, [&](const Notification&) {
        if (told.empty()) {
            (void)observe("a", "added");
        }
        told.emplace_back("first");
    });

    center().post(Notification("a"));
    EXPECT_EQ(told, (std::vector<std::string>{"first"}));
    center().post(Notification("a"));
    EXPECT_EQ(told, (std::vector<std::string>{"first", "first", "added"}));
}

TEST_P(NotificationCenterContract, TellsTheOthersWhenOneThrowsAndWhenOnePostsInTurn) {
    (void)center().addObserver("a", nullptr,
                               [](const Notification&) { throw std::runtime_error("An observer failed"); });
    (void)center().addObserver("a", nullptr, [](const Notification&) { throw 1; });
    (void)center().addObserver("a", nullptr, [&](const Notification&) { center().post(Notification("b")); });
    (void)observe("a", "after");
    (void)observe("b", "within");

    EXPECT_NO_THROW(center().post(Notification("a")));

    EXPECT_EQ(told, (std::vector<std::string>{"within", "after"}));
}

TEST_P(NotificationCenterContract, LetsGoOfAnObserverOnRemovalFromAnyThread) {
    auto owned = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = owned;
    const ObserverId id = center().addObserver("a", nullptr, [owned](const Notification&) { ++*owned; });
    owned.reset();
    ASSERT_FALSE(watched.expired());

    std::thread([&] { center().removeObserver(id); }).join();
    EXPECT_TRUE(watched.expired());
    center().removeObserver(id);
    center().removeObserver(id + 1000);
    center().post(Notification("a"));
}

TEST_P(NotificationCenterContract, AllowsRemovalOnOneThreadWhileAnotherTells) {
    constexpr int observers = 200;
    std::vector<ObserverId> ids;
    ids.reserve(observers);
    int calls = 0;
    for (int i = 0; i < observers; ++i) {
        ids.push_back(center().addObserver("a", nullptr, [&](const Notification&) { ++calls; }));
    }

    std::thread remover([&] {
        for (const ObserverId id : ids) {
            center().removeObserver(id);
        }
    });
    center().post(Notification("a"));
    remover.join();
    const int before = calls;
    center().post(Notification("a"));

    EXPECT_LE(before, observers);
    EXPECT_EQ(calls, before);
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(NotificationCenterContract);

}  // namespace HostContract
