#pragma once

#include <string_view>

namespace RemoteCoding {

/// What a window's title says of the video in it: the last component of a path, without its extension.
/// "/Videos/Derby.mp4" gives "Derby", "Derby" itself.
///
/// An extension is what follows the component's last dot, unless that is nothing, holds a space, or the dot leads the
/// component: "Rovers vs. United", "Derby." and ".derby" have none. Slashes at the end of the title do not count; a
/// title of slashes alone gives "/".
///
/// A view into the title.
[[nodiscard]] std::string_view videoNameFromTitle(std::string_view title);

}  // namespace RemoteCoding
