#include "Components/RemoteCoding/ViewControllers/VideoSharingNewSessionWindowController.hpp"

#include "Components/RemoteCoding/Models/HostCalls.hpp"
#include "Components/RemoteCoding/Resources/LocalizedText.hpp"
#include "Components/RemoteCoding/ViewControllers/VideoNameText.hpp"

#include <stdexcept>
#include <utility>

namespace RemoteCoding {

namespace {

constexpr std::string_view createFunction = "createNewSession(_:)";
constexpr std::string_view loadFunction = "loadContent()";

}  // namespace

std::shared_ptr<VideoSharingNewSessionWindowController>
VideoSharingNewSessionWindowController::make(HostEnvironment& environment) {
    std::shared_ptr<VideoSharingNewSessionWindowController> controller(
        new VideoSharingNewSessionWindowController(environment));
    controller->makeWindow("VideoSharingNewSessionWindowController");
    controller->connectOutlets();
    return controller;
}

VideoSharingNewSessionWindowController::VideoSharingNewSessionWindowController(HostEnvironment& environment)
    : SessionWindowController(environment), viewModel_(environment) {}

void VideoSharingNewSessionWindowController::connectOutlets() {
    feedsToShareTableView_ = outlet<TableViewProtocol>("feedsToShareTableView");
    videoNameTextField_ = outlet<TextFieldProtocol>("videoNameTextField");
    createNewSessionButton_ = outlet<ButtonProtocol>("createNewSessionButton");
}

void VideoSharingNewSessionWindowController::act(const std::string& action,
                                                 const std::shared_ptr<ViewProtocol>& sender) {
    if (action == "checkSelectFeedCheckbox") {
        checkSelectFeedCheckbox(sender);
    } else if (action == "createNewSession") {
        createNewSession(sender);
    } else if (action == "cancel") {
        close(sender);
    }
}

// What one of these steps fails at does not keep the others from what they do.
void VideoSharingNewSessionWindowController::load() {
    refreshTeams();
    if (!isOpen()) {
        return;
    }
    guarded(environment(), loadFunction, [&] { showDefaultVideoName(); });
    guarded(environment(), loadFunction, [&] { showFeeds(); });
    updateCreateButtonState();
}

void VideoSharingNewSessionWindowController::showDefaultVideoName() {
    if (const auto field = videoNameTextField_.lock()) {
        const auto name = viewModel_.defaultVideoName();
        field->setText(
            name ? *name
                 : localized(environment(), "Untitled", "Name of a video that has no name of its own yet"));
    }
}

void VideoSharingNewSessionWindowController::showFeeds() {
    feeds_ = viewModel_.availableFeeds();
    reloadFeeds();
}

void VideoSharingNewSessionWindowController::teamPopUpDidFill() { updateCreateButtonState(); }

// The feeds.

std::size_t VideoSharingNewSessionWindowController::numberOfRowsInTableView(
    const std::shared_ptr<TableViewProtocol>& /*tableView*/) {
    return feeds_.size();
}

std::shared_ptr<ViewProtocol> VideoSharingNewSessionWindowController::makeCell(TableViewProtocol& table,
                                                                               const std::string& column,
                                                                               std::size_t row) {
    if (row >= feeds_.size()) {
        return nullptr;
    }
    const Feed& feed = feeds_[row];
    if (column == "FeedNameColumn") {
        return textCell(table, "FeedNameCell", feed->localizedName());
    }
    if (column != "SelectFeedColumn") {
        return nullptr;
    }
    auto checkBox = std::dynamic_pointer_cast<CheckBoxProtocol>(table.makeView("SelectFeedCell"));
    if (checkBox) {
        checkBox->setTag(static_cast<std::int64_t>(row));
        checkBox->setOn(selectedFeed_ && feed->uniqueID() == selectedFeed_->uniqueID());
    }
    return checkBox;
}

/// The feeds are a single choice: a click on the ticked box leaves it ticked.
void VideoSharingNewSessionWindowController::checkSelectFeedCheckbox(
    const std::shared_ptr<ViewProtocol>& sender) {
    const auto checkBox = std::dynamic_pointer_cast<CheckBoxProtocol>(sender);
    if (!checkBox) {
        return;
    }
    const auto row = checkBox->tag();
    if (row < 0 || static_cast<std::size_t>(row) >= feeds_.size()) {
        return;  // a box of feeds that have gone meanwhile
    }
    selectedFeed_ = feeds_[static_cast<std::size_t>(row)];
    guarded(environment(), "checkSelectFeedCheckbox(_:)", [&] { reloadFeeds(); });
    updateCreateButtonState();
}

void VideoSharingNewSessionWindowController::reloadFeeds() {
    if (const auto table = feedsToShareTableView_.lock()) {
        table->reloadData();
    }
}

// The name.

void VideoSharingNewSessionWindowController::textDidChange(TextFieldProtocol& field) {
    const VideoNameText name(field.text());
    if (name.wasCut) {
        beep();
    }
    if (name.wasCut || name.hadForbiddenCharacters) {
        guarded(environment(), "controlTextDidChange(_:)", [&] { field.setText(name.text); });
    }
    if (name.hadForbiddenCharacters) {
        beep();
    }
    updateCreateButtonState();
}

void VideoSharingNewSessionWindowController::beep() {
    guarded(environment(), "beep()", [&] { environment().windowing.beep(); });
}

void VideoSharingNewSessionWindowController::updateCreateButtonState() {
    guarded(environment(), "updateCreateButtonState()", [&] {
        const auto button = createNewSessionButton_.lock();
        const auto field = videoNameTextField_.lock();
        if (button) {
            button->setEnabled(teamInPopUp() && selectedFeed_ && field && !field->text().empty());
        }
    });
}

// The session.

void VideoSharingNewSessionWindowController::createNewSession(const std::shared_ptr<HostObject>& sender) {
    const auto team = teamInPopUp();
    if (!team || !selectedFeed_) {
        return;
    }
    startTask(createFunction, create(selectedFeed_, *team));
    close(sender);
}

Base::Task<void> VideoSharingNewSessionWindowController::create(Feed feed, TeamSummary team) {
    std::string videoName;
    std::shared_ptr<PublishSession> publishSession;
    std::exception_ptr error;
    try {
        if (const auto field = videoNameTextField_.lock()) {
            videoName = field->text();
        }
        std::string streamName = feed->localizedName();
        Base::Task<std::shared_ptr<PublishSession>> opening =
            viewModel_.createNewPublishSession(std::move(streamName), videoName, team.id);
        publishSession = co_await opening;
    } catch (...) {
        error = std::current_exception();
    }
    if (error) {
        environment().logManager.logWarn(
            "Failed to create a new publish session. Error=" + Base::describe(error) + ".");
        showUnableToCreateSessionAlert();
    } else if (!publishSession) {
        logError(environment().logManager, "Unable to get the publish session.", "", createFunction);
    } else {
        startSession(videoName, publishSession, team.id, feed);
    }
}

void VideoSharingNewSessionWindowController::startSession(
    const std::string& videoName, const std::shared_ptr<PublishSession>& publishSession,
    const std::string& teamId, const Feed& feed) {
    std::exception_ptr error;
    try {
        if (const auto component = environment().componentLocator.remoteCodingComponent()) {
            error = component->createNewRemoteCodingSession(videoName, publishSession, teamId, feed).error();
        } else {
            error = std::make_exception_ptr(std::runtime_error(
                localized(environment(), "Sharing sessions are not available.",
                          "Error text when a session cannot start because sharing has been shut down")));
        }
    } catch (...) {
        error = std::current_exception();
    }
    if (error) {
        showErrorAlert(error);
    }
    guarded(environment(), createFunction, [&] {
        environment().logManager.logUsage(
            "SessionStarted", LogOpName::remoteCoding,
            {{"TeamId", teamId}, {"SessionName", videoName}, {"VideoId", publishSession->videoId()}});
    });
}

void VideoSharingNewSessionWindowController::showUnableToCreateSessionAlert() {
    if (asksToRetry(
            localized(environment(), "Unable to Create Session", "Unable to create session alert title"),
            localized(environment(),
                      "Quorvel could not create a new video sharing session. Retry or check your connection.",
                      "Unable to create session alert information"))) {
        createNewSession(nullptr);
    }
}

void VideoSharingNewSessionWindowController::showErrorAlert(const std::exception_ptr& error) {
    runModal(Alert(Base::describe(error), Base::recoverySuggestion(error).value_or(std::string()), {}));
}

}  // namespace RemoteCoding
