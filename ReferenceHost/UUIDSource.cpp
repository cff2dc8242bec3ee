#include "ReferenceHost/UUIDSource.hpp"

#include <random>
#include <string_view>

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
    // RFC 9562, section 5.4: the version in bits 48 to 51, the variant in bits 64 and 65, counted from the left.
    high = (high & 0xFFFFFFFFFFFF0FFFULL) | 0x0000000000004000ULL;
    low = (low & 0x3FFFFFFFFFFFFFFFULL) | 0x8000000000000000ULL;

    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    text.reserve(36);
    for (unsigned nibble = 0; nibble < 32; ++nibble) {
        if (nibble == 8 || nibble == 12 || nibble == 16 || nibble == 20) {
            text += '-';
        }
        const std::uint64_t half = nibble < 16 ? high : low;
        text += digits[(half >> (60U - 4U * (nibble % 16U))) & 0xFU];
    }
    return text;
}

}  // namespace ReferenceHost
