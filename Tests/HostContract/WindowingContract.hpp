#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/AccountProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/NotificationCenterProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/WindowingProtocol.hpp"
#include "Tests/HostContract/NamedHost.hpp"

#include <gtest/gtest.h>

/// The contract of `RemoteCoding::WindowingProtocol` as tests, for any host. Include this header in one source file of a test
/// program, derive a fixture, and instantiate `WindowingContract` with it.
namespace HostContract {

using namespace RemoteCoding;
using Strings = std::vector<std::string>;

/// One host's windows under test, and a user in front of them, who calls windows, controls and rows by their texts. Made, used
/// and destroyed on the test's thread, which counts as the main thread.
class WindowingFixture {
public:
    using Name = const std::string&;

    virtual ~WindowingFixture() = default;
    [[nodiscard]] virtual WindowingProtocol& windowing() = 0;
    [[nodiscard]] virtual NotificationCenterProtocol& notificationCenter() = 0;
    [[nodiscard]] virtual Base::ExecutionProtocol& execution() = 0;

    /// Runs the main loop on this thread until the predicate holds. False when the host gives up (after long).
    [[nodiscard]] virtual bool runUntil(const std::function<bool()>& predicate) = 0;

    // What the user does, until the window's owner has been told. Throws when a user cannot do it now.
    virtual void click(Name window, Name button) = 0;
    virtual void type(Name window, Name field, Name text) = 0;  ///< in place of all that is there
    virtual void choose(Name window, Name popUp, Name item) = 0;
    virtual void clickCheckBox(Name window, Name table, Name row) = 0;
    virtual void selectRow(Name window, Name table, Name row) = 0;  ///< none for an empty row
    virtual void close(Name window) = 0;
    virtual void answerSheet(Name window, Name button) = 0;

    /// The text of each row.
    [[nodiscard]] virtual Strings rows(Name window, Name table) = 0;

    /// `shown` is called on the main thread when an alert has appeared. `press` may be called by any thread.
    virtual void onAlert(std::function<void(const Alert&)> shown) = 0;
    virtual void press(Name button) = 0;

    // For `SignInContract`. Nobody is signed in at first. What the user does in the flow that the window shows throws when it
    // shows none.
    [[nodiscard]] virtual AccountProtocol& account() = 0;
    virtual void signIn(Name window, Name userId) = 0;
    virtual void cancelSignIn(Name window) = 0;
    virtual void failSignIn(Name window, Name error) = 0;  ///< not the user's doing: the flow breaks down
};

using WindowingHost = NamedHost<WindowingFixture>;

/// Notes what it is told, and fills a table with as many rows as it has texts.
class NotingOwner final : public WindowOwnerProtocol {
public:
    using Table = std::shared_ptr<TableViewProtocol>;

    void perform(const std::string& action, const std::shared_ptr<ViewProtocol>& sender) override {
        const auto box = std::dynamic_pointer_cast<CheckBoxProtocol>(sender);
        told.push_back(box ? action + ' ' + std::to_string(box->tag()) : action);
    }
    void controlTextDidChange(const std::shared_ptr<ViewProtocol>& control) override {
        told.push_back(dynamic_cast<TextFieldProtocol&>(*control).text());
        dynamic_cast<TextFieldProtocol&>(*control).setText("changed");
    }
    std::size_t numberOfRowsInTableView(const Table&) override { return texts.size(); }
    std::shared_ptr<ViewProtocol> tableView(const Table& table, const std::string& viewForTableColumn,
                                            std::size_t row) override {
        auto cell = table->makeView(viewForTableColumn + "Cell");
        if (viewForTableColumn == "text") {
            dynamic_cast<TableCellViewProtocol&>(*cell).textField()->setText(texts[row]);
        } else {
            dynamic_cast<CheckBoxProtocol&>(*cell).setTag(std::int64_t(row));
        }
        return cell;
    }
    void tableViewSelectionDidChange(const Table& table) override {
        told.push_back("row " + std::to_string(table->selectedRow()));
    }

    Strings texts;
    Strings told;
};

class WindowingContract : public testing::TestWithParam<WindowingHost> {
protected:
    WindowingContract() { window->show(); }

    using Window = std::shared_ptr<WindowProtocol>;

    Window make(const std::string& title) {
        using Kind = WindowLayoutControl::Kind;
        WindowLayout layout{"Controller", title, {}};
        for (const auto& [kind, name] :
             {std::pair(Kind::textField, "field"), std::pair(Kind::popUpButton, "popUp"),
              std::pair(Kind::button, "button"), std::pair(Kind::tableView, "table")}) {
            layout.controls.push_back({kind, name, name, name, kind != Kind::button, false, false, {}});
        }
        using Column = WindowLayoutColumn;
        layout.controls.back().columns = {Column{"check", "", "checkCell", Column::Cell::checkBox, "tick"},
                                          Column{"text", "", "textCell", Column::Cell::text, ""}};
        return fixture->windowing().makeWindow(layout, owner);
    }
    template <typename View>
    std::shared_ptr<View> outlet(const char* name) const {
        return std::dynamic_pointer_cast<View>(window->outlet(name));
    }
    void runUntil(const std::function<bool()>& predicate) { ASSERT_TRUE(fixture->runUntil(predicate)); }

    /// Whatever has been posted to the main thread.
    void runMainJobs() {
        bool ran = false;
        fixture->execution().postToMain([&] { ran = true; });
        runUntil([&] { return ran; });
    }

    const std::shared_ptr<WindowingFixture> fixture = GetParam().make();
    std::shared_ptr<NotingOwner> owner = std::make_shared<NotingOwner>();
    Window window = make("Window");
    const Alert alert{"Message", "Text", {AlertButton("Yes"), AlertButton("No", true)}};
};

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
