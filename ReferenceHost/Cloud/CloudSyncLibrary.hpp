#pragma once

#include "Components/RemoteCoding/HostInterfaces/SyncLibraryProtocol.hpp"

#include <memory>
#include <utility>

namespace ReferenceHost {

class CloudConnection;

/// The sync library for `ReferenceHost::Timeline`s, over one host's connection.
class CloudSyncLibrary final : public RemoteCoding::SyncLibraryProtocol {
public:
    explicit CloudSyncLibrary(std::shared_ptr<CloudConnection> connection)
        : connection_(std::move(connection)) {}

    [[nodiscard]] std::shared_ptr<RemoteCoding::TaggingSessionServiceProtocol>
    makeTaggingSessionService() override;
    [[nodiscard]] std::shared_ptr<const RemoteCoding::MomentItem>
    momentItem(const RemoteCoding::Moment& moment) const override;
    [[nodiscard]] std::optional<RemoteCoding::PresentationViewItem>
    presentationViewItem(const RemoteCoding::PresentationView& presentationView) const override;

private:
    std::shared_ptr<CloudConnection> connection_;
};

}  // namespace ReferenceHost
