#pragma once

#include "Components/RemoteCoding/HostInterfaces/HostEnvironment.hpp"

#include <string>
#include <string_view>

namespace RemoteCoding {

/// A text of the component in the user's language, by its key, which is the English text. A text that is not translated
/// shows the key. Any thread.
///
/// `comment` tells translators where the text stands. Key and comment are written as literals: a check compares every call
/// with the string tables.
[[nodiscard]] std::string localized(const HostEnvironment& environment, std::string_view key,
                                    std::string_view comment);

}  // namespace RemoteCoding
