#pragma once

#include "Components/RemoteCoding/HostInterfaces/SynchronisationObserverProtocol.hpp"
#include "ReferenceHost/Trace.hpp"

#include <cstdint>
#include <string>
#include <utility>

namespace ReferenceHost {

/// Writes what a host's synchronisers do into the trace.
class TracingObserver final : public RemoteCoding::SynchronisationObserverProtocol {
public:
    /// The trace outlives this object.
    TracingObserver(std::string host, Trace& trace) : host_(std::move(host)), trace_(trace) {}

    void blockDidStart(const std::string& timelineId, std::uint64_t number,
                       RemoteCoding::SynchronisationBlock kind) override;
    void blockDidEnd(const std::string& timelineId, std::uint64_t number) override;
    void lastModifyCountDidChange(const std::string& timelineId, std::int64_t oldCount, std::int64_t newCount,
                                  RemoteCoding::ModifyCountReason reason) override;
    void uploadDidStart(const std::string& timelineId, std::uint64_t number, std::int64_t firstModifyCount,
                        std::int64_t lastModifyCount) override;
    void uploadDidEnd(const std::string& timelineId, std::uint64_t number, bool succeeded) override;

private:
    std::string host_;
    Trace& trace_;
};

}  // namespace ReferenceHost
