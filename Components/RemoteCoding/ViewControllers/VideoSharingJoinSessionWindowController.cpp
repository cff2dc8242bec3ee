#include "Components/RemoteCoding/ViewControllers/VideoSharingJoinSessionWindowController.hpp"

#include "Components/RemoteCoding/Models/HostCalls.hpp"
#include "Components/RemoteCoding/Resources/LocalizedText.hpp"

#include <utility>

namespace RemoteCoding {

namespace {

constexpr std::string_view joinFunction = "joinSession(_:)";

}  // namespace

std::shared_ptr<VideoSharingJoinSessionWindowController>
VideoSharingJoinSessionWindowController::make(HostEnvironment& environment,
                                              std::shared_ptr<TevuRemoteCodingService> service) {
    std::shared_ptr<VideoSharingJoinSessionWindowController> controller(
        new VideoSharingJoinSessionWindowController(environment, std::move(service)));
    controller->makeWindow("VideoSharingJoinSessionWindowController");
    controller->connectOutlets();
    return controller;
}

VideoSharingJoinSessionWindowController::VideoSharingJoinSessionWindowController(
    HostEnvironment& environment, std::shared_ptr<TevuRemoteCodingService> service)
    : SessionWindowController(environment), viewModel_(environment, std::move(service)) {}

void VideoSharingJoinSessionWindowController::connectOutlets() {
    sessionsTableView_ = outlet<TableViewProtocol>("sessionsTableView");
    joinSessionButton_ = outlet<ButtonProtocol>("joinSessionButton");
}

void VideoSharingJoinSessionWindowController::act(const std::string& action,
                                                  const std::shared_ptr<ViewProtocol>& sender) {
    if (action == "teamSelected") {
        teamSelected();
    } else if (action == "joinSession") {
        joinSession(sender);
    } else if (action == "cancel") {
        close(sender);
    }
}

void VideoSharingJoinSessionWindowController::load() { refreshTeams(); }

// The team.

void VideoSharingJoinSessionWindowController::teamsDidArrive() {
    selectTeam(teams().empty() ? std::nullopt : std::optional(teams().front()));
}

void VideoSharingJoinSessionWindowController::teamSelected() {
    if (auto team = teamInPopUp()) {
        selectTeam(std::move(team));
    }
}

/// The selected session and the join button stay as they are until the table tells of another selection.
void VideoSharingJoinSessionWindowController::selectTeam(std::optional<TeamSummary> team) {
    selectedTeam_ = std::move(team);
    refreshSessions();
}

// The sessions.

void VideoSharingJoinSessionWindowController::refreshSessions() {
    if (selectedTeam_) {
        startTask("refreshSessions()", fetchSessions(*selectedTeam_));
    }
}

/// Several may be under way, for one team or for several: each stores what it gets when it gets it.
Base::Task<void> VideoSharingJoinSessionWindowController::fetchSessions(TeamSummary team) {
    std::exception_ptr error;
    try {
        Base::Task<Sessions> fetching = viewModel_.fetchLiveSessions(std::move(team));
        Sessions sessions = co_await fetching;
        sessions_ = std::move(sessions);
    } catch (...) {
        error = std::current_exception();
    }
    if (error) {
        environment().logManager.logWarn(
            "Failed to fetch live streaming video sessions. Error=" + Base::describe(error) + ".");
        showUnableToFetchSessionsAlert();
    }
    queue("reloadData()", [this] { reloadSessions(); });
}

void VideoSharingJoinSessionWindowController::reloadSessions() {
    const auto table = sessionsTableView_.lock();
    if (table && isOpen()) {
        table->reloadData();
    }
}

void VideoSharingJoinSessionWindowController::showUnableToFetchSessionsAlert() {
    if (asksToRetry(localized(environment(), "Unable to Fetch Active Sessions",
                              "Unable to fetch sessions alert title"),
                    localized(environment(),
                              "Quorvel could not fetch any active sessions. Retry or check your connection.",
                              "Unable to fetch sessions alert information"))) {
        refreshSessions();
    }
}

std::size_t VideoSharingJoinSessionWindowController::numberOfRowsInTableView(
    const std::shared_ptr<TableViewProtocol>& /*tableView*/) {
    return sessions_.size();
}

std::shared_ptr<ViewProtocol> VideoSharingJoinSessionWindowController::makeCell(TableViewProtocol& table,
                                                                                const std::string& column,
                                                                                std::size_t row) {
    if (row >= sessions_.size()) {
        return nullptr;
    }
    const auto& session = sessions_[row];
    if (column == "VideoTitleColumn") {
        return textCell(table, "VideoTitleCell", session.title());
    }
    if (column == "VideoDateColumn") {
        return textCell(table, "VideoDateCell", uploadedDateText(session));
    }
    return nullptr;
}

void VideoSharingJoinSessionWindowController::selectionDidChange(TableViewProtocol& table) {
    selectSession(table.selectedRow());
}

void VideoSharingJoinSessionWindowController::selectSession(std::int64_t atRow) {
    selectedSession_.reset();
    // Past the end: a row of sessions that have gone meanwhile.
    if (atRow >= 0 && static_cast<std::size_t>(atRow) < sessions_.size()) {
        selectedSession_ = sessions_[static_cast<std::size_t>(atRow)];
    }
    const auto button = joinSessionButton_.lock();
    if (button && isOpen()) {
        button->setEnabled(selectedTeam_ && selectedSession_);
    }
}

// Joining.

void VideoSharingJoinSessionWindowController::joinSession(const std::shared_ptr<HostObject>& sender) {
    if (!selectedSession_ || !selectedTeam_) {
        return;
    }
    const auto session = *selectedSession_;
    const auto teamId = selectedTeam_->id;
    guarded(environment(), joinFunction, [&] { joinRemoteCodingSession(session, teamId); });
    guarded(environment(), joinFunction, [&] {
        environment().logManager.logUsage("SessionJoined", LogOpName::remoteCoding,
                                          {{"TeamId", teamId},
                                           {"VideoId", session.videoId()},
                                           {"Status", session.status()},
                                           {"UploadedDate", uploadedDateText(session)}});
    });
    close(sender);
}

void VideoSharingJoinSessionWindowController::joinRemoteCodingSession(const TevuRemoteCodingSession& session,
                                                                      const std::string& teamId) {
    const auto component = environment().componentLocator.remoteCodingComponent();
    if (!component) {
        logError(environment().logManager, "Failed to open a remote coding session.",
                 "The host has no remote coding component", joinFunction);
        return;
    }
    component->joinRemoteCodingSession(session.makeShareFile(environment().uuids), streamName(session),
                                       session.videoId(), teamId, session.taggingSessionId());
}

std::string
VideoSharingJoinSessionWindowController::streamName(const TevuRemoteCodingSession& session) const {
    const auto& streams = session.streams();
    if (streams && !streams->empty() && streams->front().name) {
        return *streams->front().name;
    }
    return localized(environment(), "Unknown", "No value has been returned for the feed");
}

std::string
VideoSharingJoinSessionWindowController::uploadedDateText(const TevuRemoteCodingSession& session) const {
    return environment().windowing.mediumDateShortTime(session.uploadedDate());
}

}  // namespace RemoteCoding
