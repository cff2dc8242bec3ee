#pragma once

#include "Components/RemoteCoding/HostInterfaces/HostEnvironment.hpp"
#include "Components/RemoteCoding/HostInterfaces/WindowLayout.hpp"

#include <optional>
#include <string_view>

namespace RemoteCoding {

/// The layout of that controller's window with its texts in the user's language; absent when there is none. Throws a
/// `Base::DescribedError` for one that cannot be read. Any thread.
[[nodiscard]] std::optional<WindowLayout> windowLayout(const HostEnvironment& environment,
                                                       std::string_view name);

}  // namespace RemoteCoding
