#pragma once

#include "Apps/Simulator/Picture.hpp"

namespace ReferenceHost {
class Timeline;
}

namespace Simulator {

/// What the timeline shows now.
[[nodiscard]] TimelinePicture pictureOf(const ReferenceHost::Timeline& timeline);

}  // namespace Simulator
