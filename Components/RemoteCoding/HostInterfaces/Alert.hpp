#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace RemoteCoding {

enum class AlertStyle : std::uint8_t { warning = 0, informational = 1, critical = 2 };

struct AlertButton {
    explicit AlertButton(std::string title_, bool isDestructive_ = false)
        : title(std::move(title_)), isDestructive(isDestructive_) {}

    std::string title;
    bool isDestructive;  ///< what it does cannot be taken back; toolkits mark such a button
};

/// A question to the user, or something to tell. All texts are in the user's language.
struct Alert {
    Alert(std::string messageText_, std::string informativeText_, std::vector<AlertButton> buttons_,
          AlertStyle style_ = AlertStyle::warning)
        : messageText(std::move(messageText_)),
          informativeText(std::move(informativeText_)),
          buttons(std::move(buttons_)),
          style(style_) {}

    std::string messageText;
    std::string informativeText;  ///< may be empty
    std::vector<AlertButton>
        buttons;  ///< the first is the default one; none: the toolkit's own single button
    AlertStyle style;
};

/// Which button was pressed: 1000 for the first, 1001 for the second, and so on. Where the user can dismiss an alert without a
/// button (Escape, the close box, quit): any number that is no button's, say 0; nothing is done then.
using AlertResponse = std::int64_t;

inline constexpr AlertResponse alertFirstButton = 1000;
inline constexpr AlertResponse alertSecondButton = 1001;

}  // namespace RemoteCoding
