#pragma once

#include "Base/Export.hpp"

#include <string>

namespace RemoteCoding {

/// Makes identifiers.
class REMOTE_CODING_EXPORT UUIDSourceProtocol {
public:
    virtual ~UUIDSourceProtocol() = default;

    /// Any thread. The string form of a new random UUID (RFC 9562, version 4); never one given before.
    [[nodiscard]] virtual std::string makeUUID() = 0;
};

}  // namespace RemoteCoding
