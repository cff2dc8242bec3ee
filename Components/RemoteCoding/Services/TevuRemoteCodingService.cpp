#include "Components/RemoteCoding/Services/TevuRemoteCodingService.hpp"

#include "Components/RemoteCoding/Services/InstalledHost.hpp"

#include <utility>

namespace RemoteCoding {

TevuRemoteCodingService::TevuRemoteCodingService(std::shared_ptr<TevuGraphQLClientProtocol> tevuGraphQLClient)
    : tevuGraphQLClient_(std::move(tevuGraphQLClient)) {}

std::shared_ptr<TevuRemoteCodingService> TevuRemoteCodingService::shared() {
    return InstalledHost::remoteCodingService();
}

void TevuRemoteCodingService::getVideo(const std::string& videoId, Base::Completion<VideoItem> completion) {
    tevuGraphQLClient_->getVideo(videoId, std::move(completion));
}

}  // namespace RemoteCoding
