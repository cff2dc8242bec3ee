#include "ReferenceHost/Windowing/Control.hpp"

#include "ReferenceHost/Windowing/HeadlessWindowing.hpp"

namespace ReferenceHost {

void ControlSite::perform(const std::string& action,
                          const std::shared_ptr<RemoteCoding::ViewProtocol>& sender) const {
    const auto present = owner.lock();
    if (present && !action.empty()) {
        present->perform(action, sender);
    }
}

void ControlSite::expectMainThread(const char* function) const {
    if (const auto present = toolkit.lock()) {
        present->expectMainThread(function);
    }
}

}  // namespace ReferenceHost
