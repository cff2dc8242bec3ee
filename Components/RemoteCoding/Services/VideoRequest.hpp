#pragma once

#include "Base/Await.hpp"
#include "Components/RemoteCoding/Services/TevuRemoteCodingService.hpp"

#include <exception>
#include <memory>
#include <string>
#include <utility>

namespace RemoteCoding {

/// The cloud's record of a video, to be awaited from any home. The client is called in the background, so that one that
/// takes its time before it returns holds up nobody on the main thread.
class VideoRequest : public Base::CompletionCall<VideoItem> {
public:
    VideoRequest(Base::ExecutionProtocol& execution, std::shared_ptr<TevuRemoteCodingService> service,
                 std::string videoId)
        : CompletionCall([&execution, service = std::move(service),
                          videoId = std::move(videoId)](const Base::Completion<VideoItem>& done) {
              execution.postToBackground([service, videoId, done] {
                  try {
                      service->getVideo(videoId, done);
                  } catch (...) {
                      done(Base::Result<VideoItem>::failure(std::current_exception()));
                  }
              });
          }) {}
};

}  // namespace RemoteCoding
