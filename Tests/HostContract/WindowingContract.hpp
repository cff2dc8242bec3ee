#pragma once

#include "Tests/HostContract/WindowingFixture.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// The contract of `RemoteCoding::WindowingProtocol` as tests, for any host. Include this header in one source file of a test
/// program, derive a `WindowingFixture`, and instantiate `WindowingContract` with it.
namespace HostContract {

class WindowingContract : public WindowsTest {};

TEST_P(WindowingContract, ListsVisibleWindowsFrontToBackAndTellsOnceBeforeOneCloses) {
    const auto second = make("Second");
    EXPECT_FALSE(second->isVisible());
    second->show();
    const auto visible = [&] { return fixture->windowing().applicationWindows(); };
    EXPECT_EQ(visible(), (std::vector{second, window}));
    window->show();
    EXPECT_EQ(visible(), (std::vector{window, second}));

    int closings = 0;
    const auto willClose = [&](const Notification&) {
        EXPECT_TRUE(second->isVisible());
        second->performClose(nullptr);
        ++closings;
    };
    (void)fixture->notificationCenter().addObserver(WindowNotifications::windowWillClose, second, willClose);
    fixture->close("Second");
    second->performClose(nullptr);
    EXPECT_EQ(closings, 1);

    const std::weak_ptr<WindowProtocol> watched = std::exchange(window, nullptr);
    ASSERT_FALSE(watched.expired()) << "The toolkit holds what is visible.";
    watched.lock()->performClose(nullptr);
    EXPECT_TRUE(visible().empty());
    runMainJobs();
    EXPECT_TRUE(watched.expired());
}

TEST_P(WindowingContract, TellsItsOwnerOfWhatTheUserDoesAndOfNothingElse) {
    EXPECT_TRUE(window->contentView() && !window->outlet("no such outlet"));
    const auto popUp = outlet<PopUpButtonProtocol>("popUp");
    popUp->addItem(PopUpItem("Zero"));
    popUp->removeAllItems();
    EXPECT_FALSE(popUp->selectedItem());
    popUp->addItem(PopUpItem("One", 1));
    popUp->addItem(PopUpItem("Two", 2));
    EXPECT_EQ(popUp->selectedItem()->title, "One");
    outlet<TextFieldProtocol>("field")->setText("silent");
    EXPECT_ANY_THROW(fixture->click("Window", "button")) << "It is disabled.";
    outlet<ButtonProtocol>("button")->setEnabled(true);
    runMainJobs();
    EXPECT_EQ(owner->told, Strings());

    fixture->click("Window", "button");
    fixture->type("Window", "field", "typed");
    fixture->choose("Window", "popUp", "Two");
    EXPECT_ANY_THROW(fixture->choose("Window", "popUp", "Three"));
    EXPECT_EQ(owner->told, (Strings{"button", "typed", "popUp"}));
    EXPECT_EQ(std::any_cast<int>(popUp->selectedItem()->representedObject), 2);
    const std::weak_ptr<NotingOwner> watched = std::exchange(owner, nullptr);
    EXPECT_TRUE(watched.expired()) << "The toolkit holds the owner weakly.";
    fixture->click("Window", "button");
    window->performClose(nullptr);
    EXPECT_ANY_THROW(fixture->click("Window", "button"));
    EXPECT_EQ(outlet<TextFieldProtocol>("field")->text(), "changed") << "A closed window's controls stay.";
}

TEST_P(WindowingContract, ShowsTheRowsOfItsOwnerAndForgetsTheSelectionWithThem) {
    const auto table = outlet<TableViewProtocol>("table");
    EXPECT_EQ(table->makeView("no such pattern"), nullptr);
    const auto reload = [&](const Strings& texts) {
        owner->texts = texts;
        table->reloadData();
        EXPECT_EQ(table->selectedRow(), -1);
        EXPECT_EQ(owner->told, Strings()) << "Not inside the reload.";
        runMainJobs();
        EXPECT_EQ(fixture->rows("Window", "table"), texts);
        return std::exchange(owner->told, {});
    };
    EXPECT_EQ(reload({"a", "b", "c"}), Strings());
    fixture->clickCheckBox("Window", "table", "c");
    fixture->selectRow("Window", "table", "b");
    EXPECT_ANY_THROW(fixture->selectRow("Window", "table", "d"));
    EXPECT_EQ(std::exchange(owner->told, {}), (Strings{"tick 2", "row 1"}));
    EXPECT_EQ(reload({"a", "b"}), Strings{"row -1"});
    EXPECT_EQ(reload({"f"}), Strings()) << "There was none.";
    fixture->selectRow("Window", "table", "f");
    fixture->selectRow("Window", "table", "");
    EXPECT_EQ(owner->told, (Strings{"row 0", "row -1"}));
}

TEST_P(WindowingContract, HoldsTheMainThreadAndNothingElseUntilAnAlertIsAnswered) {
    auto& execution = fixture->execution();
    Strings order;
    const auto note = [&](const char* what) { return [&order, what] { order.emplace_back(what); }; };
    fixture->onAlert([&](const Alert&) {
        EXPECT_ANY_THROW(fixture->close("Window")) << "It is behind the alert.";
        execution.postToMain(note("posted"));
        (void)execution.startTimer(Base::Seconds(0.001), Base::Seconds(0), note("timer"));
        execution.sleep(std::chrono::milliseconds(5),
                        [&](const auto&) { execution.postToBackground([&] { fixture->press("No"); }); });
    });
    EXPECT_EQ(fixture->windowing().runModal(alert), alertSecondButton);
    order.emplace_back("answered");
    runUntil([&] { return order.size() == 3; });
    EXPECT_EQ(order, (Strings{"answered", "posted", "timer"}));

    fixture->onAlert([&](const Alert&) { fixture->press("Yes"); });
    execution.postToMain([&] { EXPECT_EQ(fixture->windowing().runModal(alert), alertFirstButton); });
    runMainJobs();
}

TEST_P(WindowingContract, AnswersOneSheetAfterTheOtherAndFailsThemWhenTheirWindowCloses) {
    Strings ends;
    const auto begin = [&](const std::string& name) {
        fixture->windowing().beginSheet(alert, window, [&, name](const Base::Result<AlertResponse>& result) {
            EXPECT_TRUE(fixture->execution().isMainThread());
            ends.push_back(name + (result.succeeded() ? ' ' + std::to_string(result.value()) : " failed"));
        });
        EXPECT_EQ(ends, Strings()) << "Not inside the call.";
    };
    begin("first");
    begin("second");
    begin("third");
    EXPECT_ANY_THROW(fixture->type("Window", "field", "under a sheet"));
    fixture->answerSheet("Window", "No");
    fixture->answerSheet("Window", "Yes");
    window->performClose(nullptr);
    begin("late");
    runUntil([&] { return ends.size() == 4; });
    EXPECT_EQ(ends, (Strings{"first 1001", "second 1000", "third failed", "late failed"}));
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(WindowingContract);

}  // namespace HostContract
