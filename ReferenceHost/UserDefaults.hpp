#pragma once

#include "Components/RemoteCoding/HostInterfaces/UserDefaultsProtocol.hpp"
#include "ReferenceHost/Timeline/CallRecorder.hpp"

#include <exception>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace ReferenceHost {

/// Settings that last as long as the object. Main thread only.
class UserDefaults final : public RemoteCoding::UserDefaultsProtocol {
public:
    explicit UserDefaults(CallRecorder recordCall = {}) : recordCall_(std::move(recordCall)) {}

    [[nodiscard]] std::optional<bool> boolForKey(const std::string& key) const override;

    /// Absent removes the value.
    void setBool(const std::string& key, std::optional<bool> value);

    std::exception_ptr fault;  ///< set: every look-up throws it

private:
    CallRecorder recordCall_;
    std::map<std::string, bool> values_;
};

}  // namespace ReferenceHost
