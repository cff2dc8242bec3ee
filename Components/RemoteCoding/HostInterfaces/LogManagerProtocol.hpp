#pragma once

#include "Base/Export.hpp"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <variant>

namespace RemoteCoding {

/// The operation that a usage event belongs to.
enum class LogOpName : std::uint8_t { remoteCoding };

using UsageAttributes = std::map<std::string, std::variant<std::string, bool>>;

/// The host's log. Any thread, several at a time; must not call the component and must not throw.
class REMOTE_CODING_EXPORT LogManagerProtocol {
public:
    virtual ~LogManagerProtocol() = default;

    virtual void logInfo(std::string_view message) = 0;
    virtual void logWarn(std::string_view message) = 0;

    /// `detail`: the description of the error behind it, or empty. `file`: the source file, relative to the component's
    /// repository and without extension. `function`: the operation with its argument labels. The views are valid
    /// during the call only.
    virtual void logError(std::string_view message, std::string_view detail, std::string_view file,
                          std::string_view function, std::uint_least32_t line) = 0;

    /// One usage event: what a user did with the feature.
    virtual void logUsage(std::string_view functionName, LogOpName operation,
                          const UsageAttributes& attributes) = 0;
};

}  // namespace RemoteCoding
