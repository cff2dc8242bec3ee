#pragma once

#include "Components/RemoteCoding/HostInterfaces/TaggingSessionModel.hpp"
#include "Components/RemoteCoding/HostInterfaces/TaggingSessionServiceProtocol.hpp"

#include <memory>
#include <optional>

namespace RemoteCoding {

/// The sync library: makes tagging-session services and reads what the GraphQL client fetched.
class REMOTE_CODING_EXPORT SyncLibraryProtocol {
public:
    virtual ~SyncLibraryProtocol() = default;

    /// Main thread. A service of its own for each synchronised timeline. Never null.
    [[nodiscard]] virtual std::shared_ptr<TaggingSessionServiceProtocol> makeTaggingSessionService() = 0;

    /// Main thread. The moment in readable form; null when it cannot be read: it is then left
    /// out, and a clip that stands for it is taken away by a fetch.
    [[nodiscard]] virtual std::shared_ptr<const MomentItem> momentItem(const Moment& moment) const = 0;

    /// Main thread. The view in readable form; absent when it cannot be read.
    [[nodiscard]] virtual std::optional<PresentationViewItem>
    presentationViewItem(const PresentationView& presentationView) const = 0;
};

}  // namespace RemoteCoding
