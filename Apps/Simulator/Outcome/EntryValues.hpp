#pragma once

#include <charconv>
#include <string_view>

namespace Simulator {

/// A number as the trace writes it; 0 for anything else.
template <typename Number>
Number number(std::string_view text) {
    Number value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

/// A call that writes clips or rows to the cloud.
[[nodiscard]] inline bool isWriteOfClipsOrRows(std::string_view name) {
    return name == "createMoments" || name == "updateMoments" || name == "removeMoments" ||
           name == "savePresentationView";
}

}  // namespace Simulator
