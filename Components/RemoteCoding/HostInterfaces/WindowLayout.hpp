#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace RemoteCoding {

/// A column of a table, with the pattern of its cells.
struct WindowLayoutColumn {
    enum class Cell : std::uint8_t {
        checkBox,  ///< a `CheckBoxProtocol`
        text,      ///< a `TableCellViewProtocol` with a text field
    };

    std::string identifier;      ///< what the owner is asked for cells with
    std::string title;           ///< the heading, in the user's language; may be empty
    std::string cellIdentifier;  ///< what `TableViewProtocol::makeView` is asked for
    Cell cell = Cell::text;
    std::string action;  ///< what a click on a check box performs; empty: nothing
};

/// One control, in the order in which a window shows them from top to bottom. With an outlet it has to be, by its kind, a
/// `TextFieldProtocol`, `PopUpButtonProtocol`, `TableViewProtocol` or `ButtonProtocol`; a label any `ViewProtocol`.
struct WindowLayoutControl {
    enum class Kind : std::uint8_t { label, textField, popUpButton, tableView, button };

    Kind kind = Kind::label;
    std::string outlet;  ///< the name under which the owner looks it up; empty: not at all
    std::string
        title;  ///< of a label or button, in the user's language; for the others what they are called to people
                ///< who cannot see them
    std::string action;                       ///< what it performs when it is used; empty: nothing
    bool isEnabled = true;                    ///< at the start
    bool isDefault = false;                   ///< the button that the Return key presses
    bool isCancel = false;                    ///< the button that the Escape key presses
    std::vector<WindowLayoutColumn> columns;  ///< of a table
};

/// What a window consists of. The component reads it from its resources; a toolkit decides what it looks like.
struct WindowLayout {
    std::string name;   ///< the controller's class
    std::string title;  ///< of the window, in the user's language
    std::vector<WindowLayoutControl> controls;
};

}  // namespace RemoteCoding
