#include "Apps/Simulator/Options.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <system_error>
#include <utility>

namespace Simulator {

namespace {

template <typename Number>
Number numberFrom(const std::string& text, const std::string& option, const std::string& expected,
                  Number least, Number most = std::numeric_limits<Number>::max()) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size() || !(number >= least && number <= most)) {
        throw UsageError(option + " expects " + expected + ", not \"" + text + '"');
    }
    return number;
}

std::size_t countFrom(const std::string& text, const std::string& option, std::size_t least = 0) {
    return numberFrom<std::size_t>(text, option, "a whole number from " + std::to_string(least) + " on",
                                   least);
}

double secondsFrom(const std::string& text, const std::string& option) {
    return numberFrom<double>(text, option, "a number of seconds", 0, 1e9);
}

std::string ruleFrom(const std::string& text) {
    const auto rules = allRules();
    if (std::ranges::find(rules, text) == rules.end()) {
        std::string names;
        for (const std::string& rule : rules) {
            names += (names.empty() ? "" : ", ") + rule;
        }
        throw UsageError("--break expects one of " + names + ", not \"" + text + '"');
    }
    return text;
}

using Setter = std::function<void(Options&, const std::string& option, const std::string& value)>;

/// The options that have a value. Those of drawings need --draw.
const std::map<std::string, Setter>& valueOptions() {
    static const std::map<std::string, Setter> setters{
        {"--seeds", [](auto& o, auto& name, auto& value) { o.seeds = countFrom(value, name, 1); }},
        {"--first-seed",
         [](auto& o, auto& name, auto& value) {
             o.firstSeed = numberFrom<std::uint64_t>(value, name, "a whole number from 0 on", 0);
         }},
        {"--operations",
         [](auto& o, auto& name, auto& value) { o.plan.operations = countFrom(value, name); }},
        {"--analysts",
         [](auto& o, auto& name, auto& value) {
             o.plan.analysts =
                 numberFrom<std::size_t>(value, name, "a number from 2 to 8", fewestAnalysts, mostAnalysts);
         }},
        {"--break", [](auto& o, auto&, auto& value) { o.plan.brokenRules.push_back(ruleFrom(value)); }},
        {"--plan", [](auto& o, auto&, auto& value) { o.planFile = value; }},
        {"--jobs", [](auto& o, auto& name, auto& value) { o.jobs = countFrom(value, name); }},
        {"--minutes",
         [](auto& o, auto& name, auto& value) {
             o.minutes = numberFrom<double>(value, name, "a number of minutes", 0, 1e6);
         }},
        {"--failures", [](auto& o, auto& name, auto& value) { o.failures = countFrom(value, name, 1); }},
        {"--tries", [](auto& o, auto& name, auto& value) { o.tries = countFrom(value, name); }},
        {"--save", [](auto& o, auto&, auto& value) { o.saveFile = value; }},
        {"--trace", [](auto& o, auto&, auto& value) { o.traceFile = value; }},
        {"--plans", [](auto& o, auto&, auto& value) { o.plansFolder = value; }},
        {"--save-classes", [](auto& o, auto&, auto& value) { o.classesFolder = value; }},
        {"--draw", [](auto& o, auto&, auto& value) { o.drawFile = value; }},
        {"--from", [](auto& o, auto& name, auto& value) { o.drawing.from = secondsFrom(value, name); }},
        {"--to", [](auto& o, auto& name, auto& value) { o.drawing.to = secondsFrom(value, name); }},
        {"--analyst", [](auto& o, auto&, auto& value) { o.drawing.analysts.push_back(value); }},
        {"--about", [](auto& o, auto&, auto& value) { o.drawing.about = value; }},
        {"--width", [](auto& o, auto& name, auto& value) { o.drawing.width = countFrom(value, name, 1); }}};
    return setters;
}

const std::map<std::string, std::function<void(Options&)>>& switches() {
    static const std::map<std::string, std::function<void(Options&)>> switches{
        {"--no-faults", [](Options& o) { o.plan.faults = false; }},
        {"--list", [](Options& o) { o.list = true; }},
        {"--coverage", [](Options& o) { o.coverage = true; }},
        {"--require-coverage", [](Options& o) { o.coverage = o.requireCoverage = true; }},
        {"--all", [](Options& o) { o.drawing.everything = true; }},
        {"--help", [](Options& o) { o.help = true; }},
        {"-h", [](Options& o) { o.help = true; }}};
    return switches;
}

bool isOfDrawing(const std::string& name) {
    return name == "--from" || name == "--to" || name == "--analyst" || name == "--about" ||
           name == "--width" || name == "--all";
}

bool isOfSeeds(const std::string& name) {
    return name == "--seeds" || name == "--first-seed" || name == "--operations" || name == "--analysts" ||
           name == "--no-faults" || name == "--break" || name == "--minutes" || name == "--save-classes";
}

void expectTogether(const Options& options, const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        if (isOfDrawing(name) && !options.drawFile) {
            throw UsageError(name + " is an option of --draw");
        }
        if (!isOfDrawing(name) && name != "--draw" && options.drawFile) {
            throw UsageError(name + " has no meaning with --draw");
        }
        if (isOfSeeds(name) && options.planFile) {
            throw UsageError(name + " has no meaning with --plan: the file says all about the run");
        }
    }
    if (!options.planFile && options.numberOfSeeds() != 1 && (options.saveFile || options.traceFile)) {
        throw UsageError(std::string(options.saveFile ? "--save" : "--trace") +
                         " needs a single run: --seeds 1, or --plan");
    }
}

}  // namespace

Options parseOptions(const std::vector<std::string>& arguments) {
    Options options;
    std::vector<std::string> names;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string& argument = arguments[index];
        const std::size_t equals = argument.starts_with("--") ? argument.find('=') : std::string::npos;
        const std::string name = argument.substr(0, equals);
        const bool isAttached = equals != std::string::npos;
        names.push_back(name);
        if (const auto setter = valueOptions().find(name); setter != valueOptions().end()) {
            if (!isAttached && index + 1 == arguments.size()) {
                throw UsageError(name + " needs a value");
            }
            setter->second(options, name, isAttached ? argument.substr(equals + 1) : arguments[++index]);
        } else if (const auto found = switches().find(name); found != switches().end()) {
            if (isAttached) {
                throw UsageError(name + " takes no value");
            }
            found->second(options);
        } else {
            throw UsageError((name.starts_with('-') ? "unknown option \"" : "unexpected argument \"") + name +
                             '"');
        }
    }
    if (!options.help) {
        expectTogether(options, names);
    }
    return options;
}

std::string planArguments(const PlanOptions& options) {
    const PlanOptions usual;
    std::string text;
    if (options.operations != usual.operations) {
        text += " --operations " + std::to_string(options.operations);
    }
    if (options.analysts != usual.analysts) {
        text += " --analysts " + std::to_string(options.analysts);
    }
    text += options.faults ? "" : " --no-faults";
    for (const std::string& rule : options.brokenRules) {
        text += " --break " + rule;
    }
    return text;
}

}  // namespace Simulator
