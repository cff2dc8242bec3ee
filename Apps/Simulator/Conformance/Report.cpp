#include "Apps/Simulator/Conformance/Report.hpp"

#include <cstdio>

namespace Simulator::Conformance {

namespace {

constexpr int mostOfEachRule = 5;

}  // namespace

void Report::add(std::string_view rule, const Entry& entry, std::string_view what) {
    if (isEnoughOf(rule)) {
        return;
    }
    char time[32] = {};
    std::snprintf(time, sizeof time, "%.6f", entry.time());
    std::string words = entry.raw.host.empty() ? "everybody" : entry.raw.host;
    const std::string_view timeline = entry.field("timelineId");
    if (!timeline.empty()) {
        words.append(", timeline ").append(timeline);
    }
    words.append(", at ").append(time).append(" s (entry ").append(std::to_string(entry.index)).append("): ");
    words.append(what);
    findings_.emplace_back(std::string(rule), std::move(words), entry.index);
}

void Report::add(std::string_view rule, std::string what, std::optional<std::size_t> entry) {
    if (!isEnoughOf(rule)) {
        findings_.emplace_back(std::string(rule), std::move(what), entry);
    }
}

bool Report::isEnoughOf(std::string_view rule) {
    const auto known = numbers_.find(rule);
    if (known == numbers_.end()) {
        numbers_.emplace(rule, 1);
        return false;
    }
    return ++known->second > mostOfEachRule;
}

}  // namespace Simulator::Conformance
