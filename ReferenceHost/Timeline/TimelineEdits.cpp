// How every edit ends, and what users do to clips.

#include "ReferenceHost/Timeline/Timeline.hpp"

#include <utility>

namespace ReferenceHost {

std::int64_t Timeline::nextCount(ChangeKind kind) const {
    const bool counts = kind == ChangeKind::existence || rules_->everyChangeCounts;
    return modifyCount() + (counts ? 1 : 0);
}

void Timeline::finishChange(std::int64_t count) {
    modifyCount_.store(count, std::memory_order_release);
    const bool isAnnounced =
        rules_->changesAreAnnounced && (rules_->componentEditsAreAnnounced || !componentEdits_);
    if (isAnnounced && options_.didChange) {
        options_.didChange(shared_from_this());
    }
}

std::uint64_t Timeline::nextEditNumber() { return componentEdits_ ? 0 : ++lastEditNumber_; }

std::shared_ptr<TimelineInstance> Timeline::addInstance(const std::string& rowId, double startTime,
                                                        double endTime, const std::string& notes) {
    const auto row = findRow(rowId);
    if (!row) {
        return nullptr;
    }
    const auto count = nextCount(ChangeKind::existence);
    auto instance = std::make_shared<TimelineInstance>(
        options_.makeId(), row, ClipValues(startTime, endTime, notes), ++lastOrder_, false);
    const auto number = nextEditNumber();
    for (const auto part : {&EditNumbers::code, &EditNumbers::times, &EditNumbers::notes}) {
        instance->setEditNumber(part, number);
    }
    instanceLog_.add(instance, count);
    row->append(instance);
    finishChange(count);
    return instance;
}

bool Timeline::retimeInstance(const std::string& instanceId, double startTime, double endTime) {
    auto* entry = instanceLog_.findPresent(instanceId);
    return entry != nullptr && setValues(*entry, ClipValues(startTime, endTime, entry->object->values_.notes),
                                         &EditNumbers::times);
}

bool Timeline::setInstanceNotes(const std::string& instanceId, const std::string& notes) {
    auto* entry = instanceLog_.findPresent(instanceId);
    if (entry == nullptr) {
        return false;
    }
    const ClipValues& present = entry->object->values_;
    return setValues(*entry, ClipValues(present.startTime, present.endTime, notes), &EditNumbers::notes);
}

bool Timeline::setValues(InstanceEntry& entry, ClipValues values, std::uint64_t EditNumbers::* part) {
    if (rules_->emptyEditIsNoChange && entry.object->values_ == values) {
        return false;
    }
    const auto count = nextCount(ChangeKind::alteration);
    entry.object->setValues(std::move(values));
    if (const auto number = nextEditNumber()) {
        entry.object->setEditNumber(part, number);
    }
    instanceLog_.didChange(entry, count);
    finishChange(count);
    return true;
}

void Timeline::didRemove(InstanceEntry& entry, std::int64_t count) {
    instanceLog_.didRemove(entry, count);
    entry.object->deletedByUser_ = !componentEdits_;
}

void Timeline::didRestore(InstanceEntry& entry, std::int64_t count) {
    instanceLog_.didRestore(entry, count);
    entry.object->deletedByUser_ = false;
}

bool Timeline::removeInstance(const std::string& instanceId) {
    auto* entry = instanceLog_.findPresent(instanceId);
    if (entry == nullptr) {
        return false;
    }
    const auto count = nextCount(ChangeKind::existence);
    entry->object->row_.lock()->remove(*entry->object);
    didRemove(*entry, count);
    finishChange(count);
    return true;
}

bool Timeline::restoreInstance(const std::string& instanceId) {
    auto* entry = instanceLog_.find(instanceId);
    if (entry == nullptr || !entry->removed) {
        return false;
    }
    const auto row = entry->object->row_.lock();
    if (!findRow(row->uniqueId())) {
        return false;
    }
    const auto count = nextCount(ChangeKind::existence);
    row->restore(entry->object);
    didRestore(*entry, count);
    finishChange(count);
    return true;
}

}  // namespace ReferenceHost
