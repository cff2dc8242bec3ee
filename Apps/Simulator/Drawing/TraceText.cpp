#include "Apps/Simulator/Drawing/TraceText.hpp"

#include <algorithm>
#include <charconv>
#include <istream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace Simulator {

namespace {

/// Takes one line apart, from left to right.
class Line {
public:
    Line(std::string_view text, std::size_t number) : rest_(text), number_(number) {}

    [[nodiscard]] ReferenceHost::TraceEntry entry() {
        const Base::Seconds time = takeTime();
        std::string host = takeWord("a host");
        std::string kind = takeWord("a kind of entry");
        ReferenceHost::TraceFields fields;
        while (!rest_.empty()) {
            fields.push_back(takeField());
        }
        return {time, host == "-" ? std::string() : std::move(host), std::move(kind), std::move(fields)};
    }

private:
    [[noreturn]] void expected(const std::string& what) const {
        const std::string_view shown = rest_.substr(0, 40);
        throw std::runtime_error("line " + std::to_string(number_) + ": expected " + what + ", found " +
                                 (shown.empty() ? "the line's end" : '"' + std::string(shown) + '"'));
    }

    void take(char character, const std::string& what) {
        if (!rest_.starts_with(character)) {
            expected(what);
        }
        rest_.remove_prefix(1);
    }

    Base::Seconds takeTime() {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size()));
        double seconds = 0;
        const auto [end, error] =
            std::from_chars(rest_.data(), rest_.data() + rest_.size(), seconds, std::chars_format::fixed);
        const std::string_view text = rest_.substr(0, static_cast<std::size_t>(end - rest_.data()));
        // With six digits behind the point, and no longer than `Trace::write` writes them: neither "nan" nor "1e9".
        if (error != std::errc{} || text.size() < 8 || text.size() > 31 || text[text.size() - 7] != '.') {
            expected("a time");
        }
        rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
        return Base::Seconds(seconds);
    }

    std::string takeWord(const char* what) {
        take(' ', std::string("a space and ") + what);
        const std::string_view word = rest_.substr(0, rest_.find(' '));
        if (word.empty()) {
            expected(what);
        }
        rest_.remove_prefix(word.size());
        return std::string(word);
    }

    std::pair<std::string, std::string> takeField() {
        take(' ', "a space before the next field");
        const std::string_view name = rest_.substr(0, rest_.find('='));
        if (name.empty() || name.size() == rest_.size() || name.find(' ') != std::string_view::npos) {
            expected("name=\"value\"");
        }
        rest_.remove_prefix(name.size() + 1);
        return {std::string(name), takeQuoted()};
    }

    std::string takeQuoted() {
        take('"', "an opening quote");
        std::string value;
        while (!rest_.starts_with('"')) {
            if (rest_.empty()) {
                expected("a closing quote");
            }
            value += rest_.starts_with('\\') ? takeEscape() : rest_.front();
            rest_.remove_prefix(1);
        }
        rest_.remove_prefix(1);
        return value;
    }

    /// Leaves the escape's last character for the caller to take.
    char takeEscape() {
        rest_.remove_prefix(1);
        switch (rest_.empty() ? '\0' : rest_.front()) {
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case '"':
        case '\\':
            return rest_.front();
        default:
            expected("an escape: \\n, \\r, \\\" or \\\\");
        }
    }

    std::string_view rest_;
    std::size_t number_;
};

}  // namespace

std::vector<ReferenceHost::TraceEntry> readTrace(std::istream& stream) {
    std::vector<ReferenceHost::TraceEntry> entries;
    for (std::string line; std::getline(stream, line);) {
        entries.push_back(Line(line, entries.size() + 1).entry());
    }
    return entries;
}

}  // namespace Simulator
