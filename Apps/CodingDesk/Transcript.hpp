#pragma once

#include "Apps/CodingDesk/Console.hpp"

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace CodingDesk {

/// What the analysts see, do and are told, as somebody tells it who looks over their shoulders. Any thread.
class Transcript {
public:
    /// The time as it is written before each line, at most eight columns; empty where the time does not matter.
    using Clock = std::function<std::string()>;

    /// The console outlives the transcript.
    explicit Transcript(Console& console, Clock clock = {}) : console_(console), clock_(std::move(clock)) {}

    /// One sentence or two, broken into lines that go below one another; below them the picture, if there is one: a window
    /// or an alert, drawn in lines of text.
    void tell(std::string_view text, std::string_view picture = {});

private:
    Console& console_;
    const Clock clock_;
};

}  // namespace CodingDesk
