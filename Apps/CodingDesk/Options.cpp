#include "Apps/CodingDesk/Options.hpp"

#include "Apps/CodingDesk/Cast.hpp"
#include "Apps/CodingDesk/Scenario.hpp"
#include "Apps/CodingDesk/Text.hpp"

#include <charconv>
#include <cmath>
#include <system_error>

namespace CodingDesk {

namespace {

std::string asTyped(std::string_view text) { return '"' + printable(text) + '"'; }

template <typename Number>
Number numberFrom(std::string_view text, const std::string& option, const std::string& expected) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size()) {
        throw UsageError(option + " expects " + expected + ", not " + asTyped(text));
    }
    return number;
}

std::size_t analystsFrom(std::string_view text) {
    const std::string expected = "a number from " + std::to_string(Options::fewestAnalysts) + " to " +
                                 std::to_string(Options::mostAnalysts);
    const auto number = numberFrom<std::size_t>(text, "--analysts", expected);
    if (number < Options::fewestAnalysts || number > Options::mostAnalysts) {
        throw UsageError("--analysts expects " + expected + ", not " + asTyped(text));
    }
    return number;
}

std::optional<double> speedFrom(std::string_view text) {
    if (text == "auto") {
        return std::nullopt;
    }
    const std::string expected = "\"auto\" or match seconds per second, above 0 and up to 100000";
    const auto number = numberFrom<double>(text, "--speed", expected);
    if (!std::isfinite(number) || number <= 0 || number > 100000) {
        throw UsageError("--speed expects " + expected + ", not " + asTyped(text));
    }
    return number;
}

std::size_t analystNamed(std::string_view text, std::size_t analysts) {
    for (std::size_t i = 0; i < analysts; ++i) {
        if (castName(i) == text) {
            return i;
        }
    }
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc{} && end == text.data() + text.size() && number >= 1 && number <= analysts) {
        return number - 1;
    }
    std::string names;
    for (std::size_t i = 0; i < analysts; ++i) {
        names += (i == 0 ? "" : i + 1 == analysts ? " or " : ", ") + std::string(castName(i));
    }
    throw UsageError("--drop-link expects " + names + " or a number from 1 to " + std::to_string(analysts) +
                     ", not " + asTyped(text));
}

std::string scenarioFrom(const std::string& text) {
    if (text == Options::match || text == Options::everything || findScenario(text) != nullptr) {
        return text;
    }
    std::string names = Options::match;
    for (const Scenario& scenario : scenarios()) {
        names += ", " + std::string(scenario.name);
    }
    throw UsageError("--scenario expects " + names + " or " + Options::everything + ", not " + asTyped(text));
}

/// Splits "--name=value", and hands out the values of options that need one.
class Arguments {
public:
    explicit Arguments(const std::vector<std::string>& arguments) : arguments_(arguments) {}

    bool next() {
        if (index_ == arguments_.size()) {
            return false;
        }
        const std::string& argument = arguments_[index_++];
        const auto equals = argument.starts_with("--") ? argument.find('=') : std::string::npos;
        name = argument.substr(0, equals);
        attached_ = equals == std::string::npos ? std::nullopt : std::optional(argument.substr(equals + 1));
        return true;
    }

    std::string value() {
        if (attached_) {
            return *attached_;
        }
        if (index_ == arguments_.size()) {
            throw UsageError(name + " needs a value");
        }
        return arguments_[index_++];
    }

    [[nodiscard]] const std::optional<std::string>& attachedValue() const { return attached_; }

    void expectNoValue() const {
        if (attached_) {
            throw UsageError(name + " takes no value");
        }
    }

    std::string name;

private:
    const std::vector<std::string>& arguments_;
    std::size_t index_ = 0;
    std::optional<std::string> attached_;
};

}  // namespace

