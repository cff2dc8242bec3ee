#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Base {

/// A universally unique identifier (RFC 9562).
class UUID {
public:
    using Bytes = std::array<std::uint8_t, 16>;

    /// The nil UUID.
    constexpr UUID() = default;
    constexpr explicit UUID(const Bytes& bytes) : bytes_(bytes) {}

    /// A UUID of version 4 (RFC 9562, section 5.4): 122 of the random bits, and the version and variant.
    [[nodiscard]] static UUID version4(Bytes randomBytes);

    /// Reads the text form (RFC 9562, section 4): 8-4-4-4-12 hexadecimal digits in either case, and nothing else.
    [[nodiscard]] static std::optional<UUID> parse(std::string_view text);

    /// The text form, in lower case.
    [[nodiscard]] std::string text() const;

    [[nodiscard]] const Bytes& bytes() const { return bytes_; }

    friend auto operator<=>(const UUID&, const UUID&) = default;

private:
    Bytes bytes_{};
};

}  // namespace Base
