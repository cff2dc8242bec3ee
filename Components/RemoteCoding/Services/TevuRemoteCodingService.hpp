#pragma once

#include "Base/Completion.hpp"
#include "Components/RemoteCoding/HostInterfaces/TevuGraphQLClientProtocol.hpp"

#include <memory>
#include <string>

namespace RemoteCoding {

/// The cloud service as the component's own parts see it.
class TevuRemoteCodingServiceProtocol {
public:
    virtual ~TevuRemoteCodingServiceProtocol() = default;

    /// Any thread. What the service knows of the video now: one answer, from any thread.
    virtual void getVideo(const std::string& videoId, Base::Completion<VideoItem> completion) = 0;
};

/// Holds the host's client of the cloud service for all who look up videos and sessions. Any thread.
class TevuRemoteCodingService final : public TevuRemoteCodingServiceProtocol {
public:
    explicit TevuRemoteCodingService(std::shared_ptr<TevuGraphQLClientProtocol> tevuGraphQLClient);

    /// The process-wide service, built on first use around the installed host's client and kept until the host is
    /// uninstalled. Throws `std::logic_error` before a host is installed.
    [[nodiscard]] static std::shared_ptr<TevuRemoteCodingService> shared();

    [[nodiscard]] const std::shared_ptr<TevuGraphQLClientProtocol>& tevuGraphQLClient() const {
        return tevuGraphQLClient_;
    }

    void getVideo(const std::string& videoId, Base::Completion<VideoItem> completion) override;

private:
    const std::shared_ptr<TevuGraphQLClientProtocol> tevuGraphQLClient_;
};

}  // namespace RemoteCoding
