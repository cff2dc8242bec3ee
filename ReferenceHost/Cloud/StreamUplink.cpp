#include "ReferenceHost/Cloud/StreamUplink.hpp"

#include "ReferenceHost/Cloud/CloudVideos.hpp"

namespace ReferenceHost {

void StreamUplink::publish(const std::string& videoId, StreamState stream) {
    Base::synchronized(lock_, [&] {
        if (isLinkUp_) {
            videos_.setStream(videoId, stream);
        }
        if (isLinkUp_ && stream == StreamState::over) {
            streams_.erase(videoId);
        } else {
            streams_[videoId] = stream;
        }
    });
}

void StreamUplink::setLinkUp(bool up) {
    Base::synchronized(lock_, [&] {
        if (isLinkUp_ == up) {
            return;
        }
        isLinkUp_ = up;
        for (const auto& [videoId, stream] : streams_) {
            if (up || stream == StreamState::flowing) {
                videos_.setStream(videoId, up ? stream : StreamState::interrupted);
            }
        }
        if (up) {
            std::erase_if(streams_, [](const auto& entry) { return entry.second == StreamState::over; });
        }
    });
}

}  // namespace ReferenceHost
