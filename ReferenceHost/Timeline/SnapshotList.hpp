#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <vector>

namespace ReferenceHost {

/// A list that is handed out as immutable snapshots without being copied: it is copied by the first edit
/// after a snapshot, and only while somebody still holds one.
///
/// Every operation needs the owner's lock; the snapshots themselves may be read and dropped on any thread
/// without it. Holders are counted by the list, not read from `shared_ptr::use_count`, which does not order
/// what a former holder read before what the owner writes next.
template <typename Element>
class SnapshotList {
public:
    using Elements = std::vector<std::shared_ptr<Element>>;
    using Snapshot = std::shared_ptr<const Elements>;

    [[nodiscard]] Snapshot snapshot() const {
        storage_->holders.fetch_add(1, std::memory_order_relaxed);
        const auto release = [storage = storage_](const Elements*) {
            storage->holders.fetch_sub(1, std::memory_order_release);
        };
        return Snapshot(&storage_->elements, release);
    }

    [[nodiscard]] const Elements& elements() const { return storage_->elements; }

    /// The elements for editing; valid until the next snapshot.
    [[nodiscard]] Elements& edit() {
        if (isHeld()) {
            auto copy = std::make_shared<Storage>();
            copy->elements = storage_->elements;
            storage_ = std::move(copy);
        }
        return storage_->elements;
    }

    /// Puts other elements in place of all, without copying what goes.
    void replace(Elements elements) {
        if (isHeld()) {
            storage_ = std::make_shared<Storage>();
        }
        storage_->elements = std::move(elements);
    }

private:
    struct Storage {
        Elements elements;
        std::atomic<std::size_t> holders{0};
    };

    [[nodiscard]] bool isHeld() const { return storage_->holders.load(std::memory_order_acquire) != 0; }

    std::shared_ptr<Storage> storage_ = std::make_shared<Storage>();
};

}  // namespace ReferenceHost
