#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace ReferenceHost {

enum class DateLanguage : std::uint8_t { english, french };

/// The first of these languages (BCP 47 tags) that is one of the above; English when none is.
[[nodiscard]] DateLanguage dateLanguageOf(const std::vector<std::string>& languages);

/// A medium date and a short time in the time zone of the process: "May 16, 2026 at 2:00 PM", "16 mai 2026 à 14:00". Empty for
/// a time that has no date. One thread at a time.
[[nodiscard]] std::string mediumDateText(std::chrono::sys_time<std::chrono::microseconds> time,
                                         DateLanguage language);

}  // namespace ReferenceHost
