#pragma once

#include "Components/RemoteCoding/HostInterfaces/CaptureComponentProtocol.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace RemoteCoding {

/// One angle that is to be published.
struct StreamAngle {
    explicit StreamAngle(std::string name_, std::uint8_t isPrimary_ = 1)
        : name(std::move(name_)), isPrimary(isPrimary_) {}

    std::string name;
    std::uint8_t isPrimary;  ///< 1: the video's main angle
};

/// What the service gives for publishing, as it answers: any of it may be missing.
struct Credentials {
    std::optional<std::string> accessKey;
    std::optional<std::string> secretKey;
    std::optional<std::string> sessionToken;
    std::optional<std::string> endpoint;
    std::optional<std::string> streamKey;
    std::optional<std::int64_t> expiresIn;  ///< seconds
};

/// The service's answer to the opening of a publish session.
struct PublishSessionSummary {
    std::string id;
    std::optional<std::string> region;
    std::optional<std::string> videoId;
    std::optional<std::vector<std::string>> mediaStreamIds;
    std::optional<Credentials> credentials;
};

/// What a capture needs for publishing: the fields of `Credentials`, all present.
struct PublishSessionCredentials {
    PublishSessionCredentials(std::string accessKey_, std::string secretKey_, std::string sessionToken_,
                              std::string endpoint_, std::string streamKey_, std::int64_t expiresIn_)
        : accessKey(std::move(accessKey_)),
          secretKey(std::move(secretKey_)),
          sessionToken(std::move(sessionToken_)),
          endpoint(std::move(endpoint_)),
          streamKey(std::move(streamKey_)),
          expiresIn(expiresIn_) {}

    std::string accessKey;
    std::string secretKey;
    std::string sessionToken;
    std::string endpoint;
    std::string streamKey;
    std::int64_t expiresIn;  ///< seconds
};

/// An opened publish session, complete. Does not change; any thread. What the component's own window passes to the capture is
/// one of these: cast to it for the credentials.
class REMOTE_CODING_EXPORT PublishSession final : public PublishSessionProtocol {
public:
    PublishSession(std::string id, std::string primaryMediaStreamId, PublishSessionCredentials credentials,
                   std::string region, std::string videoId, std::string videoName)
        : id_(std::move(id)),
          primaryMediaStreamId_(std::move(primaryMediaStreamId)),
          credentials_(std::move(credentials)),
          region_(std::move(region)),
          videoId_(std::move(videoId)),
          videoName_(std::move(videoName)) {}

    [[nodiscard]] const std::string& id() const { return id_; }
    [[nodiscard]] const std::string& primaryMediaStreamId() const { return primaryMediaStreamId_; }
    [[nodiscard]] const PublishSessionCredentials& credentials() const { return credentials_; }
    [[nodiscard]] const std::string& region() const { return region_; }
    [[nodiscard]] const std::string& videoId() const override { return videoId_; }
    [[nodiscard]] const std::string& videoName() const { return videoName_; }

private:
    std::string id_;
    std::string primaryMediaStreamId_;
    PublishSessionCredentials credentials_;
    std::string region_;
    std::string videoId_;
    std::string videoName_;
};

}  // namespace RemoteCoding
