#pragma once

#include "Components/RemoteCoding/Models/TevuRemoteCodingSession.hpp"
#include "Components/RemoteCoding/ViewControllers/SessionWindowController.hpp"
#include "Components/RemoteCoding/ViewModel/VideoSharingJoinSessionViewModel.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace RemoteCoding {

/// The window in which a user sees the live sessions of a team and joins one.
class VideoSharingJoinSessionWindowController final : public SessionWindowController {
public:
    [[nodiscard]] static std::shared_ptr<VideoSharingJoinSessionWindowController>
    make(HostEnvironment& environment, std::shared_ptr<TevuRemoteCodingService> service);

    [[nodiscard]] std::size_t
    numberOfRowsInTableView(const std::shared_ptr<TableViewProtocol>& tableView) override;

private:
    using Sessions = std::vector<TevuRemoteCodingSession>;

    VideoSharingJoinSessionWindowController(HostEnvironment& environment,
                                            std::shared_ptr<TevuRemoteCodingService> service);
    void connectOutlets();

    void act(const std::string& action, const std::shared_ptr<ViewProtocol>& sender) override;
    [[nodiscard]] std::shared_ptr<ViewProtocol> makeCell(TableViewProtocol& table, const std::string& column,
                                                         std::size_t row) override;
    void selectionDidChange(TableViewProtocol& table) override;
    void load() override;
    void teamsDidArrive() override;

    void teamSelected();
    void selectTeam(std::optional<TeamSummary> team);
    void refreshSessions();
    [[nodiscard]] Base::Task<void> fetchSessions(TeamSummary team);
    void reloadSessions();
    void showUnableToFetchSessionsAlert();
    void selectSession(std::int64_t atRow);

    void joinSession(const std::shared_ptr<HostObject>& sender);
    void joinRemoteCodingSession(const TevuRemoteCodingSession& session, const std::string& teamId);
    [[nodiscard]] std::string streamName(const TevuRemoteCodingSession& session) const;
    [[nodiscard]] std::string uploadedDateText(const TevuRemoteCodingSession& session) const;

    VideoSharingJoinSessionViewModel viewModel_;
    std::weak_ptr<TableViewProtocol> sessionsTableView_;
    std::weak_ptr<ButtonProtocol> joinSessionButton_;
    Sessions sessions_;  // of the reply that came last
    std::optional<TevuRemoteCodingSession> selectedSession_;
    std::optional<TeamSummary> selectedTeam_;  // whose sessions are asked for
};

}  // namespace RemoteCoding
