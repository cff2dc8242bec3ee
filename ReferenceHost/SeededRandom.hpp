#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ReferenceHost {

/// Numbers that follow from a seed alone, on every platform and standard library (the distributions of `<random>` do not
/// promise that). Not for secrets. Source: SplitMix64; Steele, Lea, Flood, "Fast Splittable Pseudorandom Number
/// Generators", OOPSLA 2014.
class SeededRandom {
public:
    explicit constexpr SeededRandom(std::uint64_t seed) : state_(seed) {}

    constexpr std::uint64_t next() {
        state_ += 0x9E3779B97F4A7C15ULL;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27U)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31U);
    }

    /// In [0, count); 0 when `count` is 0. The bias of the remainder is below 2^-32 for any count that fits a list.
    constexpr std::size_t below(std::size_t count) {
        return count == 0 ? 0 : static_cast<std::size_t>(next() % count);
    }

    /// In [0, 1), with the 53 bits that a double holds.
    constexpr double unit() { return static_cast<double>(next() >> 11U) * 0x1.0p-53; }

    /// In [low, high).
    constexpr double between(double low, double high) { return low + (high - low) * unit(); }

    constexpr bool chance(double probability) { return unit() < probability; }

    /// A stream of its own for each name, so that one consumer's draws do not shift another's.
    [[nodiscard]] static constexpr SeededRandom stream(std::uint64_t seed, std::string_view name) {
        std::uint64_t hash = 0xCBF29CE484222325ULL;  // FNV-1a, 64 bits
        for (const char character : name) {
            hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001B3ULL;
        }
        return SeededRandom(SeededRandom(seed).next() ^ hash);
    }

private:
    std::uint64_t state_;
};

}  // namespace ReferenceHost
