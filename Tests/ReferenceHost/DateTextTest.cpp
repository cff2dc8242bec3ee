#include "ReferenceHost/Windowing/DateText.hpp"

#include <gtest/gtest.h>

#include <ctime>

namespace ReferenceHost {
namespace {

TEST(DateTextTest, WritesDatesInTheFirstLanguageThatItKnows) {
    const auto text = [](int month, int hour, const std::vector<std::string>& languages) {
        std::tm local{};
        local.tm_year = 126;
        local.tm_mon = month - 1;
        local.tm_mday = 6;
        local.tm_hour = hour;
        local.tm_min = 5;
        local.tm_isdst = -1;
        const auto time = std::chrono::system_clock::from_time_t(std::mktime(&local));
        return mediumDateText(std::chrono::floor<std::chrono::microseconds>(time), dateLanguageOf(languages));
    };
    EXPECT_EQ(text(5, 14, {}), "May 6, 2026 at 2:05 PM");
    EXPECT_EQ(text(12, 12, {"de", "en-GB", "fr"}), "Dec 6, 2026 at 12:05 PM");
    EXPECT_EQ(text(1, 0, {"fra"}), "Jan 6, 2026 at 12:05 AM");
    EXPECT_EQ(text(5, 14, {"fr"}), "6 mai 2026 à 14:05");
    EXPECT_EQ(text(12, 9, {"de", "FR-ca", "en"}), "6 déc. 2026 à 09:05");
}

}  // namespace
}  // namespace ReferenceHost
