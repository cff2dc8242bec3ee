#pragma once

#include "Apps/Simulator/Conformance/Entry.hpp"
#include "Apps/Simulator/Finding.hpp"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace Simulator::Conformance {

/// Gathers what the checks find: of each rule the first few, because one fault often breaks a rule again and again.
class Report {
public:
    /// Where the entry stands is put in front of the words.
    void add(std::string_view rule, const Entry& entry, std::string_view what);

    /// About something that shows at no single entry.
    void add(std::string_view rule, std::string what, std::optional<std::size_t> entry = std::nullopt);

    [[nodiscard]] Findings take() { return std::move(findings_); }

private:
    [[nodiscard]] bool isEnoughOf(std::string_view rule);

    std::map<std::string, int, std::less<>> numbers_;
    Findings findings_;
};

}  // namespace Simulator::Conformance
