#include "Components/RemoteCoding/ViewControllers/SessionWindowController.hpp"

#include "Base/Await.hpp"
#include "Components/RemoteCoding/HostInterfaces/TevuAPIError.hpp"
#include "Components/RemoteCoding/Models/MainThreadTask.hpp"
#include "Components/RemoteCoding/Resources/LocalizedText.hpp"
#include "Components/RemoteCoding/Resources/WindowLayouts.hpp"

#include <utility>

namespace RemoteCoding {

namespace {

using Teams = std::vector<TeamSummary>;
using User = std::optional<TevuUser>;

constexpr std::string_view loadFunction = "loadContent()";
constexpr std::string_view signInFunction = "signIn(in:)";
constexpr std::string_view teamsFunction = "refreshTeams()";
constexpr std::string_view rebuildFunction = "rebuildTeamPopUp()";

bool callsForSignIn(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const TevuAPIError& apiError) {
        return apiError.errorCase() == TevuAPIError::Case::notSignedIn;
    } catch (...) {
        return false;
    }
}

Base::Task<void> hold(std::shared_ptr<SessionWindowController> /*controller*/, Base::Task<void> task) {
    co_await task;
}

}  // namespace

// The window.

void SessionWindowController::makeWindow(const std::string& layoutName) {
    constexpr std::string_view function = "init()";
    guarded(environment_, function, [&] {
        if (const auto layout = windowLayout(environment_, layoutName)) {
            window_ = environment_.windowing.makeWindow(*layout, weak_from_this());
        }
    });
    if (!window_) {
        logError(environment_.logManager, "Unable to make the window", layoutName, function);
    }
    selectedTeamPopUpButton_ = outlet<PopUpButtonProtocol>("selectedTeamPopUpButton");
}

void SessionWindowController::showWindow(const std::shared_ptr<HostObject>& /*sender*/) {
    constexpr std::string_view function = "showWindow(_:)";
    checkIsMainThread(environment_, function);
    guarded(environment_, function, [&] {
        if (window_) {
            window_->show();
        }
    });
}

void SessionWindowController::close(const std::shared_ptr<HostObject>& sender) {
    const auto self = shared_from_this();
    guarded(environment_, "performClose(_:)", [&] {
        if (window_) {
            window_->performClose(sender);
        }
    });
}

bool SessionWindowController::isOpen() const {
    bool isVisible = false;
    guarded(environment_, "isVisible", [&] { isVisible = window_ && window_->isVisible(); });
    return isVisible;
}

// What the toolkit tells and asks.

void SessionWindowController::perform(const std::string& action,
                                      const std::shared_ptr<ViewProtocol>& sender) {
    const std::string function = action + "(_:)";
    checkIsMainThread(environment_, function);
    const auto self = shared_from_this();  // the action may close the window
    guarded(environment_, function, [&] { act(action, sender); });
}

void SessionWindowController::controlTextDidChange(const std::shared_ptr<ViewProtocol>& control) {
    constexpr std::string_view function = "controlTextDidChange(_:)";
    checkIsMainThread(environment_, function);
    guarded(environment_, function, [&] {
        if (const auto field = std::dynamic_pointer_cast<TextFieldProtocol>(control)) {
            textDidChange(*field);
        }
    });
}

std::shared_ptr<ViewProtocol>
SessionWindowController::tableView(const std::shared_ptr<TableViewProtocol>& tableView,
                                   const std::string& viewForTableColumn, std::size_t row) {
    constexpr std::string_view function = "tableView(_:viewFor:row:)";
    checkIsMainThread(environment_, function);
    std::shared_ptr<ViewProtocol> cell;
    guarded(environment_, function, [&] {
        if (tableView) {
            cell = makeCell(*tableView, viewForTableColumn, row);
        }
    });
    return cell;
}

void SessionWindowController::tableViewSelectionDidChange(
    const std::shared_ptr<TableViewProtocol>& tableView) {
    constexpr std::string_view function = "tableViewSelectionDidChange(_:)";
    checkIsMainThread(environment_, function);
    guarded(environment_, function, [&] {
        if (tableView) {
            selectionDidChange(*tableView);
        }
    });
}

std::shared_ptr<ViewProtocol> SessionWindowController::textCell(TableViewProtocol& table,
                                                                const std::string& cellIdentifier,
                                                                const std::string& text) {
    auto cell = std::dynamic_pointer_cast<TableCellViewProtocol>(table.makeView(cellIdentifier));
    if (const auto field = cell ? cell->textField() : nullptr) {
        field->setText(text);
    }
    return cell;
}

// Signing in and loading.

void SessionWindowController::loadContent() {
    checkIsMainThread(environment_, loadFunction);
    startTask(loadFunction, signInAndLoad());
}

Base::Task<void> SessionWindowController::signInAndLoad() {
    if (!environment_.account.user()) {
        Base::Task<SignIn> signingIn = signIn();
        const SignIn outcome = co_await signingIn;
        if (outcome != SignIn::ended) {
            co_return;
        }
    }
    load();
}

