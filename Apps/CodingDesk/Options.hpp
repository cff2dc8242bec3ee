#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace CodingDesk {

/// What the user asked for on the command line.
struct Options {
    static constexpr std::size_t fewestAnalysts = 2;
    static constexpr std::size_t mostAnalysts = 8;
    static constexpr const char* match = "match";     ///< the scenario in which the match is coded
    static constexpr const char* everything = "all";  ///< all scenarios, one after another

    std::string scenario = match;  ///< one of these two, or the name of a `Scenario`

    // Of the match.
    std::optional<std::string> eventFile;  ///< absent: the match that ships with the program
    std::size_t analysts = 3;
    std::optional<double> speed;  ///< match seconds per second; absent: as fast as suits the match
    std::optional<std::size_t> dropLink = 1;  ///< whose link drops, from 0; absent: nobody's

    std::uint64_t seed = 1;
    std::optional<std::string> logFile;
    bool plain = false;
    bool help = false;
};

/// A command line that cannot be followed: one sentence that says which option and why.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// `arguments`: without the program's name. Throws `UsageError`.
[[nodiscard]] Options parseOptions(const std::vector<std::string>& arguments);

[[nodiscard]] std::string helpText();

}  // namespace CodingDesk
