#pragma once

#include "Base/Export.hpp"

#include <optional>
#include <string>

namespace RemoteCoding {

/// The host's settings. Main thread only. A missing value, and one that cannot be read, count as false.
class REMOTE_CODING_EXPORT UserDefaultsProtocol {
public:
    virtual ~UserDefaultsProtocol() = default;

    [[nodiscard]] virtual std::optional<bool> boolForKey(const std::string& key) const = 0;
};

/// The settings that the component reads.
namespace UserDefaultsKeys {

/// Sessions share their timelines. Read when a session is created or joined.
inline constexpr const char* enableSharedTimelines = "enableSharedTimelines";

/// Feeds that only the enhanced capture can publish are not offered. Read when the feeds are listed.
inline constexpr const char* disableEnhancedCapture = "disableEnhancedCapture";

}  // namespace UserDefaultsKeys

}  // namespace RemoteCoding
