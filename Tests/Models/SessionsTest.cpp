#include "Components/RemoteCoding/Models/RemoteCodingSession.hpp"
#include "Components/RemoteCoding/Models/TevuRemoteCodingSession.hpp"
#include "ReferenceHost/UUIDSource.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace {

using RemoteCoding::LiveStreamingVideoItem;
using RemoteCoding::LiveStreamingVideoStream;
using RemoteCoding::RemoteCodingSession;
using RemoteCoding::TevuRemoteCodingSession;

LiveStreamingVideoItem listedVideo() {
    return LiveStreamingVideoItem(
        "video", "Rovers vs. United", "https://example.org/live.m3u8", "Live", "2024-05-17T18:03:22.5+02:00",
        false, std::vector{LiveStreamingVideoStream("Main"), LiveStreamingVideoStream("Goal")},
        std::vector<std::string>{"session 1", "session 2"});
}

TEST(RemoteCodingSession, ItsDetailsNeverShowTheManifest) {
    RemoteCodingSession session("Match", {}, "timeline", "video", "team", true);
    session.manifestURL = "https://example.org/live.m3u8";
    EXPECT_FALSE(session.details().manifestURL);
}

TEST(TevuRemoteCodingSession, IsReadFromACompleteListingEntry) {
    const auto session = TevuRemoteCodingSession::make("team", listedVideo());

    ASSERT_TRUE(session);
    EXPECT_EQ(session->teamId(), "team");
    EXPECT_EQ(session->videoId(), "video");
    EXPECT_EQ(session->title(), "Rovers vs. United");
    EXPECT_EQ(session->playbackURL(), "https://example.org/live.m3u8");
    EXPECT_EQ(session->status(), "Live");
    EXPECT_EQ(session->uploadedDate(), Base::RFC3339::parse("2024-05-17T16:03:22.5Z"));
    EXPECT_FALSE(session->isDeleted());
    EXPECT_EQ(session->streams(), listedVideo().streams);
    EXPECT_EQ(session->taggingSessionId(), "session 1");
}

TEST(TevuRemoteCodingSession, NeedsPlaybackURLStatusStreamsAndCreationTime) {
    const std::vector<std::function<void(LiveStreamingVideoItem&)>> faults{
        [](auto& item) { item.playbackURL.reset(); },
        [](auto& item) { item.status.reset(); },
        [](auto& item) { item.streams.reset(); },
        [](auto& item) { item.createdAt = "2024-05-17 18:03:22"; },
        [](auto& item) { item.createdAt = ""; },
    };
    for (std::size_t index = 0; index < faults.size(); ++index) {
        auto item = listedVideo();
        faults[index](item);
        EXPECT_FALSE(TevuRemoteCodingSession::make("team", item)) << index;
    }
}

TEST(TevuRemoteCodingSession, PresentButEmptyIsNotAbsent) {
    auto item = listedVideo();
    item.playbackURL = "";
    item.status = "";
    item.streams->clear();
    item.taggingSessionIds->clear();
    item.isDeleted = true;

    auto session = TevuRemoteCodingSession::make("", item);
    ASSERT_TRUE(session);
    ASSERT_TRUE(session->streams());
    EXPECT_TRUE(session->streams()->empty());
    EXPECT_FALSE(session->taggingSessionId());
    EXPECT_TRUE(session->isDeleted());

    item.taggingSessionIds.reset();
    EXPECT_FALSE(TevuRemoteCodingSession::make("", item)->taggingSessionId());
    item.taggingSessionIds = {""};
    EXPECT_EQ(TevuRemoteCodingSession::make("", item)->taggingSessionId(), "");
}

TEST(TevuRemoteCodingSession, EachShareFileHasAnIdentifierOfItsOwn) {
    ReferenceHost::UUIDSource uuids(1);
    const auto session = TevuRemoteCodingSession::make("team", listedVideo());

    const auto file = session->makeShareFile(uuids);
    const auto other = session->makeShareFile(uuids);

    EXPECT_EQ(file.source, 0);
    EXPECT_EQ(file.video.name, "Rovers vs. United");
    EXPECT_FALSE(file.video.directory);
    EXPECT_FALSE(file.video.isDownloaded);
    EXPECT_TRUE(file.video.timelines.empty());
    ASSERT_EQ(file.video.streams.size(), 1U);
    const auto& stream = file.video.streams.front();
    EXPECT_EQ(stream.identifier, file.video.identifier);
    EXPECT_EQ(stream.title, "Rovers vs. United");
    EXPECT_EQ(stream.playbackURL, "https://example.org/live.m3u8");
    EXPECT_EQ(stream.path, "");
    EXPECT_EQ(file.video.identifier.size(), 36U);
    EXPECT_NE(other.video.identifier, file.video.identifier);
    EXPECT_EQ(other.video.streams.front().identifier, other.video.identifier);
}

}  // namespace
