#pragma once

#include "Components/RemoteCoding/HostInterfaces/HostObject.hpp"
#include "Components/RemoteCoding/HostInterfaces/ViewProtocol.hpp"

#include <cstddef>
#include <memory>
#include <string>

namespace RemoteCoding {

/// A window of the host's toolkit. Main thread only. One window is one object for as long as it exists, wherever it is given
/// or passed.
class REMOTE_CODING_EXPORT WindowProtocol : public HostObject {
public:
    /// What stands in the title bar; of a document's window often the path of its file.
    [[nodiscard]] virtual std::string title() const = 0;

    /// Opens the window, or brings it to the front when it is open.
    virtual void show() = 0;

    /// From `show` until it closes.
    [[nodiscard]] virtual bool isVisible() const = 0;

    /// Closes the window as if the user had pressed its close button: posts `WindowNotifications::windowWillClose`, then
    /// hides it, both before this returns. Nothing happens when it is closed already. `sender`: the control behind it,
    /// may be null.
    virtual void performClose(const std::shared_ptr<HostObject>& sender) = 0;

    /// The area that holds the window's controls.
    [[nodiscard]] virtual std::shared_ptr<ViewProtocol> contentView() const = 0;

    /// The control that the window's layout connects to this outlet; null when there is none. The same object each time, held
    /// by the window: the component holds it weakly.
    [[nodiscard]] virtual std::shared_ptr<ViewProtocol> outlet(const std::string& name) const = 0;
};

/// What the controls of a window report to: the window's controller. Called on the main thread, never inside a call of
/// the component into the toolkit, except that a table may ask for rows and cells at any time: inside `show` and `reloadData`,
/// or during layout.
class REMOTE_CODING_EXPORT WindowOwnerProtocol : public HostObject {
public:
    /// The user used a control. `action`: the operation that the layout names for it. `sender`: the control; may be null, but
    /// not for a check box, which says by its tag in which row it is. Whether the click has ticked the box already does not
    /// matter: its owner sets it again. The owner may close the window, or reload the table, inside this call.
    virtual void perform(const std::string& action, const std::shared_ptr<ViewProtocol>& sender) = 0;

    /// The user changed the text of a field. `control`: the field. The owner may set the field's text inside this call.
    virtual void controlTextDidChange(const std::shared_ptr<ViewProtocol>& control) = 0;

    [[nodiscard]] virtual std::size_t
    numberOfRowsInTableView(const std::shared_ptr<TableViewProtocol>& tableView) = 0;

    /// The cell of that column and row; null for an empty one, and for a row that is not there any more. Rows count from 0.
    /// `viewForTableColumn`: the `WindowLayoutColumn::identifier`.
    [[nodiscard]] virtual std::shared_ptr<ViewProtocol>
    tableView(const std::shared_ptr<TableViewProtocol>& tableView, const std::string& viewForTableColumn,
              std::size_t row) = 0;

    /// The user selected another row, or none; also told after a reload, which takes the selection away. Which row is
    /// selected the table says: the user may have selected one since.
    virtual void tableViewSelectionDidChange(const std::shared_ptr<TableViewProtocol>& tableView) = 0;
};

}  // namespace RemoteCoding
