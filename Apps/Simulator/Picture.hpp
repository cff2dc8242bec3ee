#pragma once

#include "Base/Color.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Simulator {

struct RowPicture {
    std::string id;
    std::string name;
    Base::Color color;

    friend bool operator==(const RowPicture&, const RowPicture&) = default;
};

struct ClipPicture {
    std::string instanceId;
    std::optional<std::string> momentId;  ///< absent: no moment is known to stand for it
    std::string rowId;
    std::string row;  ///< its name
    double start = 0;
    double end = 0;
    std::string notes;

    friend bool operator==(const ClipPicture&, const ClipPicture&) = default;
};

/// What one timeline shows at one moment.
struct TimelinePicture {
    std::vector<RowPicture> rows;  ///< from top to bottom
    std::vector<ClipPicture> clips;
    std::int64_t modifyCount = 0;
};

}  // namespace Simulator
