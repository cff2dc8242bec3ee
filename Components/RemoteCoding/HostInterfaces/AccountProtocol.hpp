#pragma once

#include "Base/Export.hpp"

#include <optional>
#include <string>
#include <utility>

namespace RemoteCoding {

/// A user of the cloud service.
struct TevuUser {
    explicit TevuUser(std::string id_) : id(std::move(id_)) {}

    std::string id;
};

/// The host's account service.
class REMOTE_CODING_EXPORT AccountProtocol {
public:
    virtual ~AccountProtocol() = default;

    /// Main thread. The signed-in user; absent when nobody is signed in.
    [[nodiscard]] virtual std::optional<TevuUser> user() const = 0;
};

}  // namespace RemoteCoding
