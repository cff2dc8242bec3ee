#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace Base {

/// Finds positions of a list by a text that stands at each of them. The texts stay in the list: whoever owns it tells with each
/// call how a position's text is read, and keeps the text as it is for as long as the index has the position.
///
/// Eight bytes a slot, nearly always one look at the list for an answer, no allocation but when it grows.
class IdIndex {
public:
    using Position = std::uint32_t;

    /// `textAt(position)` gives the text at that position.
    template <typename TextAt>
    [[nodiscard]] std::optional<Position> find(std::string_view text, const TextAt& textAt) const {
        if (count_ == 0) {
            return std::nullopt;
        }
        const Slot& slot = slots_[place(hashOf(text), text, textAt)];
        return slot.position == none ? std::nullopt : std::optional(slot.position);
    }

    /// From now on the text, which stands at that position, leads there. Gives where it led before. Allocates nothing after
    /// `makeRoomForOne`.
    template <typename TextAt>
    std::optional<Position> put(std::string_view text, Position position, const TextAt& textAt) {
        makeRoomForOne();
        const std::uint32_t hash = hashOf(text);
        Slot& slot = slots_[place(hash, text, textAt)];
        const Position before = std::exchange(slot.position, position);
        slot.hash = hash;
        if (before != none) {
            return before;
        }
        ++count_;
        return std::nullopt;
    }

    /// Gives where the text has led; absent when it led nowhere.
    template <typename TextAt>
    std::optional<Position> erase(std::string_view text, const TextAt& textAt) {
        if (count_ == 0) {
            return std::nullopt;
        }
        const std::size_t found = place(hashOf(text), text, textAt);
        const Position position = slots_[found].position;
        if (position == none) {
            return std::nullopt;
        }
        --count_;
        close(found);
        return position;
    }

    void makeRoomForOne() {
        if (4 * (count_ + 1) > 3 * slots_.size()) {
            grow();
        }
    }

private:
    static constexpr Position none = UINT32_MAX;

    struct Slot {
        std::uint32_t hash = 0;
        Position position = none;
    };

    /// Eight bytes at a time, and at the end the last eight again, which takes in what is left over. Texts that have the same hash
    /// cost a comparison, no more.
    [[nodiscard]] static std::uint32_t hashOf(std::string_view text) {
        std::uint64_t hash = text.size();
        const auto add = [&](const char* bytes, std::size_t count) {
            std::uint64_t word = 0;
            std::memcpy(&word, bytes, count);
            hash = (hash ^ word) * 0x9E37'79B9'7F4A'7C15U;  // 2 to the 64th by the golden ratio (Knuth, 6.4)
            hash ^= hash >> 32U;
        };
        constexpr std::size_t wordSize = sizeof(std::uint64_t);
        if (text.size() < wordSize) {
            if (!text.empty()) {
                add(text.data(), text.size());
            }
        } else {
            for (std::size_t place = 0; place + wordSize <= text.size(); place += wordSize) {
                add(text.data() + place, wordSize);
            }
            add(text.data() + text.size() - wordSize, wordSize);
        }
        return static_cast<std::uint32_t>(hash);
    }

    [[nodiscard]] std::size_t next(std::size_t slot) const { return (slot + 1) & (slots_.size() - 1); }
    [[nodiscard]] std::size_t home(std::uint32_t hash) const { return hash & (slots_.size() - 1); }

    /// The slot that has the text, or the empty one where it would stand.
    template <typename TextAt>
    [[nodiscard]] std::size_t place(std::uint32_t hash, std::string_view text, const TextAt& textAt) const {
        std::size_t slot = home(hash);
        while (slots_[slot].position != none &&
               (slots_[slot].hash != hash || textAt(slots_[slot].position) != text)) {
            slot = next(slot);
        }
        return slot;
    }

    void close(std::size_t gap);
    void grow();

    std::vector<Slot> slots_;  ///< a power of two of them, or none
    std::size_t count_ = 0;
};

}  // namespace Base
