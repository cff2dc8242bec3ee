// What a fuzzer is made with: it includes this, and defines `check`.
#pragma once

#include "Base/UTF8.hpp"

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <iterator>
#include <sstream>

/// Tries one input, and requires what must hold for every input.
static void check(std::string_view input);

/// What libFuzzer calls; Replay.cpp does where there is none.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    check({reinterpret_cast<const char*>(data), size});
    return 0;
}

/// Ends the program, which is a finding, unless the property holds.
inline void require(bool holds, const char* property) {
    if (!holds) {
        std::cerr << "Does not hold: " << property << std::endl;
        std::abort();
    }
}

/// The line that a reader complains of when it throws "Line 12: ..." for a text; 0 for one that it accepts.
template <typename Read>
std::size_t wrongLine(Read read, std::string_view text) {
    try {
        static_cast<void>(read(text));
        return 0;
    } catch (const std::runtime_error& error) {
        return std::stoul(error.what() + 5);
    }
}

/// Whether a reader accepts the text. The line that it complains of must be one of the text's, and nothing after it may matter.
template <typename Read>
bool accepts(Read read, std::string_view text) {
    const auto wrong = wrongLine(read, text);
    std::size_t line = 1, end = 0;
    while (end < text.size() && (wrong == 0 || line <= wrong)) {
        line += text[end++] == '\n' ? 1U : 0U;
    }
    const auto again = wrongLine(read, text.substr(0, end));
    require(wrong <= line && again <= wrong && (wrong == 0) == (again == 0), "that line is wrong");
    return wrong == 0;
}
