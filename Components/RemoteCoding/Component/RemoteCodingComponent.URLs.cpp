// The addresses under which a player finds a live video.

#include "Components/RemoteCoding/Component/RemoteCodingComponent.hpp"

#include "Components/RemoteCoding/Component/RemoteCodingComponent.StreamAddresses.hpp"
#include "Components/RemoteCoding/Models/MainThreadTask.hpp"
#include "Components/RemoteCoding/Models/RemoteCodingSession.hpp"
#include "Components/RemoteCoding/Services/VideoRequest.hpp"

#include <utility>

namespace RemoteCoding {

namespace {

using StreamAddresses::ManifestURL;
using StreamAddresses::manifestURLOf;
using StreamAddresses::streamsFunction;
using StreamAddresses::StreamURLs;
using StreamAddresses::streamURLsOf;
using VideoHandler = std::function<void(const Base::Result<VideoItem>&)>;

constexpr std::string_view manifestFunction = "getManifestURL(timelineId:videoId:)";

template <typename Value, typename Work>
Base::Result<Value> resultOf(const Work& work) {
    try {
        return work();
    } catch (...) {
        return Base::Result<Value>::failure(std::current_exception());
    }
}

template <typename Value>
void complete(HostEnvironment& environment, std::string_view function,
              const Base::Completion<Value>& completion, Base::Result<Value> result) {
    if (completion) {
        guarded(environment, function, [&] { completion(std::move(result)); });
    }
}

Base::Task<void> fetchVideo(HostEnvironment* environment, std::shared_ptr<TevuRemoteCodingService> service,
                            std::string videoId, VideoHandler handler) {
    VideoRequest request(environment->execution, std::move(service), std::move(videoId));
    const Base::Result<VideoItem> video = co_await request;
    handler(video);
}

/// Asks for the video; the answer, or the failure to get one, is handled on the main thread. A host that takes no more jobs
/// loses the handler, and the completion in it, without a call.
void startFetching(HostEnvironment& environment, const std::shared_ptr<TevuRemoteCodingService>& service,
                   const std::string& videoId, std::string_view function, VideoHandler handler) {
    startOnMainThread(environment, function, fetchVideo(&environment, service, videoId, std::move(handler)));
}

}  // namespace

void RemoteCodingComponent::getManifestURL(const std::string& timelineId, const std::string& videoId,
                                           Base::Completion<ManifestURL> completion) {
    checkIsMainThread(environment_, manifestFunction);
    const auto session = this->session(timelineId);
    if (!session) {
        guarded(environment_, manifestFunction, [&] {
            environment_.execution.postToMain([&environment = environment_,
                                               completion = std::move(completion)] {
                complete<ManifestURL>(environment, manifestFunction, completion, ManifestURL(std::nullopt));
            });
        });
        return;
    }
    // The session may end meanwhile: it gets its address all the same, and nobody is told.
    auto handler = [&environment = environment_, weakSelf = weak_from_this(), session,
                    completion = std::move(completion)](const Base::Result<VideoItem>& video) {
        auto manifestURL = resultOf<ManifestURL>([&] { return manifestURLOf(video.value()); });
        if (manifestURL.succeeded()) {
            session->manifestURL = manifestURL.value();
            const auto self = weakSelf.lock();
            if (self && session->manifestURL) {
                self->postSessionUpdate(session->timelineId);
            }
        }
        complete(environment, manifestFunction, completion, std::move(manifestURL));
    };
    startFetching(environment_, remoteCodingService_, videoId, manifestFunction, std::move(handler));
}

void RemoteCodingComponent::streamURLs(const std::string& videoId, const std::vector<std::string>& streamIds,
                                       Base::Completion<StreamURLs> completion) {
    checkIsMainThread(environment_, streamsFunction);
    auto handler = [&environment = environment_, streamIds,
                    completion = std::move(completion)](const Base::Result<VideoItem>& video) {
        complete(environment, streamsFunction, completion, resultOf<StreamURLs>([&] {
                     return streamURLsOf(video.value(), streamIds, environment.logManager);
                 }));
    };
    startFetching(environment_, remoteCodingService_, videoId, streamsFunction, std::move(handler));
}

}  // namespace RemoteCoding
