#include "ReferenceHost/Cloud/CloudSyncLibrary.hpp"

#include "ReferenceHost/Cloud/CloudConnection.hpp"
#include "ReferenceHost/Cloud/CloudMomentItem.hpp"
#include "ReferenceHost/Cloud/CloudTaggingSessionService.hpp"

namespace ReferenceHost {

std::shared_ptr<RemoteCoding::TaggingSessionServiceProtocol> CloudSyncLibrary::makeTaggingSessionService() {
    return std::make_shared<CloudTaggingSessionService>(connection_);
}

std::shared_ptr<const RemoteCoding::MomentItem>
CloudSyncLibrary::momentItem(const RemoteCoding::Moment& moment) const {
    const auto* fetched = dynamic_cast<const FetchedMoment*>(&moment);
    if (fetched == nullptr || !connection_->isReadable(fetched->moment()->id)) {
        return nullptr;
    }
    return std::make_shared<CloudMomentItem>(fetched->moment(), connection_->rules());
}

std::optional<RemoteCoding::PresentationViewItem>
CloudSyncLibrary::presentationViewItem(const RemoteCoding::PresentationView& presentationView) const {
    const auto* fetched = dynamic_cast<const FetchedPresentationView*>(&presentationView);
    if (fetched == nullptr) {
        return std::nullopt;
    }
    return presentationViewItemOf(*fetched->codes());
}

}  // namespace ReferenceHost
