// Plans as text. One line a step: the time, the analyst, the action, then what is not 0 of the step's numbers.

#include "Apps/Simulator/AnalystNames.hpp"
#include "Apps/Simulator/Plan.hpp"
#include "Apps/Simulator/Texts.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <istream>
#include <optional>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace Simulator {

namespace {

constexpr std::string_view objectKey = "object=";
constexpr std::string_view otherKey = "other=";
constexpr std::string_view amountKey = "amount=";

std::string inQuotes(std::string_view text) { return '"' + std::string(text) + '"'; }

/// What is wrong with a line; its number is added further up.
class LineError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

template <typename Number>
Number numberFrom(std::string_view text, const char* what) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size()) {
        throw LineError("the " + std::string(what) + " cannot be read: " + inQuotes(text));
    }
    return number;
}

double secondsFrom(std::string_view text, const char* what) {
    const auto seconds = numberFrom<double>(text, what);
    if (!std::isfinite(seconds)) {
        throw LineError("the " + std::string(what) + " is no time: " + inQuotes(text));
    }
    return seconds;
}

Action actionFrom(std::string_view name) {
    for (const Action action : allActions()) {
        if (nameOf(action) == name) {
            return action;
        }
    }
    throw LineError("there is no action " + inQuotes(name));
}

std::size_t analystFrom(std::string_view name) {
    const auto index = analystNamed(name);
    if (!index) {
        throw LineError("there is no analyst " + inQuotes(name));
    }
    return *index;
}

/// Up to the comment, if there is one.
std::vector<std::string> wordsOf(const std::string& line) {
    std::istringstream stream(line);
    std::vector<std::string> words;
    for (std::string word; stream >> word && word.front() != '#';) {
        words.push_back(word);
    }
    return words;
}

class Reader {
public:
    Plan read(std::istream& stream) {
        std::size_t number = 0;
        for (std::string line; std::getline(stream, line);) {
            ++number;
            try {
                readLine(wordsOf(line));
            } catch (const LineError& error) {
                throw std::runtime_error("line " + std::to_string(number) + ": " + error.what());
            }
        }
        if (!seed_ || !analysts_) {
            throw std::runtime_error("line " + std::to_string(std::max<std::size_t>(number, 1)) +
                                     ": the plan ends without " + (seed_ ? "\"analysts\"" : "\"seed\""));
        }
        plan_.seed = *seed_;
        plan_.analysts = *analysts_;
        return std::move(plan_);
    }

private:
    void readLine(const std::vector<std::string>& words) {
        if (words.empty()) {
            return;
        }
        const std::string& first = words.front();
        if (first == "seed" || first == "analysts" || first == "break") {
            if (words.size() != 2) {
                throw LineError(inQuotes(first) + " expects one word");
            }
            if (!plan_.steps.empty()) {
                throw LineError(inQuotes(first) + " belongs before the first step");
            }
            readHeader(first, words[1]);
        } else {
            readStep(words);
        }
    }

    void readHeader(const std::string& key, const std::string& value) {
        if ((key == "seed" && seed_) || (key == "analysts" && analysts_)) {
            throw LineError(inQuotes(key) + " stands here for the second time");
        }
        if (key == "seed") {
            seed_ = numberFrom<std::uint64_t>(value, "seed");
        } else if (key == "analysts") {
            analysts_ = numberFrom<std::size_t>(value, "number of analysts");
            if (*analysts_ < fewestAnalysts || *analysts_ > mostAnalysts) {
                throw LineError("the number of analysts is not from 2 to 8: " + inQuotes(value));
            }
        } else {
            const auto rules = allRules();
            if (std::ranges::find(rules, value) == rules.end()) {
                throw LineError("there is no rule " + inQuotes(value));
            }
            plan_.brokenRules.push_back(value);
        }
    }

    void readStep(const std::vector<std::string>& words) {
        if (words.size() < 3) {
            throw LineError("a step is a time, an analyst and an action");
        }
        Step step;
        step.at = Base::Seconds(secondsFrom(words[0], "time"));
        if (step.at < (plan_.steps.empty() ? Base::Seconds(0) : plan_.steps.back().at)) {
            throw LineError("the time is before that of the step above, or before 0: " + inQuotes(words[0]));
        }
        step.analyst = analystFrom(words[1]);
        step.action = actionFrom(words[2]);
        std::string_view lastKey;
        for (std::size_t index = 3; index < words.size(); ++index) {
            const std::string_view word = words[index];
            const auto key = word.substr(0, word.find('=') + 1);
            const auto value = word.substr(key.size());
            if (key == objectKey && lastKey.empty()) {
                step.object = numberFrom<std::uint32_t>(value, "object");
            } else if (key == otherKey && lastKey != otherKey && lastKey != amountKey) {
                step.other = numberFrom<std::uint32_t>(value, "other object");
            } else if (key == amountKey && lastKey != amountKey) {
                step.amount = secondsFrom(value, "amount");
            } else {
                throw LineError("unexpected " + inQuotes(word) +
                                "; object=, other= and amount= may follow, in this order");
            }
            lastKey = key;
        }
        plan_.steps.push_back(step);
    }

    Plan plan_;
    std::optional<std::uint64_t> seed_;
    std::optional<std::size_t> analysts_;
};

}  // namespace

void write(std::ostream& stream, const Plan& plan) {
    stream << "seed " << plan.seed << "\nanalysts " << plan.analysts << '\n';
    for (const std::string& rule : plan.brokenRules) {
        stream << "break " << rule << '\n';
    }
    for (const Step& step : plan.steps) {
        stream << textOf(step.at.count()) << ' ' << analystName(step.analyst) << ' ' << nameOf(step.action);
        if (step.object != 0) {
            stream << ' ' << objectKey << step.object;
        }
        if (step.other != 0) {
            stream << ' ' << otherKey << step.other;
        }
        if (step.amount != 0) {
            stream << ' ' << amountKey << textOf(step.amount);
        }
        stream << '\n';
    }
}

Plan readPlan(std::istream& stream) { return Reader().read(stream); }

}  // namespace Simulator
