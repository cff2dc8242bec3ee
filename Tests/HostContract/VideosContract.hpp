#pragma once

#include "Tests/HostContract/CloudFixture.hpp"

#include <chrono>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// The contract of videos, publish sessions and teams as tests, for any host. Include this header in one source file of a test
/// program, derive a `CloudFixture`, and instantiate `VideosContract` with it.
namespace HostContract {

class VideosContract : public CloudContractTest {
protected:
    using Client = RemoteCoding::TevuGraphQLClientProtocol;
    using APIError = RemoteCoding::TevuAPIError;

    template <typename Value, typename Object, typename... Parameters, typename... Arguments>
    static Call<Value> ask(Object& object, void (Object::*operation)(Parameters...), Arguments... arguments) {
        const auto call = std::make_shared<Pending<Value>>();
        (object.*operation)(arguments...,
                            [call](Base::Result<Value> answer) { call->keep(std::move(answer)); });
        return call;
    }
    auto get(Analyst analyst, const std::string& videoId) {
        return ask<RemoteCoding::VideoItem>(host().graphQLClient(analyst), &Client::getVideo, videoId);
    }
    auto list(Analyst analyst, const std::string& teamId,
              std::chrono::sys_time<std::chrono::microseconds> updatedAfter = {}) {
        return ask<std::vector<RemoteCoding::LiveStreamingVideoItem>>(
            host().graphQLClient(analyst), &Client::getVideosForTeamId, teamId, updatedAfter);
    }
    auto open(Analyst analyst, const std::string& title) {
        const std::vector angles{RemoteCoding::StreamAngle("Main"), RemoteCoding::StreamAngle("Goal", 0)};
        return ask<RemoteCoding::PublishSessionSummary>(host().graphQLClient(analyst),
                                                        &Client::openPublishSession, team, title, angles);
    }
    auto fetchTeams(Analyst analyst, const std::vector<RemoteCoding::TevuFeaturePrivilege>& with) {
        return ask<std::vector<RemoteCoding::TeamSummary>>(
            host().teamService(analyst), &RemoteCoding::TevuTeamServiceProtocol::fetchTeams, with);
    }
    /// The day of a date and time of RFC 3339, in whichever offset that is.
    static std::optional<std::chrono::sys_days> dayOf(const std::string& dateTime) {
        std::istringstream text(dateTime);
        int year = 0;
        unsigned month = 0;
        unsigned day = 0;
        char separator = 0;
        if (!(text >> year >> separator >> month >> separator >> day)) {
            return std::nullopt;
        }
        const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(month),
                                               std::chrono::day(day)};
        return date.ok() ? std::optional(std::chrono::sys_days(date)) : std::nullopt;
    }
    template <typename Error, typename Value>
    static typename Error::Case errorCase(const Base::Result<Value>& result) {
        try {
            (void)result.value();
        } catch (const Error& error) {
            return error.errorCase();
        }
        throw std::logic_error("It has succeeded.");
    }
};

TEST_P(VideosContract, OpensAPublishSessionAsANewLiveVideoOfTheTeam) {
    const auto derby = wait(open(ann, "Derby")).value();
    const auto final = wait(open(ben, "Cup final")).value();
    ASSERT_TRUE(derby.region && derby.videoId && derby.mediaStreamIds && derby.credentials);
    const auto& [access, secret, token, endpoint, streamKey, expiresIn] = *derby.credentials;
    EXPECT_TRUE(access && secret && token && endpoint && streamKey && expiresIn);
    EXPECT_FALSE(derby.id == final.id || derby.videoId == final.videoId);

    const auto streams = wait(get(ben, *derby.videoId)).value().streams.value();
    ASSERT_EQ(streams.size(), 2U);
    EXPECT_TRUE(streams[0].playbackURL && streams[1].playbackURL);
    EXPECT_EQ((Ids{streams[0].id, streams[1].id}), derby.mediaStreamIds) << "One for each angle, in order.";

    const std::string session = wait(startCreateSession(ann, *derby.videoId)).value();
    const auto videos = wait(list(cleo, team)).value();
    ASSERT_EQ(videos.size(), 2U);
    const auto& listed = videos[videos[0].videoId == derby.videoId ? 0 : 1];
    EXPECT_EQ(listed.videoId, derby.videoId);
    EXPECT_EQ(listed.title, "Derby");
    EXPECT_EQ(listed.status, "LiveVideoReady");
    EXPECT_NE(listed.playbackURL.value().find("video.live.m3u8"), std::string::npos);
    EXPECT_EQ(listed.streams.value()[1].name, "Goal");
    EXPECT_EQ(listed.taggingSessionIds, Ids{session});
    const auto created = dayOf(listed.createdAt);
    ASSERT_TRUE(created) << listed.createdAt;
    EXPECT_EQ(wait(list(cleo, team, *created - std::chrono::days(2))).value().size(), 2U);
    EXPECT_TRUE(wait(list(cleo, team, *created + std::chrono::days(3))).value().empty());
    EXPECT_TRUE(wait(list(cleo, "another team")).value().empty());
    EXPECT_EQ(errorCase<APIError::Video>(wait(get(ann, "no such video"))), APIError::Video::Case::notFound);
}

TEST_P(VideosContract, GivesTheSignedInUserTheTeamsThatHaveAllThePrivileges) {
    using enum RemoteCoding::TevuFeaturePrivilege;
    host().addTeam("rovers", ann, {videoSharing, remoteCoding});
    host().addTeam("united", ann, {videoSharing});
    host().setSignedIn(ben, true);
    EXPECT_TRUE(wait(fetchTeams(ben, {})).value().empty());
    EXPECT_EQ(errorCase<APIError>(wait(fetchTeams(ann, {}))), APIError::Case::notSignedIn);
    host().setSignedIn(ann, true);
    EXPECT_EQ(wait(fetchTeams(ann, {})).value().size(), 2U);
    const auto teams = wait(fetchTeams(ann, {videoSharing, remoteCoding})).value();
    ASSERT_EQ(teams.size(), 1U);
    EXPECT_EQ(teams[0].id, "rovers");

    host().setSignedIn(ann, false);
    EXPECT_EQ(errorCase<APIError>(wait(fetchTeams(ann, {}))), APIError::Case::notSignedIn);
    EXPECT_TRUE(wait(fetchTeams(ben, {})).succeeded()) << "Only hers.";
    host().setSignedIn(ann, true);
    EXPECT_TRUE(wait(fetchTeams(ann, {})).succeeded());
}

TEST_P(VideosContract, AnswersOnceAndRepeatsNothing) {
    host().setLinkUp(ann, false);
    const auto got = get(ann, "video");
    const auto videos = list(ann, team);
    const auto opened = open(ann, "Derby");
    const auto teams = fetchTeams(ann, {});
    EXPECT_EQ((std::vector{errorCase<APIError>(wait(got)), errorCase<APIError>(wait(videos)),
                           errorCase<APIError>(wait(opened)), errorCase<APIError>(wait(teams))}),
              std::vector(4, APIError::Case::noConnection));
    host().setLinkUp(ann, true);
    host().settle();
    EXPECT_EQ(got->answers + videos->answers + opened->answers + teams->answers, 4);
    EXPECT_TRUE(wait(list(ann, team)).value().empty()) << "No video has been made.";
}

}  // namespace HostContract
