#pragma once

#include "Base/Export.hpp"

namespace RemoteCoding {

/// Base of the host's reference-counted objects that travel as the object of a notification or as an opaque handle.
///
/// The component lets go of windows, views, sign-in coordinators and capture feeds on the main thread, if the host destroys
/// there the main thread's jobs that it does not run. Of all others, timelines, clients and services among them, the last
/// reference may go on any thread.
class REMOTE_CODING_EXPORT HostObject {
public:
    virtual ~HostObject() = default;

protected:
    HostObject() = default;
    HostObject(const HostObject&) = default;
    HostObject& operator=(const HostObject&) = default;
};

}  // namespace RemoteCoding
