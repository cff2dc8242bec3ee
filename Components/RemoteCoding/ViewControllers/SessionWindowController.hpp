#pragma once

#include "Base/Result.hpp"
#include "Base/Task.hpp"
#include "Components/RemoteCoding/HostInterfaces/HostEnvironment.hpp"
#include "Components/RemoteCoding/HostInterfaces/WindowProtocol.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace RemoteCoding {

/// What the two session windows have in common: the window with its pop-up button of teams, signing in, and fetching the
/// teams.
///
/// Main thread only. The environment outlives it. The controller owns its window, and through it the controls; each of them
/// may be missing. Its tasks hold the controller: what still runs when the window closes runs to its end. The exception is
/// signing in again, which needs the window. The controls of a closed window are read, as their user left them, and not
/// written any more.
class SessionWindowController : public WindowOwnerProtocol,
                                public std::enable_shared_from_this<SessionWindowController> {
public:
    SessionWindowController(const SessionWindowController&) = delete;
    SessionWindowController& operator=(const SessionWindowController&) = delete;

    /// Null when the toolkit could not make it, which is logged.
    [[nodiscard]] const std::shared_ptr<WindowProtocol>& window() const { return window_; }

    /// Opens the window, or brings it to the front.
    void showWindow(const std::shared_ptr<HostObject>& sender);

    /// Fills the window anew, in a task: signs in when nobody is signed in, and fetches.
    void loadContent();

    /// Closes the window as its close button does. The controller lives until this returns.
    void close(const std::shared_ptr<HostObject>& sender);

    // WindowOwnerProtocol. What the host throws inside them is logged and does not get back into the toolkit.
    void perform(const std::string& action, const std::shared_ptr<ViewProtocol>& sender) final;
    void controlTextDidChange(const std::shared_ptr<ViewProtocol>& control) final;
    [[nodiscard]] std::shared_ptr<ViewProtocol> tableView(const std::shared_ptr<TableViewProtocol>& tableView,
                                                          const std::string& viewForTableColumn,
                                                          std::size_t row) final;
    void tableViewSelectionDidChange(const std::shared_ptr<TableViewProtocol>& tableView) final;

protected:
    explicit SessionWindowController(HostEnvironment& environment) : environment_(environment) {}

    /// Once, by the factory.
    void makeWindow(const std::string& layoutName);

    template <typename View>
    [[nodiscard]] std::weak_ptr<View> outlet(const std::string& name) const {
        return window_ ? std::dynamic_pointer_cast<View>(window_->outlet(name)) : nullptr;
    }

    /// What the subclass does about the actions of its layout, typing, cells and the selection.
    virtual void act(const std::string& action, const std::shared_ptr<ViewProtocol>& sender) = 0;
    virtual void textDidChange(TextFieldProtocol& /*field*/) {}
    [[nodiscard]] virtual std::shared_ptr<ViewProtocol>
    makeCell(TableViewProtocol& table, const std::string& column, std::size_t row) = 0;
    virtual void selectionDidChange(TableViewProtocol& /*table*/) {}

    /// The task behind `loadContent`, up to and without signing in; runs only if somebody is signed in, or the
    /// flow has ended without an error.
    virtual void load() = 0;

    /// A fetch of the teams has ended, with new ones or with an error that the user has been told of.
    virtual void teamsDidArrive() {}

    /// The pop-up button offers teams again; not called when there are none.
    virtual void teamPopUpDidFill() {}

    void refreshTeams();
    [[nodiscard]] const std::vector<TeamSummary>& teams() const { return teams_; }

    /// False from the window's closing on, and when the toolkit cannot say.
    [[nodiscard]] bool isOpen() const;

    /// The team of the selected item; absent when none is selected.
    [[nodiscard]] std::optional<TeamSummary> teamInPopUp() const;

    /// Starts a task that holds this controller; never runs it inside this call.
    void startTask(std::string_view function, Base::Task<void> task);

    /// Posts a job that holds this controller.
    void queue(std::string_view function, std::function<void()> job);

    /// Blocks the main thread with an alert with the buttons "Retry" and "Cancel". True: another try is wanted.
    [[nodiscard]] bool asksToRetry(std::string messageText, std::string informativeText);

    /// Blocks the main thread. Absent when the toolkit failed.
    std::optional<AlertResponse> runModal(const Alert& alert);

    /// A text cell of that pattern; null when the toolkit has none, or one of another kind.
    [[nodiscard]] static std::shared_ptr<ViewProtocol>
    textCell(TableViewProtocol& table, const std::string& cellIdentifier, const std::string& text);

    HostEnvironment& environment() const { return environment_; }

private:
    enum class SignIn : std::uint8_t {
        ended,       ///< with a user or without
        failed,      ///< with an error
        impossible,  ///< there is no window, or the host has no such flow
    };

    [[nodiscard]] Base::Task<SignIn> signIn();
    [[nodiscard]] Base::Task<void> signInAndLoad();
    [[nodiscard]] Base::Task<void> signInAndRefreshTeams();
    [[nodiscard]] Base::Task<void> fetchTeams();
    void didFetchTeams(const Base::Result<std::vector<TeamSummary>>& teams);
    void showUnableToFetchTeamsAlert();
    void rebuildTeamPopUp();

    HostEnvironment& environment_;
    std::shared_ptr<WindowProtocol> window_;
    std::weak_ptr<PopUpButtonProtocol> selectedTeamPopUpButton_;
    std::vector<TeamSummary> teams_;  // as fetched last
};

}  // namespace RemoteCoding
