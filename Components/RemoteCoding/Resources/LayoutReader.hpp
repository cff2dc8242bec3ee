#pragma once

#include "Base/Result.hpp"
#include "Components/RemoteCoding/HostInterfaces/WindowLayout.hpp"

#include <string_view>

namespace RemoteCoding {

/// Reads a window layout from JSON; its texts are still keys of the string tables. Every member has the name of the field
/// that it fills, and those that say nothing may be left out; a text for people is an object of "text" and, for
/// translators, "comment". Refused are unknown members, wrong types, columns outside a table, two controls with one
/// outlet. The failure is a `Base::DescribedError` that names the place, for example "controls[2].kind".
[[nodiscard]] Base::Result<WindowLayout> readWindowLayout(std::string_view json);

}  // namespace RemoteCoding
