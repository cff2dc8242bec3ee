#pragma once

#include "Base/ExecutionProtocol.hpp"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace ReferenceHost {

/// A moment as the time since a clock's start: whole nanoseconds, so that sums of delays are exact.
using Instant = std::chrono::nanoseconds;

/// `delay` after `moment`, rounded up to the nanosecond: never earlier. A negative or undefined delay counts as none, one
/// past the end of time as some 146 years.
[[nodiscard]] inline Instant later(Instant moment, Base::Seconds delay) {
    constexpr double longest = 0x1.0p62;
    const double nanoseconds = std::ceil(delay.count() * 1e9);
    if (!(nanoseconds > 0)) {
        return moment;
    }
    const Instant::rep room = Instant::max().count() - moment.count();
    const auto whole = static_cast<Instant::rep>(std::min(nanoseconds, longest));
    return moment + Instant(std::min(whole, room));
}

/// Items that wait for their moment, in the order of their moments and, where these are equal, of their arrival. Not
/// thread-safe.
template <typename Item>
class DelayQueue {
public:
    using Ticket = std::pair<Instant, std::uint64_t>;

    Ticket add(Instant due, Item item) {
        const Ticket ticket(due, ++lastNumber_);
        items_.emplace(ticket, std::move(item));
        return ticket;
    }

    /// Takes the item out before its time; absent when it is not waiting any more.
    [[nodiscard]] std::optional<Item> take(const Ticket& ticket) {
        auto node = items_.extract(ticket);
        return node.empty() ? std::nullopt : std::optional<Item>(std::move(node.mapped()));
    }

    /// Takes the first item that is due at `now`.
    [[nodiscard]] std::optional<Item> takeDue(Instant now) {
        if (items_.empty() || items_.begin()->first.first > now) {
            return std::nullopt;
        }
        return std::move(items_.extract(items_.begin()).mapped());
    }

    /// Takes out all items for which the condition holds.
    template <typename Condition>
    [[nodiscard]] std::vector<Item> takeAll(Condition condition) {
        std::vector<Item> taken;
        for (auto entry = items_.begin(); entry != items_.end();) {
            if (condition(entry->second)) {
                taken.push_back(std::move(entry->second));
                entry = items_.erase(entry);
            } else {
                ++entry;
            }
        }
        return taken;
    }

    [[nodiscard]] std::optional<Instant> nextDue() const {
        return items_.empty() ? std::nullopt : std::optional<Instant>(items_.begin()->first.first);
    }

    [[nodiscard]] bool empty() const { return items_.empty(); }

private:
    std::map<Ticket, Item> items_;
    std::uint64_t lastNumber_ = 0;
};

}  // namespace ReferenceHost
