#pragma once

#include "Components/RemoteCoding/HostInterfaces/AccountProtocol.hpp"

#include <optional>
#include <string>
#include <utility>

namespace ReferenceHost {

/// Who is signed in. Main thread only.
class Account final : public RemoteCoding::AccountProtocol {
public:
    [[nodiscard]] std::optional<RemoteCoding::TevuUser> user() const override { return user_; }

    void signIn(std::string userId) { user_.emplace(std::move(userId)); }
    void signOut() { user_.reset(); }

private:
    std::optional<RemoteCoding::TevuUser> user_;
};

}  // namespace ReferenceHost