Base::Task<SessionWindowController::SignIn> SessionWindowController::signIn() {
    if (!window_) {
        co_return SignIn::impossible;
    }
    std::shared_ptr<TevuLoginCoordinatorProtocol> coordinator;
    std::shared_ptr<ViewProtocol> view;
    bool isReady = false;
    guarded(environment_, signInFunction, [&] {
        view = window_->contentView();
        coordinator = environment_.account.makeLoginCoordinator();
        isReady = true;
    });
    if (!isReady) {
        co_return SignIn::failed;
    }
    if (!coordinator) {
        co_return SignIn::impossible;
    }
    Base::CompletionCall<User> signingIn([coordinator, view](Base::Completion<User> done) {
        coordinator->start(view, {{TevuLoginConstants::Configuration::closeParentOnCancelKey, true}},
                           std::move(done));
    });
    const Base::Result<User> user = co_await signingIn;
    co_return user.succeeded() ? SignIn::ended : SignIn::failed;
}

// Teams.

void SessionWindowController::refreshTeams() { startTask(teamsFunction, fetchTeams()); }

Base::Task<void> SessionWindowController::fetchTeams() {
    Base::CompletionCall<Teams> fetching([service = environment_.teamService](Base::Completion<Teams> done) {
        service->fetchTeams({TevuFeaturePrivilege::remoteCoding}, std::move(done));
    });
    const Base::Result<Teams> teams = co_await fetching;
    didFetchTeams(teams);
}

void SessionWindowController::didFetchTeams(const Base::Result<Teams>& teams) {
    if (teams.succeeded()) {
        teams_ = teams.value();
    } else if (callsForSignIn(teams.error())) {
        startTask(signInFunction, signInAndRefreshTeams());
        return;
    } else {
        environment_.logManager.logWarn("Failed to fetch teams. Error=" + Base::describe(teams.error()) +
                                        ".");
        showUnableToFetchTeamsAlert();
    }
    queue(rebuildFunction, [this] { rebuildTeamPopUp(); });
    teamsDidArrive();
}

/// However often that takes: whether the user has signed in shows at the next fetch. It ends with the window, through which
/// alone that could happen.
Base::Task<void> SessionWindowController::signInAndRefreshTeams() {
    if (!isOpen()) {
        co_return;
    }
    Base::Task<SignIn> signingIn = signIn();
    const SignIn outcome = co_await signingIn;
    if (outcome != SignIn::impossible && isOpen()) {
        refreshTeams();
    }
}

void SessionWindowController::showUnableToFetchTeamsAlert() {
    if (asksToRetry(
            localized(environment_, "Unable to Fetch Teams List", "Unable to fetch teams alert title"),
            localized(environment_,
                      "Quorvel could not fetch any active teams. Retry or check your connection.",
                      "Unable to fetch teams alert information"))) {
        refreshTeams();
    }
}

void SessionWindowController::rebuildTeamPopUp() {
    const auto popUp = selectedTeamPopUpButton_.lock();
    if (!popUp || !isOpen()) {
        return;
    }
    popUp->removeAllItems();
    if (teams_.empty()) {
        popUp->setEnabled(false);
        return;
    }
    for (const auto& team : teams_) {
        if (team.name) {
            popUp->addItem(PopUpItem(*team.name, team));
        }
    }
    popUp->setEnabled(true);
    teamPopUpDidFill();
}

std::optional<TeamSummary> SessionWindowController::teamInPopUp() const {
    const auto popUp = selectedTeamPopUpButton_.lock();
    const auto item = popUp ? popUp->selectedItem() : std::nullopt;
    const auto* team = item ? std::any_cast<TeamSummary>(&item->representedObject) : nullptr;
    return team != nullptr ? std::optional(*team) : std::nullopt;
}

// Tasks, jobs and alerts.

void SessionWindowController::startTask(std::string_view function, Base::Task<void> task) {
    startOnMainThread(environment_, function, hold(shared_from_this(), std::move(task)));
}

void SessionWindowController::queue(std::string_view function, std::function<void()> job) {
    guarded(environment_, function, [&] {
        environment_.execution.postToMain([self = shared_from_this(), function, job = std::move(job)] {
            guarded(self->environment_, function, job);
        });
    });
}

std::optional<AlertResponse> SessionWindowController::runModal(const Alert& alert) {
    std::optional<AlertResponse> response;
    guarded(environment_, "runModal()", [&] { response = environment_.windowing.runModal(alert); });
    return response;
}

bool SessionWindowController::asksToRetry(std::string messageText, std::string informativeText) {
    const Alert alert(std::move(messageText), std::move(informativeText),
                      {AlertButton(localized(environment_, "Retry", "Retry button title")),
                       AlertButton(localized(environment_, "Cancel", "Cancel button title"))});
    return runModal(alert) == alertFirstButton;
}

}  // namespace RemoteCoding
