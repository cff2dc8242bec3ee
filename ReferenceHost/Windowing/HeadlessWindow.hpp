#pragma once

#include "Components/RemoteCoding/HostInterfaces/WindowLayout.hpp"
#include "Components/RemoteCoding/HostInterfaces/WindowProtocol.hpp"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace ReferenceHost {

class HeadlessWindow;
class HeadlessWindowing;
class LoginCoordinator;

/// The area of a window that holds its controls.
class HeadlessContentView final : public RemoteCoding::ViewProtocol {
public:
    explicit HeadlessContentView(std::weak_ptr<HeadlessWindow> window) : window_(std::move(window)) {}

    /// Null when it is gone.
    [[nodiscard]] std::shared_ptr<HeadlessWindow> window() const { return window_.lock(); }

private:
    std::weak_ptr<HeadlessWindow> window_;
};

/// A window that nobody draws. Main thread only. It may outlive its toolkit; it is closed then and stays so.
class HeadlessWindow final : public RemoteCoding::WindowProtocol,
                             public std::enable_shared_from_this<HeadlessWindow> {
public:
    /// For `HeadlessWindowing`, which makes all windows.
    HeadlessWindow(std::weak_ptr<HeadlessWindowing> toolkit, const RemoteCoding::WindowLayout& layout,
                   std::weak_ptr<RemoteCoding::WindowOwnerProtocol> owner);
    ~HeadlessWindow() override;

    // WindowProtocol
    [[nodiscard]] std::string title() const override { return title_; }
    void show() override;
    [[nodiscard]] bool isVisible() const override;
    void performClose(const std::shared_ptr<RemoteCoding::HostObject>& sender) override;
    [[nodiscard]] std::shared_ptr<RemoteCoding::ViewProtocol> contentView() const override;
    [[nodiscard]] std::shared_ptr<RemoteCoding::ViewProtocol> outlet(const std::string& name) const override;

    /// Called each time after it has closed.
    std::function<void()> didClose;

    /// The flow covers the controls while it runs, and ends when the window closes.
    void addSignIn(const std::shared_ptr<LoginCoordinator>& signIn);

    /// The last one that runs; null when none does.
    [[nodiscard]] std::shared_ptr<LoginCoordinator> signIn() const;

private:
    std::weak_ptr<HeadlessWindowing> toolkit_;
    std::weak_ptr<RemoteCoding::WindowOwnerProtocol> owner_;
    std::string title_;
    mutable std::shared_ptr<HeadlessContentView> contentView_;  // made when it is first asked for
    std::vector<std::weak_ptr<LoginCoordinator>> signIns_;
    bool isClosing_ = false;
};

}  // namespace ReferenceHost
