#pragma once

#include "Base/Export.hpp"
#include "Components/RemoteCoding/HostInterfaces/HostEnvironment.hpp"
#include "Components/RemoteCoding/HostInterfaces/TevuGraphQLClientProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/TimelineProtocol.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>

/// What the benchmarks call of the component's private parts. The component and this folder are one shared object, the benchmarks
/// and the reference host are the program: so that whoever counts instructions knows which side each of them belongs to.
namespace Benchmarks {

/// One synchroniser. Each operation is one call of the component.
class Synchroniser {
public:
    Synchroniser() = default;
    virtual ~Synchroniser() = default;
    Synchroniser(const Synchroniser&) = delete;
    Synchroniser& operator=(const Synchroniser&) = delete;

    /// Fetches and applies the whole session.
    virtual void pull(std::function<void(bool)> completion) = 0;

    /// One event of the subscription.
    virtual void receive(RemoteCoding::TaggingSessionChangeType type,
                         const RemoteCoding::ChangedTaggingSession& change) = 0;

    virtual void apply(const std::shared_ptr<RemoteCoding::TimelineProtocol>& timeline,
                       const std::optional<RemoteCoding::PresentationViewItem>& view) = 0;

    /// A pass of the upload, by itself and as a block of the queue.
    virtual void upload() = 0;
    virtual void uploadInABlock() = 0;
};

struct SynchroniserIds {
    std::string timeline;
    std::string team;
    std::string user;
    std::string video;
    std::string taggingSession;
};

[[nodiscard]] REMOTE_CODING_EXPORT std::unique_ptr<Synchroniser>
makeSynchroniser(RemoteCoding::HostEnvironment& environment, const SynchroniserIds& ids,
                 std::shared_ptr<RemoteCoding::TaggingSessionServiceProtocol> service,
                 std::shared_ptr<RemoteCoding::GraphQLTaggingSessionProtocol> client);

}  // namespace Benchmarks
