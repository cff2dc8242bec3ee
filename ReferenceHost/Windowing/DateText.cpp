#include "ReferenceHost/Windowing/DateText.hpp"

#include <algorithm>
#include <ctime>

namespace ReferenceHost {

namespace {

std::string twoDigits(int number) { return (number < 10 ? "0" : "") + std::to_string(number); }

std::string inEnglish(const std::tm& date) {
    static constexpr const char* months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                             "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const int hour = date.tm_hour % 12 == 0 ? 12 : date.tm_hour % 12;
    return std::string(months[date.tm_mon]) + ' ' + std::to_string(date.tm_mday) + ", " +
           std::to_string(1900 + date.tm_year) + " at " + std::to_string(hour) + ':' +
           twoDigits(date.tm_min) + (date.tm_hour < 12 ? " AM" : " PM");
}

std::string inFrench(const std::tm& date) {
    static constexpr const char* months[] = {"janv.", "févr.", "mars",  "avr.", "mai",  "juin",
                                             "juil.", "août",  "sept.", "oct.", "nov.", "déc."};
    return std::to_string(date.tm_mday) + ' ' + months[date.tm_mon] + ' ' +
           std::to_string(1900 + date.tm_year) + " à " + twoDigits(date.tm_hour) + ':' +
           twoDigits(date.tm_min);
}

}  // namespace

DateLanguage dateLanguageOf(const std::vector<std::string>& languages) {
    for (const std::string& tag : languages) {
        std::string language = tag.substr(0, tag.find('-'));
        std::ranges::transform(language, language.begin(), [](char letter) {
            return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
        });
        if (language == "en" || language == "fr") {
            return language == "en" ? DateLanguage::english : DateLanguage::french;
        }
    }
    return DateLanguage::english;
}

std::string mediumDateText(std::chrono::sys_time<std::chrono::microseconds> time, DateLanguage language) {
    // Not through `system_clock`, which counts nanoseconds and ends in the year 2262.
    const std::time_t seconds = std::chrono::floor<std::chrono::seconds>(time).time_since_epoch().count();
    std::tm local{};
    tzset();  // localtime_r need not notice a zone that has changed
    if (localtime_r(&seconds, &local) == nullptr) {
        return {};
    }
    return language == DateLanguage::french ? inFrench(local) : inEnglish(local);
}

}  // namespace ReferenceHost
