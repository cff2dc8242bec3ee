#pragma once

#include "Components/RemoteCoding/HostInterfaces/PublishSession.hpp"
#include "Components/RemoteCoding/ViewControllers/SessionWindowController.hpp"
#include "Components/RemoteCoding/ViewModel/VideoSharingNewSessionViewModel.hpp"

#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace RemoteCoding {

/// The window in which a user who captures a game starts a session: a feed, a name for the video, a team.
///
/// The window closes as soon as the user asks for the session. What follows, up to any number of retries, goes on without
/// it and reads the controls of the closed window.
class VideoSharingNewSessionWindowController final : public SessionWindowController {
public:
    [[nodiscard]] static std::shared_ptr<VideoSharingNewSessionWindowController>
    make(HostEnvironment& environment);

    [[nodiscard]] std::size_t
    numberOfRowsInTableView(const std::shared_ptr<TableViewProtocol>& tableView) override;

private:
    using Feed = std::shared_ptr<CaptureDeviceProtocol>;

    explicit VideoSharingNewSessionWindowController(HostEnvironment& environment);
    void connectOutlets();

    void act(const std::string& action, const std::shared_ptr<ViewProtocol>& sender) override;
    void textDidChange(TextFieldProtocol& field) override;
    [[nodiscard]] std::shared_ptr<ViewProtocol> makeCell(TableViewProtocol& table, const std::string& column,
                                                         std::size_t row) override;
    void load() override;
    void teamPopUpDidFill() override;

    void checkSelectFeedCheckbox(const std::shared_ptr<ViewProtocol>& sender);
    void showDefaultVideoName();
    void showFeeds();
    void reloadFeeds();
    void beep();
    void updateCreateButtonState();

    void createNewSession(const std::shared_ptr<HostObject>& sender);
    [[nodiscard]] Base::Task<void> create(Feed feed, TeamSummary team);
    void startSession(const std::string& videoName, const std::shared_ptr<PublishSession>& publishSession,
                      const std::string& teamId, const Feed& feed);
    void showUnableToCreateSessionAlert();
    void showErrorAlert(const std::exception_ptr& error);

    VideoSharingNewSessionViewModel viewModel_;
    std::weak_ptr<TableViewProtocol> feedsToShareTableView_;
    std::weak_ptr<TextFieldProtocol> videoNameTextField_;
    std::weak_ptr<ButtonProtocol> createNewSessionButton_;
    std::vector<Feed> feeds_;
    Feed selectedFeed_;  // null: none
};

}  // namespace RemoteCoding
