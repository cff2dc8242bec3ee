#pragma once

#include "Base/Export.hpp"

#include <cstdint>
#include <string>

namespace RemoteCoding {

/// The kinds of work that a synchroniser does one at a time.
enum class SynchronisationBlock : std::uint8_t {
    upload,        ///< sends what the user changed
    pull,          ///< fetches the whole remote session and applies it
    event,         ///< applies one change of somebody else
    reconnection,  ///< one attempt to catch up in both directions after the subscription failed
};

/// Why `lastModifyCount`, the count up to which the remote side is known to hold the timeline's changes, was written.
enum class ModifyCountReason : std::uint8_t { uploaded, applied };

/// Looks over a synchroniser's shoulder: for a host's diagnostics and for tests. Main thread only. It must not call the
/// component and must not throw.
class REMOTE_CODING_EXPORT SynchronisationObserverProtocol {
public:
    virtual ~SynchronisationObserverProtocol() = default;

    /// Block `number` (1 for the first of this synchroniser, in the order of submission) starts to run.
    virtual void blockDidStart(const std::string& timelineId, std::uint64_t number,
                               SynchronisationBlock kind) = 0;

    /// Block `number` has ended, its asynchronous work included.
    virtual void blockDidEnd(const std::string& timelineId, std::uint64_t number) = 0;

    virtual void lastModifyCountDidChange(const std::string& timelineId, std::int64_t oldCount,
                                          std::int64_t newCount, ModifyCountReason reason) = 0;

    /// Upload `number` (1 for the first of this synchroniser) has found something to send: the changes of these modify counts,
    /// both included. Uploads that remote changes started overlap with others.
    virtual void uploadDidStart(const std::string& timelineId, std::uint64_t number,
                                std::int64_t firstModifyCount, std::int64_t lastModifyCount) {
        static_cast<void>(timelineId);
        static_cast<void>(number);
        static_cast<void>(firstModifyCount);
        static_cast<void>(lastModifyCount);
    }

    /// Upload `number` has ended. When it has not succeeded, what its failed step and the steps behind it were to send is not sent.
    virtual void uploadDidEnd(const std::string& timelineId, std::uint64_t number, bool succeeded) {
        static_cast<void>(timelineId);
        static_cast<void>(number);
        static_cast<void>(succeeded);
    }
};

}  // namespace RemoteCoding
