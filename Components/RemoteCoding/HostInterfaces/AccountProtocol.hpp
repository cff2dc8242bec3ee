#pragma once

#include "Base/Completion.hpp"
#include "Base/Export.hpp"
#include "Components/RemoteCoding/HostInterfaces/HostObject.hpp"
#include "Components/RemoteCoding/HostInterfaces/ViewProtocol.hpp"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace RemoteCoding {

/// A user of the cloud service.
struct TevuUser {
    explicit TevuUser(std::string id_) : id(std::move(id_)) {}

    std::string id;
};

namespace TevuLoginConstants::Configuration {

/// The window in which a sign-in runs is closed when the user cancels it. Absent: false. The controls of a window that stays
/// open reappear after the flow, unchanged.
inline constexpr const char* closeParentOnCancelKey = "closeParentOnCancel";

}  // namespace TevuLoginConstants::Configuration

/// One sign-in flow. Main thread only.
class REMOTE_CODING_EXPORT TevuLoginCoordinatorProtocol : public HostObject {
public:
    /// Shows the flow in the view and lets the user sign in. `configuration`: options by the keys of
    /// `TevuLoginConstants::Configuration`. The completion is called once, on any thread: with the first user who signs
    /// in, with none when the flow ends without one, or with an error. Closing the view's window ends the flow.
    /// Called once. The component holds the coordinator until it completes; the host need not.
    virtual void start(const std::shared_ptr<ViewProtocol>& inView,
                       const std::map<std::string, bool>& configuration,
                       Base::Completion<std::optional<TevuUser>> completion) = 0;
};

/// The host's account service.
class REMOTE_CODING_EXPORT AccountProtocol {
public:
    virtual ~AccountProtocol() = default;

    /// Main thread. The signed-in user; absent when nobody is signed in.
    [[nodiscard]] virtual std::optional<TevuUser> user() const = 0;

    /// Main thread. A sign-in flow that has not started yet; null when the host has none.
    [[nodiscard]] virtual std::shared_ptr<TevuLoginCoordinatorProtocol> makeLoginCoordinator() = 0;
};

}  // namespace RemoteCoding
