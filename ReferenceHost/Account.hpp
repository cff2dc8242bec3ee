#pragma once

#include "Components/RemoteCoding/HostInterfaces/AccountProtocol.hpp"
#include "ReferenceHost/Timeline/CallRecorder.hpp"

#include <optional>
#include <string>
#include <utility>

namespace ReferenceHost {

/// Who is signed in. Main thread only.
class Account final : public RemoteCoding::AccountProtocol {
public:
    explicit Account(CallRecorder recordCall = {}) : recordCall_(std::move(recordCall)) {}

    [[nodiscard]] std::optional<RemoteCoding::TevuUser> user() const override {
        if (recordCall_) {
            recordCall_("user", {});
        }
        return user_;
    }

    void signIn(std::string userId) { user_.emplace(std::move(userId)); }
    void signOut() { user_.reset(); }

private:
    CallRecorder recordCall_;
    std::optional<RemoteCoding::TevuUser> user_;
};

}  // namespace ReferenceHost
