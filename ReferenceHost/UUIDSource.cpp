#include "ReferenceHost/UUIDSource.hpp"

#include "Base/UUID.hpp"

#include <cstdint>
#include <random>

namespace ReferenceHost {

std::uint64_t UUIDSource::seedFromSystem() {
    std::random_device device;
    return (static_cast<std::uint64_t>(device()) << 32U) | device();
}

std::string UUIDSource::makeUUID() {
    std::uint64_t high = 0;
    std::uint64_t low = 0;
    {
        const std::lock_guard lock(mutex_);
        high = random_.next();
        low = random_.next();
    }
    Base::UUID::Bytes bytes{};
    for (unsigned index = 0; index < 8; ++index) {
        bytes[index] = static_cast<std::uint8_t>(high >> (56U - 8U * index));
        bytes[8 + index] = static_cast<std::uint8_t>(low >> (56U - 8U * index));
    }
    return Base::UUID::version4(bytes).text();
}

}  // namespace ReferenceHost
