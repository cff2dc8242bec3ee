#include "ReferenceHost/Host.hpp"

#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/SeededRandom.hpp"

#include <utility>

namespace ReferenceHost {

using RemoteCoding::StreamingStatus;

namespace {

CloudClientSettings seeded(CloudClientSettings network, std::uint64_t seed, const std::string& host) {
    network.seed = SeededRandom::stream(seed, host + " network").next();
    return network;
}

StreamState streamStateOf(StreamingStatus status) {
    switch (status) {
    case StreamingStatus::starting:
        return StreamState::waiting;
    case StreamingStatus::live:
        return StreamState::flowing;
    case StreamingStatus::interrupted:
        return StreamState::interrupted;
    case StreamingStatus::stopped:
        break;
    }
    return StreamState::over;
}

}  // namespace

Host::Host(std::string name, ReportingExecution& execution, CloudService& service, Trace& trace,
           HostOptions options)
    : name_(std::move(name)),
      execution_(execution),
      trace_(trace),
      uuids_(SeededRandom::stream(options.seed, name_ + " identifiers").next()),
      logManager_(name_, &trace, std::move(options.logSink)),
      notificationCenter_(name_, &trace),
      userDefaults_(callRecorder()),
      account_(std::make_shared<Account>(execution, callRecorder())),
      windowing_(std::make_shared<HeadlessWindowing>(execution, notificationCenter_, name_, &trace,
                                                     options.languages)),
      timelines_(std::make_shared<TimelineComponent>(
          execution, notificationCenter_, *windowing_, [this] { return uuids_.makeUUID(); }, callRecorder())),
      capture_(
          std::make_shared<CaptureComponent>(execution, notificationCenter_, *windowing_, callRecorder())),
      cloudClient_(std::make_unique<CloudClient>(service, execution, trace, name_,
                                                 seeded(options.network, options.seed, name_))),
      observer_(name_, trace) {
    capture_->didEndCapturing = [this] { timelines_->setCapturingTimeline(std::nullopt); };
    capture_->willPublish = [this] { timelines_->beginPublishing(); };
    timelines_->lastWriter = [this] { return cloudClient_->lastWriter(); };
    capture_->didChangeStream = [this](const std::string& videoId, StreamingStatus status) {
        cloudClient_->publish(videoId, streamStateOf(status));
    };
    account_->didSignIn = [this](const std::string& userId) { cloudClient_->signIn(userId); };
    account_->didSignOut = [this] { cloudClient_->signOut(); };
    locator_.setTimelineComponent(timelines_);
    locator_.setCaptureComponent(capture_);
    userDefaults_.setBool(RemoteCoding::UserDefaultsKeys::enableSharedTimelines,
                          options.enableSharedTimelines);
    if (options.userId) {
        account_->signIn(*options.userId);
    }
    environment_.reset(new RemoteCoding::HostEnvironment{.execution = execution_,
                                                         .componentLocator = locator_,
                                                         .notificationCenter = notificationCenter_,
                                                         .userDefaults = userDefaults_,
                                                         .logManager = logManager_,
                                                         .account = *account_,
                                                         .graphQLClient = cloudClient_->graphQLClient(),
                                                         .syncLibrary = cloudClient_->syncLibrary(),
                                                         .teamService = cloudClient_->teamService(),
                                                         .windowing = *windowing_,
                                                         .uuids = uuids_,
                                                         .languages = std::move(options.languages),
                                                         .synchronisationObserver = &observer_,
                                                         .now = [&service] { return service.time(); }});
}

Host::~Host() { stop(); }

std::shared_ptr<Timeline> Host::startCapture(const std::string& title) {
    auto timeline = timelines_->openTimeline(title, uuids_.makeUUID());
    timelines_->setCapturingTimeline(timeline->uniqueId());
    capture_->startCapturing();
    return timeline;
}

void Host::stopCapture() { capture_->stopCapturing(); }

std::shared_ptr<Timeline> Host::openTimeline(const std::string& title) {
    return timelines_->openTimeline(title, uuids_.makeUUID());
}

CallRecorder Host::callRecorder() {
    return [this](const char* call, CallArguments arguments) {
        arguments.insert(arguments.begin(), {"name", call});
        trace_.record(name_, TraceKind::call, std::move(arguments));
    };
}

}  // namespace ReferenceHost
