#pragma once

#include "Base/IdIndex.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ReferenceHost {

/// Everything of one kind that a timeline has or had, each object once, and in which order they changed last.
/// What changed last is found without looking at the rest; an object is found by its id in constant time.
/// Removed objects stay, for undo and for the lists of deletions. Main thread only.
template <typename Object>
class ChangeLog {
public:
    /// Of an entry: its place among all that were ever added.
    using Number = Base::IdIndex::Position;

    /// Stays where it is until the next one is added. An edit of one that was not used for long waits for its memory once.
    struct alignas(64) Entry {
        Entry(std::shared_ptr<Object> object_, Number number_)
            : object(std::move(object_)), number(number_), id(object->uniqueId()) {}

        std::shared_ptr<Object> object;
        std::int64_t stamp = 0;         ///< the count of the latest change
        std::int64_t removalStamp = 0;  ///< the count of the latest removal; 0 when there was none
        Number number;
        bool removed = false;

    private:
        friend class ChangeLog;
        std::string_view id;           // lies in the object, which is not looked at to find it
        std::size_t latestChange = 0;  // its place in `changes_`
    };

    /// Null when there never was such an object.
    [[nodiscard]] const Entry* find(const std::string& id) const {
        const auto number = byId_.find(id, idAt());
        return number ? &entries_[*number] : nullptr;
    }
    [[nodiscard]] Entry* find(const std::string& id) {
        const auto number = byId_.find(id, idAt());
        return number ? &entries_[*number] : nullptr;
    }

    /// Null when there is no such object (any more).
    [[nodiscard]] const Entry* findPresent(const std::string& id) const {
        const Entry* entry = find(id);
        return entry != nullptr && !entry->removed ? entry : nullptr;
    }
    [[nodiscard]] Entry* findPresent(const std::string& id) {
        Entry* entry = find(id);
        return entry != nullptr && !entry->removed ? entry : nullptr;
    }

    [[nodiscard]] const Entry& at(Number number) const { return entries_[number]; }

    /// The object counts as changed at once; its id must be new.
    Entry& add(std::shared_ptr<Object> object, std::int64_t stamp) {
        const std::string& id = object->uniqueId();
        if (find(id) != nullptr) {
            throw std::invalid_argument("The id is in use: " + id);
        }
        Entry& entry = entries_.emplace_back(std::move(object), static_cast<Number>(entries_.size()));
        byId_.put(id, entry.number, idAt());
        didChange(entry, stamp);
        return entry;
    }

    /// Takes constant time, but now and then that of a look at all entries.
    void didChange(Entry& entry, std::int64_t stamp) {
        entry.stamp = stamp;
        entry.latestChange = changes_.size();
        changes_.push_back(entry.number);
        if (changes_.size() > 2 * entries_.size()) {
            forgetEarlierChanges();
        }
    }

    void didRemove(Entry& entry, std::int64_t stamp) {
        didChange(entry, stamp);
        entry.removed = true;
        entry.removalStamp = stamp;
    }

    void didRestore(Entry& entry, std::int64_t stamp) {
        didChange(entry, stamp);
        entry.removed = false;
    }

    /// Calls `visit` with each entry that changed at `count` or later, in the order of the changes.
    template <typename Visit>
    void forEachSince(std::int64_t count, const Visit& visit) const {
        std::size_t first = changes_.size();
        while (first != 0 && entries_[changes_[first - 1]].stamp >= count) {
            --first;
        }
        for (std::size_t change = first; change < changes_.size(); ++change) {
            if (const Entry& entry = entries_[changes_[change]]; entry.latestChange == change) {
                visit(entry);
            }
        }
    }

private:
    [[nodiscard]] auto idAt() const {
        return [this](Number number) -> std::string_view { return entries_[number].id; };
    }

    void forgetEarlierChanges() {
        std::size_t kept = 0;
        for (std::size_t change = 0; change < changes_.size(); ++change) {
            if (Entry& entry = entries_[changes_[change]]; entry.latestChange == change) {
                entry.latestChange = kept;
                changes_[kept++] = entry.number;
            }
        }
        changes_.resize(kept);
    }

    std::vector<Entry> entries_;  // in the order in which they were added
    Base::IdIndex byId_;
    /// All of them, but perhaps not those that a later one of the same entry followed.
    std::vector<Number> changes_;
};

}  // namespace ReferenceHost
