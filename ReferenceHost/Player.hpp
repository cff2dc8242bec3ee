#pragma once

#include "Base/Completion.hpp"
#include "Base/ExecutionProtocol.hpp"
#include "Base/URL.hpp"
#include "ReferenceHost/Cloud/VideoRecord.hpp"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace RemoteCoding {
class RemoteCodingComponentProtocol;
}

namespace ReferenceHost {

class Host;

struct PlayerSettings {
    Base::Seconds fragmentLength{4};  ///< from one fragment to the next
    bool asksForManifest = true;      ///< and does not play before it has its URL
    std::vector<std::string>
        streamIds{};  ///< whose URLs it asks for before it plays, after the manifest; none by default
};

/// Plays the live share of a timeline: looks once for each fragment whether the stream comes in, and tells the host's remote coding
/// component what there is to tell.
///
///     the stream flows               `fragmentDownloaded`, or `fragmentDownloadResumed` after a pause
///     it does not, or the link is down   `fragmentDownloadPaused` without an error, once
///     it is over                     `fragmentDownloadComplete`; then the live share is complete, and the player stops
///
/// It stops without a word when its timeline shows no live share any more.
///
/// Threads: main thread only. While it plays there is always a job to come, so that virtual time is never idle; it does nothing
/// until `start`.
///
/// Ownership: the host outlives it; jobs and completions hold it weakly.
class Player final : public std::enable_shared_from_this<Player> {
public:
    [[nodiscard]] static std::shared_ptr<Player> make(Host& host, std::string timelineId, std::string videoId,
                                                      PlayerSettings settings = {});

    /// Plays from now on; from the beginning, questions included, when it has been stopped.
    void start();
    void stop();

    // What can happen while it plays. Nothing happens when it does not.

    /// Looks for no fragment until `resume`, and tells the component so, if that does not know already that it waits; with an error
    /// something is wrong.
    void pause(const std::exception_ptr& error = nullptr);
    void resume() { isPaused_ = false; }

    /// A fragment could not be downloaded. It goes on with the next one.
    void failDownload(const std::exception_ptr& error);

    /// Hangs: neither looks nor tells of anything until it is over.
    void setHangs(bool hangs) { hangs_ = hangs; }

    /// The timeline shows its live share, and the player has what it asked for.
    [[nodiscard]] bool isPlaying() const;

    [[nodiscard]] std::size_t fragments() const { return fragments_; }  ///< told of since the start
    [[nodiscard]] const std::optional<std::string>& manifestURL() const { return manifestURL_; }
    [[nodiscard]] const std::map<std::string, Base::URL>& streamURLs() const { return streamURLs_; }

    /// Why it does not play although it was started: the error of a question, or null when there is no manifest either.
    [[nodiscard]] const std::exception_ptr& failure() const { return failure_; }

private:
    enum class Phase : std::uint8_t { stopped, asking, playing };

    Player(Host& host, std::string timelineId, std::string videoId, PlayerSettings settings);

    [[nodiscard]] std::shared_ptr<RemoteCoding::RemoteCodingComponentProtocol> component() const;
    template <typename Value>
    [[nodiscard]] Base::Completion<Value> answered(void (Player::*next)(Value));
    void askForManifest();
    void manifestArrived(std::optional<std::string> url);
    void askForStreams();
    void streamsArrived(std::map<std::string, Base::URL> urls);
    void play();
    void lookLater();
    void look();
    void report(StreamState stream);

    Host& host_;
    const std::string timelineId_;
    const std::string videoId_;
    const PlayerSettings settings_;

    Phase phase_ = Phase::stopped;
    std::uint64_t run_ = 0;   // rises with each start and stop; what belongs to an earlier one is void
    bool isWaiting_ = false;  // has told of a pause and not of its end
    bool isPaused_ = false;
    bool hangs_ = false;
    std::size_t fragments_ = 0;
    std::optional<std::string> manifestURL_;
    std::map<std::string, Base::URL> streamURLs_;
    std::exception_ptr failure_;
};

}  // namespace ReferenceHost
