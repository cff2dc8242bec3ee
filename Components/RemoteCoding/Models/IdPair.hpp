#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

namespace RemoteCoding {

/// Two identifiers, one behind the other. Two of 36 characters, as UUIDs have, lie in the object itself, longer ones beside it: whoever
/// looks for one of them waits for no second piece of memory.
class IdPair {
public:
    IdPair() = default;
    IdPair(std::string_view first, std::string_view second)
        : firstSize_(static_cast<std::uint32_t>(first.size())),
          secondSize_(static_cast<std::uint32_t>(second.size())) {
        char* text = room_.data();
        if (isBeside()) {
            text = new char[first.size() + second.size()];
            std::memcpy(room_.data(), &text, sizeof text);
        }
        second.copy(text + first.copy(text, first.size()), second.size());
    }
    IdPair(IdPair&& other) noexcept
        : room_(other.room_),
          firstSize_(std::exchange(other.firstSize_, 0)),
          secondSize_(std::exchange(other.secondSize_, 0)) {}
    IdPair& operator=(IdPair&& other) noexcept {
        std::swap(room_, other.room_);
        std::swap(firstSize_, other.firstSize_);
        std::swap(secondSize_, other.secondSize_);
        return *this;
    }
    ~IdPair() {
        if (isBeside()) {
            delete[] beside();
        }
    }

    [[nodiscard]] std::string_view first() const { return {text(), firstSize_}; }
    [[nodiscard]] std::string_view second() const { return {text() + firstSize_, secondSize_}; }

private:
    [[nodiscard]] bool isBeside() const { return std::size_t{firstSize_} + secondSize_ > room_.size(); }
    [[nodiscard]] const char* text() const { return isBeside() ? beside() : room_.data(); }
    [[nodiscard]] char* beside() const {
        char* text = nullptr;
        std::memcpy(&text, room_.data(), sizeof text);
        return text;
    }

    std::array<char, 72> room_{};  ///< or where the text lies beside it, which it then owns
    std::uint32_t firstSize_ = 0;
    std::uint32_t secondSize_ = 0;
};

}  // namespace RemoteCoding
