#pragma once

#include "Components/RemoteCoding/HostInterfaces/HostObject.hpp"

#include <any>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

/// What stands in a window, as far as the component touches it. Any toolkit can stand behind these; main thread only, all
/// of them. A control stays usable after its window has closed, for as long as the window object lives.
namespace RemoteCoding {

/// Anything in a window: a control, a cell of a table, or the area that holds them.
class REMOTE_CODING_EXPORT ViewProtocol : public HostObject {};

class REMOTE_CODING_EXPORT ButtonProtocol : public ViewProtocol {
public:
    /// A disabled button cannot be pressed.
    virtual void setEnabled(bool enabled) = 0;
};

/// A check box in a cell of a table.
class REMOTE_CODING_EXPORT CheckBoxProtocol : public ViewProtocol {
public:
    /// A number by which its owner knows the box again when it is clicked.
    [[nodiscard]] virtual std::int64_t tag() const = 0;
    virtual void setTag(std::int64_t tag) = 0;
    virtual void setOn(bool on) = 0;
};

class REMOTE_CODING_EXPORT TextFieldProtocol : public ViewProtocol {
public:
    /// UTF-8, as it stands in the field now.
    [[nodiscard]] virtual std::string text() const = 0;

    /// Does not tell `WindowOwnerProtocol::controlTextDidChange`, which tells of what the user types.
    virtual void setText(const std::string& text) = 0;
};

/// A cell of a table that shows a text.
class REMOTE_CODING_EXPORT TableCellViewProtocol : public ViewProtocol {
public:
    /// Null when the layout gave the cell none.
    [[nodiscard]] virtual std::shared_ptr<TextFieldProtocol> textField() const = 0;
};

class REMOTE_CODING_EXPORT TableViewProtocol : public ViewProtocol {
public:
    /// Forgets all cells and asks the window's owner for rows and cells again, now or when they are next shown. No row is
    /// selected afterwards: the one under that number may be another one now. When there was a selection, the owner is told
    /// (`tableViewSelectionDidChange`) in a later job of the main thread, posted by this call.
    ///
    /// May be called inside the action of one of its own cells: keep that cell alive until its action has returned.
    virtual void reloadData() = 0;

    /// -1 when no row is selected.
    [[nodiscard]] virtual std::int64_t selectedRow() const = 0;

    /// A cell made after the layout's pattern of that name, perhaps one that was used before; null when there is no such
    /// pattern.
    [[nodiscard]] virtual std::shared_ptr<ViewProtocol> makeView(const std::string& cellIdentifier) = 0;
};

/// One choice of a pop-up button.
struct PopUpItem {
    PopUpItem() = default;
    explicit PopUpItem(std::string title_, std::any representedObject_ = {})
        : title(std::move(title_)), representedObject(std::move(representedObject_)) {}

    std::string title;
    std::any representedObject;  ///< what its owner attached
};

class REMOTE_CODING_EXPORT PopUpButtonProtocol : public ViewProtocol {
public:
    /// Absent when there is no item.
    [[nodiscard]] virtual std::optional<PopUpItem> selectedItem() const = 0;

    virtual void removeAllItems() = 0;

    /// Adds it at the end. The first item that is added to an empty button becomes the selected one, without the button's
    /// action being sent. Two items may have one title.
    virtual void addItem(const PopUpItem& item) = 0;

    virtual void setEnabled(bool enabled) = 0;
};

}  // namespace RemoteCoding
