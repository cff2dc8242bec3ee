#pragma once

#include <cstdint>
#include <iterator>
#include <list>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace ReferenceHost {

/// Everything of one kind that a timeline has or had, each object once, in the order of its latest change.
/// What changed last is found without looking at the rest; an object is found by its id in constant time.
/// Removed objects stay, for undo and for the lists of deletions. Main thread only.
template <typename Object>
class ChangeLog {
public:
    struct Entry {
        explicit Entry(std::shared_ptr<Object> object_) : object(std::move(object_)) {}

        std::shared_ptr<Object> object;
        std::int64_t stamp = 0;         ///< the count of the latest change
        std::int64_t removalStamp = 0;  ///< the count of the latest removal; 0 when there was none
        bool removed = false;

    private:
        friend class ChangeLog;
        typename std::list<Entry>::iterator self;
    };

    /// Null when there never was such an object.
    [[nodiscard]] Entry* find(const std::string& id) const {
        const auto found = byId_.find(id);
        return found == byId_.end() ? nullptr : found->second;
    }

    /// Null when there is no such object (any more).
    [[nodiscard]] Entry* findPresent(const std::string& id) const {
        Entry* entry = find(id);
        return entry != nullptr && !entry->removed ? entry : nullptr;
    }

    /// The object counts as changed at once; its id must be new.
    Entry& add(std::shared_ptr<Object> object, std::int64_t stamp) {
        const auto added = entries_.emplace(entries_.end(), std::move(object));
        if (!byId_.try_emplace(added->object->uniqueId(), &*added).second) {
            const std::string message = "The id is in use: " + added->object->uniqueId();
            entries_.erase(added);
            throw std::invalid_argument(message);
        }
        added->self = added;
        added->stamp = stamp;
        return *added;
    }

    void didChange(Entry& entry, std::int64_t stamp) {
        entry.stamp = stamp;
        entries_.splice(entries_.end(), entries_, entry.self);
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
        auto first = entries_.end();
        while (first != entries_.begin() && std::prev(first)->stamp >= count) {
            --first;
        }
        for (; first != entries_.end(); ++first) {
            visit(*first);
        }
    }

private:
    std::list<Entry> entries_;
    std::unordered_map<std::string_view, Entry*> byId_;  // the keys lie in the objects
};

}  // namespace ReferenceHost
