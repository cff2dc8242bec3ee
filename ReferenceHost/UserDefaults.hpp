#pragma once

#include "Components/RemoteCoding/HostInterfaces/UserDefaultsProtocol.hpp"

#include <map>
#include <optional>
#include <string>

namespace ReferenceHost {

/// Settings that last as long as the object. Main thread only.
class UserDefaults final : public RemoteCoding::UserDefaultsProtocol {
public:
    [[nodiscard]] std::optional<bool> boolForKey(const std::string& key) const override;

    /// Absent removes the value.
    void setBool(const std::string& key, std::optional<bool> value);

private:
    std::map<std::string, bool> values_;
};

}  // namespace ReferenceHost
