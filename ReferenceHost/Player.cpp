#include "ReferenceHost/Player.hpp"

#include "Components/RemoteCoding/HostInterfaces/RemoteCodingComponentProtocol.hpp"
#include "ReferenceHost/Host.hpp"

#include <utility>

namespace ReferenceHost {

std::shared_ptr<Player> Player::make(Host& host, std::string timelineId, std::string videoId,
                                     PlayerSettings settings) {
    return std::shared_ptr<Player>(
        new Player(host, std::move(timelineId), std::move(videoId), std::move(settings)));
}

Player::Player(Host& host, std::string timelineId, std::string videoId, PlayerSettings settings)
    : host_(host),
      timelineId_(std::move(timelineId)),
      videoId_(std::move(videoId)),
      settings_(std::move(settings)) {}

std::shared_ptr<RemoteCoding::RemoteCodingComponentProtocol> Player::component() const {
    return host_.locator().remoteCodingComponent();
}

bool Player::isPlaying() const {
    return phase_ == Phase::playing && host_.timelines().showsLiveShare(timelineId_);
}

void Player::start() {
    stop();
    phase_ = Phase::asking;
    isWaiting_ = isPaused_ = hangs_ = false;
    fragments_ = 0;
    manifestURL_.reset();
    streamURLs_.clear();
    failure_ = nullptr;
    askForManifest();
}

void Player::stop() {
    ++run_;
    phase_ = Phase::stopped;
}

// ---- what it asks before it plays ----

template <typename Value>
Base::Completion<Value> Player::answered(void (Player::*next)(Value)) {
    return [weakSelf = weak_from_this(), run = run_, next](Base::Result<Value> answer) {
        const auto self = weakSelf.lock();
        if (!self || self->run_ != run) {
            return;
        }
        if (answer.succeeded()) {
            (self.get()->*next)(std::move(answer).value());
        } else {
            self->failure_ = answer.error();
            self->stop();
        }
    };
}

void Player::askForManifest() {
    const auto component = this->component();
    if (!settings_.asksForManifest || !component) {
        askForStreams();
        return;
    }
    component->getManifestURL(timelineId_, videoId_, answered(&Player::manifestArrived));
}

void Player::manifestArrived(std::optional<std::string> url) {
    manifestURL_ = std::move(url);
    if (manifestURL_) {
        askForStreams();
    } else {
        stop();
    }
}

void Player::askForStreams() {
    const auto component = this->component();
    if (settings_.streamIds.empty() || !component) {
        play();
        return;
    }
    component->streamURLs(videoId_, settings_.streamIds, answered(&Player::streamsArrived));
}

void Player::streamsArrived(std::map<std::string, Base::URL> urls) {
    streamURLs_ = std::move(urls);
    play();
}

// ---- playing ----

void Player::play() {
    phase_ = Phase::playing;
    lookLater();
}

void Player::lookLater() {
    host_.execution().postToMainAfter(settings_.fragmentLength, [weakSelf = weak_from_this(), run = run_] {
        const auto self = weakSelf.lock();
        if (self && self->run_ == run) {
            self->look();
        }
    });
}

void Player::look() {
    if (!isPlaying()) {
        stop();
        return;
    }
    if (!hangs_ && !isPaused_) {
        report(host_.cloudClient().stream(videoId_));
    }
    if (phase_ == Phase::playing) {
        lookLater();
    }
}

void Player::report(StreamState stream) {
    const auto component = this->component();
    if (stream == StreamState::over) {
        stop();
        if (component) {
            component->fragmentDownloadComplete(timelineId_);
        }
        host_.timelines().completeLiveShare(timelineId_);
    } else if (stream != StreamState::flowing) {
        if (!std::exchange(isWaiting_, true) && component) {
            component->fragmentDownloadPaused(nullptr, timelineId_);
        }
    } else {
        ++fragments_;
        const bool hasWaited = std::exchange(isWaiting_, false);
        if (component && hasWaited) {
            component->fragmentDownloadResumed(timelineId_);
        } else if (component) {
            component->fragmentDownloaded(timelineId_);
        }
    }
}

void Player::pause(const std::exception_ptr& error) {
    if (!isPlaying()) {
        return;
    }
    isPaused_ = true;
    const bool isKnown = std::exchange(isWaiting_, true) && !error;
    const auto component = this->component();
    if (component && !isKnown) {
        component->fragmentDownloadPaused(error, timelineId_);
    }
}

void Player::failDownload(const std::exception_ptr& error) {
    const auto component = this->component();
    if (isPlaying() && component) {
        component->fragmentDownloadDidError(error, timelineId_);
    }
}

}  // namespace ReferenceHost
