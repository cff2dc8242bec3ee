#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/AccountProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/NotificationCenterProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/WindowingProtocol.hpp"
#include "Tests/HostContract/NamedHost.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// What the tests of windows and of signing in ask of a host.
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

class WindowsTest : public testing::TestWithParam<WindowingHost> {
protected:
    WindowsTest() { window->show(); }

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

}  // namespace HostContract