Options parseOptions(const std::vector<std::string>& list) {
    Options options;
    std::optional<std::string> dropLink;     // read when the number of analysts is known
    std::optional<std::string> matchOption;  // the last one that only the match has
    Arguments arguments(list);
    while (arguments.next()) {
        const std::string& name = arguments.name;
        if (name == "--events" || name == "--analysts" || name == "--speed" || name.ends_with("-link")) {
            matchOption = name;
        }
        if (name == "--events") {
            options.eventFile = arguments.value();
        } else if (name == "--analysts") {
            options.analysts = analystsFrom(arguments.value());
        } else if (name == "--speed") {
            options.speed = speedFrom(arguments.value());
        } else if (name == "--scenario") {
            options.scenario = scenarioFrom(arguments.value());
        } else if (name == "--seed") {
            options.seed = numberFrom<std::uint64_t>(arguments.value(), "--seed", "a whole number from 0 on");
        } else if (name == "--drop-link") {
            dropLink = arguments.attachedValue();
            options.dropLink = 1;
        } else if (name == "--no-drop-link") {
            arguments.expectNoValue();
            dropLink.reset();
            options.dropLink.reset();
        } else if (name == "--log") {
            options.logFile = arguments.value();
        } else if (name == "--plain") {
            arguments.expectNoValue();
            options.plain = true;
        } else if (name == "--help" || name == "-h") {
            arguments.expectNoValue();
            options.help = true;
        } else {
            throw UsageError((name.starts_with("-") ? "unknown option " : "unexpected argument ") +
                             asTyped(name));
        }
    }
    if (matchOption && findScenario(options.scenario) != nullptr) {
        throw UsageError(*matchOption + " is an option of the match, not of the scenario " +
                         asTyped(options.scenario));
    }
    if (dropLink) {
        options.dropLink = analystNamed(*dropLink, options.analysts);
    }
    return options;
}

std::string helpText() {
    std::string text = R"(Usage: CodingDesk [option...]

Several analysts code one match together, each on a timeline of their own, in one process. The first captures it and
starts a session, the others join it, all through the windows of their applications. The clips of a coded match are
tagged, retimed and deleted by all of them at once, while rows are added, moved, recoloured, removed and renamed.
At the end every timeline is compared with what the cloud holds, and everybody leaves.

  --scenario NAME     what is shown:
)";
    const auto line = [&](std::string_view name, std::string_view about) {
        text += std::string(24, ' ') + fitted(name, 17) + std::string(about) + '\n';
    };
    line(Options::match, "the match described above (default)");
    for (const Scenario& scenario : scenarios()) {
        line(scenario.name, scenario.about);
    }
    line(Options::everything, "all of these, one after another, the match last");
    return text + R"(
                      All but the match take no time: their clocks are virtual. Each checks what it shows.
  --seed N            how long the network takes, and what the analysts do besides tagging, follows from this
                      number (default 1)
  --log FILE          writes everything that happened at every analyst to FILE, one line an entry
  --plain             no live line and no colours, also on a terminal
  --help              this text

Of the match:
  --events FILE       the match to code: comma-separated values with the columns code, start and end (seconds),
                      in UTF-8. Other columns are ignored. Without it: a small handball match that ships with
                      the program.
  --analysts N        how many analysts, 2 to 8 (default 3)
  --speed X           match seconds per second, or "auto" (default): a small match is coded in about 6 seconds,
                      a large one in up to 22. Starting, joining, pauses and leaving come on top.
  --drop-link[=WHO]   the link of one analyst drops for some seconds in the middle; WHO is a name or a number
                      (default: the second analyst)
  --no-drop-link      nobody's link drops

In the windows drawn: ( ) cannot be used now, < > chosen, > selected, ! cannot be undone.

Exit status: 0 when all timelines are equal at the end and every scenario went as it should, 1 when not (with what
was expected, or one line for each difference) or when the run failed, 2 when the options or the file cannot be used.
)";
}

}  // namespace CodingDesk
