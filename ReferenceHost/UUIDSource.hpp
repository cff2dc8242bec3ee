#pragma once

#include "Components/RemoteCoding/HostInterfaces/UUIDSourceProtocol.hpp"
#include "ReferenceHost/SeededRandom.hpp"

#include <cstdint>
#include <mutex>
#include <string>

namespace ReferenceHost {

/// Random UUIDs (RFC 9562, version 4) that follow from a seed.
class UUIDSource final : public RemoteCoding::UUIDSourceProtocol {
public:
    /// Two sources of one process take different seeds, or they give the same identifiers.
    explicit UUIDSource(std::uint64_t seed) : random_(seed) {}

    /// A seed from the operating system, for hosts in real time.
    [[nodiscard]] static std::uint64_t seedFromSystem();

    [[nodiscard]] std::string makeUUID() override;

private:
    std::mutex mutex_;
    SeededRandom random_;  // guarded by mutex_
};

}  // namespace ReferenceHost
