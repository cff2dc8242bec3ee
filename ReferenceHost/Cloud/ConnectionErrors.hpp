#pragma once

#include "Base/Error.hpp"

#include <exception>

namespace ReferenceHost {

[[nodiscard]] inline std::exception_ptr connectionLost() {
    return std::make_exception_ptr(Base::DescribedError("The connection to the cloud service was lost.",
                                                        "Check your internet connection and try again."));
}

[[nodiscard]] inline std::exception_ptr connectionClosed() {
    return std::make_exception_ptr(Base::DescribedError("The client of the cloud service is closed."));
}

/// What a call answers that is made to fail by a fault.
[[nodiscard]] inline std::exception_ptr requestFailed() {
    return std::make_exception_ptr(
        Base::DescribedError("The cloud service could not carry out the request."));
}

}  // namespace ReferenceHost
