#pragma once

#include "Base/Export.hpp"

namespace RemoteCoding {

/// Base of the host's reference-counted objects that travel as the object of a notification or as an opaque handle.
class REMOTE_CODING_EXPORT HostObject {
public:
    virtual ~HostObject() = default;

protected:
    HostObject() = default;
    HostObject(const HostObject&) = default;
    HostObject& operator=(const HostObject&) = default;
};

}  // namespace RemoteCoding
