#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>

namespace Simulator::Conformance {

/// The identifiers in a field of the trace, where commas separate them. Holds no copies.
class Ids {
public:
    class Iterator {
    public:
        using difference_type = std::ptrdiff_t;
        using value_type = std::string_view;

        Iterator() = default;
        explicit Iterator(std::string_view rest) : rest_(rest), isEnd_(rest.empty()) { cut(); }

        std::string_view operator*() const { return id_; }
        Iterator& operator++() {
            isEnd_ = id_.size() == rest_.size();
            rest_.remove_prefix(std::min(id_.size() + 1, rest_.size()));
            cut();
            return *this;
        }
        Iterator operator++(int) {
            Iterator before = *this;
            ++*this;
            return before;
        }
        friend bool operator==(const Iterator& one, std::default_sentinel_t) { return one.isEnd_; }

    private:
        void cut() { id_ = rest_.substr(0, rest_.find(',')); }

        std::string_view rest_;
        std::string_view id_;
        bool isEnd_ = true;
    };

    explicit Ids(std::string_view field) : field_(field) {}

    [[nodiscard]] Iterator begin() const { return Iterator(field_); }
    [[nodiscard]] std::default_sentinel_t end() const { return {}; }

    [[nodiscard]] bool contain(std::string_view id) const {
        return std::ranges::any_of(*this, [&](std::string_view one) { return one == id; });
    }

private:
    std::string_view field_;
};

}  // namespace Simulator::Conformance
