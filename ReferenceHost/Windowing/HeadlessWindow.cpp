#include "ReferenceHost/Windowing/HeadlessWindow.hpp"

#include "Base/Error.hpp"
#include "ReferenceHost/Windowing/HeadlessWindowing.hpp"
#include "ReferenceHost/Windowing/LoginCoordinator.hpp"
#include "ReferenceHost/Windowing/TableView.hpp"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace ReferenceHost {

using RemoteCoding::Alert;
using RemoteCoding::AlertResponse;

namespace {

std::shared_ptr<Control> makeControl(const std::shared_ptr<const ControlSite>& site,
                                     const RemoteCoding::WindowLayoutControl& layout) {
    using Kind = Control::Kind;
    switch (layout.kind) {
    case Kind::label:
    case Kind::textField:
        return std::make_shared<TextField>(site, layout);
    case Kind::popUpButton:
        return std::make_shared<PopUpButton>(site, layout);
    case Kind::tableView:
        return std::make_shared<TableView>(site, layout);
    case Kind::button:
        break;
    }
    return std::make_shared<Button>(site, layout);
}

}  // namespace

std::shared_ptr<HeadlessWindow> HeadlessWindow::make(std::weak_ptr<HeadlessWindowing> toolkit,
                                                     const RemoteCoding::WindowLayout& layout,
                                                     std::weak_ptr<RemoteCoding::WindowOwnerProtocol> owner) {
    const std::shared_ptr<HeadlessWindow> window(new HeadlessWindow(layout.title));
    window->site_ = std::make_shared<ControlSite>(std::move(toolkit), window, std::move(owner));
    window->contentView_ = std::make_shared<HeadlessContentView>(window);
    for (const RemoteCoding::WindowLayoutControl& control : layout.controls) {
        window->controls_.push_back(makeControl(window->site_, control));
    }
    return window;
}

void HeadlessWindow::show() {
    site_->expectMainThread("show");
    const auto toolkit = site_->toolkit.lock();
    if (!toolkit) {
        return;
    }
    toolkit->bringToFront(shared_from_this());
    for (const auto& control : controls_) {
        if (const auto table = std::dynamic_pointer_cast<TableView>(control)) {
            table->drawLater();
        }
    }
}

bool HeadlessWindow::isVisible() const {
    site_->expectMainThread("isVisible");
    const auto toolkit = site_->toolkit.lock();
    return toolkit && toolkit->isVisible(*this);
}

void HeadlessWindow::performClose(const std::shared_ptr<RemoteCoding::HostObject>& /*sender*/) {
    const auto toolkit = site_->toolkit.lock();
    if (isClosing_ || !isVisible()) {
        return;
    }
    const auto heldHere = shared_from_this();
    isClosing_ = true;
    toolkit->tellWillClose(heldHere);
    toolkit->hide(*this);
    isClosing_ = false;
    while (sheet() != nullptr) {
        endSheet(Base::failure<AlertResponse>(Base::DescribedError("The window closed before an answer")));
    }
    for (const auto& held : std::exchange(signIns_, {})) {
        if (const auto signIn = held.lock()) {
            signIn->end(LoginCoordinator::User());
        }
    }
    if (didClose) {
        didClose();
    }
}

std::shared_ptr<RemoteCoding::ViewProtocol> HeadlessWindow::outlet(const std::string& name) const {
    const auto found = std::ranges::find_if(
        controls_, [&](const auto& control) { return !name.empty() && control->layout().outlet == name; });
    return found != controls_.end() ? (*found)->view() : nullptr;
}

void HeadlessWindow::beginSheet(const Alert& alert, SheetCompletion completion) {
    sheets_.emplace_back(alert, std::move(completion));
    if (sheets_.size() == 1) {
        sheetAppears();
    }
}

void HeadlessWindow::answerSheet(const std::string& button) {
    const Alert alert = sheets_.front().first;
    const AlertResponse response = responseFor(alert, button);
    if (const auto toolkit = site_->toolkit.lock()) {
        toolkit->record(TraceKind::sheetAnswer,
                        {{"window", title_}, {"message", alert.messageText}, {"button", button}});
    }
    endSheet(response);
    if (sheet() != nullptr) {
        sheetAppears();
    }
}

void HeadlessWindow::endSheet(Base::Result<AlertResponse> result) {
    const SheetCompletion completion = std::move(sheets_.front().second);
    sheets_.pop_front();
    if (const auto toolkit = site_->toolkit.lock()) {
        toolkit->postToMain([completion, result = std::move(result)] { completion(result); });
    }
}

void HeadlessWindow::sheetAppears() const {
    if (const auto toolkit = site_->toolkit.lock()) {
        TraceFields fields = fieldsOf(*sheet());
        fields.insert(fields.begin(), {"window", title_});
        toolkit->record(TraceKind::sheet, std::move(fields));
    }
}

std::shared_ptr<LoginCoordinator> HeadlessWindow::signIn() const {
    for (auto held = signIns_.rbegin(); held != signIns_.rend(); ++held) {
        const auto signIn = held->lock();
        if (signIn && signIn->isRunning()) {
            return signIn;
        }
    }
    return nullptr;
}

}  // namespace ReferenceHost
