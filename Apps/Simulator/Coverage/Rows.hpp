#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Simulator {

/// The rows of one table of counts: all known beforehand, so that those that are never met are seen.
class Rows {
public:
    void add(std::span<const std::string_view> names) {
        for (const std::string_view name : names) {
            counts_.emplace(name, 0);
        }
    }

    void meet(std::string_view name) {
        const auto row = counts_.find(name);
        if (row == counts_.end()) {
            throw std::logic_error("There is no row \"" + std::string(name) + '"');
        }
        ++row->second;
    }

    [[nodiscard]] const std::map<std::string_view, std::uint64_t>& counts() const { return counts_; }

private:
    std::map<std::string_view, std::uint64_t> counts_;
};

}  // namespace Simulator
