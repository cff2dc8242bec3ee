#pragma once

#include "Components/RemoteCoding/HostInterfaces/LogManagerProtocol.hpp"

#include <source_location>
#include <string_view>

namespace RemoteCoding {

/// The name under which a source file stands in error lines: its path from the repository's root, without what follows
/// the first dot of the file name, so that every file of a class that is spread over several names the same source:
/// "/build/x/Components/RemoteCoding/Services/TimelineUploadService.Upload.cpp" gives
/// "Components/RemoteCoding/Services/TimelineUploadService".
[[nodiscard]] constexpr std::string_view sourceName(std::string_view path) noexcept {
    constexpr std::string_view root = "Components/RemoteCoding/";
    if (const auto start = path.rfind(root); start != std::string_view::npos) {
        path.remove_prefix(start);
    }
    const auto slash = path.rfind('/');
    const auto nameStart = slash == std::string_view::npos ? 0 : slash + 1;
    return path.substr(0, path.find('.', nameStart));
}

/// Writes an error line. Any thread. `function` is the operation with its argument labels, for
/// example "cacheInstances(instances:)"; `detail` is the description of the error behind it, or empty.
inline void logError(LogManagerProtocol& log, std::string_view message, std::string_view detail,
                     std::string_view function,
                     const std::source_location& location = std::source_location::current()) {
    log.logError(message, detail, sourceName(location.file_name()), function, location.line());
}

}  // namespace RemoteCoding
