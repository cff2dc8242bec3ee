#include "Components/RemoteCoding/ViewModel/VideoSharingJoinSessionViewModel.hpp"

#include "Base/Await.hpp"
#include "Base/CalendarDay.hpp"

#include <chrono>
#include <utility>

namespace RemoteCoding {

namespace {

using Sessions = std::vector<TevuRemoteCodingSession>;
using Time = Base::RFC3339::Time;
using Videos = std::vector<LiveStreamingVideoItem>;

Time presentTime(const HostEnvironment& environment) {
    return environment.now ? environment.now()
                           : std::chrono::floor<Time::duration>(std::chrono::system_clock::now());
}

bool canBeJoined(const TevuRemoteCodingSession& session) {
    return session.playbackURL().find("video.live.m3u8") != std::string::npos && !session.isDeleted() &&
           (session.status() == "LiveVideoReady" || session.status() == "Uploading");
}

Sessions liveSessions(const std::string& teamId, const Videos& videos) {
    Sessions sessions;
    for (const auto& video : videos) {
        auto session = TevuRemoteCodingSession::make(teamId, video);
        if (session && canBeJoined(*session)) {
            sessions.push_back(*std::move(session));
        }
    }
    return sessions;
}

// Without the view model: its window may be closed before the service answers.
Base::Task<Sessions> fetch(const HostEnvironment* environment,
                           std::shared_ptr<TevuGraphQLClientProtocol> client, std::string teamId) {
    const Time now = presentTime(*environment);
    const Time updatedAfter = Base::oneCalendarDayBefore(now).value_or(now);
    Base::CompletionCall<Videos> listing([client, teamId, updatedAfter](Base::Completion<Videos> done) {
        client->getVideosForTeamId(teamId, updatedAfter, std::move(done));
    });
    const Base::Result<Videos> videos = co_await listing;
    co_return liveSessions(teamId, videos.value());
}

}  // namespace

VideoSharingJoinSessionViewModel::VideoSharingJoinSessionViewModel(
    HostEnvironment& environment, std::shared_ptr<TevuRemoteCodingService> service)
    : environment_(environment), service_(std::move(service)) {}

Base::Task<Sessions> VideoSharingJoinSessionViewModel::fetchLiveSessions(TeamSummary team) const {
    return fetch(&environment_, service_->tevuGraphQLClient(), std::move(team.id));
}

}  // namespace RemoteCoding
