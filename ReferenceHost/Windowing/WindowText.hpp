#pragma once

#include "Components/RemoteCoding/HostInterfaces/Alert.hpp"

#include <string>
#include <vector>

/// What is on the screen, as plain text.
namespace ReferenceHost {

class HeadlessWindow;
class HeadlessWindowing;
class TableView;

/// Cell by cell: a text, "[x]" or "[ ]" for a check box, the empty text where there is nothing.
[[nodiscard]] std::vector<std::vector<std::string>> tableTexts(TableView& table);

/// A few lines, each with its end: the title, then a line for each control, with what it is called on the left (once, also
/// where a label says it as well).
///
///     .- New Session -----------------------------------------
///     | Feeds:      > [x]  Camera 1
///     |               [ ]  Camera 2
///     | Video Name: Derby
///     | Team:       < Reds >  Blues
///     |             [ Cancel ]  ( Create )
///     '-------------------------------------------------------
///
/// A button or pop-up in round brackets is disabled; ">" marks the selected row. While a sign-in covers the window, that is shown
/// instead of the controls.
[[nodiscard]] std::string windowText(const HeadlessWindow& window);

/// A button whose deed cannot be taken back has an exclamation mark. `kind`: what stands in the frame.
[[nodiscard]] std::string alertText(const RemoteCoding::Alert& alert, const std::string& kind = "Alert");

/// The alert that is shown, if any, then all windows, the front one first, each with its sheet.
[[nodiscard]] std::string screenText(HeadlessWindowing& toolkit);

}  // namespace ReferenceHost
