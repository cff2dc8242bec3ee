#pragma once

#include "Base/Synchronized.hpp"
#include "ReferenceHost/Cloud/VideoRecord.hpp"

#include <map>
#include <string>

namespace ReferenceHost {

class CloudVideos;

/// What one host publishes, as the service gets it over that host's link: at once, without latency. While the link is down its
/// streams are interrupted; what happens to them meanwhile the service learns when it is back.
///
/// Threads: any.
class StreamUplink {
public:
    explicit StreamUplink(CloudVideos& videos) : videos_(videos) {}

    void publish(const std::string& videoId, StreamState stream);
    void setLinkUp(bool up);

private:
    CloudVideos& videos_;
    Base::ObjectLock lock_;  // held while the videos are told, so that they hear everything in order
    bool isLinkUp_ = true;
    std::map<std::string, StreamState>
        streams_;  // those that are not over, and those whose end is not known yet
};

}  // namespace ReferenceHost
