#include "Apps/CodingDesk/Console.hpp"

#include "Apps/CodingDesk/Text.hpp"

#include <algorithm>
#include <cstdlib>
#include <ostream>
#include <sys/ioctl.h>
#include <unistd.h>

namespace CodingDesk {

namespace {

constexpr std::chrono::seconds progressInterval{2};  // of progress lines where there is no live line

std::string_view environment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

// ECMA-48 control sequences (select graphic rendition, erase in line), as every terminal of today has them.
std::string styled(std::string_view text, const std::string& rendition, ConsoleLook::Colors colors) {
    if (colors == ConsoleLook::Colors::none) {
        return std::string(text);
    }
    return "\x1b[" + rendition + "m" + std::string(text) + "\x1b[0m";
}

// The colour cube of terminals with 256 colours: 16 + 36 red + 6 green + blue, six steps each.
int indexedColor(Base::Color color) {
    const auto step = [](std::uint8_t channel) { return (channel * 5 + 127) / 255; };
    return 16 + 36 * step(color.red) + 6 * step(color.green) + step(color.blue);
}

}  // namespace

ConsoleLook lookOfStandardOutput(bool plain) {
    ConsoleLook look;
    if (plain || isatty(STDOUT_FILENO) == 0 || environment("TERM") == "dumb") {
        return look;
    }
    look.hasLiveLine = true;
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        look.columns = std::clamp<std::size_t>(size.ws_col, 40, 160);
    }
    if (environment("NO_COLOR").empty()) {
        const auto colorTerm = environment("COLORTERM");
        const bool direct = colorTerm == "truecolor" || colorTerm == "24bit";
        look.colors = direct ? ConsoleLook::Colors::direct : ConsoleLook::Colors::indexed256;
    }
    return look;
}

void Console::say(std::string_view text) {
    const std::scoped_lock lock(mutex_);
    eraseLiveLine();
    out_ << text << '\n' << liveText_ << std::flush;
}

void Console::progress(const std::string& text) {
    const std::scoped_lock lock(mutex_);
    if (look_.hasLiveLine) {
        eraseLiveLine();
        liveText_ = dimmed(fitted(text, look_.columns - 1), look_.colors);
        out_ << liveText_ << std::flush;
        return;
    }
    const auto now = std::chrono::steady_clock::now();
    if (now - lastProgress_ >= progressInterval) {
        lastProgress_ = now;
        out_ << text << '\n' << std::flush;
    }
}

void Console::endProgress() {
    const std::scoped_lock lock(mutex_);
    eraseLiveLine();
    liveText_.clear();
    out_ << std::flush;
}

void Console::eraseLiveLine() {
    if (!liveText_.empty()) {
        out_ << "\r\x1b[K";
    }
}

std::string onColor(std::string_view text, Base::Color color, ConsoleLook::Colors colors) {
    if (colors == ConsoleLook::Colors::direct) {
        return styled(text,
                      "48;2;" + std::to_string(color.red) + ';' + std::to_string(color.green) + ';' +
                          std::to_string(color.blue),
                      colors);
    }
    return styled(text, "48;5;" + std::to_string(indexedColor(color)), colors);
}

std::string bold(std::string_view text, ConsoleLook::Colors colors) { return styled(text, "1", colors); }

std::string dimmed(std::string_view text, ConsoleLook::Colors colors) { return styled(text, "2", colors); }

}  // namespace CodingDesk
