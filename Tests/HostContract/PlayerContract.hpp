#pragma once

#include "Components/RemoteCoding/HostInterfaces/NotificationCenterProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/TimelineComponentProtocol.hpp"
#include "Tests/HostContract/NamedHost.hpp"
#include "Tests/HostContract/NotingComponent.hpp"

#include <cstddef>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// The contract of a host's player as tests: what it tells the component of a live share. Include this header in one source file of
/// a test program, derive a fixture, and instantiate `PlayerContract` with it.
namespace HostContract {

/// One host with one live share at a time. Made, used and destroyed on the test's thread, which counts as the main thread.
class PlayerFixture {
public:
    virtual ~PlayerFixture() = default;

    /// Whom the host tells from now on. The host need not hold it.
    virtual void setComponent(const std::shared_ptr<RemoteCoding::RemoteCodingComponentProtocol>&) = 0;

    [[nodiscard]] virtual Base::ExecutionProtocol& execution() = 0;
    [[nodiscard]] virtual RemoteCoding::NotificationCenterProtocol& notificationCenter() = 0;
    [[nodiscard]] virtual RemoteCoding::TimelineComponentProtocol& timelines() = 0;

    /// Opens a live share whose stream flows, and plays it. Gives the id of its timeline. What follows is about the share that
    /// was opened last, and has happened when the call returns.
    virtual std::string play() = 0;

    // What becomes of the stream.
    virtual void interruptStream() = 0;
    virtual void mendStream() = 0;
    virtual void endPlaylist() = 0;
    virtual void loseFragment(const std::exception_ptr& error) = 0;  ///< that one for good

    // What the user does, and what becomes of the player.
    virtual void pause() = 0;
    virtual void jam(const std::exception_ptr& error) = 0;  ///< it cannot go on, and does not give up
    virtual void goOn() = 0;                                ///< after either
    virtual void closeTimeline() = 0;

    /// Runs the main loop on this thread until the predicate holds. False when the host gives up (after long).
    [[nodiscard]] virtual bool runUntil(const std::function<bool()>& predicate) = 0;

    /// Runs it for as long as so many fragments last.
    virtual void runForFragments(std::size_t number) = 0;
};

using PlayerHost = NamedHost<PlayerFixture>;

class PlayerContract : public testing::TestWithParam<PlayerHost> {
protected:
    using Words = std::vector<std::string>;

    PlayerContract() { fixture->setComponent(component); }

    /// Plays a share. Of its fragments some have come.
    void watch() {
        told.clear();
        id = fixture->play();
        hear(2);
    }
    /// Runs until so much has been told.
    void hear(std::size_t number) {
        ASSERT_TRUE(fixture->runUntil([&] { return told.size() >= number; })) << "It is silent.";
        told.resize(number);
    }
    std::string about(const char* word) const { return word + (" " + id); }

    static std::exception_ptr error(const char* text) {
        return std::make_exception_ptr(std::runtime_error(text));
    }

    std::shared_ptr<PlayerFixture> fixture = GetParam().make();
    std::shared_ptr<NotingComponent> component = std::make_shared<NotingComponent>(fixture->execution());
    Words& told = component->told;
    std::string id;
};

TEST_P(PlayerContract, TellsOfEachFragmentThatArrivesAndOfOneThatDoesNot) {
    watch();
    EXPECT_EQ(told, Words(2, about("fragment"))) << "The first one follows no pause.";
    for (const char* text : {"404", "410"}) {
        told.clear();
        fixture->loseFragment(error(text));
        hear(3);
        EXPECT_EQ(told, (Words{about("error") + ": " + text, about("fragment"), about("fragment")}));
    }
}

TEST_P(PlayerContract, TellsOnceThatItWaitsAndWithTheFirstFragmentThatItHasWaited) {
    const auto interrupt = [this] { fixture->interruptStream(); };
    const auto mend = [this] { fixture->mendStream(); };
    const auto pause = [this] { fixture->pause(); };
    const auto goOn = [this] { fixture->goOn(); };
    const auto jam = [this] { fixture->jam(error("jammed")); };
    const std::vector<std::pair<const char*, std::vector<std::function<void()>>>> stories{
        {"pause", {interrupt, mend}},
        {"pause", {pause, goOn}},
        {"pause", {interrupt, pause, mend, goOn}},
        {"pause", {pause, interrupt, goOn, mend}},
        {"jam", {jam, goOn}},
        {"jam", {jam, interrupt, goOn, mend}}};
    watch();
    for (std::size_t number = 0; number < stories.size(); ++number) {
        SCOPED_TRACE("story " + std::to_string(number));
        const auto& [kind, deeds] = stories[number];
        const std::string word = kind == std::string("jam") ? about("pause") + ": jammed" : about("pause");
        told.clear();
        for (const auto& deed : deeds) {
            EXPECT_LE(told.size(), 1U) << "Waiting is told of once, and not before the end.";
            deed();
            fixture->runForFragments(3);
        }
        hear(3);
        EXPECT_EQ(told, (Words{word, about("resumed"), about("fragment")}));
    }
}

TEST_P(PlayerContract, TellsOfTheEndOfThePlaylistBeforeTheShareIsComplete) {
    const auto observer = fixture->notificationCenter().addObserver(
        RemoteCoding::TimelineNotifications::liveShareDidComplete, nullptr, [this](const auto& complete) {
            component->note("share complete", std::any_cast<std::string>(complete.userInfo.at("timelineId")));
        });
    watch();
    told.clear();
    fixture->endPlaylist();
    ASSERT_TRUE(fixture->runUntil([&] { return told.size() >= 2; }));
    fixture->runForFragments(3);
    EXPECT_EQ(told, (Words{about("complete"), about("share complete")}));
    fixture->notificationCenter().removeObserver(observer);
}

TEST_P(PlayerContract, IsSilentWhenTheShareIsStoppedOrItsTimelineIsClosed) {
    for (const bool closes : {false, true}) {
        watch();
        EXPECT_TRUE(fixture->timelines().timelineWith(id));
        closes ? fixture->closeTimeline() : fixture->timelines().stopLiveShareWithTimelineId(id);
        told.clear();
        fixture->runForFragments(2);
        fixture->pause();
        fixture->goOn();
        fixture->endPlaylist();
        fixture->runForFragments(2);
        EXPECT_EQ(told, Words());
        EXPECT_EQ(fixture->timelines().timelineWith(id) == nullptr, closes) << "A stopped share stays open.";
    }
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(PlayerContract);

}  // namespace HostContract
