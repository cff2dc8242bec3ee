#pragma once

#include <span>
#include <string_view>

namespace RemoteCoding {

/// One file of this folder, as it was when the library was built.
struct EmbeddedResource {
    std::string_view name;
    std::string_view contents;
};

/// The string tables and window layouts. Any thread.
[[nodiscard]] std::span<const EmbeddedResource> embeddedResources();

}  // namespace RemoteCoding
