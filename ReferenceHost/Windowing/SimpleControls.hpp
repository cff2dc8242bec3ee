#pragma once

#include "ReferenceHost/Windowing/Control.hpp"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ReferenceHost {

class Button final : public RemoteCoding::ButtonProtocol,
                     public Control,
                     public std::enable_shared_from_this<Button> {
public:
    using Control::Control;

    void setEnabled(bool enabled) override { changeEnabled(enabled); }
    [[nodiscard]] std::shared_ptr<ViewProtocol> view() override { return shared_from_this(); }

private:
    friend class WindowOnScreen;
    void press() { site().perform(layout().action, shared_from_this()); }
};

/// A field, or a label, which is a field that nobody can type into.
class TextField final : public RemoteCoding::TextFieldProtocol,
                        public Control,
                        public std::enable_shared_from_this<TextField> {
public:
    TextField(std::shared_ptr<const ControlSite> site, const RemoteCoding::WindowLayoutControl& layout)
        : Control(std::move(site), layout),
          text_(layout.kind == Kind::label ? layout.title : std::string()) {}

    [[nodiscard]] std::string text() const override {
        site().expectMainThread("text");
        return text_;
    }
    void setText(const std::string& text) override {
        site().expectMainThread("setText");
        text_ = text;
    }
    [[nodiscard]] std::shared_ptr<ViewProtocol> view() override { return shared_from_this(); }

private:
    friend class WindowOnScreen;
    void edit(std::string text) {
        text_ = std::move(text);
        if (const auto owner = site().owner.lock()) {
            owner->controlTextDidChange(shared_from_this());
        }
    }

    std::string text_;
};

class PopUpButton final : public RemoteCoding::PopUpButtonProtocol,
                          public Control,
                          public std::enable_shared_from_this<PopUpButton> {
public:
    using Control::Control;

    [[nodiscard]] std::optional<RemoteCoding::PopUpItem> selectedItem() const override {
        site().expectMainThread("selectedItem");
        return items_.empty() ? std::nullopt : std::optional(items_[selected_]);
    }
    void removeAllItems() override {
        site().expectMainThread("removeAllItems");
        items_.clear();
        selected_ = 0;
    }
    void addItem(const RemoteCoding::PopUpItem& item) override {
        site().expectMainThread("addItem");
        items_.push_back(item);
    }
    void setEnabled(bool enabled) override { changeEnabled(enabled); }
    [[nodiscard]] std::shared_ptr<ViewProtocol> view() override { return shared_from_this(); }

    [[nodiscard]] const std::vector<RemoteCoding::PopUpItem>& items() const { return items_; }

    /// 0 when there are no items.
    [[nodiscard]] std::size_t selectedIndex() const { return selected_; }

private:
    friend class WindowOnScreen;

    /// Also performs the action when it is the one that was chosen before.
    void choose(std::size_t index) {
        selected_ = index;
        site().perform(layout().action, shared_from_this());
    }

    std::vector<RemoteCoding::PopUpItem> items_;
    std::size_t selected_ = 0;  // of the items, if there are any
};

}  // namespace ReferenceHost
