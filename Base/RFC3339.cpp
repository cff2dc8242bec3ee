#include "Base/RFC3339.hpp"

#include <cstddef>
#include <stdexcept>

namespace Base::RFC3339 {

namespace {

using namespace std::chrono;

constexpr std::size_t fractionDigits = 6;

/// Reads a text from its start on. After the first thing that is not as expected it has failed for good.
class Reader {
public:
    explicit Reader(std::string_view text) : rest_(text) {}

    [[nodiscard]] bool readWholeText() const { return !failed_ && rest_.empty(); }

    /// The next character, one of `allowed`; else '\0'.
    char character(std::string_view allowed) {
        if (rest_.empty() || allowed.find(rest_.front()) == std::string_view::npos) {
            failed_ = true;
            return '\0';
        }
        return take();
    }

    /// A number of exactly so many digits, up to `largest`.
    int number(std::size_t digits, int largest) {
        int value = 0;
        for (std::size_t count = 0; count < digits; ++count) {
            if (!atDigit()) {
                failed_ = true;
                return 0;
            }
            value = value * 10 + (take() - '0');
        }
        failed_ = failed_ || value > largest;
        return value;
    }

    /// A fraction of a second when there is one: a point and any number of digits, at least one.
    microseconds fraction() {
        if (rest_.empty() || rest_.front() != '.') {
            return {};
        }
        take();
        failed_ = failed_ || !atDigit();
        int value = 0;
        for (std::size_t count = 0; count < fractionDigits || atDigit(); ++count) {
            const int digit = atDigit() ? take() - '0' : 0;
            if (count < fractionDigits) {
                value = value * 10 + digit;
            }
        }
        return microseconds(value);
    }

    /// What the local time is ahead of UTC.
    minutes offset() {
        const char sign = character("Zz+-");
        if (failed_ || sign == 'Z' || sign == 'z') {
            return {};
        }
        const hours wholeHours(number(2, 23));
        character(":");
        const minutes ahead = wholeHours + minutes(number(2, 59));
        return sign == '-' ? -ahead : ahead;
    }

private:
    // Only ASCII's digits, whatever the locale.
    [[nodiscard]] bool atDigit() const {
        return !rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9';
    }

    char take() {
        const char first = rest_.front();
        rest_.remove_prefix(1);
        return first;
    }

    std::string_view rest_;
    bool failed_ = false;
};

bool isLastMinuteOfMonth(sys_time<minutes> time) {
    const auto day = floor<days>(time);
    const bool lastDay = year_month_day(day + days(1)).day() == std::chrono::day(1);
    return lastDay && time - day == hours(23) + minutes(59);
}

void append(std::string& text, std::int64_t number, std::size_t digits) {
    const std::string written = std::to_string(number);
    text.append(digits - written.size(), '0').append(written);
}

}  // namespace

std::optional<Time> parse(std::string_view text) {
    Reader reader(text);
    const int yearNumber = reader.number(4, 9999);
    reader.character("-");
    const int monthNumber = reader.number(2, 12);
    reader.character("-");
    const int dayNumber = reader.number(2, 31);
    reader.character("Tt");
    const hours hour(reader.number(2, 23));
    reader.character(":");
    const minutes minute(reader.number(2, 59));
    reader.character(":");
    const seconds second(reader.number(2, 60));
    const microseconds fraction = reader.fraction();
    const minutes offset = reader.offset();

    const year_month_day date(year(yearNumber), month(static_cast<unsigned>(monthNumber)),
                              day(static_cast<unsigned>(dayNumber)));
    if (!reader.readWholeText() || !date.ok()) {
        return std::nullopt;
    }
    const sys_time<minutes> wholeMinute = sys_days(date) + hour + minute - offset;
    if (second < seconds(60)) {
        return wholeMinute + second + fraction;
    }
    if (!isLastMinuteOfMonth(wholeMinute)) {
        return std::nullopt;
    }
    return wholeMinute + seconds(60) - microseconds(1);
}

std::string format(Time time) {
    const auto day = floor<days>(time);
    // By the days: a year of the calendar has 16 bits, so that far beyond its range the years begin anew.
    if (day < sys_days(year(0) / January / 1) || day > sys_days(year(9999) / December / 31)) {
        throw std::out_of_range("RFC 3339 has no text for a time outside of the years 0 to 9999");
    }
    const year_month_day date(day);
    const hh_mm_ss timeOfDay(time - day);

    std::string text;
    append(text, int(date.year()), 4);
    append(text += '-', unsigned(date.month()), 2);
    append(text += '-', unsigned(date.day()), 2);
    append(text += 'T', timeOfDay.hours().count(), 2);
    append(text += ':', timeOfDay.minutes().count(), 2);
    append(text += ':', timeOfDay.seconds().count(), 2);
    if (timeOfDay.subseconds() != microseconds(0)) {
        append(text += '.', timeOfDay.subseconds().count(), fractionDigits);
    }
    return text += 'Z';
}

}  // namespace Base::RFC3339
