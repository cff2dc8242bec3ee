#pragma once

#include "ReferenceHost/Windowing/SimpleControls.hpp"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ReferenceHost {

class CheckBox final : public RemoteCoding::CheckBoxProtocol, public std::enable_shared_from_this<CheckBox> {
public:
    CheckBox(std::shared_ptr<const ControlSite> site, std::string action)
        : site_(std::move(site)), action_(std::move(action)) {}

    [[nodiscard]] std::int64_t tag() const override { return tag_; }
    void setTag(std::int64_t tag) override { tag_ = tag; }
    void setOn(bool on) override { isOn_ = on; }
    [[nodiscard]] bool isOn() const { return isOn_; }

private:
    friend class WindowOnScreen;
    void click() {
        isOn_ = !isOn_;
        site_->perform(action_, shared_from_this());
    }

    std::shared_ptr<const ControlSite> site_;
    std::string action_;
    std::int64_t tag_ = 0;
    bool isOn_ = false;
};

class TableCellView final : public RemoteCoding::TableCellViewProtocol {
public:
    explicit TableCellView(std::shared_ptr<RemoteCoding::TextFieldProtocol> textField)
        : textField_(std::move(textField)) {}
    [[nodiscard]] std::shared_ptr<RemoteCoding::TextFieldProtocol> textField() const override {
        return textField_;
    }

private:
    std::shared_ptr<RemoteCoding::TextFieldProtocol> textField_;
};

/// A table. In a visible window it asks for its rows within `reloadData`; for the cells it asks when it is drawn, by a main job of its
/// own or when a person looks at it, whichever comes first. Cells that are not shown any more are given out again, as they are.
class TableView final : public RemoteCoding::TableViewProtocol,
                        public Control,
                        public std::enable_shared_from_this<TableView> {
public:
    using Cell = std::shared_ptr<RemoteCoding::ViewProtocol>;  ///< null: nothing is shown there

    using Control::Control;

    void reloadData() override;
    [[nodiscard]] std::int64_t selectedRow() const override {
        site().expectMainThread("selectedRow");
        return selectedRow_;
    }
    [[nodiscard]] std::shared_ptr<RemoteCoding::ViewProtocol>
    makeView(const std::string& cellIdentifier) override;
    [[nodiscard]] std::shared_ptr<ViewProtocol> view() override { return shared_from_this(); }

    /// Draws the table in a job of its own.
    void drawLater();

    /// What a person sees: by row and column.
    [[nodiscard]] const std::vector<std::vector<Cell>>& drawnRows();

private:
    friend class WindowOnScreen;
    void select(std::int64_t row);
    void askForRows();
    void tellSelection();
    void tellSelectionLater();
    [[nodiscard]] bool isShown() const;
    [[nodiscard]] Cell makeCell(const RemoteCoding::WindowLayoutColumn& column) const;

    std::size_t numberOfRows_ = 0;
    bool rowsAreAsked_ = false;  // since the last reload
    bool isDrawn_ = false;       // since the rows were asked for
    std::vector<std::vector<Cell>> rows_;
    std::multimap<std::string, Cell> usedCells_;  // by cell identifier
    std::int64_t selectedRow_ = -1;
};

}  // namespace ReferenceHost
