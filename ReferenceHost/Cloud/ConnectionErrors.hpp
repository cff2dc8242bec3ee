#pragma once

#include "Components/RemoteCoding/HostInterfaces/TevuAPIError.hpp"

#include <exception>
#include <optional>

namespace ReferenceHost {

[[nodiscard]] inline std::exception_ptr connectionLost() {
    return std::make_exception_ptr(RemoteCoding::TevuAPIError(
        RemoteCoding::TevuAPIError::Case::noConnection, "The connection to the cloud service was lost",
        std::nullopt, "Check your internet connection and try again."));
}

[[nodiscard]] inline std::exception_ptr connectionClosed() {
    return std::make_exception_ptr(RemoteCoding::TevuAPIError(RemoteCoding::TevuAPIError::Case::noConnection,
                                                              "The client of the cloud service is closed"));
}

/// What a call answers that is made to fail by a fault.
[[nodiscard]] inline std::exception_ptr requestFailed() {
    return std::make_exception_ptr(RemoteCoding::TevuAPIError(
        RemoteCoding::TevuAPIError::Case::service, "The cloud service could not carry out the request", 500));
}

[[nodiscard]] inline std::exception_ptr notSignedIn() {
    return std::make_exception_ptr(RemoteCoding::TevuAPIError(RemoteCoding::TevuAPIError::Case::notSignedIn,
                                                              "You are not signed in", std::nullopt,
                                                              "Sign in again."));
}

[[nodiscard]] inline std::exception_ptr noSuchVideo() {
    return std::make_exception_ptr(RemoteCoding::TevuAPIError::Video(
        RemoteCoding::TevuAPIError::Video::Case::notFound, "The video does not exist"));
}

}  // namespace ReferenceHost
