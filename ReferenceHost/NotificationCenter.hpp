#pragma once

#include "Components/RemoteCoding/HostInterfaces/NotificationCenterProtocol.hpp"
#include "ReferenceHost/Trace.hpp"

#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace ReferenceHost {

/// A host's notification centre. It holds observers until they are removed, but not the objects they are about: once such
/// an object is gone, nothing is about it any more.
class NotificationCenter final : public RemoteCoding::NotificationCenterProtocol {
public:
    /// `trace` may be null; else it outlives this object.
    explicit NotificationCenter(std::string host = {}, Trace* trace = nullptr);
    ~NotificationCenter() override;

    [[nodiscard]] ObserverId addObserver(const std::string& name,
                                         std::shared_ptr<RemoteCoding::HostObject> object,
                                         Observer observer) override;
    void removeObserver(ObserverId observer) override;
    void post(const RemoteCoding::Notification& notification) override;

private:
    struct Registration;

    /// Of those that were added after `told`, and no later than `last`, the first that wants it: null when there is none. `told`
    /// becomes that one.
    [[nodiscard]] std::shared_ptr<const Registration>
    nextWanting(const RemoteCoding::Notification& notification, ObserverId& told, ObserverId last) const;
    void tell(const Registration& registration, const RemoteCoding::Notification& notification) noexcept;

    std::string host_;
    Trace* trace_;
    mutable std::mutex mutex_;                                           // guards what follows
    std::map<ObserverId, std::shared_ptr<Registration>> registrations_;  // ids rise: the order of adding
    ObserverId lastId_ = 0;
};

}  // namespace ReferenceHost
