#pragma once

#include "Base/Completion.hpp"
#include "Components/RemoteCoding/HostInterfaces/Alert.hpp"
#include "ReferenceHost/Windowing/Control.hpp"

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace ReferenceHost {

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
    using SheetCompletion = Base::Completion<RemoteCoding::AlertResponse>;

    /// For `HeadlessWindowing`, which makes all windows.
    [[nodiscard]] static std::shared_ptr<HeadlessWindow>
    make(std::weak_ptr<HeadlessWindowing> toolkit, const RemoteCoding::WindowLayout& layout,
         std::weak_ptr<RemoteCoding::WindowOwnerProtocol> owner);

    // WindowProtocol
    [[nodiscard]] std::string title() const override { return title_; }
    void show() override;
    [[nodiscard]] bool isVisible() const override;
    void performClose(const std::shared_ptr<RemoteCoding::HostObject>& sender) override;
    [[nodiscard]] std::shared_ptr<RemoteCoding::ViewProtocol> contentView() const override {
        return contentView_;
    }
    [[nodiscard]] std::shared_ptr<RemoteCoding::ViewProtocol> outlet(const std::string& name) const override;

    /// Called each time after it has closed.
    std::function<void()> didClose;

    /// From top to bottom.
    [[nodiscard]] const std::vector<std::shared_ptr<Control>>& controls() const { return controls_; }

    /// The sheet that is shown; null when there is none.
    [[nodiscard]] const RemoteCoding::Alert* sheet() const {
        return sheets_.empty() ? nullptr : &sheets_.front().first;
    }

    /// The flow covers the controls while it runs, and ends when the window closes.
    void addSignIn(const std::shared_ptr<LoginCoordinator>& signIn) { signIns_.push_back(signIn); }

    /// The last one that runs; null when none does.
    [[nodiscard]] std::shared_ptr<LoginCoordinator> signIn() const;

private:
    friend class HeadlessWindowing;
    friend class WindowOnScreen;

    explicit HeadlessWindow(std::string title) : title_(std::move(title)) {}
    void beginSheet(const RemoteCoding::Alert& alert, SheetCompletion completion);
    void answerSheet(const std::string& button);
    void endSheet(Base::Result<RemoteCoding::AlertResponse> result);
    void sheetAppears() const;

    std::string title_;
    std::shared_ptr<ControlSite> site_;
    std::shared_ptr<HeadlessContentView> contentView_;
    std::vector<std::shared_ptr<Control>> controls_;
    std::deque<std::pair<RemoteCoding::Alert, SheetCompletion>> sheets_;  // the first is shown
    std::vector<std::weak_ptr<LoginCoordinator>> signIns_;
    bool isClosing_ = false;
};

}  // namespace ReferenceHost
