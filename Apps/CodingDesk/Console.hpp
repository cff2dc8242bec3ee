#pragma once

#include "Base/Color.hpp"

#include <chrono>
#include <cstddef>
#include <iosfwd>
#include <mutex>
#include <string>
#include <string_view>

namespace CodingDesk {

/// How the output is shown.
struct ConsoleLook {
    enum class Colors : std::uint8_t { none, indexed256, direct };

    Colors colors = Colors::none;
    bool hasLiveLine = false;
    std::size_t columns = 100;
};

/// As standard output asks for: a terminal gets a live line and colours (none with NO_COLOR set), anything else neither.
[[nodiscard]] ConsoleLook lookOfStandardOutput(bool plain);

/// The program's output: lines, and below them one live line that rewrites itself. Any thread.
class Console {
public:
    Console(std::ostream& out, ConsoleLook look) : out_(out), look_(look) {}
    ~Console() { endProgress(); }
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    /// Prints one line, or several.
    void say(std::string_view text);

    /// One line that tells of something at an unknown match time: indented as far as the others are by theirs.
    void note(std::string_view text) { say("         " + std::string(text)); }

    /// What is going on right now: the live line's new text. Without a live line it is printed once in a while.
    void progress(const std::string& text);

    /// Takes the live line away.
    void endProgress();

    [[nodiscard]] const ConsoleLook& look() const { return look_; }

private:
    void eraseLiveLine();

    std::mutex mutex_;  // guards what follows
    std::ostream& out_;
    const ConsoleLook look_;
    std::string liveText_;
    std::chrono::steady_clock::time_point lastProgress_;
};

/// The text on that background, where there are colours.
[[nodiscard]] std::string onColor(std::string_view text, Base::Color color, ConsoleLook::Colors colors);
[[nodiscard]] std::string bold(std::string_view text, ConsoleLook::Colors colors);
[[nodiscard]] std::string dimmed(std::string_view text, ConsoleLook::Colors colors);

}  // namespace CodingDesk
