#pragma once

#include "Components/RemoteCoding/HostInterfaces/WindowLayout.hpp"
#include "Components/RemoteCoding/HostInterfaces/WindowProtocol.hpp"

#include <memory>
#include <string>
#include <utility>

namespace ReferenceHost {

class HeadlessWindow;
class HeadlessWindowing;

/// Where a control stands: shared by all controls of a window.
struct ControlSite {
    /// Tells the owner, if it is still there. An empty action is none.
    void perform(const std::string& action, const std::shared_ptr<RemoteCoding::ViewProtocol>& sender) const;

    /// Reports a call of that name on any other thread, as the execution does.
    void expectMainThread(const char* function) const;

    std::weak_ptr<HeadlessWindowing> toolkit;
    std::weak_ptr<HeadlessWindow> window;
    std::weak_ptr<RemoteCoding::WindowOwnerProtocol> owner;
};

/// What all controls of a window have. Each also implements the protocol of its kind, which is the component's side; the
/// user's side is private and for `WindowOnScreen`.
class Control {
public:
    using Kind = RemoteCoding::WindowLayoutControl::Kind;

    Control(std::shared_ptr<const ControlSite> site, RemoteCoding::WindowLayoutControl layout)
        : site_(std::move(site)), layout_(std::move(layout)), isEnabled_(layout_.isEnabled) {}
    virtual ~Control() = default;
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    [[nodiscard]] const RemoteCoding::WindowLayoutControl& layout() const { return layout_; }
    [[nodiscard]] bool isEnabled() const { return isEnabled_; }

    /// This control as the component sees it.
    [[nodiscard]] virtual std::shared_ptr<RemoteCoding::ViewProtocol> view() = 0;

protected:
    [[nodiscard]] const ControlSite& site() const { return *site_; }
    void changeEnabled(bool enabled) {
        site().expectMainThread("setEnabled");
        isEnabled_ = enabled;
    }

private:
    std::shared_ptr<const ControlSite> site_;
    RemoteCoding::WindowLayoutControl layout_;
    bool isEnabled_;
};

}  // namespace ReferenceHost
