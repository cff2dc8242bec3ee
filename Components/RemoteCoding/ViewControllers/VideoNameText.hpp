#pragma once

#include <string>
#include <string_view>

namespace RemoteCoding {

/// What becomes of a video name that a user has typed.
struct VideoNameText {
    explicit VideoNameText(std::string_view typed);

    std::string text;             ///< what the name may be
    bool wasCut;                  ///< it had more than `Limits::videoNameCharacters`
    bool hadForbiddenCharacters;  ///< what was left of it held colons or line feeds
};

}  // namespace RemoteCoding
